// The choice of the server's histograms, its runs, and the log file.
#include "mainwindow.h"
#include "tour/uidriver.h"
#include "histograms/histogramchooser.h"
#include "log/logwindow.h"
#include "windows/openwindows.h"
#include "browse/pathwindows.h"
#include "browse/runswindow.h"
#include "browse/servertext.h"
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

void driveHistograms(Person& person, QWidget& window)
{
    auto& chooser = static_cast<HistogramChooser&>(window);
    person.waitUntil(QStringLiteral("the histograms are listed"), [&] { return chooser.count() > 0; });
    person.click(person.find<QPushButton>(window, "buttonCheckAll"));
    person.picture(window, QStringLiteral("checked"));
    auto& windows = *window.parentWidget()->findChild<OpenWindows*>();
    const int chosen = chooser.count();
    person.click(*person.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Ok));
    person.waitUntil(
        QStringLiteral("a window opens for each of them"), [&] { return windows.onScreen().size() == chosen; });
    auto& console = *qobject_cast<MainWindow*>(windows.parent());
    person.look(300); // a window manager gives them their frames
    person.choose(console, "tileAction");
    person.look(1200); // the first polls
    person.screen(windows.onScreen(), QStringLiteral("tiled"));
    person.choose(console, "cascadeAction");
    person.screen(windows.onScreen(), QStringLiteral("cascaded"));
    person.choose(console, "closeWindowsAction");
    person.waitUntil(QStringLiteral("all of them close"), [&] { return windows.onScreen().isEmpty(); });
}

void driveRuns(Person& person, QWidget& window)
{
    const auto& table = person.find<QTableView>(window, "table");
    const auto rows = [&] { return table.model()->rowCount(); };
    const auto& state = person.find<QLabel>(window, "stateLabel");
    person.waitUntil(QStringLiteral("the server's own folder is listed"), [&] { return state.text().contains(u'/'); });
    person.clearText(person.find<QLineEdit>(window, "folderEdit"));
    person.type(person.find<QLineEdit>(window, "folderEdit"), QStringLiteral("/"));
    person.key(person.find<QLineEdit>(window, "folderEdit"), Qt::Key_Return);
    person.waitUntil(QStringLiteral("the folder above the runs is listed"), [&] { return rows() == 0; });
    person.click(person.find<QPushButton>(window, "browseButton"));
    auto& chooser = person.find<FolderChooser>(window, "SelectPathDialog");
    auto& list = person.find<QListWidget>(chooser, "curDirListWidget");
    const auto data = [&] { return list.findItems(QStringLiteral("data/"), Qt::MatchExactly); };
    person.waitUntil(QStringLiteral("the folders are listed"), [&] { return list.isEnabled() && !data().isEmpty(); });
    person.doubleClick(*list.viewport(), list.visualItemRect(data().constFirst()).center());
    const auto& folders = person.find<QComboBox>(chooser, "dirComboBox");
    person.waitUntil(QStringLiteral("the folder is open"),
        [&] { return folders.isEnabled() && folders.currentText().contains(QStringLiteral("data")); });
    person.picture(chooser, QStringLiteral("browse"));
    person.click(*person.find<QDialogButtonBox>(chooser, "buttonBox").button(QDialogButtonBox::Ok));
    person.waitUntil(QStringLiteral("the runs are listed"), [&] { return rows() > 0; });
    const int all = rows();
    person.picture(window, QStringLiteral("listed"));
    auto& part = person.find<QLineEdit>(window, "partEdit");
    person.type(part, QStringLiteral("no such run"));
    person.expect(rows() == 0, QStringLiteral("the filter leaves what fits"));
    person.clearText(part);
    person.expect(rows() == all, QStringLiteral("without a filter all runs are there"));

    auto& prefix = person.find<QComboBox>(window, "prefixCombo");
    person.expect(prefix.count() > 1, QStringLiteral("there are prefixes to choose from"));
    person.chooseItem(prefix, prefix.itemText(1));
    person.expect(rows() > 0 && rows() <= all, QStringLiteral("the runs of a prefix are on show"));
    const QModelIndex first = table.model()->index(0, 0);
    person.clickAt(*table.viewport(), table.visualRect(first).center());
    person.picture(window, QStringLiteral("chosen"));
    person.click(person.find<QPushButton>(window, "insertButton"));
    auto& edit = person.find<QLineEdit>(*window.parentWidget(), "commandEdit");
    person.expect(edit.text().startsWith(u'"') && edit.text().contains(u"/data/"),
        QStringLiteral("the run is in the command line"));
    person.clearText(edit);
}

