// The tour's steps through the main window.
#include "command/commandpanel.h"
#include "mainwindow.h"
#include "server/servercontroller.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"
#include "tour/tourhelpers.h"
#include "tour/histogramsteps.h"

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

void start(Person& person, MainWindow& window)
{
    waitForState(person, window, ServerState::Up, QStringLiteral("the server is connected"));
    person.waitUntil(
        QStringLiteral("the settings are read"), [&] { return window.settingsPanel().model().rowCount() > 0; });
    person.picture(window, QStringLiteral("connected"));
}

void commands(Person& person, MainWindow& window)
{
    ask(person, window, QStringLiteral("help"));
    person.picture(window, QStringLiteral("help"));
    ask(person, window, QStringLiteral("start"));
    person.expect(window.controller().status() == Tarnis::RUNNING, QStringLiteral("start brings RUNNING"));
    ask(person, window, QStringLiteral("stat"));
    person.picture(window, QStringLiteral("running"));
    ask(person, window, QStringLiteral("no-such-command"));
    person.expect(lastOf(window, QStringLiteral("no-such")).contains(QStringLiteral("NG:")),
        QStringLiteral("an unknown command is refused"));
    person.picture(window, QStringLiteral("refused"));
}

void history(Person& person, MainWindow& window)
{
    auto& edit = person.find<QLineEdit>(window, "commandEdit");
    person.type(edit, QStringLiteral("half a com"));
    person.key(edit, Qt::Key_Up);
    person.key(edit, Qt::Key_Up);
    person.expect(edit.text() == u"stat", QStringLiteral("Up brings back stat, not %1").arg(edit.text()));
    person.picture(window, QStringLiteral("recalled"));
    person.key(edit, Qt::Key_Down);
    person.key(edit, Qt::Key_Down);
    person.expect(edit.text() == u"half a com", QStringLiteral("Down brings back what was being typed"));
    person.clearText(edit);
}

void longReply(Person& person, MainWindow& window)
{
    auto& edit = person.find<QLineEdit>(window, "commandEdit");
    person.type(edit, QStringLiteral("sleep 1500"));
    person.key(edit, Qt::Key_Return);
    person.type(edit, QStringLiteral("pwd"));
    person.key(edit, Qt::Key_Return);
    auto& bar = person.find<QProgressBar>(window, "progressBar");
    person.waitUntil(QStringLiteral("the progress is on show"), [&] { return bar.isVisible(); });
    person.picture(window, QStringLiteral("waiting"));
    person.waitUntil(QStringLiteral("both commands are answered"), [&] { return !window.commandPanel().isBusy(); });
    person.expect(!bar.isVisible(), QStringLiteral("the progress goes with the reply"));

    person.type(edit, QStringLiteral("sleep 60000"));
    person.key(edit, Qt::Key_Return);
    person.waitUntil(QStringLiteral("the progress is on show"), [&] { return bar.isVisible(); });
    person.click(person.find<QWidget>(window, "giveUpButton"));
    person.expect(!window.commandPanel().isBusy(), QStringLiteral("a command can be given up"));
    ask(person, window, QStringLiteral("pwd"));
    person.picture(window, QStringLiteral("given-up"));
}

void binaryReply(Person& person, MainWindow& window)
{
    auto& edit = person.find<QLineEdit>(window, "commandEdit");
    ask(person, window, QStringLiteral("hists"));
    person.type(edit, QStringLiteral("hist1d"));
    person.expect(person.find<QCheckBox>(window, "binaryCheck").isChecked(),
        QStringLiteral("hist1d is known to have a binary reply"));
    ask(person, window, QStringLiteral("hist1d total"));
    person.expect(lastOf(window, QStringLiteral("hist1d")).contains(QStringLiteral("values\nsum ")),
        QStringLiteral("the binary reply shows count and sum"));
    person.picture(window, QStringLiteral("numbers"));
}

void upload(Person& person, MainWindow& window)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("tour.txt"));
    QFile file(path);
    person.expect(file.open(QIODevice::WriteOnly) && file.write("one\ntwo\nthree\n") > 0,
        QStringLiteral("a file to upload can be written"));
    file.close();

    person.choose(window, "uploadAction");
    QWidget& dialog = person.dialogOf(window);
    auto& edit = person.find<QLineEdit>(dialog, "fileNameEdit");
    person.clearText(edit);
    person.type(edit, path);
    person.picture(dialog, QStringLiteral("dialog"));
    const auto* buttons = &person.find<QDialogButtonBox>(dialog, "buttonBox");
    person.click(*buttons->button(QDialogButtonBox::Open));
    person.waitUntil(QStringLiteral("the upload goes out"),
        [&] { return lastOf(window, QStringLiteral("txfile")).contains(QStringLiteral("tour.txt")); });
    person.waitUntil(QStringLiteral("the upload is answered"), [&] { return !window.commandPanel().isBusy(); });
    person.expect(!lastOf(window, QStringLiteral("txfile")).contains(QStringLiteral("NG:")),
        QStringLiteral("the server takes the file"));
    person.picture(window, QStringLiteral("answered"));
}

/// Edits the value of a setting in the table, by keyboard.
void editSetting(Person& person, MainWindow& window, const QString& name, const QString& value)
{
    person.shortcut(window, QKeySequence(Qt::CTRL | Qt::Key_Comma));
    auto& table = person.find<QTableView>(window, "table");
    const int row = window.settingsPanel().model().rowOf(name);
    person.expect(row >= 0, QStringLiteral("there is a setting %1").arg(name));
    table.setCurrentIndex(table.model()->index(row, SettingsModel::Value));
    person.key(table, Qt::Key_F2);
    auto& editor = person.find<QLineEdit>(table, "");
    person.clearText(editor);
    person.type(editor, value);
    person.key(editor, Qt::Key_Return);
}

