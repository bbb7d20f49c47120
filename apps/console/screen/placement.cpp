#include "screen/placement.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace console {

namespace {

constexpr double likedRatio = 1.4; // preferred ratio of a plot's width to its height
constexpr int cascadeStep = 32;
constexpr qint64 tolerableShare = 4; // at most a quarter of a window may overlap others

qint64 areaOf(const QRect& rect)
{
    return rect.isEmpty() ? 0 : qint64(rect.width()) * rect.height();
}

qint64 overlap(const QRect& place, const QList<QRect>& occupied)
{
    return std::accumulate(occupied.begin(), occupied.end(), qint64 { 0 },
        [&](qint64 sum, const QRect& other) { return sum + areaOf(place.intersected(other)); });
}

/// Positions at which the window touches an edge of the area or of another window.
QList<int> candidates(int first, int last, int length, const QList<std::pair<int, int>>& edges)
{
    QList<int> found { first, last - length + 1 };
    for (const auto& [low, high] : edges) {
        found.append(high + 1);
        found.append(low - length);
    }
    found.removeIf([&](int position) { return position < first || position + length - 1 > last; });
    std::sort(found.begin(), found.end());
    found.resize(std::unique(found.begin(), found.end()) - found.begin());
    return found;
}

} // namespace

QRect inside(const QRect& rect, const QRect& area)
{
    QRect moved(rect.topLeft(), rect.size().boundedTo(area.size()));
    moved.moveLeft(std::clamp(moved.left(), area.left(), area.right() - moved.width() + 1));
    moved.moveTop(std::clamp(moved.top(), area.top(), area.bottom() - moved.height() + 1));
    return moved;
}

QRect leastOverlap(const QSize& size, const QRect& area, const QList<QRect>& occupied)
{
    const QSize bounded = size.boundedTo(area.size());
    QList<std::pair<int, int>> columns;
    QList<std::pair<int, int>> rows;
    for (const QRect& other : occupied) {
        columns.append({ other.left(), other.right() });
        rows.append({ other.top(), other.bottom() });
    }
    QRect best(area.topLeft(), bounded);
    qint64 least = overlap(best, occupied);
    for (const int y : candidates(area.top(), area.bottom(), bounded.height(), rows)) {
        for (const int x : candidates(area.left(), area.right(), bounded.width(), columns)) {
            const QRect place(QPoint(x, y), bounded);
            if (const qint64 covered = overlap(place, occupied); covered < least) {
                least = covered;
                best = place;
            }
        }
    }
    return best;
}

bool hasRoomFor(const QSize& size, const QRect& area, const QList<QRect>& occupied)
{
    const QRect best = leastOverlap(size, area, occupied);
    return overlap(best, occupied) * tolerableShare <= areaOf(best);
}

QRect placeOfNewWindow(const QSize& size, const QRect& area, const QList<QRect>& occupied)
{
    const QRect best = leastOverlap(size, area, occupied);
    if (hasRoomFor(size, area, occupied))
        return best;
    const int room = std::min(area.width() - best.width(), area.height() - best.height());
    const int steps = std::max(1, room / cascadeStep + 1);
    for (int i = 0; i < steps; ++i) {
        const QPoint corner = area.topLeft() + QPoint(1, 1) * (i * cascadeStep);
        const bool isTaken = std::any_of(occupied.begin(), occupied.end(),
            [&](const QRect& other) { return (other.topLeft() - corner).manhattanLength() < cascadeStep; });
        if (!isTaken)
            return { corner, best.size() };
    }
    return best;
}

QList<QRect> stackInPane(const QRect& pane, const QList<int>& minHeights, const QList<bool>& grows)
{
    const int needed = std::accumulate(minHeights.begin(), minHeights.end(), 0);
    const auto growing = int(std::count(grows.begin(), grows.end(), true));
    const int spare = std::max(0, pane.height() - needed);
    QList<QRect> rects;
    int top = pane.top();
    for (qsizetype i = 0; i < minHeights.size(); ++i) {
        int height = minHeights.at(i);
        if (needed > pane.height())
            height = int(qint64(height) * pane.height() / needed);
        else if (grows.value(i) && growing > 0)
            height += spare / growing;
        rects.append(QRect(pane.left(), top, pane.width(), height));
        top += height;
    }
    return rects;
}

