// The window that follows a log file.
#pragma once

#include "windows/window.h"

namespace console {

WindowEntry logEntry();

} // namespace console
