// The windows on the server's folders, files, runs and texts.
#pragma once

#include "windows/window.h"

namespace console {

WindowEntry basePathEntry();
WindowEntry serverFilesEntry();
WindowEntry runsEntry();
WindowEntry serverTextEntry();

} // namespace console