/// Types a text, saves it under a name on the server, and opens it again.
void driveServerText(Person& person, QWidget& window)
{
    auto& edit = person.find<QPlainTextEdit>(window, "edit");
    const auto& state = person.find<QLabel>(window, "stateLabel");
    person.type(edit, QStringLiteral("written by the tour"));
    person.click(person.find<QPushButton>(window, "saveAsButton"));
    auto& saving = person.find<FolderChooser>(window, "SelectPathDialog");
    auto& folders = person.find<QComboBox>(saving, "dirComboBox");
    person.waitUntil(
        QStringLiteral("the folder is listed"), [&] { return folders.isEnabled() && folders.count() > 0; });
    person.type(person.find<QLineEdit>(saving, "fileNameLineEdit"), QStringLiteral("tour-text.txt"));
    person.picture(saving, QStringLiteral("save-as"));
    person.click(*person.find<QDialogButtonBox>(saving, "buttonBox").button(QDialogButtonBox::Ok));
    person.waitUntil(QStringLiteral("the text is saved"),
        [&] { return state.text() == ServerTextWindow::tr("Saved.") && !window.isWindowModified(); });
    person.picture(window, QStringLiteral("saved"));

    static_cast<ServerTextWindow&>(window).openFile(QStringLiteral("/tour-text.txt"));
    person.waitUntil(QStringLiteral("the text is opened"),
        [&] { return state.text().startsWith(ServerTextWindow::tr("Opened, %1.").section(u'%', 0, 0)); });
    person.expect(edit.toPlainText() == u"written by the tour", QStringLiteral("it is the text that was saved"));

    person.type(edit, QStringLiteral(", and changed"));
    for (const QMessageBox::StandardButton answer : { QMessageBox::Cancel, QMessageBox::Discard }) {
        person.expect(window.isVisible() && window.isWindowModified(), QStringLiteral("the change is still there"));
        person.close(window);
        auto& box = static_cast<QMessageBox&>(person.dialogOf(window));
        if (answer == QMessageBox::Cancel)
            person.picture(box, QStringLiteral("unsaved"));
        person.click(*box.button(answer));
    }
}

void driveLog(Person& person, QWidget& window)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("server.log")));
    auto& view = person.find<QPlainTextEdit>(window, "view");
    auto& edit = person.find<QLineEdit>(window, "fileEdit");
    const auto write = [&](const QByteArray& text) {
        person.expect(file.open(QIODevice::Append) && file.write(text) == text.size(),
            QStringLiteral("a log file can be written"));
        file.close();
    };
    for (int i = 0; i < 200; ++i)
        write("12:00:00 line " + QByteArray::number(i) + '\n');
    person.clearText(edit);
    person.type(edit, file.fileName());
    person.key(edit, Qt::Key_Return);
    person.expect(view.toPlainText().contains(u"line 199"), QStringLiteral("the file is on show"));
    write("12:00:01 the newest line\n");
    person.waitUntil(QStringLiteral("its growth is followed"), [&] { return view.toPlainText().contains(u"newest"); });
    person.picture(window, QStringLiteral("followed"));
    person.type(person.find<QLineEdit>(window, "findEdit"), QStringLiteral("line 42"));
    person.click(person.find<QPushButton>(window, "nextButton"));
    person.expect(view.textCursor().hasSelection(), QStringLiteral("text is found in it"));
    person.picture(window, QStringLiteral("found"));
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
