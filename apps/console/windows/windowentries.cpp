#include "windows/window.h"

namespace console {

QList<WindowEntry> windowEntries()
{
    return { rowsEntry(), pairsEntry(), singleRowEntry(), spectrumEntry(), mapEntry(), statisticsEntry(),
        basePathEntry(), serverFilesEntry(), statSnapshotEntry(), settingSnapshotEntry(), modulesEntry(), rateEntry(),
        histogramsEntry(), runsEntry(), serverTextEntry(), logEntry() };
}

} // namespace console
