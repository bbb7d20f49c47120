#include "tarnis/tools/navigation/viewcontrol_p.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"

#include <QAction>
#include <QKeyEvent>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr double keyMove = 0.1; // fraction of the range
constexpr double keyZoom = 1.25;
constexpr double fewestBins = 4.0;
constexpr double smallestTick = 0.001; // on an axis
constexpr double smallestDecades = 0.1;
constexpr double headroom = 1.1111111111111112; // the same as in the plots

/// Extends the range to the finite values.
void include(AxisRange& range, const QList<double>& values)
{
    for (const double value : values) {
        if (!std::isfinite(value))
            continue;
        range.min = std::min(range.min, value);
        range.max = std::max(range.max, value);
    }
}

AxisRange united(AxisRange a, AxisRange b)
{
    return { std::min({ a.min, a.max, b.min, b.max }), std::max({ a.min, a.max, b.min, b.max }) };
}

/// Counts can be zoomed to one count, small values to a thousandth.
double smallestSpan(AxisRange extent, AxisScale scale)
{
    if (scale == AxisScale::Log)
        return smallestDecades;
    const double span = std::abs(extent.max - extent.min);
    return span >= fewestBins ? 1.0 : span * smallestTick;
}

ViewLimits limitsOf(AxisRange extent, AxisScale scale, double minSpan)
{
    const AxisRange data { toAxis(extent.min, scale), toAxis(extent.max, scale) };
    if (!std::isfinite(data.max - data.min) || data.min == data.max)
        return { minSpan, std::nullopt };
    return { minSpan, data };
}

} // namespace

XY2DGraphWidget* ViewControl::map() const
{
    return qobject_cast<XY2DGraphWidget*>(&m_plot);
}

ViewState ViewControl::state() const
{
    ViewState view;
    view.x = PlotAccess::x(m_plot);
    view.y = PlotAccess::y(m_plot);
    view.autoX = isAuto(Qt::Horizontal);
    view.autoY = isAuto(Qt::Vertical);
    view.logScale = PlotAccess::isLogY(m_plot);
    if (const XY2DGraphWidget* image = map()) {
        view.levels = PlotAccess::levels(*image);
        view.autoLevels = PlotAccess::colourBar(*image).isAutoScale();
        view.logScale = PlotAccess::isLogZ(*image);
    }
    return view;
}

void ViewControl::apply(const ViewState& view)
{
    setLogScale(view.logScale);
    const auto applyAxis = [this](Qt::Orientation axis, bool isAutomatic, AxisRange range) {
        if (isAutomatic)
            fit(axis);
        else
            show(axis, range);
    };
    applyAxis(Qt::Horizontal, view.autoX, view.x);
    applyAxis(Qt::Vertical, view.autoY, view.y);
    if (map() == nullptr)
        return;
    if (view.autoLevels)
        fitLevels();
    else
        showLevels(view.levels);
}

AxisRange ViewControl::range(Qt::Orientation axis) const
{
    return axis == Qt::Horizontal ? PlotAccess::x(m_plot) : PlotAccess::y(m_plot);
}

AxisScale ViewControl::scale(Qt::Orientation axis) const
{
    return axis == Qt::Vertical && map() == nullptr && PlotAccess::isLogY(m_plot) ? AxisScale::Log : AxisScale::Linear;
}

std::optional<ViewControl::CutAxis> ViewControl::mapAxis(Qt::Orientation axis) const
{
    return axis == Qt::Horizontal ? PlotAccess::cutAxis(m_plot) : std::nullopt;
}

bool ViewControl::isAuto(Qt::Orientation axis) const
{
    if (const std::optional<CutAxis> shown = mapAxis(axis))
        return ViewControl(shown->map).isAuto(shown->axis);
    return axis == Qt::Horizontal ? PlotAccess::isAutoX(m_plot) : PlotAccess::isAutoY(m_plot);
}

/// Draws the plot, and the cuts of a map, in the new view.
void ViewControl::redraw()
{
    m_plot.refreshPixmap();
    if (XY2DGraphWidget* image = map(); image != nullptr && PlotAccess::isCutOn(*image))
        image->refresh1dCut(true);
}

