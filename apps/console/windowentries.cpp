#include "windowentries.h"

#include "browse/browseentries.h"
#include "histograms/histogramentries.h"
#include "log/logentry.h"
#include "tables/tableentries.h"

namespace console {

std::vector<WindowEntry> windowEntries()
{
    return { rowsEntry(), pairsEntry(), singleRowEntry(), spectrumEntry(), mapEntry(), statisticsEntry(),
        basePathEntry(), serverFilesEntry(), statSnapshotEntry(), settingSnapshotEntry(), modulesEntry(), rateEntry(),
        histogramsEntry(), runsEntry(), serverTextEntry(), logEntry() };
}

} // namespace console
