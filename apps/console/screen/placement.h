// Computes window positions on the screen: pure functions on rectangles.
#pragma once

#include <QList>
#include <QMargins>
#include <QRect>
#include <QSize>

#include <optional>

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

/// `count` cells that fill the area, row by row, the last row stretched to it. For few windows, the cells have about
/// the preferred shape of a plot.
QList<QRect> tileCells(int count, const QRect& area);

/// `count` cells of one size, each further right and down, restarting at the corner at the end of the area.
QList<QRect> cascadeCells(int count, const QRect& area);

/// Divides the screen between the console and its windows without overlap.
struct ScreenSplit {
    QRect console;
    QRect windows;
};

/// The console is not moved if half of the area is free beside, above or below it. Otherwise it gets a strip at the
/// left, or at the top if it is too wide, of at least its minimum size but at most three fifths.
ScreenSplit splitScreen(const QRect& area, const QRect& console, const QSize& minSize);

/// A rectangle of this size to the right, left, below or above the frame; empty if there is no space. With its own
/// `border`, title bar included, it is inside `area` and beside the frame.
std::optional<QRect> placeBeside(
    const QSize& size, const QRect& frame, const QRect& area, const QMargins& border = QMargins());

} // namespace console
