// The server's statistics, its two snapshots, commands to the readout modules, and the event rate over time.
#include "tables/tableentries.h"

#include "histograms/livewindows.h"
#include "server/servercontroller.h"
#include "tables/moduleswindow.h"
#include "tables/ratewindow.h"
#include "tables/snapshotwindow.h"

#include <tarnis/server/tarniscmds.h>

#include <type_traits>

namespace console {

namespace {

QWidget* openStatistics(const WindowContext& context)
{
    return new LiveStatistics(context, Windows::tr("Statistics"));
}

/// A snapshot whose names can be listed, not only looked up.
template <typename Base> class Snapshot : public Base {
public:
    const QMap<QString, QString>& values() const { return this->m_values; }
};

template <typename Base> SnapshotWindow::Source source()
{
    return { [] { return new Snapshot<Base>; }, // the channel takes ownership
        [](TarnisCmd& command, const QByteArray& reply) {
            auto& snapshot = static_cast<Snapshot<Base>&>(command);
            snapshot.onReply(reply);
            QList<NameValue> values;
            for (auto value = snapshot.values().cbegin(); value != snapshot.values().cend(); ++value) {
                if (value.key() != u"OK") // the first line of an accepted command is not a value
                    values.append({ value.key(), value.value() });
            }
            return values;
        },
        std::is_same_v<Base, TarnisCmdStat> };
}

template <typename Base> QWidget* openSnapshot(const WindowContext& context)
{
    return new SnapshotWindow(context.controller, context.poller, source<Base>(), context.parent);
}

} // namespace

WindowEntry statisticsEntry()
{
    return {
        .id = QStringLiteral("statistics"),
        .menuText = Windows::tr("&Statistics"),
        .title = Windows::tr("Statistics"),
        .help = Windows::tr("The values that the server reports, live"),
        .open = openStatistics,
    };
}

WindowEntry statSnapshotEntry()
{
    return {
        .id = QStringLiteral("stat-snapshot"),
        .menuText = Windows::tr("Stat S&napshot"),
        .title = Windows::tr("Stat Snapshot"),
        .help = Windows::tr("The current values that the server reports"),
        .open = openSnapshot<TarnisCmdStat>,
    };
}

WindowEntry settingSnapshotEntry()
{
    return {
        .id = QStringLiteral("setting-snapshot"),
        .menuText = Windows::tr("S&etting Snapshot"),
        .title = Windows::tr("Setting Snapshot"),
        .help = Windows::tr("The current settings of the server"),
        .open = openSnapshot<TarnisCmdSetting>,
        .shortcut = QStringLiteral("Ctrl+0"),
    };
}

WindowEntry modulesEntry()
{
    return {
        .id = QStringLiteral("modules"),
        .menuText = Windows::tr("Sen&d to Modules"),
        .title = Windows::tr("Send to Modules"),
        .help = Windows::tr("A command for all readout modules, a family, one or several"),
        .open = [](const WindowContext& context) -> QWidget* {
            return new ModulesWindow(context.controller, context.parent);
        },
        .shortcut = QStringLiteral("Ctrl+Shift+M"),
    };
}

WindowEntry rateEntry()
{
    return {
        .id = QStringLiteral("rate"),
        .menuText = Windows::tr("E&vent Rate"),
        .title = Windows::tr("Event Rate"),
        .help = Windows::tr("The event rate over the last hour, once a second"),
        .open = [](const WindowContext& context) -> QWidget* {
            return new RateWindow(context.controller, context.poller, context.parent);
        },
        .shortcut = QStringLiteral("Ctrl+Shift+R"),
    };
}

} // namespace console
