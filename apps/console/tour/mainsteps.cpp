// The tour's steps for the main window.
#include "command/commandpanel.h"
#include "mainwindow.h"
#include "server/servercontroller.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"
#include "tour/histogramsteps.h"
#include "tour/tourhelpers.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>

namespace console {

namespace {

void start(UiDriver& driver, MainWindow& window)
{
    waitForState(driver, window, ServerState::Up, QStringLiteral("the server is connected"));
    driver.waitUntil(
        QStringLiteral("the settings are read"), [&] { return window.settingsPanel().model().rowCount() > 0; });
    driver.screenshot(window, QStringLiteral("connected"));
}

void commands(UiDriver& driver, MainWindow& window)
{
    ask(driver, window, QStringLiteral("help"));
    driver.screenshot(window, QStringLiteral("help"));
    ask(driver, window, QStringLiteral("start"));
    driver.expect(window.controller().status() == Tarnis::RUNNING, QStringLiteral("start brings RUNNING"));
    ask(driver, window, QStringLiteral("stat"));
    driver.screenshot(window, QStringLiteral("running"));
    ask(driver, window, QStringLiteral("no-such-command"));
    driver.expect(lastOf(window, QStringLiteral("no-such")).contains(QStringLiteral("NG:")),
        QStringLiteral("an unknown command is refused"));
    driver.screenshot(window, QStringLiteral("refused"));
}

void history(UiDriver& driver, MainWindow& window)
{
    auto& edit = driver.find<QLineEdit>(window, "commandEdit");
    driver.type(edit, QStringLiteral("half a com"));
    driver.key(edit, Qt::Key_Up);
    driver.key(edit, Qt::Key_Up);
    driver.expect(edit.text() == u"stat", QStringLiteral("Up brings back stat, not %1").arg(edit.text()));
    driver.screenshot(window, QStringLiteral("recalled"));
    driver.key(edit, Qt::Key_Down);
    driver.key(edit, Qt::Key_Down);
    driver.expect(edit.text() == u"half a com", QStringLiteral("Down brings back what was being typed"));
    driver.clearText(edit);
}

void longReply(UiDriver& driver, MainWindow& window)
{
    auto& edit = driver.find<QLineEdit>(window, "commandEdit");
    driver.type(edit, QStringLiteral("sleep 1500"));
    driver.key(edit, Qt::Key_Return);
    driver.type(edit, QStringLiteral("pwd"));
    driver.key(edit, Qt::Key_Return);
    auto& bar = driver.find<QProgressBar>(window, "progressBar");
    driver.waitUntil(QStringLiteral("the progress is on show"), [&] { return bar.isVisible(); });
    driver.screenshot(window, QStringLiteral("waiting"));
    driver.waitUntil(QStringLiteral("both commands are answered"), [&] { return !window.commandPanel().isBusy(); });
    driver.expect(!bar.isVisible(), QStringLiteral("the progress bar closes with the reply"));

    driver.type(edit, QStringLiteral("sleep 60000"));
    driver.key(edit, Qt::Key_Return);
    driver.waitUntil(QStringLiteral("the progress is on show"), [&] { return bar.isVisible(); });
    driver.click(driver.find<QWidget>(window, "giveUpButton"));
    driver.expect(!window.commandPanel().isBusy(), QStringLiteral("a command can be given up"));
    ask(driver, window, QStringLiteral("pwd"));
    driver.screenshot(window, QStringLiteral("given-up"));
}

void binaryReply(UiDriver& driver, MainWindow& window)
{
    auto& edit = driver.find<QLineEdit>(window, "commandEdit");
    ask(driver, window, QStringLiteral("hists"));
    driver.type(edit, QStringLiteral("hist1d"));
    driver.expect(driver.find<QCheckBox>(window, "binaryCheck").isChecked(),
        QStringLiteral("hist1d is known to have a binary reply"));
    ask(driver, window, QStringLiteral("hist1d total"));
    driver.expect(lastOf(window, QStringLiteral("hist1d")).contains(QStringLiteral("values\nsum ")),
        QStringLiteral("the binary reply shows count and sum"));
    driver.screenshot(window, QStringLiteral("numbers"));
}

void sendFile(UiDriver& driver, MainWindow& window)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("tour.txt"));
    QFile file(path);
    driver.expect(file.open(QIODevice::WriteOnly) && file.write("one\ntwo\nthree\n") > 0,
        QStringLiteral("a file to send can be written"));
    file.close();

