#include "windows/sessionkeeper.h"

#include "servercontroller.h"
#include "sessionlink.h"

#include <tarnis/server/tarnissession.h>

#include <utility>

namespace console {

SessionKeeper::SessionKeeper(ServerController& controller, TarnisSession*& session)
    : m_controller(controller)
    , m_session(session)
{
    m_retryTimer.setSingleShot(true);
    connect(&m_retryTimer, &QTimer::timeout, this, &SessionKeeper::ask);
    connect(&controller, &ServerController::stateChanged, this, &SessionKeeper::onServerState);
    connect(&controller, &ServerController::aboutToStop, this,
        [this] { drop(tr("The server is being stopped. This goes on as soon as a server is connected again.")); });
}

SessionKeeper::~SessionKeeper()
{
    end();
}

void SessionKeeper::fail(const QObject* sender, const QString& message)
{
    if (!m_session || sender != m_session)
        return;
    drop(tr("The connection broke: %1. This goes on as soon as the server answers again.").arg(message));
    m_controller.checkServer();
    m_retryTimer.start(m_retryMs);
}

void SessionKeeper::end()
{
    m_isEnded = true;
    m_retryTimer.stop();
    endInBackground(std::exchange(m_session, nullptr));
}

TarnisSession* SessionKeeper::renew()
{
    m_session = m_controller.tarnis().NewTarnisSession(nullptr);
    return m_session;
}

void SessionKeeper::drop(const QString& text)
{
    if (m_isEnded || !m_session)
        return;
    endInBackground(std::exchange(m_session, nullptr));
    Q_EMIT lost(text);
}

void SessionKeeper::onServerState()
{
    if (m_controller.state() != ServerState::Up)
        drop(tr("There is no connection to the server. This goes on as soon as it is back."));
    else if (!m_retryTimer.isActive())
        ask();
}

void SessionKeeper::ask()
{
    if (!m_isEnded && !m_session && m_controller.state() == ServerState::Up)
        Q_EMIT wanted();
}

} // namespace console
