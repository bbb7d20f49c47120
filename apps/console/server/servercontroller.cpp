#include "server/servercontroller.h"

#include "server/replytext.h"
#include "server/statustext.h"

#include <tarnis/server/sessionend.h>
#include <tarnis/server/tarnissession.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace console {

namespace {

constexpr char simulatorName[] = "tarnis-simserver";

} // namespace

void ManagedTarnis::discardEndedProcess()
{
    if (m_process && m_process->state() == QProcess::NotRunning) {
        m_process->deleteLater();
        m_process = nullptr;
    }
}

void ManagedTarnis::onError(int socketError, const QString& message)
{
    if (!isCallOfClosedSession())
        m_lastError = message; // before the status change is emitted
    Tarnis::onError(socketError, message);
}

QString resolveProgram(const QString& program)
{
    QFileInfo file;
    if (program.isEmpty()) {
        file.setFile(QDir(QCoreApplication::applicationDirPath()), QString::fromLatin1(simulatorName));
        if (!file.isExecutable())
            file.setFile(QStandardPaths::findExecutable(QString::fromLatin1(simulatorName)));
    } else if (program.contains(u'/')) {
        file.setFile(program);
    } else {
        file.setFile(QStandardPaths::findExecutable(program));
    }
    // Absolute, because the manager starts the program in the program's own directory.
    return file.isFile() && file.isExecutable() ? file.absoluteFilePath() : QString();
}

ServerController::ServerController(QObject* parent)
    : QObject(parent)
    , m_tarnis(nullptr, this)
    , m_prompts { QByteArrayLiteral("> ") }
{
    TarnisSession::SetDefaultPrompt(&m_prompts.back());
    m_slowTimer.setSingleShot(true);
    connect(&m_slowTimer, &QTimer::timeout, this, &ServerController::onSlow);
    m_againTimer.setSingleShot(true);
    connect(&m_againTimer, &QTimer::timeout, this, &ServerController::probeAgain);
    connect(&m_probe, &ServerProbe::finished, this, &ServerController::onProbed);
    connect(&m_tarnis, &Tarnis::StatusChanged, this, &ServerController::onStatusChanged);
    connect(&m_tarnis, &Tarnis::onCmdReply, this,
        [this](
            const QString& /*name*/, const QString& command, const QByteArray& reply) { readReply(command, reply); });
}

ServerController::~ServerController()
{
    blockSignals(true);
    m_tarnis.disconnect(this);
    if (m_status == Tarnis::IDLE)
        m_tarnis.SetStatus(Tarnis::SERVER_ERROR); // in IDLE the manager would not end its sessions
    m_tarnis.Shutdown();
    endByForce();
    if (m_process)
        m_process->waitForFinished(m_endTimeoutMs);
    tarnis::waitForEndingSessions(); // sessions ending in the background read prompts owned by this object
    TarnisSession::SetDefaultPrompt(nullptr);
}