    driver.choose(window, "sendFileAction");
    QWidget& dialog = driver.dialogOf(window);
    auto& edit = driver.find<QLineEdit>(dialog, "fileNameEdit");
    driver.clearText(edit);
    driver.type(edit, path);
    driver.screenshot(dialog, QStringLiteral("dialog"));
    const auto* buttons = &driver.find<QDialogButtonBox>(dialog, "buttonBox");
    driver.click(*buttons->button(QDialogButtonBox::Open));
    driver.waitUntil(QStringLiteral("the file is sent"),
        [&] { return lastOf(window, QStringLiteral("txfile")).contains(QStringLiteral("tour.txt")); });
    driver.waitUntil(QStringLiteral("the file is answered"), [&] { return !window.commandPanel().isBusy(); });
    driver.expect(!lastOf(window, QStringLiteral("txfile")).contains(QStringLiteral("NG:")),
        QStringLiteral("the server takes the file"));
    driver.screenshot(window, QStringLiteral("answered"));
}

/// Edits the value of a setting in the table, by keyboard.
void editSetting(UiDriver& driver, MainWindow& window, const QString& name, const QString& value)
{
    driver.shortcut(window, QKeySequence(Qt::CTRL | Qt::Key_Comma));
    auto& table = driver.find<QTableView>(window, "table");
    const int row = window.settingsPanel().model().rowOf(name);
    driver.expect(row >= 0, QStringLiteral("there is a setting %1").arg(name));
    table.setCurrentIndex(table.model()->index(row, SettingsModel::Value));
    driver.key(table, Qt::Key_F2);
    auto& editor = driver.find<QLineEdit>(table, "");
    driver.clearText(editor);
    driver.type(editor, value);
    driver.key(editor, Qt::Key_Return);
}

void settings(UiDriver& driver, MainWindow& window)
{
    SettingsModel& model = window.settingsPanel().model();
    ask(driver, window, QStringLiteral("stop"));
    editSetting(driver, window, QStringLiteral("rate"), QStringLiteral("2500"));
    driver.waitUntil(QStringLiteral("rate is marked as changed"),
        [&] { return model.changedNames() == QStringList { QStringLiteral("rate") }; });
    driver.screenshot(window, QStringLiteral("edited"));
    editSetting(driver, window, QStringLiteral("rate"), QStringLiteral("2 500"));
    auto& state = driver.find<QLabel>(window, "stateLabel");
    driver.waitUntil(QStringLiteral("a value with a space is refused with a reason"),
        [&] { return state.text().contains(QStringLiteral("space")); });

    driver.click(driver.find<QWidget>(window, "addButton"));
    QWidget& dialog = driver.dialogOf(window);
    driver.type(driver.find<QLineEdit>(dialog, "nameEdit"), QStringLiteral("user.tour"));
    driver.type(driver.find<QLineEdit>(dialog, "valueEdit"), QStringLiteral("seen"));
    driver.screenshot(dialog, QStringLiteral("add"));
    driver.key(dialog, Qt::Key_Return);
    driver.waitUntil(QStringLiteral("the new setting is in the table"),
        [&] { return model.rowOf(QStringLiteral("user.tour")) >= 0; });

    driver.click(driver.find<QWidget>(window, "saveButton"));
    driver.waitUntil(QStringLiteral("the server has all settings"),
        [&] { return window.settingsPanel().canSend() && model.changedNames().isEmpty(); });
    driver.screenshot(window, QStringLiteral("saved"));
}

