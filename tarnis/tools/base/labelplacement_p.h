// Places for texts over a plot, beside the boxes that are already there. Plain arithmetic; no painter.
#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>
#include <Qt>

QT_BEGIN_NAMESPACE
class QFontMetrics;
QT_END_NAMESPACE

namespace tarnis {

/// A free rectangle of the text's height in `inside`: the first row from the top that is wide enough between the boxes,
/// otherwise the widest one. Its width is that of the gap. Rows begin at the top of `inside` and below each box.
QRect freeRow(const QRect& inside, const QSize& text, const QList<QRect>& boxes);

/// The rectangle, moved towards one edge past the boxes that it meets; unmoved if it leaves `inside` that way.
QRect movedPast(const QRect& rect, const QRect& inside, const QList<QRect>& boxes, Qt::Edge towards);

/// Whether the rectangle intersects one of the boxes.
bool meetsAny(const QRect& rect, const QList<QRect>& boxes);

/// The parts of a read-out, which three spaces separate. Measured once, as shaping them takes longer than the rest.
struct ReadOutParts {
    ReadOutParts(const QString& text, const QFontMetrics& metrics);
    int width() const; ///< in one line

    QStringList texts;
    QList<int> widths;
    int gap = 0; ///< width of a separator
};

/// Widths of the lines of a read-out, in pixels.
struct LineWidths {
    int usual; ///< where nothing is elided in it
    int wide; ///< for lines of several parts that are elided otherwise
    int max; ///< for a single part that is elided otherwise
};

/// The width for wrapped(): the smallest of these, or of the widest part, in which nothing is elided.
int widthFor(const ReadOutParts& parts, const LineWidths& widths, int maxLines);

/// Joins the parts in lines of at most `width` and at most `maxLines` of them. A part that is wider, or that follows in
/// the last line, is elided.
QString wrapped(const ReadOutParts& parts, const QFontMetrics& metrics, int width, int maxLines);
qsizetype lineCount(const ReadOutParts& parts, int width, int maxLines); ///< the number of these lines
bool isElided(const ReadOutParts& parts, int width, int maxLines); ///< whether something is elided in these lines

/// A place for a read-out in which nothing is elided and no box is met.
struct FreeLines {
    QRect row; ///< with the text's height, as wide as the gap; null if there is no such place
    int width = 0; ///< for wrapped()
    int count = 0; ///< number of lines
};

/// The place in `inside` with the fewest lines, each of this height. `padding` is that of both sides of the text.
FreeLines freeLines(const ReadOutParts& parts, const QRect& inside, const QList<QRect>& boxes, int lineHeight,
    const QSize& padding, int maxLines);

} // namespace tarnis
