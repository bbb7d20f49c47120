// The windows of the server's folders, files, runs and texts.
#include "browse/pathwindows.h"
#include "browse/servertext.h"
#include "mainwindow.h"
#include "server/servercontroller.h"
#include "settings/settingspanel.h"
#include "tour/uidriver.h"
#include "tour/windowsteps.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

namespace console {

namespace {

/// Waits for the list and selects an entry by a click.
void chooseListed(UiDriver& driver, QWidget& window, const QString& text)
{
    auto& list = driver.find<QListWidget>(window, "curDirListWidget");
    driver.waitUntil(QStringLiteral("%1 is listed").arg(text),
        [&] { return list.isEnabled() && !list.findItems(text, Qt::MatchExactly).isEmpty(); });
    QListWidgetItem* const item = list.findItems(text, Qt::MatchExactly).constFirst();
    list.scrollToItem(item);
    driver.wait(60); // until it is laid out
    driver.clickAt(*list.viewport(), list.visualItemRect(item).center());
}

void pressOk(UiDriver& driver, QWidget& window)
{
    driver.click(*driver.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Ok));
}

} // namespace

void driveBasePath(UiDriver& driver, QWidget& window)
{
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    Tarnis& server = console.controller().tarnis();
    const auto basePath = [&] { return server.GetSettingValue(QStringLiteral("basepath"), QString()); };
    const QString before = basePath();
    int answers = 0;
    const QObject counter; // until the step has ended in any way
    QObject::connect(&server, &Tarnis::onCmdReply, &counter,
        [&answers](const QString& name) { answers += int(name == u"settingBasePathCmd"); });
    chooseListed(driver, window, QStringLiteral("data/"));
    driver.key(driver.find<QListWidget>(window, "curDirListWidget"), Qt::Key_Return);
    const auto& folders = driver.find<QComboBox>(window, "dirComboBox");
    driver.waitUntil(QStringLiteral("the folder is open"),
        [&] { return folders.isEnabled() && folders.currentText().contains(QStringLiteral("data")); });
    driver.screenshot(window, QStringLiteral("chosen"));
    pressOk(driver, window);
    driver.waitUntil(QStringLiteral("the folder is the base path"),
        [&] { return answers == 1 && basePath().endsWith(QStringLiteral("/data")); });
    driver.screenshot(console, QStringLiteral("set"));
    server.SetBasePath(before, false);
    // The following steps list the server's own folder.
    driver.waitUntil(QStringLiteral("the server has the previous base path"), [&] { return answers == 2; });
    const auto& state = driver.find<QLabel>(console.settingsPanel(), "stateLabel");
    driver.waitUntil(QStringLiteral("the settings are read again"),
        [&] { return state.text() == SettingsPanel::tr("As on the server."); });
}

void driveServerFiles(UiDriver& driver, QWidget& window)
{
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    chooseListed(driver, window, QStringLiteral("tour.txt")); // was uploaded by the tour
    driver.screenshot(window, QStringLiteral("chosen"));
    pressOk(driver, window);
    auto& edit = driver.find<QLineEdit>(console, "commandEdit");
    driver.expect(edit.text().startsWith(u'"') && edit.text().endsWith(u"/tour.txt\""),
        QStringLiteral("the path is in the command line in quotation marks, not %1").arg(edit.text()));
    driver.clearText(edit);
}

