#include "tarnis/tools/curves/legendplacement_p.h"

#include "tarnis/plots/plotmapping.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tarnis {

namespace {

constexpr qsizetype maxSamples = 8192; // per curve; of longer ones only every n-th sample is read

/// Marks the columns of a line between two samples if the line passes through the rectangle's rows.
void mark(std::vector<bool>& isCovered, const QRect& rect, QPointF a, QPointF b)
{
    if (std::max(a.y(), b.y()) < rect.top() || std::min(a.y(), b.y()) > rect.bottom())
        return;
    const auto columnOf = [&](double x) {
        return std::clamp(static_cast<int>(std::floor(x)) - rect.left(), 0, rect.width() - 1);
    };
    const double left = std::min(a.x(), b.x());
    const double right = std::max(a.x(), b.x());
    if (right < rect.left() || left > rect.right())
        return;
    std::fill(isCovered.begin() + columnOf(left), isCovered.begin() + columnOf(right) + 1, true);
}

} // namespace

double coverageOf(const QRect& rect, const QList<ShownCurve>& curves, const PlotMapping& mapping)
{
    if (rect.isEmpty() || !mapping.isValid())
        return 0.0;
    const double from = mapping.xAt(rect.left());
    const double to = mapping.xAt(rect.right());
    const BinsInView bins = columnsBetween(mapping, { std::min(from, to), std::max(from, to) });
    const BinPositions position(mapping, bins);
    const qsizetype stride = std::max<qsizetype>((bins.last - bins.first) / maxSamples, 1);
    std::vector<bool> isCovered(static_cast<std::size_t>(rect.width()), false);
    for (const ShownCurve& curve : curves) {
        QPointF previous;
        bool hasPrevious = false;
        for (qsizetype bin = bins.first; bin <= std::min(bins.last, curve.size() - 1); bin += stride) {
            const double value = curve.valueAt(bin);
            if (!std::isfinite(value)) {
                hasPrevious = false;
                continue;
            }
            const QPointF point(position(bin), mapping.rowOf(value));
            mark(isCovered, rect, hasPrevious ? previous : point, point);
            previous = point;
            hasPrevious = true;
        }
    }
    return static_cast<double>(std::count(isCovered.begin(), isCovered.end(), true)) / rect.width();
}

} // namespace tarnis