void ViewControl::show(Qt::Orientation axis, AxisRange range)
{
    if (const std::optional<CutAxis> shown = mapAxis(axis)) {
        ViewControl map(shown->map);
        const AxisRange current = map.range(shown->axis);
        // The cut along Y is turned: its axis runs the other way.
        const bool isTurned = (range.min > range.max) != (current.min > current.max);
        map.show(shown->axis, isTurned ? AxisRange { range.max, range.min } : range);
        return;
    }
    if (axis == Qt::Horizontal) {
        if (isAuto(axis))
            m_plot.onAutoScaleX(false);
        m_plot.setMinMaxX(range.min, range.max);
    } else {
        if (isAuto(axis))
            m_plot.onAutoScaleY(false);
        m_plot.setMinMaxY(range.min, range.max);
    }
    redraw();
}

void ViewControl::fit(Qt::Orientation axis)
{
    if (const std::optional<CutAxis> shown = mapAxis(axis)) {
        ViewControl(shown->map).fit(shown->axis);
        return;
    }
    if (axis == Qt::Horizontal)
        m_plot.onAutoScaleX(true);
    else
        m_plot.onAutoScaleY(true);
    redraw();
}

AxisRange ViewControl::extentX() const
{
    const AxisRange initial = PlotAccess::initialX(m_plot);
    const PlotMapping mapping = PlotMapping::of(m_plot);
    if (mapping.columns() == 0)
        return initial;
    const AxisRange bins = united(mapping.columnEdges(0), mapping.columnEdges(mapping.columns() - 1));
    return PlotAccess::isManualX(m_plot) ? united(bins, initial) : bins;
}

AxisRange ViewControl::extentY() const
{
    if (m_extentY)
        return *m_extentY;
    AxisRange extent = PlotAccess::initialY(m_plot);
    if (map() != nullptr) {
        const PlotMapping mapping = PlotMapping::of(m_plot);
        if (mapping.rows() > 0)
            extent = united(mapping.rowEdges(0), mapping.rowEdges(mapping.rows() - 1));
        if (PlotAccess::isManualY(m_plot))
            extent = united(extent, PlotAccess::initialY(m_plot));
        return extent; // cheap, and depends on the view if the axis is not manual
    }
    if (const auto* curve = qobject_cast<const VectorGraphWidget*>(&m_plot)) {
        include(extent, PlotAccess::samples(*curve));
        extent.max = std::max(extent.max, PlotAccess::largest(*curve)) * headroom;
    } else if (auto* curves = qobject_cast<MultiVectorGraphWidget*>(&m_plot)) {
        for (const MultiVectorGraphWidget::Data& series : PlotAccess::series(*curves))
            include(extent, series.values);
        extent.max = std::max(extent.max, curves->getMaxValue()) * headroom;
    }
    m_extentY = extent;
    return extent;
}

ViewLimits ViewControl::limits(Qt::Orientation axis) const
{
    if (const std::optional<CutAxis> shown = mapAxis(axis))
        return ViewControl(shown->map).limits(shown->axis);
    if (axis == Qt::Vertical && map() == nullptr)
        return limitsOf(extentY(), scale(axis), smallestSpan(extentY(), scale(axis)));
    const PlotMapping mapping = PlotMapping::of(m_plot);
    const bool isX = axis == Qt::Horizontal;
    const qsizetype bins = isX ? mapping.columns() : mapping.rows();
    double width = 0.0;
    if (bins > 0) { // by the bin in the middle of the view, because widths may differ
        const double middle = range(axis).min + (range(axis).max - range(axis).min) / 2.0;
        const qsizetype found = isX ? mapping.columnAt(middle) : mapping.rowAt(middle);
        const qsizetype bin = std::max<qsizetype>(found, 0);
        const AxisRange edges = isX ? mapping.columnEdges(bin) : mapping.rowEdges(bin);
        width = std::abs(edges.max - edges.min);
    }
    // A quarter of few bins can be shown, otherwise a map of four bins could not be zoomed.
    const double fewest = std::min(fewestBins, static_cast<double>(bins) / 4.0);
    const double minSpan = std::isfinite(width) ? std::max(fewest * width, smallestTick) : smallestTick;
    return limitsOf(isX ? extentX() : extentY(), AxisScale::Linear, minSpan);
}

