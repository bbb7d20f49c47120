// The distance of a place to a curve of joined points. No widget.
#pragma once

#include <QPointF>
#include <QtGlobal>

#include <functional>

namespace tarnis {

/// The shortest distance from `place` to the line through point(first) ... point(last); to the point alone where both
/// are equal. Segments with an end that is not finite are passed over. Infinite if nothing is left.
double distanceToLine(
    const QPointF& place, qsizetype first, qsizetype last, const std::function<QPointF(qsizetype)>& point);

} // namespace tarnis
