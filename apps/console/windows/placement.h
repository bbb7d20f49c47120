// Computes window positions on the screen: pure functions on rectangles.
#pragma once

#include <QList>
#include <QRect>
#include <QSize>

namespace console {

/// The rectangle of this size inside `area` with the least overlap with `occupied`; among equal ones the topmost, then
/// the leftmost. A size larger than the area is reduced to it.
QRect leastOverlap(const QSize& size, const QRect& area, const QList<QRect>& occupied);

/// True if a window of this size would cover at most a quarter of itself with others.
bool hasRoomFor(const QSize& size, const QRect& area, const QList<QRect>& occupied);

/// The position of a new window: a free area, or else the next of a cascade, so that no title bar of another window is
/// completely covered.
QRect placeOfNewWindow(const QSize& size, const QRect& area, const QList<QRect>& occupied);

/// `rect` moved, and reduced if needed, so that it is inside of `area`.
QRect inside(const QRect& rect, const QRect& area);

/// Stacks boxes in a pane: each gets its minimum height, and the rest is divided equally among growing boxes. Boxes
/// that need more than the pane are reduced proportionally.
QList<QRect> stackInPane(const QRect& pane, const QList<int>& minHeights, const QList<bool>& grows);

} // namespace console
