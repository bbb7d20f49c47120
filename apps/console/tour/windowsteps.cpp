#include "tour/windowsteps.h"

namespace console {

const QHash<QString, WindowScript>& windowScripts()
{
    static const QHash<QString, WindowScript> scripts {
        { QStringLiteral("base-path"), driveBasePath },
        { QStringLiteral("curves"), driveRows },
        { QStringLiteral("histograms"), driveHistograms },
        { QStringLiteral("log"), driveLog },
        { QStringLiteral("map"), driveMap },
        { QStringLiteral("modules"), driveModules },
        { QStringLiteral("pairs"), drivePairs },
        { QStringLiteral("rate"), driveRate },
        { QStringLiteral("runs"), driveRuns },
        { QStringLiteral("server-files"), driveServerFiles },
        { QStringLiteral("server-text"), driveServerText },
        { QStringLiteral("setting-snapshot"), driveSnapshot },
        { QStringLiteral("single-row"), driveSingleRow },
        { QStringLiteral("spectrum"), driveSpectrum },
        { QStringLiteral("stat-snapshot"), driveSnapshot },
        { QStringLiteral("statistics"), driveStatistics },
    };
    return scripts;
}

} // namespace console
