// The server's statistics as they change, and its folders.
#include "servercontroller.h"
#include "sessionlink.h"
#include "tour/person.h"
#include "windows/window.h"

#include <tarnis/dialogs/selectdirectorydialog.h>
#include <tarnis/dialogs/selectpathdialog.h>
#include <tarnis/dialogs/statdialog.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QHeaderView>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>

namespace console {

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("Windows", text);
}

QWidget* openStatistics(const WindowContext& context)
{
    // This window takes the session over and shows itself.
    auto* const window = new StatDialog(
        context.controller.tarnis().NewTarnisSession(nullptr), translated("Statistics"), QString(), context.parent);
    // The columns fill the table without the row numbers.
    window->table()->verticalHeader()->hide();
    return window;
}

void driveStatistics(Person& person, QWidget& window)
{
    QTableWidget& table = *static_cast<StatDialog&>(window).table();
    person.waitUntil(QStringLiteral("the statistics are on show"), [&] { return table.rowCount() > 0; });
    person.picture(window, QStringLiteral("table"));
}

/// The folder that is chosen becomes the base path.
QWidget* openBasePath(const WindowContext& context)
{
    auto* const dialog = new SelectPathDialog(QString(), context.link.session(), context.parent);
    dialog->setWindowTitle(translated("Base Path"));
    QObject::connect(dialog, qOverload<const QString&>(&SelectPathDialog::accepted), &context.controller,
        [&controller = context.controller](const QString& path) { controller.tarnis().SetBasePath(path, false); });
    return dialog;
}

QWidget* openServerFile(const WindowContext& context)
{
    auto* const dialog = new SelectDirectoryDialog(QString(), context.link.session(), context.parent);
    dialog->setExt({ QStringLiteral("*") }, false, QString());
    dialog->setWindowTitle(translated("Files of the Server"));
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
    return { QStringLiteral("statistics"), translated("S&tatistics"),
        translated("What the server tells about itself, live"), openStatistics, driveStatistics };
}

WindowEntry basePathEntry()
{
    return { QStringLiteral("base-path"), translated("&Base Path..."),
        translated("Choose the folder of the data on the server"), openBasePath, driveFolders };
}

WindowEntry serverFilesEntry()
{
    return { QStringLiteral("server-files"), translated("&Files of the Server..."),
        translated("Look at the files on the server"), openServerFile, driveFolders };
}

} // namespace console
