// The server's statistics as they change, and its folders.
#include "commandpanel.h"
#include "servercontroller.h"
#include "settingsmodel.h"
#include "tour/person.h"
#include "windows/livewindows.h"
#include "windows/pathwindows.h"
#include "windows/window.h"

#include <QComboBox>
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

void driveFolders(Person& person, QWidget& window)
{
    auto& folders = person.find<QComboBox>(window, "dirComboBox");
    person.waitUntil(
        QStringLiteral("the folder is listed"), [&] { return folders.isEnabled() && folders.count() > 0; });
    person.picture(window, QStringLiteral("listed"));
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
        Windows::tr("Choose the folder of the data on the server"), openBasePath, driveFolders,
        [](const ServerController& controller) { return controller.basePathRefusal(); } };
}

WindowEntry serverFilesEntry()
{
    return { QStringLiteral("server-files"), Windows::tr("&Files of the Server..."), Windows::tr("Files of the Server"),
        Windows::tr("Choose a file on the server for the command line"), openServerFile, driveFolders };
}

} // namespace console
