#include "tarnis/tools/base/labelplace_p.h"

#include <QFontMetrics>
#include <QStringList>

#include <algorithm>

namespace tarnis {

namespace {

constexpr int distance = 3; // between boxes
const QString separator = QStringLiteral("   ");

/// The widest part of the row that no box covers; empty if boxes cover all of it.
QRect widestGap(const QRect& row, QList<QRect> boxes)
{
    std::sort(boxes.begin(), boxes.end(), [](const QRect& a, const QRect& b) { return a.left() < b.left(); });
    QRect widest(row.topLeft(), QSize(0, row.height()));
    int left = row.left();
    const auto take = [&](int end) {
        if (end - left > widest.width())
            widest = QRect(left, row.top(), end - left, row.height());
    };
    for (const QRect& box : std::as_const(boxes)) {
        if (!box.intersects(row))
            continue;
        take(box.left() - distance);
        left = std::max(left, box.left() + box.width() + distance);
    }
    take(row.left() + row.width());
    return widest;
}

/// The parts in lines of at most `width`, unless a single part or the last line is wider.
QStringList linesOf(const QString& text, const QFontMetrics& metrics, int width, int maxLines)
{
    QStringList lines;
    for (const QString& part : text.split(separator)) {
        const QString longer = lines.isEmpty() ? part : lines.last() + separator + part;
        if (!lines.isEmpty() && (metrics.horizontalAdvance(longer) <= width || lines.size() >= maxLines))
            lines.last() = longer;
        else
            lines.append(part);
    }
    return lines;
}

} // namespace

QRect freeRow(const QRect& inside, const QSize& text, const QList<QRect>& boxes)
{
    QList<int> tops { inside.top() };
    for (const QRect& box : boxes)
        tops.append(box.top() + box.height() + distance);
    std::sort(tops.begin(), tops.end());
    QRect best;
    for (const int top : std::as_const(tops)) {
        if (top < inside.top() || (top > inside.top() && top + text.height() > inside.top() + inside.height()))
            continue;
        const QRect gap = widestGap({ inside.left(), top, inside.width(), text.height() }, boxes);
        if (gap.width() >= text.width())
            return gap;
        if (best.isNull() || gap.width() > best.width())
            best = gap;
    }
    return best;
}

int widthFor(const QString& text, const QFontMetrics& metrics, const LineWidths& widths, int maxLines)
{
    int widestPart = 0;
    for (const QString& part : text.split(separator))
        widestPart = std::max(widestPart, metrics.horizontalAdvance(part) + 1); // rounded, it would be elided
    const int width = std::min(std::max(widths.usual, widestPart), widths.max);
    const QStringList lines = linesOf(text, metrics, width, maxLines);
    const bool fits = std::all_of(
        lines.begin(), lines.end(), [&](const QString& line) { return metrics.horizontalAdvance(line) <= width; });
    return fits ? width : std::max(width, widths.wide);
}

QString wrapped(const QString& text, const QFontMetrics& metrics, int width, int maxLines)
{
    QStringList lines = linesOf(text, metrics, width, maxLines);
    for (QString& line : lines)
        line = metrics.elidedText(line, Qt::ElideRight, width);
    return lines.join(u'\n');
}

} // namespace tarnis
