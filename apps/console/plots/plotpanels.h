// Analysis panels of a plot: fits, peaks, regions, energies. They are placed beside the plot's window, or inside it
// below the plot if the screen has no space, so that they never cover the data.
#pragma once

namespace tarnis {
class PlotToolBar;
} // namespace tarnis

namespace console {

/// Adds a button with a menu of the panels to the bar of a live plot. An open panel is raised, or closed if it is
/// inside the window.
void addPanels(tarnis::PlotToolBar& bar);

} // namespace console