QString ServerController::serverName() const
{
    if (!isLocal()) {
        const bool isAddress = m_choice.host.contains(u':');
        return (isAddress ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2")).arg(m_choice.host).arg(m_choice.port);
    }
    return m_choice.program.isEmpty() ? QString::fromLatin1(simulatorName) : QFileInfo(m_choice.program).fileName();
}

bool ServerController::hasProcess() const
{
    return m_process && m_process->state() != QProcess::NotRunning;
}

bool ServerController::wouldLoseRun() const
{
    const bool isThere = m_state == ServerState::Up || (m_state == ServerState::Failed && hasProcess());
    return isLocal() && isThere && m_isRunning;
}

QString ServerController::basePathRefusal() const
{
    switch (m_status) {
    case Tarnis::IDLE: // kept for the next server
    case Tarnis::SERVER_CONNECTED:
    case Tarnis::READOUT_CONNECTED:
    case Tarnis::READOUT_ERROR:
        return {};
    default:
        return tr("The base path cannot be changed in the status \u201c%1\u201d").arg(statusText(m_status));
    }
}

void ServerController::start(const ServerChoice& choice, const QByteArray& prompt)
{
    m_next = choice;
    m_nextPrompt = prompt;
    if (m_state == ServerState::Off)
        begin();
    else if (m_state != ServerState::Stopping)
        shutDown();
}

void ServerController::restart()
{
    start(m_choice, prompt());
}

void ServerController::stop()
{
    m_next.reset();
    if (m_state != ServerState::Off && m_state != ServerState::Stopping)
        shutDown();
}

void ServerController::endByForce()
{
    if (hasProcess())
        m_process->kill();
}

void ServerController::checkServer()
{
    if (m_state == ServerState::Up && !m_probe.isActive())
        m_probe.start(m_tarnis.host(), m_tarnis.port(), prompt(), m_probeTimeoutMs);
}

void ServerController::readReply(const QString& command, const QByteArray& reply)
{
    // Before the status changes, which causes a poll.
    if (m_state == ServerState::Up && runStateFromReply(command, QString::fromUtf8(reply)))
        m_commanded.start();
    takeState(command, reply);
}

void ServerController::takeState(const QString& command, const QByteArray& reply)
{
    if (m_state != ServerState::Up)
        return;
    const QString text = QString::fromUtf8(reply);
    if (command.trimmed() == u"stat" && replyKind(text) != ReplyKind::Refused)
        Q_EMIT statRead(reply);
    const std::optional<bool> isRunning = runStateFromReply(command, text);
    if (!isRunning)
        return;
    if (*isRunning)
        m_tarnis.SetStatus(Tarnis::RUNNING);
    else if (m_status == Tarnis::RUNNING)
        m_tarnis.SetStatus(Tarnis::SERVER_CONNECTED);
}

void ServerController::readState(const QByteArray& reply, qint64 askedNsAgo)
{
    const bool isOvertaken = m_commanded.isValid() && m_commanded.nsecsElapsed() <= askedNsAgo;
    if (canReadState() && !isOvertaken)
        takeState(QStringLiteral("stat"), reply);
}

bool ServerController::canReadState() const
{
    return m_state == ServerState::Up && (m_status == Tarnis::SERVER_CONNECTED || m_status == Tarnis::RUNNING);
}

void ServerController::begin()
{
    m_choice = *std::exchange(m_next, std::nullopt);
    if (m_nextPrompt != prompt()) {
        m_prompts.push_back(m_nextPrompt);
        TarnisSession::SetDefaultPrompt(&m_prompts.back());
    }
    m_tarnis.forgetError();
    m_hasGreeted = false;
    m_isRunning = false;
    m_commanded.invalidate();
    Q_EMIT alert({});
    setState(ServerState::Starting);
    if (isLocal())
        beginLocal();
    else
        beginRemote();
}

void ServerController::beginLocal()
{
    const QString program = resolveProgram(m_choice.program);
    if (program.isEmpty()) {
        const QString wanted = m_choice.program.isEmpty() ? serverName() : m_choice.program;
        fail(
            [wanted] {
                return tr("There is no program \u201c%1\u201d to start here. Choose another server.").arg(wanted);
            },
            AlertAction::ChooseServer);
        return;
    }
    m_tarnis.SetLocal(true);
    m_tarnis.SetProcessPath(program);
    if (!m_tarnis.Run(nullptr)) {
        fail(
            [program] {
                return tr("The program \u201c%1\u201d could not be started. Check that it is executable, or choose "
                          "another server.")
                    .arg(program);
            },
            AlertAction::ChooseServer);
        return;
    }
    m_process = m_tarnis.process();
    // The manager's status does not report a server that ends before it was connected.
    connect(m_process, &QProcess::finished, this, &ServerController::onProcessFinished);
    m_slowTimer.start(m_portTimeoutMs);
}

void ServerController::beginRemote()
{
    m_process = nullptr;
    m_probe.start(m_choice.host, m_choice.port, prompt(), m_probeTimeoutMs);
}

void ServerController::onProbed(ServerProbe::Outcome outcome)
{
    const bool isThere = outcome == ServerProbe::Outcome::Greeted;
    if (m_state == ServerState::Starting) {
        if (!isThere) {
            fail(probeFailure(outcome));
            return;
        }
        m_hasGreeted = true;
        m_tarnis.SetLocal(false);
        m_tarnis.SetRemoteHost(m_choice.host, m_choice.port);
        m_slowTimer.start(m_portTimeoutMs);
        m_tarnis.Run(nullptr);
    } else if (m_state == ServerState::Up && (isThere || outcome == ServerProbe::Outcome::Refused)) {
        m_hasGreeted = m_hasGreeted || isThere;
        Q_EMIT answered(isThere ? QString() : m_probe.refusal());
    } else if (m_state == ServerState::Up) {
        fail(probeFailure(outcome));
        m_tarnis.SetStatus(Tarnis::SERVER_ERROR);
    } else if (m_state == ServerState::Failed && isThere && isLocal()) {
        goOn();
    } else if (m_state == ServerState::Failed && isThere) {
        restart();
    } else if (m_state == ServerState::Failed && outcome == ServerProbe::Outcome::Refused) {
        fail(probeFailure(outcome)); // the server is back, but has no room
    } else if (m_state == ServerState::Failed) {
        m_againTimer.start(m_againMs);
    }
}

void ServerController::probeAgain()
{
    if (!isLocal())
        m_probe.start(m_choice.host, m_choice.port, prompt(), m_probeTimeoutMs);
    else if (hasProcess())
        m_probe.start(m_tarnis.host(), m_tarnis.port(), prompt(), m_probeTimeoutMs);
}

/// The hung local server answers again: its run continues.
void ServerController::goOn()
{
    m_tarnis.SetStatus(Tarnis::SERVER_CONNECTED);
    Q_EMIT alert({});
    setState(ServerState::Up);
}

void ServerController::onStatusChanged(Tarnis::SERVER_STATUS status)
{
    m_status = status;
    if (status == Tarnis::RUNNING)
        m_isRunning = true;
    else if (status == Tarnis::SERVER_CONNECTED || status == Tarnis::IDLE)
        m_isRunning = false;
    if (status == Tarnis::SERVER_CONNECTED && m_state == ServerState::Starting)
        onConnected();
    else if (status == Tarnis::IDLE && m_state == ServerState::Stopping)
        // The manager still holds its lock here, and its process is in the middle of a signal.
        QMetaObject::invokeMethod(this, &ServerController::reachedOff, Qt::QueuedConnection);
    else if (status == Tarnis::SERVER_ERROR && (m_state == ServerState::Starting || m_state == ServerState::Up))
        fail(
            [isLocal = isLocal(), name = serverName(), error = m_tarnis.lastError()] {
                return tr("The connection to %1 broke: %2.").arg(name, error) + u' ' + adviceAgain(isLocal);
            },
            again());
    Q_EMIT stateChanged();
}

void ServerController::onConnected()
{
    m_slowTimer.stop();
    m_known = m_choice;
    Q_EMIT alert({});
    setState(ServerState::Up);
    if (isLocal())
        checkServer(); // a wrong prompt is detected at once, not with the first command
}

void ServerController::onProcessFinished()
{
    if (m_state != ServerState::Starting && m_state != ServerState::Up)
        return;
    const bool hasCrashed = m_process && m_process->exitStatus() == QProcess::CrashExit;
    const int code = m_process ? m_process->exitCode() : 0;
    fail(
        [hasCrashed, code, wasUp = m_state == ServerState::Up, name = serverName()] {
            const QString how = hasCrashed ? tr("it crashed") : tr("exit code %1").arg(code);
            const QString text = wasUp
                ? tr("The server %1 has ended unexpectedly (%2). Start it again to go on.")
                : tr("The server %1 has ended before it was ready (%2). Start it again, or choose another.");
            return text.arg(name, how);
        },
        AlertAction::StartAgain);
}

void ServerController::onSlow()
{
    if (m_state == ServerState::Stopping) {
        Q_EMIT alert(alertOf(
            Alert::Severity::Warning,
            [name = serverName()] { return tr("%1 has not ended yet. It is killed after half a minute.").arg(name); },
            AlertAction::EndByForce));
    } else if (m_state == ServerState::Starting) {
        const auto translated = [isLocal = isLocal(), name = serverName()] {
            const QString text = isLocal
                ? tr("%1 runs, but has not announced its port yet (the line \u201cUI port:\u201d).")
                : tr("%1 has greeted, but does not answer \u201cstat\u201d yet.");
            return text.arg(name);
        };
        Q_EMIT alert(alertOf(Alert::Severity::Warning, translated, AlertAction::Stop));
    }
}

void ServerController::fail(const Alert& failure)
{
    m_slowTimer.stop();
    m_probe.stop();
    // A previously connected server may come back without the console's help: a local one if it only hangs.
    const bool comesBack = m_known == m_choice && (!isLocal() || (hasProcess() && m_hasGreeted));
    if (comesBack)
        m_againTimer.start(m_againMs);
    setState(ServerState::Failed);
    if (!comesBack) {
        Q_EMIT alert(failure);
        return;
    }
    Q_EMIT alert(alertOf(
        failure.severity,
        [translated = failure.translated] {
            return translated() + u' ' + tr("The console connects automatically when the server answers.");
        },
        failure.action));
}

void ServerController::shutDown()
{
    const ServerState before = m_state;
    m_slowTimer.stop();
    m_againTimer.stop();
    m_probe.stop();
    setState(ServerState::Stopping);
    Q_EMIT aboutToStop();
    m_tarnis.discardEndedProcess();
    if (m_status == Tarnis::IDLE)
        m_tarnis.SetStatus(Tarnis::SERVER_ERROR); // in IDLE the manager would not end process and sessions
    if (!m_tarnis.Shutdown()) {
        m_next.reset();
        setState(before);
        Q_EMIT alert(alertOf(Alert::Severity::Warning, [status = m_status] {
            return tr("The server is busy (%1) and is not shut down now. Wait until it is done.")
                .arg(statusText(status));
        }));
        return;
    }
    if (m_state == ServerState::Stopping && hasProcess())
        m_slowTimer.start(m_endTimeoutMs);
}

void ServerController::reachedOff()
{
    if (m_state != ServerState::Stopping)
        return;
    m_slowTimer.stop();
    m_process = nullptr;
    Q_EMIT alert({});
    setState(ServerState::Off);
    if (m_next)
        begin();
}

void ServerController::setState(ServerState state)
{
    if (m_state == state)
        return;
    m_state = state;
    Q_EMIT stateChanged();
}

} // namespace console
