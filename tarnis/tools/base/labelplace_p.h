// Places for texts over a plot, beside the boxes that are already there. Plain arithmetic; no painter.
#pragma once

#include <QList>
#include <QRect>
#include <QString>

QT_BEGIN_NAMESPACE
class QFontMetrics;
QT_END_NAMESPACE

namespace tarnis {

/// A free rectangle of the text's height in `inside`: the first row from the top that is wide enough between the boxes,
/// otherwise the widest one. Its width is that of the gap. Rows begin at the top of `inside` and below each box.
QRect freeRow(const QRect& inside, const QSize& text, const QList<QRect>& boxes);

/// Joins the parts of a read-out with three spaces, in lines of at most `width` and at most `maxLines` of them. A part
/// that is wider, or that follows in the last line, is elided.
QString wrapped(const QString& text, const QFontMetrics& metrics, int width, int maxLines);

} // namespace tarnis
