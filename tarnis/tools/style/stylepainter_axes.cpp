// Ticks, their labels, and the grid.
#include "tarnis/plots/math/axisticks_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/tools/style/stylepainter_p.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr double spanOfWholes = 2.0; // an axis without decimals has integer steps from this span on
constexpr int maxTicksX = 12;
constexpr int maxTicksY = 10;
constexpr double linesPerTick = 2.4;

LargeNumbers numbersOf(PlotStyle::NumberForm form)
{
    return form == PlotStyle::NumberForm::Powers ? LargeNumbers::Powers : LargeNumbers::Prefixes;
}

double smallestStep(AxisRange range, int decimals)
{
    return decimals == 0 && std::abs(range.max - range.min) >= spanOfWholes ? 1.0 : 0.0;
}

void fillPixels(QPainter& painter, const QRect& rect, const QColor& colour)
{
    if (const auto pixels = DevicePixels::of(painter))
        pixels->fill(painter, rect, colour);
    else
        painter.fillRect(rect, colour);
}

} // namespace

int StylePainter::widthOf(const AxisLabel& label, const Scale& scale)
{
    const int text = m_labels.advanceOf(label.text, QFontMetrics(scale.label));
    return label.exponent.isEmpty() ? text
                                    : text + m_exponents.advanceOf(label.exponent, QFontMetrics(scale.exponent)) + 1;
}

/// `left` is the middle of the left edge.
void StylePainter::drawLabel(QPainter& painter, const Scale& scale, const AxisLabel& label, QPointF left, int height)
{
    const int width = m_labels.advanceOf(label.text, QFontMetrics(scale.label));
    painter.setFont(scale.label);
    // Fractional positions would blur the text.
    const QRectF rect(std::round(left.x()), std::round(left.y() - height / 2.0), width + 2, height);
    m_labels.draw(painter, rect, Qt::AlignLeft | Qt::AlignVCenter, label.text);
    if (label.exponent.isEmpty())
        return;
    painter.setFont(scale.exponent);
    const double raised = std::round(height * 0.28);
    m_exponents.draw(painter, rect.translated(width + 1, -raised).adjusted(0, 0, height * 4, 0),
        Qt::AlignLeft | Qt::AlignVCenter, label.exponent);
}

StylePainter::Axis StylePainter::axisOf(const TickPlan& plan, const QList<AxisLabel>& labels, const Scale& scale,
    const std::function<double(double)>& place)
{
    Axis axis;
    for (qsizetype i = 0; i < plan.major.size(); ++i) {
        const int width = widthOf(labels.at(i), scale);
        axis.marks.append({ place(plan.major.at(i)), labels.at(i), width });
        axis.widest = std::max(axis.widest, width);
    }
    for (const double value : plan.minor)
        axis.minor.append(place(value));
    return axis;
}

/// As many ticks as their labels have space for. A second scale need not be linear, so each gap is checked.
StylePainter::Axis StylePainter::axisX(const QRect& graph, const Scale& scale)
{
    const AxisRange x = PlotAccess::x(m_plot);
    const AxisRange ticks { PlotAccess::tickOf(m_plot, x.min), PlotAccess::tickOf(m_plot, x.max) };
    const double step = smallestStep(ticks, PlotAccess::decimalsX(m_plot));
    const auto place = [&](double tick) {
        return graph.left() + pixelsFromMin(PlotAccess::fromTick(m_plot, tick), x, graph.width());
    };
    const auto fits = [&](const Axis& axis) {
        for (qsizetype i = 1; i < axis.marks.size(); ++i) {
            const Mark& a = axis.marks.at(i - 1);
            const Mark& b = axis.marks.at(i);
            if (std::abs(b.position - a.position) < (a.width + b.width) / 2.0 + 1.5 * scale.character)
                return false;
        }
        return true;
    };
    Axis axis;
    for (int maxTicks = std::clamp(graph.width() / std::max(4 * scale.character, 1), 1, maxTicksX); maxTicks >= 1;
         --maxTicks) {
        const TickPlan plan = linearPlan(ticks, maxTicks, step);
        axis = axisOf(plan, axisLabels(plan, numbersOf(options.numbers)), scale, place);
        if (fits(axis))
            return axis;
    }
    while (axis.marks.size() > 1 && !fits(axis))
        axis.marks.removeLast();
    return axis;
}

