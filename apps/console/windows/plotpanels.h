// Analysis panels of a plot: fits, peaks, regions, energies. They are placed beside the plot's window, or inside it
// below the plot if the screen has no space, so that they never cover the data.
#pragma once

#include <QRect>
#include <QSize>

#include <optional>

namespace tarnis {
class PlotToolBar;
} // namespace tarnis

namespace console {

/// Adds a button with a menu of the panels to the bar of a live plot. An open panel is raised, or closed if it is
/// inside the window.
void addPanels(tarnis::PlotToolBar& bar);

/// A rectangle of this size to the right, left, below or above the frame; empty if there is no space. With its own
/// `border`, title bar included, it is inside `area` and beside the frame.
std::optional<QRect> placeBeside(
    const QSize& size, const QRect& frame, const QRect& area, const QMargins& border = QMargins());

} // namespace console
