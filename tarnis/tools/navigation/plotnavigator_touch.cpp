// Two fingers on a touch screen.
#include "tarnis/tools/navigation/plotnavigator_p.h"

#include "tarnis/plots/plotmapping.h"

#include <cmath>

namespace tarnis {

/// A gesture begins like a drag of the middle button.
void PlotNavigator::Internals::beginTwoFingers(const QPointF& middle, quint64 timeMs)
{
    if (!navigator.noteChange())
        return;
    navigator.beginPan(middle, timeMs);
    touchRect = PlotMapping::of(*navigator.plot()).frameRect();
    keepsMinY = view.anchor(Qt::Vertical, 0.5).keepsMin;
}

/// From the view and the plot rectangle at the beginning: what was between the fingers stays there, and fingers that
/// move back restore the view, although the rectangle moves with the width of the labels.
void PlotNavigator::Internals::moveTwoFingers(const QPointF& middle, double scale)
{
    const PlotMapping mapping = PlotMapping::of(*navigator.plot());
    if (!isPanning || !mapping.isValid())
        return;
    const auto shareAt = [this](const QPointF& at) {
        return QPointF(
            (at.x() - touchRect.left()) / touchRect.width(), (touchRect.bottom() - at.y()) / touchRect.height());
    };
    const QPointF begin = shareAt(panStart);
    const QPointF share = shareAt(mapping.toFrame(middle));
    const double notches = std::log(scale) / std::log(1.2);
    const auto show = [&](Qt::Orientation axis, const AxisRange& start, double from, double to) {
        const bool keepsMin = axis == Qt::Vertical && keepsMinY && scale != 1.0;
        const ViewLimits limits = view.limits(axis);
        const AxisRange panned = keepsMin ? start : pannedView(start, view.scale(axis), from - to, limits);
        const AxisRange zoomed = zoomedView(panned, view.scale(axis), { to, keepsMin }, notches, limits);
        if (zoomed != view.range(axis))
            view.show(axis, zoomed);
    };
    if (panZone != PlotZone::AxisY)
        show(Qt::Horizontal, panView.x, begin.x(), share.x());
    if (panZone != PlotZone::AxisX)
        show(Qt::Vertical, panView.y, begin.y(), share.y());
}

void PlotNavigator::Internals::endTwoFingers(bool cancel)
{
    navigator.endPan(cancel);
}

} // namespace tarnis
