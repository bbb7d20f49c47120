#include "windows/placement.h"

#include <algorithm>
#include <numeric>

namespace console {

namespace {

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
    found.erase(std::unique(found.begin(), found.end()), found.end());
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

} // namespace console
