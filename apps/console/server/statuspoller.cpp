#include "server/statuspoller.h"

#include "server/commandchannel.h"
#include "server/servercontroller.h"

#include <algorithm>
#include <utility>

namespace console {

namespace {

constexpr int defaultIntervalMs = 3000;
constexpr int fastIntervalMs = 1000;

} // namespace

StatusPoller::StatusPoller(ServerController& controller, const std::function<bool()>& isFree, QObject* parent)
    : QObject(parent)
    , m_controller(controller)
    , m_isFree(isFree)
    , m_channel(new CommandChannel(controller, QStringLiteral("state"), this))
    , m_intervalMs(defaultIntervalMs)
{
    connect(&m_timer, &QTimer::timeout, this, &StatusPoller::onTimeout);
    connect(m_channel, &CommandChannel::replied, this, [this](const PTarnisCmd& /*command*/, const QByteArray& reply) {
        m_isReading = true;
        m_controller.readState(reply, m_asked.nsecsElapsed());
        m_isReading = false;
        Q_EMIT replied(reply);
        refreshIfFree();
    });
    connect(m_channel, &CommandChannel::failed, this, [this](const QString& message) {
        Q_EMIT failed(message);
        m_controller.checkServer();
    });
    connect(&controller, &ServerController::statRead, this, &StatusPoller::read);
    connect(&controller, &ServerController::aboutToStop, this, [this] { m_channel->drop(); });
    connect(&controller, &ServerController::stateChanged, this, &StatusPoller::onServerState);
}

StatusPoller::~StatusPoller() = default;

void StatusPoller::setInterval(int intervalMs)
{
    m_intervalMs = intervalMs;
    schedule();
}

void StatusPoller::watch(QObject* watcher)
{
    ++m_watchers;
    connect(watcher, &QObject::destroyed, this, [this] {
        --m_watchers;
        schedule();
    });
    schedule();
    request();
}

bool StatusPoller::isAsking() const
{
    return !m_channel->waiting().isEmpty();
}

void StatusPoller::onServerState()
{
    if (m_controller.state() != ServerState::Up) {
        m_channel->drop();
        m_isOutdated = false;
        m_sinceReplyToOthers.invalidate();
        m_unsaved.forget();
        if (m_runStatus != RunStatus()) {
            m_runStatus = {};
            Q_EMIT runStatusChanged();
        }
    }
    schedule();
    // Polls at once for a new server, and when a run begins or ends.
    const Tarnis::SERVER_STATUS status = m_controller.status();
    const bool isNews = status != std::exchange(m_status, status) && !m_isReading;
    if (isNews)
        refresh();
}

void StatusPoller::refresh()
{
    if (!m_timer.isActive())
        return;
    m_isOutdated = true;
    refreshIfFree();
}

void StatusPoller::refreshIfFree()
{
    if (m_isOutdated && canAsk())
        send();
}

void StatusPoller::schedule()
{
    const bool isFast = m_watchers > 0 || m_controller.status() == Tarnis::RUNNING;
    int intervalMs = m_intervalMs;
    if (m_watchers > 0 && intervalMs <= 0)
        intervalMs = fastIntervalMs;
    if (isFast)
        intervalMs = std::min(intervalMs, fastIntervalMs);
    if (m_controller.state() != ServerState::Up || intervalMs <= 0)
        m_timer.stop();
    else if (!m_timer.isActive() || m_timer.interval() != intervalMs)
        m_timer.start(intervalMs);
}

void StatusPoller::onTimeout()
{
    if (m_watchers > 0)
        request();
    else
        ask();
}

bool StatusPoller::isServedByOthers() const
{
    return m_sinceReplyToOthers.isValid() && m_sinceReplyToOthers.elapsed() < m_intervalMs;
}

bool StatusPoller::ask()
{
    if (isServedByOthers() || !canAsk())
        return false;
    send();
    return true;
}

bool StatusPoller::canAsk() const
{
    return m_controller.canReadState() && m_isFree() && !isAsking();
}

void StatusPoller::request()
{
    if (m_controller.state() == ServerState::Up && !isAsking())
        send();
}

void StatusPoller::send()
{
    m_isOutdated = false;
    m_asked.start();
    m_channel->send(new TarnisCmd(QStringLiteral("stat"))); // the channel takes ownership
}

void StatusPoller::read(const QByteArray& reply)
{
    if (!m_isReading)
        m_sinceReplyToOthers.start();
    m_runStatus = runStatusOf(QString::fromUtf8(reply));
    m_unsaved.read(m_runStatus);
    Q_EMIT runStatusChanged();
}

} // namespace console