StylePainter::Axis StylePainter::axisY(const QRect& graph, const Scale& scale)
{
    const AxisRange y = PlotAccess::y(m_plot);
    const bool isMap = qobject_cast<const XY2DGraphWidget*>(&m_plot) != nullptr;
    const bool isLog = PlotAccess::isLogY(m_plot) && !isMap;
    const int maxTicks =
        std::clamp(static_cast<int>(graph.height() / (linesPerTick * std::max(scale.line, 1))), 1, maxTicksY);
    const auto onScale = [isLog](double value) { return isLog ? floorLog10(value) : value; };
    const AxisRange scaled { onScale(y.min), onScale(y.max) };
    const auto place = [&](double value) {
        return graph.bottom() - pixelsFromMin(onScale(value), scaled, graph.height());
    };
    const TickPlan plan =
        isLog ? decadePlan(y, maxTicks) : linearPlan(y, maxTicks, smallestStep(y, PlotAccess::decimalsY(m_plot)));
    const LargeNumbers numbers = numbersOf(options.numbers);
    return axisOf(plan, isLog ? decadeLabels(plan, numbers) : axisLabels(plan, numbers), scale, place);
}

void StylePainter::paintAxes(QPainter& painter, const QRect& graph, const Scale& scale, const Axis& x, const Axis& y)
{
    const QColor colour = theme().axis;
    const int thick = scale.thickness;
    const int below = graph.bottom() + 1;
    const int beside = graph.left() - thick;
    // Outside of the plot rectangle, so that nothing hides the first bins.
    fillPixels(painter, QRect(beside, below, graph.width() + thick, thick), colour);
    fillPixels(painter, QRect(beside, graph.top(), thick, graph.height()), colour);
    if (theme().isBoxed) {
        fillPixels(painter, QRect(beside, graph.top() - thick, graph.width() + 2 * thick, thick), colour);
        fillPixels(painter, QRect(graph.right() + 1, graph.top() - thick, thick, graph.height() + 2 * thick), colour);
    }
    const auto columnOf = [&](double position) { return truncateToPixel(std::floor(position)) - (thick - 1) / 2; };
    const auto drawColumn = [&](double position, int length) {
        const int column = columnOf(position);
        if (column >= beside && column <= graph.right() + 1)
            fillPixels(painter, QRect(column, below, thick, thick + length), colour);
    };
    const auto drawRow = [&](double position, int length) {
        const int row = columnOf(position);
        if (row >= graph.top() - thick && row <= below)
            fillPixels(painter, QRect(beside - length, row, thick + length, thick), colour);
    };
    for (const double minor : x.minor)
        drawColumn(minor, scale.tick / 2);
    for (const double minor : y.minor)
        drawRow(minor, scale.tick / 2);
    painter.setPen(theme().text);
    const int top = below + thick + scale.tick + scale.pad / 2;
    for (const Mark& mark : x.marks) {
        drawColumn(mark.position, scale.tick);
        drawLabel(painter, scale, mark.label, { mark.position - mark.width / 2.0, top + scale.line / 2.0 }, scale.line);
    }
    for (const Mark& mark : y.marks) {
        drawRow(mark.position, scale.tick);
        drawLabel(painter, scale, mark.label,
            { beside - scale.tick - scale.pad - double(mark.width), mark.position + 0.5 }, scale.line);
    }
}

void StylePainter::paintGrid(QPainter& painter, const QRect& graph)
{
    if (!options.grid)
        return;
    QColor colour = theme().grid;
    if (qobject_cast<const XY2DGraphWidget*>(&m_plot) != nullptr) {
        colour = QColor(128, 128, 128); // over bins of any colour
        colour.setAlpha(70);
    }
    for (const int column : std::as_const(m_columns))
        fillPixels(painter, QRect(column, graph.top(), 1, graph.height()), colour);
    for (const int row : std::as_const(m_rows))
        fillPixels(painter, QRect(graph.left(), row, graph.width(), 1), colour);
}

} // namespace tarnis
