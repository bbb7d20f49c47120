#include "windows/window.h"

namespace console {

QList<WindowEntry> windowEntries()
{
    return { statSnapshotEntry(), settingSnapshotEntry() };
}

} // namespace console