void addresses(UiDriver& driver, MainWindow& window)
{
    auto& path = driver.find<QLineEdit>(window, "pathEdit");
    driver.clearText(path);
    driver.type(path, QStringLiteral("/"));
    driver.click(driver.find<QWidget>(window, "pathButton"));
    auto& state = driver.find<QLabel>(window, "stateLabel");
    driver.waitUntil(
        QStringLiteral("the base path is set"), [&] { return state.text() == SettingsPanel::tr("As on the server."); });

    auto& ip = driver.find<QLineEdit>(window, "ipEdit");
    driver.clearText(ip);
    driver.type(ip, QStringLiteral("192.168.0.16"));
    driver.find<QSpinBox>(window, "tcpSpin").setValue(24);
    driver.find<QSpinBox>(window, "bcpSpin").setValue(4660);
    driver.click(driver.find<QWidget>(window, "addressButton"));
    driver.expect(window.controller().tarnis().GetReadoutAddressText() == u"192.168.0.16:24",
        QStringLiteral("the readout address is set"));
    driver.screenshot(window, QStringLiteral("set"));
    driver.click(driver.find<QWidget>(window, "sendSettingsButton"));
    driver.waitUntil(QStringLiteral("the server has the address"),
        [&] { return window.settingsPanel().canSend() && window.settingsPanel().model().changedNames().isEmpty(); });
}

/// Changes made by another client are read with a key.
void readAgain(UiDriver& driver, MainWindow& window)
{
    const SettingsModel& model = window.settingsPanel().model();
    const auto value = [&] {
        return model.index(model.rowOf(QStringLiteral("rate")), SettingsModel::Value).data().toString();
    };
    const QString before = value();
    ask(driver, window, QStringLiteral("setting rate:1234"));
    driver.shortcut(window, QKeySequence(Qt::Key_F5));
    driver.waitUntil(QStringLiteral("the new rate is read"), [&] { return value() == u"1234"; });
    driver.screenshot(window, QStringLiteral("read"));
    ask(driver, window, QStringLiteral("setting rate:") + before);
    driver.shortcut(window, QKeySequence(Qt::Key_F5));
    driver.waitUntil(QStringLiteral("the previous rate is read"), [&] { return value() == before; });
}

void saveRecord(UiDriver& driver, MainWindow& window)
{
    const QString path = saveBy(
        driver, QStringLiteral("record.txt"), [&] { driver.shortcut(window, QKeySequence(Qt::CTRL | Qt::Key_S)); });
    driver.expect(linesOf(path) > 10, QStringLiteral("the file has commands and replies"));
    driver.screenshot(window, QStringLiteral("saved"));
}

void dark(UiDriver& driver, MainWindow& window)
{
    driver.choose(window, "darkAction");
    driver.screenshot(window, QStringLiteral("window"));
    driver.choose(window, "darkAction");
    driver.expect(
        !driver.find<QAction>(window, "darkAction").isChecked(), QStringLiteral("the light colours are back"));
}

void german(UiDriver& driver, MainWindow& window)
{
    driver.choose(window, "deAction");
    driver.wait(60); // the change is being sent
    driver.expect(
        driver.find<QMenu>(window, "helpMenu").title() == u"&Hilfe", QStringLiteral("the window is in German"));
    driver.screenshot(window, QStringLiteral("window"));
    driver.choose(window, "enAction");
    driver.wait(60);
    driver.expect(driver.find<QMenu>(window, "helpMenu").title() == u"&Help", QStringLiteral("English is back"));
}

void keyboard(UiDriver& driver, MainWindow& window)
{
    driver.shortcut(window, QKeySequence(Qt::Key_F1));
    QWidget& box = driver.dialogOf(window);
    driver.screenshot(box, QStringLiteral("keys"));
    driver.key(box, Qt::Key_Escape);
    for (const char* name : { "serverMenu", "windowsMenu" }) {
        auto& menu = driver.find<QMenu>(window, name);
        menu.popup(window.mapToGlobal(QPoint(20, 20)));
        driver.screenshot(menu, QString::fromLatin1(name));
        menu.close();
    }
}

} // namespace

QList<TourStep> openingSteps()
{
    return {
        { QStringLiteral("start"), start, true },
        { QStringLiteral("commands"), commands },
        { QStringLiteral("history"), history },
        { QStringLiteral("long-reply"), longReply },
        { QStringLiteral("binary-reply"), binaryReply },
        { QStringLiteral("upload"), sendFile },
        { QStringLiteral("settings"), settings },
        { QStringLiteral("addresses"), addresses },
        { QStringLiteral("read"), readAgain },
        { QStringLiteral("record"), saveRecord },
        { QStringLiteral("dark"), dark },
        { QStringLiteral("german"), german },
        { QStringLiteral("keyboard"), keyboard },
    };
}

} // namespace console
