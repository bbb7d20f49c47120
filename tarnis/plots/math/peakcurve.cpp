#include "tarnis/plots/math/peakcurve_p.h"

#include "tarnis/plots/math/floatcomparison_p.h"

#include <QPoint>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarnis {

PeakExtent peakExtent(const PeakSearch::Gaussian& peak, AxisRange visible)
{
    const double reach = 2.35482 * peak.sigma * 1.5;
    return { std::max(visible.min, peak.center - reach), std::min(visible.max, peak.center + reach) };
}

QList<QLine> peakLines(const PeakSearch::Gaussian& peak, PeakExtent extent, double step, const PeakScale& scale)
{
    QList<QLine> lines;
    std::optional<QPoint> previous;
    for (double x = extent.start; x < extent.stop;) {
        const double distance = x - peak.center;
        const double value = peak.N * std::exp(-0.5 * (distance * distance) / (peak.sigma * peak.sigma)) + peak.offset;
        const QPoint point(truncateToPixel((x - scale.minX) * scale.pixelsPerX + scale.x0),
            truncateToPixel(scale.y0 - (value - scale.minY) * scale.pixelsPerY));
        if (previous)
            lines.append(QLine(*previous, point));
        previous = point;
        // Accumulates the steps instead of multiplying: the rounding is visible in the pixels.
        const double next = x + step;
        if (!(next > x))
            break;
        x = next;
    }
    return lines;
}

} // namespace tarnis
