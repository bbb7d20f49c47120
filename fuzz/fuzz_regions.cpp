// The reader of files of regions: an error, or valid regions that are unchanged after writing and reading them.
#include <tarnis/tools/plotregion.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tarnis::PlotRegionsResult read = tarnis::regionsFromJson(text);
    if (!read.error.isEmpty()) {
        if (!read.regions.isEmpty())
            std::abort();
        return 0;
    }
    const bool areValid = std::all_of(
        read.regions.begin(), read.regions.end(), [](const tarnis::PlotRegion& region) { return region.isValid(); });
    const tarnis::PlotRegionsResult again = tarnis::regionsFromJson(tarnis::regionsToJson(read.regions));
    if (!areValid || again.regions != read.regions)
        std::abort();
    return 0;
}
