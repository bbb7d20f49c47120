// The server's folders, files, runs and texts.
#include "browse/browseentries.h"

#include "browse/pathwindows.h"
#include "browse/runswindow.h"
#include "browse/servertext.h"
#include "command/commandpanel.h"
#include "server/servercontroller.h"
#include "settings/settingsmodel.h"

namespace console {

namespace {

void setBasePath(ServerController& controller, const QString& path)
{
    QString problem = controller.basePathRefusal(); // a run may have begun while the folder was being chosen
    if (problem.isEmpty())
        problem = settingProblem(QStringLiteral("basepath"), path);
    if (problem.isEmpty())
        controller.tarnis().SetBasePath(path, false);
    else
        controller.showStatusMessage(alertOf(Alert::Severity::Warning,
            [path, problem] { return Windows::tr("%1 was not set as the base path: %2").arg(path, problem); }));
}

/// The chosen folder becomes the base path.
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

} // namespace

WindowEntry basePathEntry()
{
    return {
        .id = QStringLiteral("base-path"),
        .menuText = Windows::tr("&Base Path..."),
        .title = Windows::tr("Base Path"),
        .help = Windows::tr("Choose the folder of the data on the server"),
        .open = openBasePath,
        .refusal = [](const ServerController& controller) { return controller.basePathRefusal(); },
    };
}

WindowEntry serverFilesEntry()
{
    return {
        .id = QStringLiteral("server-files"),
        .menuText = Windows::tr("&Files of the Server..."),
        .title = Windows::tr("Files of the Server"),
        .help = Windows::tr("Choose a file on the server for the command line"),
        .open = openServerFile,
    };
}

WindowEntry runsEntry()
{
    return {
        .id = QStringLiteral("runs"),
        .menuText = Windows::tr("&Runs"),
        .title = Windows::tr("Runs"),
        .help = Windows::tr("The run directories of the server by prefix, run and date"),
        .open = [](const WindowContext& context) -> QWidget* { return new RunsWindow(context); },
        .shortcut = QStringLiteral("Ctrl+Shift+L"),
    };
}

WindowEntry serverTextEntry()
{
    return {
        .id = QStringLiteral("server-text"),
        .menuText = Windows::tr("Te&xt on the Server"),
        .title = Windows::tr("Text on the Server[*]"),
        .help = Windows::tr("Open, edit and save a text file on the server"),
        .open = [](const WindowContext& context) -> QWidget* { return new ServerTextWindow(context); },
        .shortcut = QStringLiteral("Ctrl+Shift+X"),
    };
}

} // namespace console