void driveRuns(UiDriver& driver, QWidget& window)
{
    const auto& table = driver.find<QTableView>(window, "table");
    const auto rows = [&] { return table.model()->rowCount(); };
    const auto& state = driver.find<QLabel>(window, "stateLabel");
    driver.waitUntil(QStringLiteral("the server's own folder is listed"), [&] { return state.text().contains(u'/'); });
    driver.clearText(driver.find<QLineEdit>(window, "folderEdit"));
    driver.type(driver.find<QLineEdit>(window, "folderEdit"), QStringLiteral("/"));
    driver.key(driver.find<QLineEdit>(window, "folderEdit"), Qt::Key_Return);
    driver.waitUntil(QStringLiteral("the folder above the runs is listed"), [&] { return rows() == 0; });
    driver.click(driver.find<QPushButton>(window, "browseButton"));
    auto& chooser = driver.find<FolderChooser>(window, "SelectPathDialog");
    auto& list = driver.find<QListWidget>(chooser, "curDirListWidget");
    const auto data = [&] { return list.findItems(QStringLiteral("data/"), Qt::MatchExactly); };
    driver.waitUntil(QStringLiteral("the folders are listed"), [&] { return list.isEnabled() && !data().isEmpty(); });
    driver.doubleClick(*list.viewport(), list.visualItemRect(data().constFirst()).center());
    const auto& folders = driver.find<QComboBox>(chooser, "dirComboBox");
    driver.waitUntil(QStringLiteral("the folder is open"),
        [&] { return folders.isEnabled() && folders.currentText().contains(QStringLiteral("data")); });
    driver.screenshot(chooser, QStringLiteral("browse"));
    driver.click(*driver.find<QDialogButtonBox>(chooser, "buttonBox").button(QDialogButtonBox::Ok));
    driver.waitUntil(QStringLiteral("the runs are listed"), [&] { return rows() > 0; });
    const int all = rows();
    driver.screenshot(window, QStringLiteral("listed"));
    auto& part = driver.find<QLineEdit>(window, "partEdit");
    driver.type(part, QStringLiteral("no such run"));
    driver.expect(rows() == 0, QStringLiteral("the filter leaves what fits"));
    driver.clearText(part);
    driver.expect(rows() == all, QStringLiteral("without a filter all runs are there"));

    auto& prefix = driver.find<QComboBox>(window, "prefixCombo");
    driver.expect(prefix.count() > 1, QStringLiteral("there are prefixes to choose from"));
    driver.chooseItem(prefix, prefix.itemText(1));
    driver.expect(rows() > 0 && rows() <= all, QStringLiteral("the runs of a prefix are on show"));
    const QModelIndex first = table.model()->index(0, 0);
    driver.clickAt(*table.viewport(), table.visualRect(first).center());
    driver.screenshot(window, QStringLiteral("chosen"));
    driver.click(driver.find<QPushButton>(window, "insertButton"));
    auto& edit = driver.find<QLineEdit>(*window.parentWidget(), "commandEdit");
    driver.expect(edit.text().startsWith(u'"') && edit.text().contains(u"/data/"),
        QStringLiteral("the run is in the command line"));
    driver.clearText(edit);
}

/// Types a text, saves it under a name on the server, and opens it again.
void driveServerText(UiDriver& driver, QWidget& window)
{
    auto& edit = driver.find<QPlainTextEdit>(window, "edit");
    const auto& state = driver.find<QLabel>(window, "stateLabel");
    driver.type(edit, QStringLiteral("written by the tour"));
    driver.click(driver.find<QPushButton>(window, "saveAsButton"));
    auto& saving = driver.find<FolderChooser>(window, "SelectPathDialog");
    auto& folders = driver.find<QComboBox>(saving, "dirComboBox");
    driver.waitUntil(
        QStringLiteral("the folder is listed"), [&] { return folders.isEnabled() && folders.count() > 0; });
    driver.type(driver.find<QLineEdit>(saving, "fileNameLineEdit"), QStringLiteral("tour-text.txt"));
    driver.screenshot(saving, QStringLiteral("save-as"));
    driver.click(*driver.find<QDialogButtonBox>(saving, "buttonBox").button(QDialogButtonBox::Ok));
    driver.waitUntil(QStringLiteral("the text is saved"),
        [&] { return state.text() == ServerTextWindow::tr("Saved.") && !window.isWindowModified(); });
    driver.screenshot(window, QStringLiteral("saved"));

    static_cast<ServerTextWindow&>(window).openFile(QStringLiteral("/tour-text.txt"));
    driver.waitUntil(QStringLiteral("the text is opened"),
        [&] { return state.text().startsWith(ServerTextWindow::tr("Opened, %1.").section(u'%', 0, 0)); });
    driver.expect(edit.toPlainText() == u"written by the tour", QStringLiteral("it is the text that was saved"));

    driver.type(edit, QStringLiteral(", and changed"));
    for (const QMessageBox::StandardButton answer : { QMessageBox::Cancel, QMessageBox::Discard }) {
        driver.expect(window.isVisible() && window.isWindowModified(), QStringLiteral("the change is still there"));
        driver.close(window);
        auto& box = static_cast<QMessageBox&>(driver.dialogOf(window));
        if (answer == QMessageBox::Cancel)
            driver.screenshot(box, QStringLiteral("unsaved"));
        driver.click(*box.button(answer));
    }
}

} // namespace console
