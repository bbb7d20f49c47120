// Commands to the readout modules, and the event rate over time.
#include "mainwindow.h"
#include "tour/tourhelpers.h"
#include "tables/moduleswindow.h"
#include "tables/ratewindow.h"
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
void sendTo(Person& person, QWidget& window, const QString& target, const QString& modules, const QString& command)
{
    person.chooseItem(person.find<QComboBox>(window, "targetBox"), target);
    auto& edit = person.find<QLineEdit>(window, "modulesEdit");
    if (!modules.isEmpty()) {
        person.clearText(edit);
        person.type(edit, modules);
    }
    auto& line = *person.find<QComboBox>(window, "commandBox").lineEdit();
    person.clearText(line);
    person.type(line, command);
    person.click(person.find<QPushButton>(window, "sendButton"));
    person.waitUntil(QStringLiteral("%1 is answered").arg(command),
        [&] { return !person.find<QPushButton>(window, "giveUpButton").isEnabled(); });
}

void driveModules(Person& person, QWidget& window)
{
    const QTableWidget& table = *static_cast<ModulesWindow&>(window).table();
    const auto answer = [&](int row) { return table.item(row, 1)->text(); };
    const QString done = QStringLiteral("done");
    sendTo(person, window, QStringLiteral("All modules"), QString(), QStringLiteral("stat"));
    person.expect(table.rowCount() > 1 && table.columnCount() > 2 && answer(0) == done,
        QStringLiteral("each module has a row with its values"));
    person.picture(window, QStringLiteral("all"));
    const int all = table.rowCount();
    sendTo(person, window, QStringLiteral("The modules of the family orsino"), QString(), QStringLiteral("stat"));
    person.expect(table.rowCount() < all, QStringLiteral("the family is a part of them"));
    sendTo(person, window, QStringLiteral("One module"), QStringLiteral("3"), QStringLiteral("setting threshold:100"));
    person.expect(table.rowCount() == 1 && answer(0) == done, QStringLiteral("one module obeys"));
    sendTo(person, window, QStringLiteral("Several modules, one after the other"), QStringLiteral("0, 2-3, 99"),
        QStringLiteral("setting"));
    person.expect(table.rowCount() == 4 && answer(2) == done && answer(3).startsWith(QStringLiteral("refused: ")),
        QStringLiteral("each module has its answer, one that is not there a refusal"));
    person.picture(window, QStringLiteral("several"));
    sendTo(person, window, QStringLiteral("All modules"), QString(), QStringLiteral("reset"));
    person.expect(answer(0) == done, QStringLiteral("the modules are as before"));
}

void driveRate(Person& person, QWidget& window)
{
    const auto& rate = static_cast<const RateWindow&>(window);
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    person.waitUntil(QStringLiteral("the curve has begun"), [&] { return rate.count() > 0; });
    ask(person, console, QStringLiteral("start"));
    person.waitUntil(QStringLiteral("the curve goes on"), [&] { return rate.count() >= 4; });
    person.picture(window, QStringLiteral("curve"));
    person.click(person.find<QPushButton>(window, "clearButton"));
    person.expect(rate.count() <= 1, QStringLiteral("the curve begins anew"));
    ask(person, console, QStringLiteral("stop"));
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
