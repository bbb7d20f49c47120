// The server's statistics as they change, and its folders.
#include "command/commandpanel.h"
#include "mainwindow.h"
#include "server/servercontroller.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"
#include "tour/uidriver.h"
#include "tour/histogramsteps.h"
#include "histograms/livewindows.h"
#include "browse/pathwindows.h"
#include "windows/window.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>

namespace console {

namespace {

QWidget* openStatistics(const WindowContext& context)
{
    return new LiveStatistics(context, Windows::tr("Statistics"));
}

void driveStatistics(Person& person, QWidget& window)
{
    QTableWidget& table = *static_cast<StatDialog&>(window).table();
    person.waitUntil(QStringLiteral("the statistics are on show"), [&] { return table.rowCount() > 0; });
    person.picture(window, QStringLiteral("table"));
    const QString path = saveBy(person, QStringLiteral("statistics.csv"),
        [&] { person.click(*person.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Save)); });
    person.expect(linesOf(path) > 1, QStringLiteral("the file has a line for each value"));
}

void setBasePath(ServerController& controller, const QString& path)
{
    QString problem = controller.basePathRefusal(); // a run may have begun while the folder was being chosen
    if (problem.isEmpty())
        problem = settingProblem(QStringLiteral("basepath"), path);
    if (problem.isEmpty())
        controller.tarnis().SetBasePath(path, false);
    else
        controller.tell(noticeOf(Notice::Severity::Warning,
            [path, problem] { return Windows::tr("%1 is not the base path now: %2").arg(path, problem); }));
}

/// The folder that is chosen becomes the base path.
QWidget* openBasePath(const WindowContext& context)
{
    auto* const dialog = new FolderChooser(context, [] { return Windows::tr("Base Path"); });
    QObject::connect(dialog, qOverload<const QString&>(&SelectPathDialog::accepted), &context.controller,
        [&controller = context.controller](const QString& path) { setBasePath(controller, path); });
    return dialog;
}

QWidget* openServerFile(const WindowContext& context)
{
    auto* const dialog = new FileChooser(context, [] { return Windows::tr("Files of the Server"); });
    dialog->setExt({ QStringLiteral("*") }, false, QString());
    QObject::connect(dialog, qOverload<const QString&>(&SelectDirectoryDialog::accepted), &context.commandPanel,
        &CommandPanel::insertPath);
    return dialog;
}

/// Waits for the list and chooses an entry of it by a click.
void chooseListed(Person& person, QWidget& window, const QString& text)
{
    auto& list = person.find<QListWidget>(window, "curDirListWidget");
    person.waitUntil(QStringLiteral("%1 is listed").arg(text),
        [&] { return list.isEnabled() && !list.findItems(text, Qt::MatchExactly).isEmpty(); });
    QListWidgetItem* const item = list.findItems(text, Qt::MatchExactly).constFirst();
    list.scrollToItem(item);
    person.look(60); // until it is laid out
    person.clickAt(*list.viewport(), list.visualItemRect(item).center());
}

void pressOk(Person& person, QWidget& window)
{
    person.click(*person.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Ok));
}

void driveBasePath(Person& person, QWidget& window)
{
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    Tarnis& server = console.controller().tarnis();
    const auto basePath = [&] { return server.GetSettingValue(QStringLiteral("basepath"), QString()); };
    const QString before = basePath();
    int answers = 0;
    const QObject counter; // until the step has ended in any way
    QObject::connect(&server, &Tarnis::onCmdReply, &counter,
        [&answers](const QString& name) { answers += int(name == u"settingBasePathCmd"); });
    chooseListed(person, window, QStringLiteral("data/"));
    person.key(person.find<QListWidget>(window, "curDirListWidget"), Qt::Key_Return);
    const auto& folders = person.find<QComboBox>(window, "dirComboBox");
    person.waitUntil(QStringLiteral("the folder is open"),
        [&] { return folders.isEnabled() && folders.currentText().contains(QStringLiteral("data")); });
    person.picture(window, QStringLiteral("chosen"));
    pressOk(person, window);
    person.waitUntil(QStringLiteral("the folder is the base path"),
        [&] { return answers == 1 && basePath().endsWith(QStringLiteral("/data")); });
    person.picture(console, QStringLiteral("set"));
    server.SetBasePath(before, false);
    // The steps behind this one list the server's own folder.
    person.waitUntil(QStringLiteral("the server has the base path of before"), [&] { return answers == 2; });
    const auto& state = person.find<QLabel>(console.settingsPanel(), "stateLabel");
    person.waitUntil(QStringLiteral("the settings are read again"),
        [&] { return state.text() == SettingsPanel::tr("As on the server."); });
}

void driveServerFiles(Person& person, QWidget& window)
{
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    chooseListed(person, window, QStringLiteral("tour.txt")); // was uploaded by the tour
    person.picture(window, QStringLiteral("chosen"));
    pressOk(person, window);
    auto& edit = person.find<QLineEdit>(console, "commandEdit");
    person.expect(edit.text().startsWith(u'"') && edit.text().endsWith(u"/tour.txt\""),
        QStringLiteral("the path is in the command line in quotation marks, not %1").arg(edit.text()));
    person.clearText(edit);
}

} // namespace

WindowEntry statisticsEntry()
{
    return { QStringLiteral("statistics"), Windows::tr("&Statistics"), Windows::tr("Statistics"),
        Windows::tr("What the server tells about itself, live"), openStatistics, driveStatistics };
}

WindowEntry basePathEntry()
{
    return { QStringLiteral("base-path"), Windows::tr("&Base Path..."), Windows::tr("Base Path"),
        Windows::tr("Choose the folder of the data on the server"), openBasePath, driveBasePath,
        [](const ServerController& controller) { return controller.basePathRefusal(); } };
}

WindowEntry serverFilesEntry()
{
    return { QStringLiteral("server-files"), Windows::tr("&Files of the Server..."), Windows::tr("Files of the Server"),
        Windows::tr("Choose a file on the server for the command line"), openServerFile, driveServerFiles };
}

} // namespace console
