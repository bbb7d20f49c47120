// Windows with numbers of a plot: fits, peaks, regions, energies. They are placed beside the plot's window, or inside
// it below the plot where the screen has no room, and so never cover the data.
#pragma once

#include <QRect>
#include <QSize>

#include <optional>

namespace tarnis {
class PlotToolBar;
} // namespace tarnis

namespace console {

/// Adds a button with a menu of the panels to the bar of a live plot. A panel that is open comes to the front,
/// or closes if it is inside the window.
void addPanels(tarnis::PlotToolBar& bar);

/// A place of this size inside `area` right of, left of, below or above the frame; nothing where it has no room.
std::optional<QRect> placeBeside(const QSize& size, const QRect& frame, const QRect& area);

} // namespace console
