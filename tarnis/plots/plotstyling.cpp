#include "tarnis/plots/plotstyling_p.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/raster/pixeltarget_p.h"

#include <QPainter>

namespace tarnis {

namespace {

/// A rectangle of the frame as a click target on the widget.
QRect onWidget(const QRect& rect, bool isUpright, int frameHeight)
{
    if (!isUpright)
        return rect;
    return { QPoint(frameHeight - rect.bottom(), rect.left()), QPoint(frameHeight - rect.top(), rect.right()) };
}

} // namespace

PlotStyling* stylingOf(const QWidget* plot)
{
    const auto* const graph = qobject_cast<const XYGraphWidget*>(plot);
    const PlotHooks* const hooks = graph != nullptr ? PlotHooks::existing(*graph) : nullptr;
    return hooks != nullptr ? hooks->styling() : nullptr;
}

QColor shownCurveColour(const XYGraphWidget& plot, int number, const QColor& given)
{
    const PlotStyling* const styling = stylingOf(&plot);
    return styling != nullptr ? styling->curveColour(number, given) : given;
}

void paintStyled(XYGraphWidget& plot, PlotStyling& styling, QPainter& painter, QRect* rect)
{
    const QRect whole = rect != nullptr ? *rect : painter.viewport();
    const QRect frame = whole.marginsRemoved(PlotAccess::margin(plot));
    styling.fitAxes();
    painter.save();
    PlotStyling::Layout layout = styling.paintFrame(painter, whole, frame);
    painter.restore();
    const bool isUpright = isQuarterTurn(plot.m_rotation);
    for (QRect* label : { &layout.minX, &layout.maxX, &layout.minY, &layout.maxY })
        *label = onWidget(*label, isUpright, frame.height());
    const auto offset = wholePixelOffset(painter);
    const bool coversAll = painter.device() == &plot.m_pixmap && offset && coversWholePixels(painter)
        && !painter.hasClipping()
        && whole.translated(*offset).contains(QRect(0, 0, painter.device()->width(), painter.device()->height()));
    PlotAccess::setLayout(plot, { layout.graph, layout.minX, layout.maxX, layout.minY, layout.maxY, coversAll });

    if (const auto pixels = DevicePixels::of(painter))
        painter.setClipRect(pixels->aligned(layout.graph), Qt::ReplaceClip);
    else
        painter.setClipRect(layout.graph, Qt::ReplaceClip);
    const bool isMap = qobject_cast<const XY2DGraphWidget*>(&plot) != nullptr;
    if (!isMap && PlotAccess::isGridShown(plot))
        styling.paintGrid(painter, layout.graph);
    plot.onPaint(painter, layout.graph);
    if (isMap && PlotAccess::isGridShown(plot))
        styling.paintGrid(painter, layout.graph);
    PlotAccess::viewTouched(plot);
}

} // namespace tarnis
