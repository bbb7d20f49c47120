// The choice of the server's histograms, its runs, and the log file.
#include "browse/pathwindows.h"
#include "browse/runswindow.h"
#include "browse/servertext.h"
#include "histograms/histogramchooser.h"
#include "log/logwindow.h"
#include "mainwindow.h"
#include "tour/uidriver.h"
#include "windows/openwindows.h"
#include "windows/window.h"

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
#include <QTemporaryDir>

namespace console {

namespace {

void driveHistograms(UiDriver& driver, QWidget& window)
{
    auto& chooser = static_cast<HistogramChooser&>(window);
    driver.waitUntil(QStringLiteral("the histograms are listed"), [&] { return chooser.count() > 0; });
    driver.click(driver.find<QPushButton>(window, "buttonCheckAll"));
    driver.picture(window, QStringLiteral("checked"));
    auto& windows = *window.parentWidget()->findChild<OpenWindows*>();
    const int chosen = chooser.count();
    driver.click(*driver.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Ok));
    driver.waitUntil(
        QStringLiteral("a window opens for each of them"), [&] { return windows.onScreen().size() == chosen; });
    auto& console = *qobject_cast<MainWindow*>(windows.parent());
    driver.look(300); // a window manager gives them their frames
    driver.choose(console, "tileAction");
    driver.look(1200); // the first polls
    driver.screen(windows.onScreen(), QStringLiteral("tiled"));
    driver.choose(console, "cascadeAction");
    driver.screen(windows.onScreen(), QStringLiteral("cascaded"));
    driver.choose(console, "closeWindowsAction");
    driver.waitUntil(QStringLiteral("all of them close"), [&] { return windows.onScreen().isEmpty(); });
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
    driver.picture(chooser, QStringLiteral("browse"));
    driver.click(*driver.find<QDialogButtonBox>(chooser, "buttonBox").button(QDialogButtonBox::Ok));
    driver.waitUntil(QStringLiteral("the runs are listed"), [&] { return rows() > 0; });
    const int all = rows();
    driver.picture(window, QStringLiteral("listed"));
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
    driver.picture(window, QStringLiteral("chosen"));
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
    driver.picture(saving, QStringLiteral("save-as"));
    driver.click(*driver.find<QDialogButtonBox>(saving, "buttonBox").button(QDialogButtonBox::Ok));
    driver.waitUntil(QStringLiteral("the text is saved"),
        [&] { return state.text() == ServerTextWindow::tr("Saved.") && !window.isWindowModified(); });
    driver.picture(window, QStringLiteral("saved"));

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
            driver.picture(box, QStringLiteral("unsaved"));
        driver.click(*box.button(answer));
    }
}

void driveLog(UiDriver& driver, QWidget& window)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("server.log")));
    auto& view = driver.find<QPlainTextEdit>(window, "view");
    auto& edit = driver.find<QLineEdit>(window, "fileEdit");
    const auto write = [&](const QByteArray& text) {
        driver.expect(file.open(QIODevice::Append) && file.write(text) == text.size(),
            QStringLiteral("a log file can be written"));
        file.close();
    };
    for (int i = 0; i < 200; ++i)
        write("12:00:00 line " + QByteArray::number(i) + '\n');
    driver.clearText(edit);
    driver.type(edit, file.fileName());
    driver.key(edit, Qt::Key_Return);
    driver.expect(view.toPlainText().contains(u"line 199"), QStringLiteral("the file is on show"));
    write("12:00:01 the newest line\n");
    driver.waitUntil(QStringLiteral("its growth is followed"), [&] { return view.toPlainText().contains(u"newest"); });
    driver.picture(window, QStringLiteral("followed"));
    driver.type(driver.find<QLineEdit>(window, "findEdit"), QStringLiteral("line 42"));
    driver.click(driver.find<QPushButton>(window, "nextButton"));
    driver.expect(view.textCursor().hasSelection(), QStringLiteral("text is found in it"));
    driver.picture(window, QStringLiteral("found"));
}

} // namespace

WindowEntry histogramsEntry()
{
    return { QStringLiteral("histograms"), Windows::tr("&Histograms..."), Windows::tr("Histograms"),
        Windows::tr("Choose which of the server's histograms to open"),
        [](const WindowContext& context) -> QWidget* { return new HistogramChooser(context); }, driveHistograms, {},
        true, QStringLiteral("Ctrl+Shift+H") };
}

WindowEntry runsEntry()
{
    return { QStringLiteral("runs"), Windows::tr("&Runs"), Windows::tr("Runs"),
        Windows::tr("The run directories of the server by prefix, run and date"),
        [](const WindowContext& context) -> QWidget* { return new RunsWindow(context); }, driveRuns, {}, true,
        QStringLiteral("Ctrl+Shift+L") };
}

WindowEntry serverTextEntry()
{
    return { QStringLiteral("server-text"), Windows::tr("Te&xt on the Server"), Windows::tr("Text on the Server[*]"),
        Windows::tr("Open, edit and save a text file on the server's side"),
        [](const WindowContext& context) -> QWidget* { return new ServerTextWindow(context); }, driveServerText, {},
        true, QStringLiteral("Ctrl+Shift+X") };
}

WindowEntry logEntry()
{
    return { QStringLiteral("log"), Windows::tr("Lo&g File"), Windows::tr("Log File"),
        Windows::tr("Follow a log file as it grows"),
        [](const WindowContext& context) -> QWidget* { return new LogWindow(context.memory, context.parent); },
        driveLog, {}, false, QStringLiteral("Ctrl+J") };
}

} // namespace console
