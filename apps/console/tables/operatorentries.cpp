// Commands to the readout modules, and the event rate over time.
#include "mainwindow.h"
#include "tables/moduleswindow.h"
#include "tables/ratewindow.h"
#include "tour/tourhelpers.h"
#include "windows/window.h"

#include <tarnis/plots/vectorgraphwidget.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace console {

namespace {

/// Sends to whom the box has at this place, and waits until all have answered.
void sendTo(UiDriver& driver, QWidget& window, const QString& target, const QString& modules, const QString& command)
{
    driver.chooseItem(driver.find<QComboBox>(window, "targetBox"), target);
    auto& edit = driver.find<QLineEdit>(window, "modulesEdit");
    if (!modules.isEmpty()) {
        driver.clearText(edit);
        driver.type(edit, modules);
    }
    auto& line = *driver.find<QComboBox>(window, "commandBox").lineEdit();
    driver.clearText(line);
    driver.type(line, command);
    driver.click(driver.find<QPushButton>(window, "sendButton"));
    driver.waitUntil(QStringLiteral("%1 is answered").arg(command),
        [&] { return !driver.find<QPushButton>(window, "giveUpButton").isEnabled(); });
}

void driveModules(UiDriver& driver, QWidget& window)
{
    const QTableWidget& table = *static_cast<ModulesWindow&>(window).table();
    const auto answer = [&](int row) { return table.item(row, 1)->text(); };
    const QString done = QStringLiteral("done");
    sendTo(driver, window, QStringLiteral("All modules"), QString(), QStringLiteral("stat"));
    driver.expect(table.rowCount() > 1 && table.columnCount() > 2 && answer(0) == done,
        QStringLiteral("each module has a row with its values"));
    driver.picture(window, QStringLiteral("all"));
    const int all = table.rowCount();
    sendTo(driver, window, QStringLiteral("The modules of the family orsino"), QString(), QStringLiteral("stat"));
    driver.expect(table.rowCount() < all, QStringLiteral("the family is a part of them"));
    sendTo(driver, window, QStringLiteral("One module"), QStringLiteral("3"), QStringLiteral("setting threshold:100"));
    driver.expect(table.rowCount() == 1 && answer(0) == done, QStringLiteral("one module obeys"));
    sendTo(driver, window, QStringLiteral("Several modules, one after the other"), QStringLiteral("0, 2-3, 99"),
        QStringLiteral("setting"));
    driver.expect(table.rowCount() == 4 && answer(2) == done && answer(3).startsWith(QStringLiteral("refused: ")),
        QStringLiteral("each module has its answer, one that is not there a refusal"));
    driver.picture(window, QStringLiteral("several"));
    sendTo(driver, window, QStringLiteral("All modules"), QString(), QStringLiteral("reset"));
    driver.expect(answer(0) == done, QStringLiteral("the modules are as before"));
}

void driveRate(UiDriver& driver, QWidget& window)
{
    const auto& rate = static_cast<const RateWindow&>(window);
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    driver.waitUntil(QStringLiteral("the curve has begun"), [&] { return rate.count() > 0; });
    ask(driver, console, QStringLiteral("start"));
    driver.waitUntil(QStringLiteral("the curve goes on"), [&] { return rate.count() >= 4; });
    driver.picture(window, QStringLiteral("curve"));
    driver.click(driver.find<QPushButton>(window, "clearButton"));
    driver.expect(rate.count() <= 1, QStringLiteral("the curve begins anew"));
    ask(driver, console, QStringLiteral("stop"));
}

} // namespace

WindowEntry modulesEntry()
{
    return { QStringLiteral("modules"), Windows::tr("Sen&d to Modules"), Windows::tr("Send to Modules"),
        Windows::tr("A command for all readout modules, a family, one or several"),
        [](const WindowContext& context) -> QWidget* { return new ModulesWindow(context.controller, context.parent); },
        driveModules, {}, true, QStringLiteral("Ctrl+Shift+M") };
}

WindowEntry rateEntry()
{
    return { QStringLiteral("rate"), Windows::tr("E&vent Rate"), Windows::tr("Event Rate"),
        Windows::tr("The event rate over the last hour, once a second"),
        [](const WindowContext& context) -> QWidget* { return new RateWindow(context.controller, context.parent); },
        driveRate, {}, true, QStringLiteral("Ctrl+Shift+R") };
}

} // namespace console
