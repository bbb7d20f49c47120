#include "tarnis/plots/math/mapreadout_p.h"

#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/csvtext_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"

#include <cmath>

namespace tarnis {

namespace {

int binAt(double value, const BinAxis& axis)
{
    return roundToInt(std::floor((value - axis.initMin) / axis.step));
}

QString shownPosition(int bin, const MapAxis& axis)
{
    const double place = axis.decimals == 0 ? bin : bin + 0.5;
    return plainNumber(axis.bins.initMin + place * axis.bins.step);
}

} // namespace

QString readOut(const BinRows& rows, const MapAxis& x, const MapAxis& y, const QPoint& pixel, const QRect& graph)
{
    if (!graph.contains(pixel, true))
        return {};
    const AxisMapping axisX = AxisMapping::horizontal({ x.bins.min, x.bins.max }, graph);
    const AxisMapping axisY = AxisMapping::vertical({ y.bins.min, y.bins.max }, graph);
    const int column = binAt(axisX.valueAfter(pixel.x() - graph.left()), x.bins);
    const int row = binAt(axisY.valueBefore(pixel.y() - graph.top()), y.bins);
    if (column < 0 || row < 0 || row >= rows.size() || column >= rows.at(row).size())
        return {};
    const double value = rows.at(row).at(column);
    if (!(value > 0.0))
        return {};
    return QStringLiteral("%1:%2 %3:%4 i:%5")
        .arg(x.name, shownPosition(column, x), y.name, shownPosition(row, y), plainNumber(value));
}

} // namespace tarnis
