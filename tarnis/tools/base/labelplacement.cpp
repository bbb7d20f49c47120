#include "tarnis/tools/base/labelplacement_p.h"

#include <QFontMetrics>
#include <QStringList>

#include <algorithm>
#include <numeric>

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

/// Consecutive parts that share a line.
struct Line {
    QString text;
    int width = 0;
};

/// The parts in lines of at most `width`, unless a single part or the last line is wider.
QList<Line> linesOf(const ReadOutParts& parts, int width, int maxLines)
{
    QList<Line> lines;
    for (qsizetype i = 0; i < parts.texts.size(); ++i) {
        const int longer = lines.isEmpty() ? 0 : lines.last().width + parts.gap + parts.widths.at(i);
        if (!lines.isEmpty() && (longer <= width || lines.size() >= maxLines))
            lines.last() = { lines.last().text + separator + parts.texts.at(i), longer };
        else
            lines.append({ parts.texts.at(i), parts.widths.at(i) });
    }
    return lines;
}

/// The number of lines of at most `width`; more than there are parts if one of them is wider.
int linesFor(const ReadOutParts& parts, int width)
{
    int lines = 1;
    int used = 0;
    for (const int part : parts.widths) {
        if (part > width)
            return static_cast<int>(parts.widths.size()) + 1;
        const int longer = used == 0 ? part : used + parts.gap + part;
        lines += longer > width ? 1 : 0;
        used = longer > width ? part : longer;
    }
    return lines;
}

/// The least width of so many lines: that of some consecutive parts.
int leastWidth(const ReadOutParts& parts, int lines)
{
    int least = parts.width();
    for (qsizetype first = 0; first < parts.widths.size(); ++first) {
        int width = -parts.gap;
        for (qsizetype last = first; last < parts.widths.size(); ++last) {
            width += parts.gap + parts.widths.at(last);
            if (width < least && linesFor(parts, width) <= lines)
                least = width;
        }
    }
    return least;
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

QRect movedPast(const QRect& rect, const QRect& inside, const QList<QRect>& boxes, Qt::Edge towards)
{
    QRect moved = rect;
    for (qsizetype i = 0; i < boxes.size(); ++i) { // each box at most once, as all moves have the same direction
        const auto met =
            std::find_if(boxes.begin(), boxes.end(), [&](const QRect& box) { return box.intersects(moved); });
        if (met == boxes.end())
            break;
        if (towards == Qt::BottomEdge)
            moved.moveTop(met->bottom() + distance);
        else if (towards == Qt::TopEdge)
            moved.moveBottom(met->top() - distance);
        else if (towards == Qt::LeftEdge)
            moved.moveRight(met->left() - distance);
        else
            moved.moveLeft(met->right() + distance);
    }
    return inside.contains(moved) ? moved : rect;
}

bool meetsAny(const QRect& rect, const QList<QRect>& boxes)
{
    return std::any_of(boxes.begin(), boxes.end(), [&](const QRect& box) { return box.intersects(rect); });
}

ReadOutParts::ReadOutParts(const QString& text, const QFontMetrics& metrics)
    : texts(text.split(separator))
    , gap(metrics.horizontalAdvance(separator))
{
    for (const QString& part : texts)
        widths.append(metrics.horizontalAdvance(part));
}

int ReadOutParts::width() const
{
    return std::accumulate(widths.cbegin(), widths.cend(), static_cast<int>(widths.size() - 1) * gap);
}

int widthFor(const ReadOutParts& parts, const LineWidths& widths, int maxLines)
{
    int widestPart = 0;
    for (const int part : parts.widths)
        widestPart = std::max(widestPart, part + 1); // rounded, it would be elided
    const int width = std::min(std::max(widths.usual, widestPart), widths.max);
    const QList<Line> lines = linesOf(parts, width, maxLines);
    const bool fits = std::all_of(lines.begin(), lines.end(), [&](const Line& line) { return line.width <= width; });
    return fits ? width : std::max(width, widths.wide);
}

QString wrapped(const ReadOutParts& parts, const QFontMetrics& metrics, int width, int maxLines)
{
    QStringList texts;
    const QList<Line> lines = linesOf(parts, width, maxLines);
    for (const Line& line : lines)
        texts.append(line.width <= width ? line.text : metrics.elidedText(line.text, Qt::ElideRight, width));
    return texts.join(u'\n');
}

qsizetype lineCount(const ReadOutParts& parts, int width, int maxLines)
{
    return linesOf(parts, width, maxLines).size();
}

bool isElided(const ReadOutParts& parts, int width, int maxLines)
{
    const QList<Line> lines = linesOf(parts, width, maxLines);
    return std::any_of(lines.begin(), lines.end(), [&](const Line& line) { return line.width > width; });
}

FreeLines freeLines(const ReadOutParts& parts, const QRect& inside, const QList<QRect>& boxes, int lineHeight,
    const QSize& padding, int maxLines)
{
    for (int count = 1; count <= std::min(maxLines, static_cast<int>(parts.widths.size())); ++count) {
        const int width = leastWidth(parts, count) + 1; // rounded, a part would be elided
        const QSize size(width + padding.width() + 1, count * lineHeight + padding.height());
        if (size.width() > inside.width() || size.height() > inside.height())
            continue;
        const QRect row = freeRow(inside, size, boxes);
        if (row.width() >= size.width() && !meetsAny(QRect(row.topLeft(), size), boxes))
            return { row, width, count };
    }
    return {};
}

} // namespace tarnis
