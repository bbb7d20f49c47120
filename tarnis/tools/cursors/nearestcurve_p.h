// The distance of a position to a curve of joined points. No widget.
#pragma once

#include <QPointF>
#include <QtGlobal>

#include <functional>

namespace tarnis {

/// The shortest distance from `place` to the line through point(first) ... point(last), or to the point if both are
/// equal. Segments with a non-finite end are ignored. Infinite if there is no other segment.
double distanceToLine(
    const QPointF& place, qsizetype first, qsizetype last, const std::function<QPointF(qsizetype)>& point);

} // namespace tarnis
