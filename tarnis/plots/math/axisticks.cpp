#include "tarnis/plots/math/axisticks_p.h"

#include "tarnis/plots/math/floatcomparison_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {
namespace {

/// The power of ten at or below a quarter of the range; 0 for a quarter of 0.
double powerBelow(double quarter)
{
    return std::pow(10.0, std::floor(std::log10(quarter)));
}

/// The 1, 2, 5 rule: both comparisons are strict.
double stepFor(double quarter, double power)
{
    if (quarter > 5.0 * power)
        return 5.0 * power;
    return 2.0 * power < quarter ? 2.0 * power : power;
}

/// The first of 1, 0.1, 0.01, 0.001 that is not above the quarter, else the last; `decimal` receives its decimals.
double decimalPower(double quarter, int& decimal)
{
    double divisor = 1.0;
    int decimals = 0;
    while (decimals < 3 && 1.0 / divisor > quarter) {
        divisor *= 10.0;
        ++decimals;
    }
    decimal = decimals;
    return 1.0 / divisor;
}

} // namespace

double floorLog10(double x)
{
    return x > 0.0 ? std::log10(x) : 0.0;
}

QList<double> calcTicks(double a, double b, int& decimal)
{
    const bool reversed = a > b;
    const double low = reversed ? b : a;
    const double high = reversed ? a : b;
    const double quarter = (high - low) * 0.25;
    double power = powerBelow(quarter);
    if (power < 1.0)
        power = decimal <= 0 ? 1.0 : decimalPower(quarter, decimal);
    const double step = stepFor(quarter, power);
    const double top = std::floor(high / step);
    const double bottom = std::ceil(low / step);
    const double distance = std::fabs(top - bottom);
    if (!(distance >= 1.0 && distance <= pixelLimit))
        return { bottom * step };

    const int n = static_cast<int>(distance);
    QList<double> ticks;
    ticks.reserve(n + 1);
    for (int i = 0; i <= n; ++i)
        ticks.append(bottom * step + i * (top * step - bottom * step) / n);
    if (reversed)
        std::reverse(ticks.begin(), ticks.end());
    return ticks;
}

double adjustAxis(double value, unsigned int& ticks)
{
    const double quarter = 0.25 * value;
    double power = powerBelow(quarter);
    if (power <= 0.0)
        power = 1.0;
    const double step = stepFor(quarter, power);
    const double steps = std::ceil(value / step);
    ticks = steps > 4.0 && steps < pixelLimit ? static_cast<unsigned int>(steps) : 4U;
    return steps * step;
}

double adjustLogAxis(double value)
{
    double exponent = 0.0;
    while (std::pow(10.0, exponent) < value)
        exponent += 1.0;
    return std::pow(10.0, exponent);
}

AxisTicks linearTicks(QList<double> inner, AxisRange range)
{
    AxisTicks ticks;
    if (inner.size() >= 2)
        ticks.step = inner.at(1) - inner.at(0);
    ticks.values = std::move(inner);
    if (!plotEqual(ticks.values.constFirst(), range.min))
        ticks.values.prepend(range.min);
    if (!plotEqual(ticks.values.constLast(), range.max))
        ticks.values.append(range.max);
    return ticks;
}

AxisTicks logTicks(AxisRange range)
{
    AxisTicks ticks;
    ticks.values.append(range.min);
    double exponent = range.min <= 0.0 ? 0.0 : std::ceil(std::log10(range.min));
    double power = std::pow(10.0, exponent);
    while (power < range.max) {
        ticks.values.append(power);
        exponent += 1.0;
        power = std::pow(10.0, exponent);
    }
    ticks.values.append(range.max);
    return ticks;
}

double pixelsFromMin(double value, AxisRange range, int length)
{
    return length * (value - range.min) / (range.max - range.min);
}

int columnOf(double value, AxisRange x, const QRect& graph)
{
    return truncateToPixel(graph.left() + pixelsFromMin(value, x, graph.width()));
}

int rowOf(double value, AxisRange y, bool logScale, const QRect& graph)
{
    if (plotEqual(y.min, y.max))
        return graph.bottom();
    if (!logScale)
        return truncateToPixel(graph.bottom() - pixelsFromMin(value, y, graph.height()));
    const AxisRange decades { floorLog10(y.min), floorLog10(y.max) };
    return truncateToPixel(graph.bottom() - pixelsFromMin(floorLog10(value), decades, graph.height()));
}

QList<int> gridColumns(const AxisTicks& ticks, AxisRange x, const QRect& graph)
{
    const double half = graph.width() / (x.max - x.min) * ticks.step * 0.5;
    QList<int> columns;
    const auto addInside = [&](double position) {
        const int column = truncateToPixel(position);
        if (graph.left() < column && column < graph.right())
            columns.append(column);
    };
    for (qsizetype i = 1; i + 1 < ticks.values.size(); ++i) {
        const double column = columnOf(ticks.values.at(i), x, graph);
        addInside(column);
        addInside(column + half);
        if (i == 1)
            addInside(column - half);
    }
    return columns;
}

QList<int> gridRows(const AxisTicks& ticks, AxisRange y, bool logScale, const QRect& graph)
{
    const double half = logScale ? 0.0 : graph.height() / (y.max - y.min) * ticks.step * 0.5;
    QList<int> rows;
    const auto addInside = [&](double position) {
        const int row = truncateToPixel(position);
        if (graph.top() < row && row < graph.bottom())
            rows.append(row);
    };
    for (qsizetype i = 1; i + 1 < ticks.values.size(); ++i) {
        const double row = rowOf(ticks.values.at(i), y, logScale, graph);
        addInside(row);
        addInside(row - half);
        if (i == 1)
            addInside(row + half);
    }
    return rows;
}

} // namespace tarnis
