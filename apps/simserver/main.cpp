// tarnis-simserver: options, files, and the objects that make the server.
#include "exitrequests.h"
#include "options.h"
#include "samples.h"
#include "server.h"
#include "simulation.h"

#include <tarnis/foundation/log.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace simserver;

enum ExitCode { Ended = 0, CannotStart = 1, WrongCommandLine = 2, ByFault = faultExitCode };

/// Writes unbuffered, so that the program that starts the server can read the port in one piece.
void print(int descriptor, const QByteArray& text)
{
    const char* at = text.constData();
    qsizetype left = text.size();
    while (left > 0) {
        const ssize_t count = write(descriptor, at, static_cast<std::size_t>(left));
        if (count <= 0)
            return; // without a receiver
        at += count;
        left -= count;
    }
}

int complain(ExitCode code, const QString& error)
{
    LOG_ERR("%s", error.toUtf8().constData());
    print(STDERR_FILENO, "tarnis-simserver: " + error.toUtf8() + '\n');
    if (code == WrongCommandLine)
        print(STDERR_FILENO, "tarnis-simserver: --help lists the options\n");
    return code;
}

/// In a process started without standard streams, a socket must not get one of their descriptors.
void keepStandardDescriptors()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0) [[maybe_unused]]
            const int opened = open("/dev/null", descriptor == STDIN_FILENO ? O_RDONLY : O_WRONLY);
    }
}

/// The log does not report errors, so the file is tested first.
QString openLog(const Options& options)
{
    if (options.logFile.isEmpty())
        return {};
    const QByteArray path = QFile::encodeName(options.logFile);
    std::FILE* const file = std::fopen(path.constData(), "a");
    if (file == nullptr)
        return QStringLiteral("cannot write the log '%1': %2").arg(options.logFile, qt_error_string());
    std::fclose(file);
    initlog(path.toStdString(), options.logLevel);
    return {};
}

QString chooseRoot(const Options& options, std::unique_ptr<QTemporaryDir>& samples, QString& root)
{
    root = options.root;
    if (!root.isEmpty())
        return QFileInfo(root).isDir() ? QString() : QStringLiteral("the root '%1' is not a directory").arg(root);
    samples = std::make_unique<QTemporaryDir>();
    root = samples->path();
    return samples->isValid() ? makeSamples(root)
                              : QStringLiteral("cannot make a directory of samples: %1").arg(samples->errorString());
}

QString loadSettings(const Options& options, const QString& root, Settings& settings)
{
    const ServerFiles files(root);
    const Settings::Context context { .running = false,
        .isDirectory = [&](const QString& path) { return files.isDirectory(path); } };
    QString error;
    if (!options.settingsFile.isEmpty() && QFileInfo::exists(options.settingsFile)) {
        error = settings.load(options.settingsFile, context);
        if (!error.isEmpty())
            return QStringLiteral("cannot use the settings of '%1': %2").arg(options.settingsFile, error);
    }
    return settings.change(options.settings, context);
}

QString loadSpectrum(const Options& options, Simulation& simulation)
{
    if (options.spectrumFile.isEmpty())
        return {};
    const SpectrumResult result = readSpectrum(options.spectrumFile);
    if (!result.error.isEmpty())
        return QStringLiteral("cannot use the spectrum '%1': %2").arg(options.spectrumFile, result.error);
    simulation.setSpectrum(result.spectrum);
    return {};
}

/// Announces the port, possibly with a fault.
void announcePort(const Options& options, quint16 port, QObject* context)
{
    const int delayMs = options.faultDelayMs < 0 ? infoOf(options.fault).delayMs : options.faultDelayMs;
    const QByteArray line = "UI port: " + QByteArray::number(port) + '\n';
    const auto later = [&](const QByteArray& text) {
        QTimer::singleShot(delayMs, context, [text] { print(STDOUT_FILENO, text); });
    };
    switch (options.fault) {
    case Fault::PortSplit:
        print(STDOUT_FILENO, line.first(line.size() / 2 + 3));
        later(line.sliced(line.size() / 2 + 3));
        break;
    case Fault::PortLate:
        later(line);
        break;
    case Fault::PortZero:
        print(STDOUT_FILENO, "UI port: 0\n");
        break;
    case Fault::PortRange:
        print(STDOUT_FILENO, "UI port: 70000\n");
        break;
    case Fault::PortMissing:
        break;
    default:
        print(STDOUT_FILENO, line);
        break;
    }
}

/// Prepares everything that the server needs before it listens. `samples` is created if there is no root.
QString prepare(
    const Options& options, std::unique_ptr<QTemporaryDir>& samples, std::unique_ptr<Simulation>& simulation)
{
    QString root;
    QString error = chooseRoot(options, samples, root);
    Settings settings;
    if (error.isEmpty())
        error = loadSettings(options, root, settings);
    if (!error.isEmpty())
        return error;
    LOG_INFO("root %s", root.toUtf8().constData());
    simulation = std::make_unique<Simulation>(settings, root, options.settingsFile);
    simulation->fault().set(options.fault, options.faultEvery, options.faultDelayMs);
    error = loadSpectrum(options, *simulation);
    if (error.isEmpty() && options.start)
        error = simulation->start();
    return error;
}

int serve(const Options& options)
{
    std::unique_ptr<QTemporaryDir> samples;
    std::unique_ptr<Simulation> simulation;
    const QString error = prepare(options, samples, simulation);
    if (!error.isEmpty())
        return complain(CannotStart, error);
    Server server(*simulation, options.prompt, options.maxClients);
    if (!server.listen(options.port)) {
        return complain(
            CannotStart, QStringLiteral("cannot listen on port %1: %2").arg(options.port).arg(server.errorString()));
    }
    LOG_INFO("listening on port %d", server.port());
    const ExitRequests ending(options.useStandardInput && options.fault != Fault::IgnoreExit);
    QObject::connect(&ending, &ExitRequests::requested, &server, [&](const QString& reason) {
        LOG_INFO("ending: %s", reason.toUtf8().constData());
        server.shutDown();
        QCoreApplication::quit();
    });
    announcePort(options, server.port(), &server);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    keepStandardDescriptors();
    const QCoreApplication application(argc, argv);
    const Options options = parseOptions(QCoreApplication::arguments(), qEnvironmentVariable(environmentName));
    switch (options.action) {
    case Options::Action::Help:
    case Options::Action::Version:
        print(STDOUT_FILENO, options.message.toUtf8());
        return Ended;
    case Options::Action::Fail:
        return complain(WrongCommandLine, options.message);
    case Options::Action::Run:
        break;
    }
    if (options.fault == Fault::StartExit)
        return ByFault;
    if (options.fault == Fault::StartCrash)
        std::abort();
    const QString error = openLog(options);
    const int code = error.isEmpty() ? serve(options) : complain(CannotStart, error);
    closelog();
    return code;
}
