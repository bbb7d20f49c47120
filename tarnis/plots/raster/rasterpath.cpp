#include "tarnis/plots/rasterpath.h"

#include "tarnis/plots/raster/rastercheck_p.h"

#include <QLoggingCategory>

#include <atomic>

namespace tarnis {

namespace {

Q_LOGGING_CATEGORY(plotsCategory, "tarnis.plots")

constexpr int undecided = -1;
std::atomic<int> decision { undecided };

/// The check itself paints on both paths and must not wait for its own result.
thread_local bool isChecking = false;

bool patternsMatch()
{
    isChecking = true;
    const bool match = referencePatternsMatch(drawReferenceDirectly);
    isChecking = false;
    return match;
}

} // namespace

RasterPath chooseRasterPath(const QByteArray& wish, const std::function<bool()>& match)
{
    if (wish == "painter")
        return RasterPath::Painter;
    if (match())
        return RasterPath::Direct;
    qCWarning(plotsCategory, "Qt %s draws other pixels than the plots expect: they are drawn by QPainter, slowly.",
        qVersion());
    return RasterPath::Painter;
}

RasterPath rasterPath()
{
    if (isChecking)
        return RasterPath::Direct;
    if (const int decided = decision.load(); decided != undecided)
        return static_cast<RasterPath>(decided);
    int expected = undecided;
    decision.compare_exchange_strong(
        expected, static_cast<int>(chooseRasterPath(qgetenv("TARNIS_RASTER"), patternsMatch)));
    return static_cast<RasterPath>(decision.load());
}

void setRasterPath(RasterPath path)
{
    decision.store(static_cast<int>(path));
}

} // namespace tarnis
