#include "tarnis/plots/math/readout_p.h"

#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/csvtext_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

double binWidth(const ReadOutAxis& axis, qsizetype count)
{
    return (axis.initial.max - axis.initial.min) / static_cast<double>(count);
}

bool reaches(const Series& series, int index)
{
    return series.enable && index < series.values.size();
}

} // namespace

int sampleAt(double x, const ReadOutAxis& axis, qsizetype count)
{
    const double index = axis.position != nullptr ? std::trunc(std::trunc(axis.position(x, nullptr)) / axis.resolution)
                                                  : std::floor((x - axis.initial.min) / binWidth(axis, count));
    const int last = static_cast<int>(std::min<qsizetype>(count, pixelLimit)) - 1;
    return std::clamp(truncateToPixel(index), 0, last);
}

double shownX(int index, const ReadOutAxis& axis, qsizetype count)
{
    if (axis.plotX != nullptr)
        return axis.plotX(index * axis.resolution, nullptr);
    const double bin = axis.position != nullptr ? 0.0 : binWidth(axis, count);
    return axis.decimals ? axis.initial.min + (index + 0.5) * bin : axis.initial.min + index * bin;
}

double sumAt(const QList<Series>& series, int index)
{
    double sum = 0.0;
    for (const Series& record : series) {
        if (reaches(record, index))
            sum += record.values.at(index);
    }
    return sum;
}

std::optional<int> seriesNearest(const QList<Series>& series, int index, double y, double reach)
{
    std::optional<int> nearest;
    for (int i = 0; i < series.size(); ++i) {
        if (!reaches(series.at(i), index))
            continue;
        const double distance = std::fabs(series.at(i).values.at(index) - y);
        if (distance < reach) {
            reach = distance;
            nearest = i;
        }
    }
    return nearest;
}

QString readOut(const QList<Series>& series, QPoint pixel, const QRect& graph, const ReadOutAxis& axis, AxisRange y,
    bool summed, const ReadOutNames& names)
{
    if (series.isEmpty() || series.constFirst().values.isEmpty() || !graph.contains(pixel, true))
        return {};
    const qsizetype count = series.constFirst().values.size();
    const double x = AxisMapping::horizontal(axis.visible, graph).valueAfter(pixel.x() - graph.left());
    const int index = sampleAt(x, axis, count);
    const double xShown = shownX(index, axis, count);
    const QString xText = plainNumber(axis.named != nullptr ? axis.named(xShown, axis.namedData) : xShown);
    if (summed || series.size() == 1)
        return QStringLiteral("%1:%2 i:%3").arg(names.x, xText, plainNumber(sumAt(series, index)));

    const double yUnderPixel = AxisMapping::vertical(y, graph).valueBefore(pixel.y() - graph.top());
    const std::optional<int> nearest = seriesNearest(series, index, yUnderPixel, y.max - y.min);
    if (!nearest)
        return {};
    return QStringLiteral("%1:%2 %3:%4 i:%5")
        .arg(names.group, QString::number(*nearest + names.firstNumber), names.x, xText,
            plainNumber(series.at(*nearest).values.at(index)));
}

} // namespace tarnis
