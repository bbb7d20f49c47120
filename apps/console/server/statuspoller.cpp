#include "server/statuspoller.h"

#include "server/commandchannel.h"
#include "server/servercontroller.h"

namespace console {

namespace {

constexpr int defaultIntervalMs = 3000;

} // namespace

StatusPoller::StatusPoller(ServerController& controller, const std::function<bool()>& isFree, QObject* parent)
    : QObject(parent)
    , m_controller(controller)
    , m_isFree(isFree)
    , m_link(new CommandChannel(controller.tarnis(), QStringLiteral("state"), this))
{
    m_timer.setInterval(defaultIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &StatusPoller::ask);
    connect(m_link, &CommandChannel::replied, this, [this](const PTarnisCmd& /*command*/, const QByteArray& reply) {
        m_controller.readState(reply, m_asked.elapsed());
    });
    connect(m_link, &CommandChannel::failed, &controller, &ServerController::checkServer);
    connect(&controller, &ServerController::aboutToStop, this, [this] { m_link->drop(); });
    connect(&controller, &ServerController::stateChanged, this, &StatusPoller::onServerState);
}

StatusPoller::~StatusPoller() = default;

void StatusPoller::setInterval(int intervalMs)
{
    m_timer.stop();
    m_timer.setInterval(intervalMs);
    onServerState();
}

void StatusPoller::onServerState()
{
    if (m_controller.state() != ServerState::Up) {
        m_timer.stop();
        m_link->drop();
    } else if (!m_timer.isActive() && m_timer.interval() > 0) {
        m_timer.start();
    }
}

bool StatusPoller::ask()
{
    const bool isTold = m_controller.stateAgeMs() < m_timer.interval();
    if (isTold || !m_controller.canReadState() || !m_isFree() || !m_link->waiting().isEmpty())
        return false;
    m_asked.start();
    m_link->send(new TarnisCmd(QStringLiteral("stat"))); // the session takes it over
    return true;
}

} // namespace console
