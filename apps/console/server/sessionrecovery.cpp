#include "server/sessionrecovery.h"

#include "server/servercontroller.h"

#include <tarnis/server/sessionend.h>
#include <tarnis/server/tarnissession.h>

#include <utility>

namespace console {

namespace {

QString brokenText(const QString& message)
{
    return SessionRecovery::tr("The connection broke: %1. This window resumes when the server answers again.")
        .arg(message);
}

QString refusedText(const QString& reason)
{
    return SessionRecovery::tr("The server refuses a connection for this window: %1. Close another window or another "
                               "client. Then this window resumes.")
        .arg(reason);
}

} // namespace

SessionRecovery::SessionRecovery(ServerController& controller, TarnisSession*& session)
    : m_controller(controller)
    , m_session(session)
{
    m_retryTimer.setSingleShot(true);
    connect(&m_retryTimer, &QTimer::timeout, this, &SessionRecovery::ask);
    connect(&controller, &ServerController::stateChanged, this, &SessionRecovery::onServerState);
    connect(&controller, &ServerController::answered, this, &SessionRecovery::onAnswered);
    connect(&controller, &ServerController::aboutToStop, this, [this] {
        drop([] { return tr("The server is being stopped. This window resumes when a server is connected again."); });
    });
}

SessionRecovery::~SessionRecovery()
{
    end();
}

void SessionRecovery::fail(const QObject* sender, const QString& message)
{
    if (!m_session || sender != m_session)
        return;
    // A session that was refused reports only that the server has disconnected. The check finds the reason, which stays
    // shown during the next attempts.
    drop([message, refusal = m_refusal] { return refusal.isEmpty() ? brokenText(message) : refusedText(refusal); });
    m_controller.checkServer();
    m_retryTimer.start(m_retryMs);
}

void SessionRecovery::end()
{
    m_isEnded = true;
    m_retryTimer.stop();
    tarnis::endInBackground(std::exchange(m_session, nullptr));
}

TarnisSession* SessionRecovery::renew()
{
    m_session = m_controller.tarnis().NewTarnisSession(nullptr);
    m_text = {};
    return m_session;
}

tarnis::ServerAddress SessionRecovery::renewedAddress()
{
    m_text = {};
    return m_controller.tarnis().GetSessionAddress();
}

bool SessionRecovery::retry()
{
    ask();
    return m_session != nullptr;
}

QString SessionRecovery::text() const
{
    return m_text ? m_text() : QString();
}

void SessionRecovery::drop(const tarnis::TranslatedText& translated)
{
    if (m_isEnded || !m_session)
        return;
    tarnis::endInBackground(std::exchange(m_session, nullptr));
    m_text = translated;
    Q_EMIT lost();
}

void SessionRecovery::onAnswered(const QString& refusal)
{
    m_refusal = refusal;
    if (m_refusal.isEmpty() || m_isEnded || m_session)
        return;
    m_text = [refusal] { return refusedText(refusal); };
    Q_EMIT lost();
}

void SessionRecovery::onServerState()
{
    const ServerState state = m_controller.state();
    if (state != ServerState::Up)
        m_refusal.clear();
    const tarnis::TranslatedText translated = [isEnded = state == ServerState::Failed && m_controller.isLocal()] {
        return isEnded
            ? tr("The server has ended. This window resumes when it has been started again in the main window.")
            : tr("There is no connection to the server. This window resumes when it is back.");
    };
    if (state == ServerState::Failed && !m_isEnded && !m_session) {
        m_text = translated; // the text of a connection that broke before is less specific
        Q_EMIT lost();
    } else if (state != ServerState::Up)
        drop(translated);
    else if (!m_retryTimer.isActive())
        ask();
}

void SessionRecovery::ask()
{
    if (!m_isEnded && !m_session && m_controller.state() == ServerState::Up)
        Q_EMIT wanted();
}

} // namespace console
