// The windows of tables: statistics, snapshots, answers of the modules, and the event rate.
#include "mainwindow.h"
#include "tables/moduleswindow.h"
#include "tables/ratewindow.h"
#include "tables/snapshotwindow.h"
#include "tour/histogramsteps.h"
#include "tour/tourhelpers.h"
#include "tour/windowsteps.h"

#include <tarnis/dialogs/statdialog.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace console {

namespace {

/// Sends to the recipients at this index of the combo box, and waits until all have answered.
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

} // namespace

void driveStatistics(UiDriver& driver, QWidget& window)
{
    QTableWidget& table = *static_cast<StatDialog&>(window).table();
    driver.waitUntil(QStringLiteral("the statistics are on show"), [&] { return table.rowCount() > 0; });
    driver.screenshot(window, QStringLiteral("table"));
    const QString path = saveBy(driver, QStringLiteral("statistics.csv"),
        [&] { driver.click(*driver.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Save)); });
    driver.expect(linesOf(path) > 1, QStringLiteral("the file has a line for each value"));
}

void driveSnapshot(UiDriver& driver, QWidget& window)
{
    QTableWidget& table = *static_cast<SnapshotWindow&>(window).table();
    driver.waitUntil(QStringLiteral("the snapshot shows values"), [&] { return table.rowCount() > 0; });
    driver.screenshot(window, QStringLiteral("values"));

    const int all = table.rowCount();
    const QString name = table.item(0, 0)->text();
    driver.type(driver.find<QLineEdit>(window, "filterEdit"), name);
    driver.expect(
        table.rowCount() >= 1 && table.rowCount() < all, QStringLiteral("the filter leaves some of the rows"));
    driver.screenshot(window, QStringLiteral("filtered"));

    driver.clearText(driver.find<QLineEdit>(window, "filterEdit"));
    driver.click(driver.find<QWidget>(window, "refreshButton"));
    driver.waitUntil(QStringLiteral("the refresh is answered"),
        [&] { return driver.find<QWidget>(window, "refreshButton").isEnabled(); });
    driver.expect(table.rowCount() == all, QStringLiteral("the refreshed snapshot shows all values"));
    driver.screenshot(window, QStringLiteral("refreshed"));
}

void driveModules(UiDriver& driver, QWidget& window)
{
    const QTableWidget& table = *static_cast<ModulesWindow&>(window).table();
    const auto answer = [&](int row) { return table.item(row, 1)->text(); };
    const QString done = QStringLiteral("done");
    sendTo(driver, window, QStringLiteral("All modules"), QString(), QStringLiteral("stat"));
    driver.expect(table.rowCount() > 1 && table.columnCount() > 2 && answer(0) == done,
        QStringLiteral("each module has a row with its values"));
    driver.screenshot(window, QStringLiteral("all"));
    const int all = table.rowCount();
    sendTo(driver, window, QStringLiteral("The modules of the family orsino"), QString(), QStringLiteral("stat"));
    driver.expect(table.rowCount() < all, QStringLiteral("the family is a part of them"));
    sendTo(driver, window, QStringLiteral("One module"), QStringLiteral("3"), QStringLiteral("setting threshold:100"));
    driver.expect(table.rowCount() == 1 && answer(0) == done, QStringLiteral("one module obeys"));
    sendTo(driver, window, QStringLiteral("Several modules, one after the other"), QStringLiteral("0, 2-3, 99"),
        QStringLiteral("setting"));
    driver.expect(table.rowCount() == 4 && answer(2) == done && answer(3).startsWith(QStringLiteral("refused: ")),
        QStringLiteral("each module has its answer, one that is not there a refusal"));
    driver.screenshot(window, QStringLiteral("several"));
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
    driver.screenshot(window, QStringLiteral("curve"));
    driver.click(driver.find<QPushButton>(window, "clearButton"));
    driver.expect(rate.count() <= 1, QStringLiteral("the curve begins again"));
    ask(driver, console, QStringLiteral("stop"));
}

} // namespace console
