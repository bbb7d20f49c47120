// The colour bar of a map.
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/math/axisticks_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"
#include "tarnis/tools/style/stylepainter_p.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr double linesPerTick = 2.2;

} // namespace

PlotStyling::BarLayout StylePainter::paintColourBar(QPainter& painter, const QRect& frame, const ColorBarWidget& bar)
{
    const PlotAccess::Bar content = PlotAccess::bar(bar);
    const Scale scale = scaleOf(painter.font(), m_frame.isEmpty() ? m_plot.size() : m_frame.size());
    painter.save();
    painter.fillRect(frame, theme().surround);
    // As high as the plot rectangle beside it. A picture of another size may have been painted after the screen.
    const QRect graph = PlotAccess::plotRect(m_plot);
    const QRect beside = graph == m_graph ? m_frame : m_plot.rect();
    const int above = std::max(graph.top() - beside.top() - colourBarTop, scale.line / 2);
    const int under = std::max(beside.bottom() - graph.bottom() - colourBarTop, scale.line / 2);
    const QRect strip(frame.left() + scale.pad, frame.top() + above, scale.line, frame.height() - above - under);
    if (strip.height() < 2) {
        painter.restore();
        return { {}, {}, 0 };
    }
    QLinearGradient gradient(0, strip.bottom() + 1, 0, strip.top());
    for (qsizetype i = 0; i < content.positions.size(); ++i)
        gradient.setColorAt(content.positions.at(i), content.colors.at(i));
    painter.fillRect(strip, gradient);

    const auto onScale = [&content](double value) {
        if (content.isLog)
            return floorLog10(value);
        return content.isSquareRoot ? std::sqrt(std::max(value, 0.0)) : value;
    };
    const AxisRange scaled { onScale(content.range.min), onScale(content.range.max) };
    const int maxTicks = std::clamp(static_cast<int>(strip.height() / (linesPerTick * scale.line)), 1, content.ticks);
    const TickPlan plan =
        content.isLog ? decadePlan(content.range, maxTicks) : linearPlan(content.range, maxTicks, 0.0);
    const LargeNumbers numbers =
        options.numbers == PlotStyle::NumberForm::Powers ? LargeNumbers::Powers : LargeNumbers::Prefixes;
    const Axis axis = axisOf(plan, content.isLog ? decadeLabels(plan, numbers) : axisLabels(plan, numbers), scale,
        [&](double value) { return strip.bottom() - pixelsFromMin(onScale(value), scaled, strip.height()); });
    const int labelLeft = strip.right() + 1 + scale.tick + scale.pad / 2 + 1;
    painter.setPen(theme().text);
    const auto drawTick = [&](double position, int length) {
        painter.fillRect(strip.right() + 1, truncateToPixel(position), length, scale.thickness, theme().axis);
    };
    for (const double minor : axis.minor)
        drawTick(minor, scale.tick / 2);
    for (const Mark& mark : axis.marks) {
        drawTick(mark.position, scale.tick);
        drawLabel(painter, scale, mark.label, { double(labelLeft), mark.position + 0.5 }, scale.line);
    }
    int width = labelLeft + axis.widest + scale.pad - frame.left();
    if (!options.unitZ.isEmpty()) {
        painter.setFont(scale.name);
        painter.translate(frame.left() + width, strip.bottom());
        painter.rotate(-90.0);
        painter.drawText(QRect(0, 0, strip.height(), scale.nameLine), Qt::AlignCenter, options.unitZ);
        width += scale.nameLine + scale.pad;
    }
    painter.restore();
    const int labels = frame.right() - labelLeft + 1;
    return { QRect(labelLeft, strip.bottom() - scale.line, labels, 2 * scale.line),
        QRect(labelLeft, std::max(strip.top() - scale.line, 0), labels, 2 * scale.line), width };
}

} // namespace tarnis
