// The two snapshots: `stat` and `setting`.
#include "server/servercontroller.h"
#include "tables/snapshotwindow.h"
#include "tour/uidriver.h"
#include "windows/window.h"

#include <tarnis/server/tarniscmds.h>

#include <QLineEdit>
#include <QTableWidget>

namespace console {

namespace {

/// A snapshot whose names can be listed, not only asked for.
template <typename Base> class Snapshot : public Base {
public:
    const QMap<QString, QString>& values() const { return this->m_values; }
};

template <typename Base> SnapshotWindow::Source source()
{
    return { [] { return new Snapshot<Base>; }, // the session takes it over
        [](TarnisCmd& command, const QByteArray& reply) {
            auto& snapshot = static_cast<Snapshot<Base>&>(command);
            snapshot.onReply(reply);
            QList<NameValue> values;
            for (auto value = snapshot.values().cbegin(); value != snapshot.values().cend(); ++value) {
                if (value.key() != u"OK") // the first line of an accepted command, no value
                    values.append({ value.key(), value.value() });
            }
            return values;
        } };
}

template <typename Base> QWidget* openSnapshot(const WindowContext& context)
{
    return new SnapshotWindow(context.controller, source<Base>(), context.parent);
}

void driveSnapshot(UiDriver& driver, QWidget& window)
{
    QTableWidget& table = *static_cast<SnapshotWindow&>(window).table();
    driver.waitUntil(QStringLiteral("the snapshot shows values"), [&] { return table.rowCount() > 0; });
    driver.picture(window, QStringLiteral("values"));

    const int all = table.rowCount();
    const QString name = table.item(0, 0)->text();
    driver.type(driver.find<QLineEdit>(window, "filterEdit"), name);
    driver.expect(
        table.rowCount() >= 1 && table.rowCount() < all, QStringLiteral("the filter leaves some of the rows"));
    driver.picture(window, QStringLiteral("filtered"));

    driver.clearText(driver.find<QLineEdit>(window, "filterEdit"));
    driver.click(driver.find<QWidget>(window, "refreshButton"));
    driver.waitUntil(QStringLiteral("the refresh is answered"),
        [&] { return driver.find<QWidget>(window, "refreshButton").isEnabled(); });
    driver.expect(table.rowCount() == all, QStringLiteral("the refreshed snapshot shows all values"));
    driver.picture(window, QStringLiteral("refreshed"));
}

} // namespace

WindowEntry statSnapshotEntry()
{
    return { QStringLiteral("stat-snapshot"), Windows::tr("Stat S&napshot"), Windows::tr("Stat Snapshot"),
        Windows::tr("What the server tells about itself now"), openSnapshot<TarnisCmdStat>, driveSnapshot };
}

WindowEntry settingSnapshotEntry()
{
    return { QStringLiteral("setting-snapshot"), Windows::tr("S&etting Snapshot"), Windows::tr("Setting Snapshot"),
        Windows::tr("The settings that the server works with now"), openSnapshot<TarnisCmdSetting>, driveSnapshot, {},
        true, QStringLiteral("Ctrl+0") };
}

} // namespace console
