#include "tour/tourhelpers.h"

#include "command/commandpanel.h"
#include "mainwindow.h"
#include "notices/alertbar.h"

#include <QLineEdit>

namespace console {

void waitForState(UiDriver& driver, MainWindow& window, ServerState state, const QString& what)
{
    const auto has = [&](ServerState wanted) { return window.controller().state() == wanted; };
    driver.waitUntil(what, [&] { return has(state) || has(ServerState::Failed); });
    if (!has(state)) // waiting longer is useless
        throw TourFailure(QStringLiteral("%1: %2").arg(what, driver.find<AlertBar>(window, "alertBar").alert().text));
}

void ask(UiDriver& driver, MainWindow& window, const QString& command)
{
    auto& edit = driver.find<QLineEdit>(window, "commandEdit");
    driver.clearText(edit);
    driver.type(edit, command);
    driver.key(edit, Qt::Key_Return);
    driver.expect(edit.text().isEmpty(), QStringLiteral("%1 has gone out").arg(command));
    driver.waitUntil(QStringLiteral("%1 is answered").arg(command), [&] { return !window.commandPanel().isBusy(); });
}

QString lastOf(MainWindow& window, const QString& command)
{
    const QString record = window.commandPanel().recordText();
    return record.mid(record.lastIndexOf(QStringLiteral("> ") + command));
}

} // namespace console
