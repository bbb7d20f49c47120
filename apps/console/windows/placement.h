// Where windows go on the screen: plain arithmetic on rectangles.
#pragma once

#include <QList>
#include <QRect>
#include <QSize>

namespace console {

/// A place of this size inside `area` that covers as little as possible of `occupied`; among equal ones the highest,
/// then the leftmost. A size larger than the area is reduced to it.
QRect leastOverlap(const QSize& size, const QRect& area, const QList<QRect>& occupied);

/// Where a new window goes: a free place, or else one of a cascade, so that no title bar of another window is covered
/// completely.
QRect placeOfNewWindow(const QSize& size, const QRect& area, const QList<QRect>& occupied);

/// `rect` moved, and reduced if need be, so that it is inside of `area`.
QRect inside(const QRect& rect, const QRect& area);

/// Boxes one below the other in a pane: each has its minimum height, and what is left goes to those that grow, in equal
/// parts. Boxes that need more than the pane has are reduced in proportion.
QList<QRect> stackInPane(const QRect& pane, const QList<int>& minHeights, const QList<bool>& grows);

} // namespace console
