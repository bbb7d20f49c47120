// The windows with the server's statistics, snapshots, modules and event rate.
#pragma once

#include "windows/window.h"

namespace console {

WindowEntry statisticsEntry();
WindowEntry statSnapshotEntry();
WindowEntry settingSnapshotEntry();
WindowEntry modulesEntry();
WindowEntry rateEntry();

} // namespace console
