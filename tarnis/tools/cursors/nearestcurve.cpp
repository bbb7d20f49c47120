#include "tarnis/tools/cursors/nearestcurve_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

bool isFinite(const QPointF& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

double distanceToSegment(const QPointF& place, const QPointF& a, const QPointF& b)
{
    const QPointF along = b - a;
    const double square = QPointF::dotProduct(along, along);
    const double share = square > 0.0 ? std::clamp(QPointF::dotProduct(place - a, along) / square, 0.0, 1.0) : 0.0;
    const QPointF apart = place - (a + share * along);
    return std::hypot(apart.x(), apart.y());
}

} // namespace

double distanceToLine(
    const QPointF& place, qsizetype first, qsizetype last, const std::function<QPointF(qsizetype)>& point)
{
    double nearest = std::numeric_limits<double>::infinity();
    if (last < first)
        return nearest;
    QPointF a = point(first);
    if (isFinite(a))
        nearest = distanceToSegment(place, a, a);
    for (qsizetype i = first + 1; i <= last; ++i) {
        const QPointF b = point(i);
        if (isFinite(b))
            nearest = std::min(nearest, distanceToSegment(place, isFinite(a) ? a : b, b));
        a = b;
    }
    return nearest;
}

} // namespace tarnis
