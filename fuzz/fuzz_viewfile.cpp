// The reader of stored views: an error, or a view with valid ranges that is unchanged after writing and reading it.
#include "tarnis/tools/navigation/viewfile_p.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

bool isSound(tarnis::AxisRange range)
{
    return std::isfinite(range.min) && std::isfinite(range.max) && std::isfinite(range.max - range.min)
        && range.min != range.max;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tarnis;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const ParsedView parsed = parseView(bytes);
    require(parsed.error.isEmpty() || parsed.state.isEmpty());
    if (!parsed.error.isEmpty())
        return 0;
    const ViewState present { { 0.0, 1.0 }, { 0.0, 1.0 }, { 0.0, 1.0 } };
    const ViewState view = mergedView(present, parsed.state);
    require(isSound(view.x) && isSound(view.y) && isSound(view.levels));
    const ViewState again = mergedView(present, storedView(view));
    require(again.x == view.x && again.y == view.y && again.levels == view.levels);
    require(again.autoX == view.autoX && again.autoY == view.autoY && again.autoLevels == view.autoLevels
        && again.logScale == view.logScale);
    return 0;
}