void settings(Person& person, MainWindow& window)
{
    SettingsModel& model = window.settingsPanel().model();
    ask(person, window, QStringLiteral("stop"));
    editSetting(person, window, QStringLiteral("rate"), QStringLiteral("2500"));
    person.waitUntil(QStringLiteral("rate is marked as changed"),
        [&] { return model.changedNames() == QStringList { QStringLiteral("rate") }; });
    person.picture(window, QStringLiteral("edited"));
    editSetting(person, window, QStringLiteral("rate"), QStringLiteral("2 500"));
    auto& state = person.find<QLabel>(window, "stateLabel");
    person.waitUntil(QStringLiteral("a value with a blank is refused with a reason"),
        [&] { return state.text().contains(QStringLiteral("blank")); });

    person.click(person.find<QWidget>(window, "addButton"));
    QWidget& dialog = person.dialogOf(window);
    person.type(person.find<QLineEdit>(dialog, "nameEdit"), QStringLiteral("user.tour"));
    person.type(person.find<QLineEdit>(dialog, "valueEdit"), QStringLiteral("seen"));
    person.picture(dialog, QStringLiteral("add"));
    person.key(dialog, Qt::Key_Return);
    person.waitUntil(QStringLiteral("the new setting is in the table"),
        [&] { return model.rowOf(QStringLiteral("user.tour")) >= 0; });

    person.click(person.find<QWidget>(window, "saveButton"));
    person.waitUntil(QStringLiteral("the server has all settings"),
        [&] { return window.settingsPanel().canDownload() && model.changedNames().isEmpty(); });
    person.picture(window, QStringLiteral("saved"));
}

void addresses(Person& person, MainWindow& window)
{
    auto& path = person.find<QLineEdit>(window, "pathEdit");
    person.clearText(path);
    person.type(path, QStringLiteral("/"));
    person.click(person.find<QWidget>(window, "pathButton"));
    auto& state = person.find<QLabel>(window, "stateLabel");
    person.waitUntil(
        QStringLiteral("the base path is set"), [&] { return state.text() == SettingsPanel::tr("As on the server."); });

    auto& ip = person.find<QLineEdit>(window, "ipEdit");
    person.clearText(ip);
    person.type(ip, QStringLiteral("192.168.0.16"));
    person.find<QSpinBox>(window, "tcpSpin").setValue(24);
    person.find<QSpinBox>(window, "bcpSpin").setValue(4660);
    person.click(person.find<QWidget>(window, "addressButton"));
    person.expect(window.controller().tarnis().GetReadoutAddressText() == u"192.168.0.16:24",
        QStringLiteral("the readout address is set"));
    person.picture(window, QStringLiteral("set"));
    person.click(person.find<QWidget>(window, "downloadButton"));
    person.waitUntil(QStringLiteral("the server has the address"), [&] {
        return window.settingsPanel().canDownload() && window.settingsPanel().model().changedNames().isEmpty();
    });
}

/// What somebody else has changed on the server is read by a key.
void readAgain(Person& person, MainWindow& window)
{
    const SettingsModel& model = window.settingsPanel().model();
    const auto value = [&] {
        return model.index(model.rowOf(QStringLiteral("rate")), SettingsModel::Value).data().toString();
    };
    const QString before = value();
    ask(person, window, QStringLiteral("setting rate:1234"));
    person.shortcut(window, QKeySequence(Qt::Key_F5));
    person.waitUntil(QStringLiteral("the new rate is read"), [&] { return value() == u"1234"; });
    person.picture(window, QStringLiteral("read"));
    ask(person, window, QStringLiteral("setting rate:") + before);
    person.shortcut(window, QKeySequence(Qt::Key_F5));
    person.waitUntil(QStringLiteral("the rate of before is read"), [&] { return value() == before; });
}

void saveRecord(Person& person, MainWindow& window)
{
    const QString path = saveBy(
        person, QStringLiteral("record.txt"), [&] { person.shortcut(window, QKeySequence(Qt::CTRL | Qt::Key_S)); });
    person.expect(linesOf(path) > 10, QStringLiteral("the file has commands and replies"));
    person.picture(window, QStringLiteral("saved"));
}

void dark(Person& person, MainWindow& window)
{
    person.choose(window, "darkAction");
    person.picture(window, QStringLiteral("window"));
    person.choose(window, "darkAction");
    person.expect(
        !person.find<QAction>(window, "darkAction").isChecked(), QStringLiteral("the light colours are back"));
}

void german(Person& person, MainWindow& window)
{
    person.choose(window, "deAction");
    person.look(60); // the change is on its way
    person.expect(
        person.find<QMenu>(window, "helpMenu").title() == u"&Hilfe", QStringLiteral("the window is in German"));
    person.picture(window, QStringLiteral("window"));
    person.choose(window, "enAction");
    person.look(60);
    person.expect(person.find<QMenu>(window, "helpMenu").title() == u"&Help", QStringLiteral("English is back"));
}

void keyboard(Person& person, MainWindow& window)
{
    person.shortcut(window, QKeySequence(Qt::Key_F1));
    QWidget& box = person.dialogOf(window);
    person.picture(box, QStringLiteral("keys"));
    person.key(box, Qt::Key_Escape);
    for (const char* name : { "serverMenu", "windowsMenu" }) {
        auto& menu = person.find<QMenu>(window, name);
        menu.popup(window.mapToGlobal(QPoint(20, 20)));
        person.picture(menu, QString::fromLatin1(name));
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
        { QStringLiteral("upload"), upload },
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