ZoomAnchor ViewControl::anchor(Qt::Orientation axis, double share) const
{
    const bool isCounts = axis == Qt::Vertical && map() == nullptr;
    const double low = toAxis(range(axis).min, scale(axis));
    return { share, isCounts && (low == 0.0 || (scale(axis) == AxisScale::Log && low < 0.0)) };
}

AxisRange ViewControl::levels() const
{
    return map() != nullptr ? PlotAccess::levels(*map()) : AxisRange();
}

AxisScale ViewControl::levelScale() const
{
    return map() != nullptr && PlotAccess::isLogZ(*map()) ? AxisScale::Log : AxisScale::Linear;
}

ViewLimits ViewControl::levelLimits() const
{
    const AxisRange extent { 0.0, map() != nullptr ? map()->getMaxValue() : 0.0 };
    return limitsOf(extent, levelScale(), smallestSpan(extent, levelScale()));
}

void ViewControl::showLevels(AxisRange levels)
{
    XY2DGraphWidget* image = map();
    if (image == nullptr)
        return;
    if (PlotAccess::colourBar(*image).isAutoScale())
        image->onAutoScaleZToggled(false);
    image->onMinZChanged(levels.min);
    image->onMaxZChanged(levels.max);
}

void ViewControl::fitLevels()
{
    if (map() != nullptr && !PlotAccess::colourBar(*map()).isAutoScale())
        map()->onAutoScaleZToggled(true);
}

void ViewControl::zoomBy(Qt::Orientation axis, double factor, ZoomAnchor anchor)
{
    const double notches = std::log(factor) / std::log(1.2);
    show(axis, zoomedView(range(axis), scale(axis), anchor, notches, limits(axis)));
}

void ViewControl::panBy(Qt::Orientation axis, double share)
{
    show(axis, pannedView(range(axis), scale(axis), share, limits(axis)));
}

bool ViewControl::takeKey(int key)
{
    const ZoomAnchor middle { 0.5, false };
    const ZoomAnchor upright { 0.5, map() == nullptr }; // a map is zoomed about its middle, a curve keeps its lower end
    switch (key) {
    case Qt::Key_Left:
        panBy(Qt::Horizontal, -keyMove);
        return true;
    case Qt::Key_Right:
        panBy(Qt::Horizontal, keyMove);
        return true;
    case Qt::Key_Up:
        panBy(Qt::Vertical, keyMove);
        return true;
    case Qt::Key_Down:
        panBy(Qt::Vertical, -keyMove);
        return true;
    case Qt::Key_Plus:
        zoomBy(Qt::Horizontal, keyZoom, middle);
        return true;
    case Qt::Key_Minus:
        zoomBy(Qt::Horizontal, 1.0 / keyZoom, middle);
        return true;
    case Qt::Key_PageUp:
        zoomBy(Qt::Vertical, keyZoom, upright);
        return true;
    case Qt::Key_PageDown:
        zoomBy(Qt::Vertical, 1.0 / keyZoom, upright);
        return true;
    case Qt::Key_Home:
        m_plot.onReset();
        m_plot.refreshPixmap();
        if (mapAxis(Qt::Horizontal))
            fit(Qt::Horizontal);
        return true;
    default:
        return false;
    }
}

QAction* ViewControl::logAction() const
{
    // The plots store no pointer to it, so it is found by its text in the current language.
    const QString curves = MultiVectorGraphWidget::tr("Log Scale");
    const QString image = XY2DGraphWidget::tr("Log Scale");
    for (QAction* action : m_plot.actions()) {
        if (action->isCheckable() && (action->text() == curves || action->text() == image))
            return action;
    }
    return nullptr;
}

void ViewControl::setLogScale(bool on)
{
    if (state().logScale == on)
        return;
    QAction* action = logAction();
    if (action != nullptr && action->isChecked() != on) {
        action->trigger();
        return;
    }
    if (map() != nullptr)
        map()->onLogScale(on);
    else
        m_plot.setLogScaleY(on);
}

} // namespace tarnis
