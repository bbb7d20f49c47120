#include "tarnis/client/serverprocess.h"

#include "tarnis/client/timerlimit_p.h"
#include "tarnis/server/localserver_p.h"
#include "tarnis/server/serverexit_p.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QMetaObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <utility>

namespace tarnis {

namespace {

// A server may print for months, so the stored output is limited.
constexpr qsizetype maxLine = qsizetype(64) << 10;
constexpr qsizetype maxErrorOutput = qsizetype(4) << 10;

/// A path, unlike a name that is looked up in the search path.
bool isPath(const QString& program)
{
    return QDir::fromNativeSeparators(program).contains(QLatin1Char('/'));
}

/// Why a program cannot be started, as a part of a sentence. The texts of QProcess name system calls.
QString startProblem(const QString& program, const QString& systemText)
{
    if (program.isEmpty())
        return ServerProcess::tr("no program is chosen");
    if (!isPath(program))
        return QStandardPaths::findExecutable(program).isEmpty()
            ? ServerProcess::tr("no folder of the search path contains it")
            : systemText;
    const QFileInfo file(program);
    if (!file.exists())
        return ServerProcess::tr("there is no such file");
    return file.isFile() && file.isExecutable() ? systemText : ServerProcess::tr("it is not an executable file");
}

} // namespace

class TARNIS_NO_EXPORT ServerProcess::Private {
public:
    explicit Private(ServerProcess& serverProcess);

    template <typename Signal, typename Slot> void queue(Signal signal, Slot slot);
    void launch();
    void onOutput();
    void onPort(quint16 announced);
    void onErrorOutput();
    void onProcessError(QProcess::ProcessError error);
    void onFinished(int exitCode, QProcess::ExitStatus status);
    void onTimeout();
    void killForPort(const QString& why);
    void finish(End end, const QString& reason);
    QString withErrorOutput(const QString& text) const;

    ServerProcess& q;
    QProcess* process = nullptr; ///< owned; null in NotRunning
    quint64 number = 0; ///< identifies queued calls of an earlier process
    ServerProcessOptions options;
    QString program;
    State state = State::NotRunning;
    quint16 port = 0;
    QString portProblem; ///< why the program is being killed; else empty
    QByteArray output; ///< the incomplete line, until the port is known
    QByteArray errorOutput; ///< the last part of standard error
    QTimer timer; ///< limits the start and the grace time
};

ServerProcess::Private::Private(ServerProcess& serverProcess)
    : q(serverProcess)
    , timer(&serverProcess)
{
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, &q, [this] { onTimeout(); });
}

// Queued: the receivers may delete the process object, and QProcess may emit from within start().
template <typename Signal, typename Slot> void ServerProcess::Private::queue(Signal signal, Slot slot)
{
    connect(
        process, signal, &q,
        [this, own = number, slot](auto... arguments) {
            if (process && own == number)
                (this->*slot)(arguments...);
        },
        Qt::QueuedConnection);
}

void ServerProcess::Private::launch()
{
    process = new QProcess(&q);
    ++number;
    port = 0;
    portProblem.clear();
    output.clear();
    errorOutput.clear();
    connect(process, &QProcess::started, &q, &ServerProcess::started, Qt::QueuedConnection);
    connect(process, &QProcess::readyReadStandardOutput, &q, [this] { onOutput(); });
    connect(process, &QProcess::readyReadStandardError, &q, [this] { onErrorOutput(); });
    queue(&QProcess::errorOccurred, &Private::onProcessError);
    queue(&QProcess::finished, &Private::onFinished);
    const QFileInfo file(program);
    if (!options.workingDirectory.isEmpty())
        process->setWorkingDirectory(options.workingDirectory);
    else if (isPath(program) && file.dir().exists()) // otherwise the error would be about the folder
        process->setWorkingDirectory(file.absolutePath());
    state = State::Starting;
    if (options.startTimeout > std::chrono::milliseconds(0))
        timer.start(timerRun(options.startTimeout));
    process->start(isPath(program) ? file.absoluteFilePath() : program, options.arguments);
}

