// tarnis-console: an operator's console for a data-acquisition server.
#include "app/commandline.h"
#include "app/indicatorstyle.h"
#include "app/quitsignals.h"
#include "mainwindow.h"
#include "tour/tour.h"

#include <tarnis/foundation/log.h>
#include <tarnis/server/sessionend.h>

#include <QApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

constexpr int mistakeStatus = 2;

QStringList argumentsOf(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

bool hasDisplay(const QStringList& arguments)
{
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || arguments.contains(QStringLiteral("-platform"))
        || arguments.contains(QStringLiteral("--platform")) || !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

int complain(const QString& text, int status)
{
    std::fprintf(stderr, "tarnis-console: %s\n", qPrintable(text));
    return status;
}

int runConsole(const console::Options& options, QSettings& store)
{
    console::MainWindow window(store, options.tourDirectory.isEmpty() ? options.language : QStringLiteral("en"));
    window.show();
    QTimer::singleShot(0, &window, [&] { window.startServer(options); });
    if (options.tourDirectory.isEmpty()) {
        const console::QuitSignals quitSignals(window, [&window] { window.leave(); });
        return QApplication::exec();
    }
    console::Tour tour(window, options.tourDirectory);
    if (!tour.problem().isEmpty())
        return complain(
            QStringLiteral("the tour cannot go to %1: %2").arg(options.tourDirectory, tour.problem()), mistakeStatus);
    const console::QuitSignals quitSignals(window, [&tour] { tour.interrupt(); });
    QApplication::setQuitOnLastWindowClosed(false); // the tour ends the application itself
    QTimer::singleShot(0, &window, [&tour] { QCoreApplication::exit(tour.run()); });
    const int status = QApplication::exec();
    return status == 0 ? 0 : complain(tour.summary(), status);
}

} // namespace

int main(int argc, char** argv)
{
    const QStringList arguments = argumentsOf(argc, argv);
    const console::CommandLine commandLine = console::parseCommandLine(arguments);
    switch (commandLine.action) {
    case console::CommandLine::Action::Help:
    case console::CommandLine::Action::Version:
        std::fputs(qPrintable(commandLine.text), stdout);
        return 0;
    case console::CommandLine::Action::Mistake:
        return complain(commandLine.text + QStringLiteral("\nTry 'tarnis-console --help'."), mistakeStatus);
    case console::CommandLine::Action::Run:
        break;
    }
    const console::Options& options = commandLine.options;
    const bool isTour = !options.tourDirectory.isEmpty();
    if (!hasDisplay(arguments)) {
        if (!isTour)
            return complain(QStringLiteral("there is no display; --tour DIR works without one"), 1);
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // The library's traces are for developers, who enable them with QT_LOGGING_RULES="tarnis.*.debug=true".
    QLoggingCategory::setFilterRules(QStringLiteral("tarnis.*.debug=false"));
    QCoreApplication::setOrganizationName(QStringLiteral("tarnis"));
    QCoreApplication::setApplicationName(QStringLiteral("tarnis-console"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARNIS_CONSOLE_VERSION));
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, isTour); // so that they appear in the screenshots
    const QApplication application(argc, argv);
    console::IndicatorStyle::install();

    if (!options.logFile.isEmpty()) {
        initlog(options.logFile.toStdString(), 0);
        if (!log_is_enabled())
            return complain(QStringLiteral("cannot write the log %1").arg(options.logFile), mistakeStatus);
    }
    // A tour neither reads nor changes the user's settings.
    const QTemporaryDir scratch;
    const auto store = isTour
        ? std::make_unique<QSettings>(scratch.filePath(QStringLiteral("console.ini")), QSettings::IniFormat)
        : std::make_unique<QSettings>();
    if (!options.logFile.isEmpty()) // initial file of the log window
        store->setValue(QStringLiteral("log/file"), QFileInfo(options.logFile).absoluteFilePath());
    const int status = runConsole(options, *store);
    tarnis::waitForEndingSessions(); // sessions ending in the background still write to the log
    closelog();
    return status;
}