QList<QRect> tileCells(int count, const QRect& area)
{
    QList<QRect> cells;
    if (count <= 0)
        return cells;
    const double ratio = double(area.width()) / qMax(1, area.height());
    const int columns = qBound(1, int(std::lround(std::sqrt(count * ratio / likedRatio))), count);
    const int rows = (count + columns - 1) / columns;
    for (int row = 0; row < rows; ++row) {
        const int inRow = qMin(columns, count - row * columns);
        const int top = area.top() + area.height() * row / rows;
        const int bottom = area.top() + area.height() * (row + 1) / rows;
        for (int column = 0; column < inRow; ++column) {
            const int left = area.left() + area.width() * column / inRow;
            const int right = area.left() + area.width() * (column + 1) / inRow;
            cells.append(QRect(left, top, right - left, bottom - top));
        }
    }
    return cells;
}

QList<QRect> cascadeCells(int count, const QRect& area)
{
    const QSize size(area.width() * 3 / 5, area.height() * 3 / 5);
    const int room = qMin(area.width() - size.width(), area.height() - size.height());
    const int steps = qMax(1, room / cascadeStep + 1);
    QList<QRect> cells;
    for (int i = 0; i < count; ++i)
        cells.append(QRect(area.topLeft() + QPoint(1, 1) * (i % steps * cascadeStep), size));
    return cells;
}

ScreenSplit splitScreen(const QRect& area, const QRect& console, const QSize& minSize)
{
    const QRect taken = console.intersected(area);
    QRect free;
    for (const QRect& side : { QRect(area.topLeft(), QPoint(taken.left() - 1, area.bottom())),
             QRect(QPoint(taken.right() + 1, area.top()), area.bottomRight()),
             QRect(area.topLeft(), QPoint(area.right(), taken.top() - 1)),
             QRect(QPoint(area.left(), taken.bottom() + 1), area.bottomRight()) }) {
        if (side.isValid() && qint64(side.width()) * side.height() > qint64(free.width()) * free.height())
            free = side;
    }
    if (!taken.isEmpty() && qint64(free.width()) * free.height() * 2 >= qint64(area.width()) * area.height())
        return { console, free };
    const int maxWidth = area.width() * 3 / 5;
    const int maxHeight = area.height() * 3 / 5;
    ScreenSplit split { area, area };
    if (minSize.width() <= maxWidth || minSize.height() > maxHeight) {
        split.console.setWidth(qBound(area.width() * 2 / 5, minSize.width(), maxWidth));
        split.windows.setLeft(split.console.right() + 1);
    } else {
        split.console.setHeight(qBound(area.height() * 2 / 5, minSize.height(), maxHeight));
        split.windows.setTop(split.console.bottom() + 1);
    }
    return split;
}

std::optional<QRect> placeBeside(const QSize& size, const QRect& frame, const QRect& area, const QMargins& border)
{
    constexpr int gap = 8;
    const QSize whole = size.grownBy(border);
    QRect place(frame.topLeft(), whole);
    const auto moved = [&](int left, int top) {
        place.moveTo(left, top);
        // It may be shifted along the edge to stay on the screen.
        if (left > frame.right() || place.right() < frame.left())
            place.moveTop(qMax(area.top(), qMin(place.top(), area.bottom() - place.height() + 1)));
        else
            place.moveLeft(qMax(area.left(), qMin(place.left(), area.right() - place.width() + 1)));
        return area.contains(place) && !place.intersects(frame);
    };
    if (moved(frame.right() + gap, frame.top()) || moved(frame.left() - gap - whole.width(), frame.top())
        || moved(frame.left(), frame.bottom() + gap) || moved(frame.left(), frame.top() - gap - whole.height()))
        return place.marginsRemoved(border);
    return std::nullopt;
}

} // namespace console
