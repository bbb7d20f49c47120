#include "histograms/serverhistograms.h"

#include "server/commandchannel.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "windows/window.h"

#include <utility>

namespace console {

ServerHistograms::ServerHistograms(ServerController& controller)
    : m_controller(controller)
    , m_channel(new CommandChannel(controller, QStringLiteral("hists"), this))
{
    connect(m_channel, &CommandChannel::replied, this, [this](const PTarnisCmd&, const QByteArray& reply) {
        m_isAwaited = false;
        read(QString::fromUtf8(reply));
        if (!m_list)
            Q_EMIT changed(); // refused
        // Requested only once, so the connection is no longer needed. Queued, because this is called in its own signal.
        QMetaObject::invokeMethod(m_channel, &CommandChannel::drop, Qt::QueuedConnection);
    });
    connect(m_channel, &CommandChannel::failed, this, [this] {
        if (m_isUp && !std::exchange(m_isAskedAgain, true)) {
            m_retryTimer.start(m_retryMs);
        } else if (std::exchange(m_isAwaited, false)) {
            Q_EMIT changed();
        }
    });
    m_retryTimer.setSingleShot(true);
    connect(&m_retryTimer, &QTimer::timeout, this, &ServerHistograms::ask);
    connect(&controller, &ServerController::aboutToStop, &m_retryTimer, &QTimer::stop);
    connect(&controller, &ServerController::aboutToStop, m_channel, &CommandChannel::drop);
    connect(&controller, &ServerController::stateChanged, this, &ServerHistograms::onServerState);
}

ServerHistograms::~ServerHistograms() = default;

void ServerHistograms::onServerState()
{
    const bool isUp = m_controller.state() == ServerState::Up;
    if (isUp == std::exchange(m_isUp, isUp))
        return;
    m_channel->drop();
    m_retryTimer.stop();
    m_isAskedAgain = false;
    m_isAwaited = isUp;
    setList(std::nullopt);
    if (isUp)
        ask();
}

void ServerHistograms::ask()
{
    auto* const command = new TarnisCmd(QStringLiteral("hists")); // the channel takes ownership
    command->m_cmdName = QStringLiteral("hists");
    m_channel->send(command);
}

void ServerHistograms::read(const QString& reply)
{
    if (m_isUp && replyKind(reply) == ReplyKind::Accepted)
        setList(histogramsOf(reply));
}

void ServerHistograms::setList(const std::optional<QList<HistogramInfo>>& list)
{
    m_list = list;
    Q_EMIT changed();
}

std::optional<HistogramInfo> ServerHistograms::find(const QString& name) const
{
    for (const HistogramInfo& histogram : m_list.value_or(QList<HistogramInfo>())) {
        if (histogram.name == name)
            return histogram;
    }
    return std::nullopt;
}

QString ServerHistograms::refusal(const QString& name) const
{
    if (name.isEmpty() || !m_list || find(name))
        return {};
    return Windows::tr("The server has no histogram \u201c%1\u201d").arg(name);
}

} // namespace console
