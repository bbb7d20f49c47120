#include "tarnis/tools/cursors/linkedcross_p.h"

#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/base/plotlabel_p.h"

#include <QPainter>
#include <QRegion>

#include <cmath>

namespace tarnis {

namespace {

constexpr int linkedZOrder = 49; // below the plot's own cross
const QColor linkedColour(235, 235, 235);

QRegion areaOf(const QList<QLineF>& lines, const QRect& rect)
{
    constexpr int lineReach = 2; // with the border
    QRegion area;
    for (const QLineF& line : lines)
        area += QRect(line.p1().toPoint(), line.p2().toPoint()).adjusted(-lineReach, -lineReach, lineReach, lineReach);
    return area & rect;
}

} // namespace

LinkedCross::LinkedCross(XYGraphWidget* plot)
    : PlotOverlay(plot, linkedZOrder)
    , m_plot(plot)
{
}

void LinkedCross::setOn(bool on)
{
    m_isOn = on;
    renew();
}

void LinkedCross::renew()
{
    const PlotMapping mapping = PlotMapping::of(*m_plot);
    updateOverlayArea(mapping.isValid() ? areaOf(lines(mapping), mapping.frameRect()) : QRegion());
}

QList<QLineF> LinkedCross::lines(const PlotMapping& mapping) const
{
    QList<QLineF> lines;
    if (!m_isOn)
        return lines;
    const PlotHooks& hooks = PlotHooks::of(*m_plot);
    const QRect rect = mapping.frameRect();
    const double column = std::round(mapping.columnOf(hooks.linkedCrosshair(Qt::Horizontal)));
    if (column >= rect.left() && column <= rect.right()) // not for NaN
        lines.append({ column, double(rect.top()), column, double(rect.bottom()) });
    const double row = std::round(mapping.rowOf(hooks.linkedCrosshair(Qt::Vertical)));
    if (row >= rect.top() && row <= rect.bottom())
        lines.append({ double(rect.left()), row, double(rect.right()), row });
    return lines;
}

void LinkedCross::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    const QList<QLineF> shown = lines(mapping);
    noteDrawn(painter, areaOf(shown, mapping.frameRect()));
    painter.setClipRect(mapping.frameRect());
    for (const QLineF& line : shown)
        paintLine(painter, line.p1(), line.p2(), colourOverData(*m_plot, linkedColour), true);
}

} // namespace tarnis
