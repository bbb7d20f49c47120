// The server's statistics as they change, and its folders.
#include "browse/pathwindows.h"
#include "command/commandpanel.h"
#include "histograms/livewindows.h"
#include "mainwindow.h"
#include "server/servercontroller.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"
#include "tour/histogramsteps.h"
#include "tour/uidriver.h"
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

void driveStatistics(UiDriver& driver, QWidget& window)
{
    QTableWidget& table = *static_cast<StatDialog&>(window).table();
    driver.waitUntil(QStringLiteral("the statistics are on show"), [&] { return table.rowCount() > 0; });
    driver.picture(window, QStringLiteral("table"));
    const QString path = saveBy(driver, QStringLiteral("statistics.csv"),
        [&] { driver.click(*driver.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Save)); });
    driver.expect(linesOf(path) > 1, QStringLiteral("the file has a line for each value"));
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
void chooseListed(UiDriver& driver, QWidget& window, const QString& text)
{
    auto& list = driver.find<QListWidget>(window, "curDirListWidget");
    driver.waitUntil(QStringLiteral("%1 is listed").arg(text),
        [&] { return list.isEnabled() && !list.findItems(text, Qt::MatchExactly).isEmpty(); });
    QListWidgetItem* const item = list.findItems(text, Qt::MatchExactly).constFirst();
    list.scrollToItem(item);
    driver.look(60); // until it is laid out
    driver.clickAt(*list.viewport(), list.visualItemRect(item).center());
}

void pressOk(UiDriver& driver, QWidget& window)
{
    driver.click(*driver.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Ok));
}

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
    driver.picture(window, QStringLiteral("chosen"));
    pressOk(driver, window);
    driver.waitUntil(QStringLiteral("the folder is the base path"),
        [&] { return answers == 1 && basePath().endsWith(QStringLiteral("/data")); });
    driver.picture(console, QStringLiteral("set"));
    server.SetBasePath(before, false);
    // The steps behind this one list the server's own folder.
    driver.waitUntil(QStringLiteral("the server has the base path of before"), [&] { return answers == 2; });
    const auto& state = driver.find<QLabel>(console.settingsPanel(), "stateLabel");
    driver.waitUntil(QStringLiteral("the settings are read again"),
        [&] { return state.text() == SettingsPanel::tr("As on the server."); });
}

void driveServerFiles(UiDriver& driver, QWidget& window)
{
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    chooseListed(driver, window, QStringLiteral("tour.txt")); // was uploaded by the tour
    driver.picture(window, QStringLiteral("chosen"));
    pressOk(driver, window);
    auto& edit = driver.find<QLineEdit>(console, "commandEdit");
    driver.expect(edit.text().startsWith(u'"') && edit.text().endsWith(u"/tour.txt\""),
        QStringLiteral("the path is in the command line in quotation marks, not %1").arg(edit.text()));
    driver.clearText(edit);
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