void ServerProcess::Private::onOutput()
{
    const QByteArray piece = process->readAllStandardOutput();
    if (state != State::Starting || !portProblem.isEmpty())
        return;
    output += piece;
    const qsizetype end = output.lastIndexOf('\n') + 1;
    const std::optional<quint16> announced = announcedPort(QString::fromUtf8(output.first(end)));
    const QString lines = QString::fromUtf8(output.first(end)).trimmed();
    output.remove(0, end);
    if (output.size() > maxLine)
        output.clear();
    if (!announced)
        return;
    output.clear();
    if (*announced == 0) {
        killForPort(ServerProcess::tr("The server announced a port that is not valid: \"%1\".").arg(lines.right(80)));
        return;
    }
    // Queued, as all signals are.
    QMetaObject::invokeMethod(
        &q,
        [this, own = number, value = *announced] {
            if (process && own == number)
                onPort(value);
        },
        Qt::QueuedConnection);
}

void ServerProcess::Private::onPort(quint16 announced)
{
    if (state != State::Starting)
        return;
    timer.stop();
    port = announced;
    state = State::Running;
    Q_EMIT q.portKnown(port);
}

void ServerProcess::Private::onErrorOutput()
{
    errorOutput = (errorOutput + process->readAllStandardError()).right(maxErrorOutput);
}

void ServerProcess::Private::onProcessError(QProcess::ProcessError error)
{
    // Every other error is followed by `finished`, or does not end the process.
    if (error == QProcess::FailedToStart)
        finish(End::NotStarted,
            ServerProcess::tr("The server \"%1\" could not be started: %2.")
                .arg(program, startProblem(program, process->errorString())));
}

void ServerProcess::Private::onFinished(int exitCode, QProcess::ExitStatus status)
{
    if (!portProblem.isEmpty())
        finish(End::NoPort, withErrorOutput(portProblem));
    else if (state == State::Stopping)
        finish(End::Stopped, ServerProcess::tr("The server was stopped."));
    else if (status == QProcess::CrashExit)
        finish(End::Crashed, withErrorOutput(ServerProcess::tr("The server has crashed.")));
    else
        finish(End::Exited, withErrorOutput(ServerProcess::tr("The server has exited with code %1.").arg(exitCode)));
}

void ServerProcess::Private::onTimeout()
{
    if (state == State::Starting)
        killForPort(ServerProcess::tr("The server did not announce its port within %1 s.")
                        .arg(std::chrono::duration<double>(options.startTimeout).count()));
    else if (process)
        process->kill();
}

void ServerProcess::Private::killForPort(const QString& why)
{
    portProblem = why;
    process->kill();
}

void ServerProcess::Private::finish(End end, const QString& reason)
{
    timer.stop();
    state = State::NotRunning;
    port = 0;
    delete std::exchange(process, nullptr);
    Q_EMIT q.ended(end, reason);
}

QString ServerProcess::Private::withErrorOutput(const QString& text) const
{
    // Without the colours and other sequences that a program writes for a terminal.
    static const QRegularExpression notText(QStringLiteral("\\x1b\\[[0-?]*[ -/]*[@-~]|[\\x00-\\x08\\x0b-\\x1f\\x7f]"));
    const QStringList lines =
        QString::fromUtf8(errorOutput).remove(notText).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const auto last =
        std::find_if(lines.crbegin(), lines.crend(), [](const QString& line) { return !line.trimmed().isEmpty(); });
    return last == lines.crend() ? text : text + QLatin1Char(' ') + last->trimmed();
}

ServerProcess::ServerProcess(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(*this))
{
}

ServerProcess::~ServerProcess()
{
    if (!d->process)
        return;
    QProcess* const process = std::exchange(d->process, nullptr);
    process->disconnect(this);
    process->setParent(nullptr);
    askServerToExit(*process);
    endServerInBackground(process, static_cast<int>(timerRun(d->options.exitGrace).count()));
}

bool ServerProcess::start(const QString& program, const ServerProcessOptions& options)
{
    if (d->process)
        return false;
    d->program = program;
    d->options = options;
    d->launch();
    return true;
}

void ServerProcess::stop()
{
    if (!d->process || d->state == State::Stopping || !d->portProblem.isEmpty())
        return;
    d->state = State::Stopping;
    askServerToExit(*d->process);
    d->timer.start(timerRun(d->options.exitGrace));
}

void ServerProcess::kill()
{
    if (!d->process)
        return;
    d->state = State::Stopping;
    d->process->kill();
}

ServerProcess::State ServerProcess::state() const
{
    return d->state;
}

quint16 ServerProcess::port() const
{
    return d->port;
}

QString ServerProcess::program() const
{
    return d->program;
}

} // namespace tarnis
