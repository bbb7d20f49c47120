// All windows that the console can open.
#pragma once

#include "windows/window.h"

#include <vector>

namespace console {

/// In the order of the menu.
std::vector<WindowEntry> windowEntries();

} // namespace console
