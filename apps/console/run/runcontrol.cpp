#include "run/runcontrol.h"

#include "server/commandchannel.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "server/statuspoller.h"

#include <tarnis/foundation/delaycall.h>

#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

namespace console {

namespace {

constexpr int settleMs = 200;

} // namespace

RunControl::RunControl(ServerController& controller, StatusPoller& poller, QWidget& window)
    : QObject(&window)
    , m_controller(controller)
    , m_poller(poller)
    , m_window(window)
    , m_channel(new CommandChannel(controller, QStringLiteral("run"), this))
{
    connect(m_channel, &CommandChannel::replied, this,
        [this](const PTarnisCmd& command, const QByteArray& reply) { onReplied(command->m_cmd, reply); });
    connect(m_channel, &CommandChannel::failed, this, [this](const QString& message, const QList<Request>& unanswered) {
        if (!unanswered.isEmpty() && m_controller.state() == ServerState::Up)
            Q_EMIT statusMessage(alertOf(Alert::Severity::Warning, [name = unanswered.first().text, message] {
                return tr("The connection broke before the server answered \u201c%1\u201d (%2). Check the state of "
                          "the run before you try again.")
                    .arg(name, message);
            }));
        m_controller.checkServer();
    });
    connect(m_channel, &CommandChannel::waitingChanged, this, &RunControl::changed);
    connect(&controller, &ServerController::aboutToStop, this, [this] { m_channel->drop(); });
    connect(&controller, &ServerController::stateChanged, this, &RunControl::changed);
    connect(&poller, &StatusPoller::runStatusChanged, this, &RunControl::changed);
}

RunControl::~RunControl()
{
    blockSignals(true); // the channel ends with it
}

QString RunControl::commonRefusal() const
{
    if (m_controller.state() != ServerState::Up)
        return tr("Needs a connected server");
    return m_channel->waiting().isEmpty() ? QString() : tr("Wait until the server has answered");
}

QString RunControl::startRefusal() const
{
    if (QString reason = commonRefusal(); !reason.isEmpty())
        return reason;
    return m_controller.status() == Tarnis::RUNNING ? tr("A run is under way already") : QString();
}

QString RunControl::stopRefusal() const
{
    if (QString reason = commonRefusal(); !reason.isEmpty())
        return reason;
    const bool isStopped = m_poller.runStatus().isRunning == false && m_controller.status() != Tarnis::RUNNING;
    return isStopped ? tr("No run is under way") : QString();
}

QString RunControl::clearRefusal() const
{
    if (QString reason = commonRefusal(); !reason.isEmpty())
        return reason;
    const RunStatus& run = m_poller.runStatus();
    const bool isEmpty = run.events == 0 && m_controller.status() != Tarnis::RUNNING;
    return isEmpty ? tr("There are no events to clear") : QString();
}

void RunControl::start()
{
    if (!startRefusal().isEmpty())
        return;
    if (!m_poller.unsavedData().wouldBeLost()) {
        send(QStringLiteral("start"));
        return;
    }
    const QString events = QStringLiteral("%L1").arg(m_poller.runStatus().events.value_or(0));
    sendIfAgreed(QStringLiteral("start"),
        tr("A new run discards the %1 events on the server. They were not saved.").arg(events),
        tr("&Start Without Saving"));
}

void RunControl::stop()
{
    if (stopRefusal().isEmpty())
        send(QStringLiteral("stop"));
}

void RunControl::clear()
{
    if (!clearRefusal().isEmpty())
        return;
    const std::optional<qint64> events = m_poller.runStatus().events;
    if (events && !m_poller.unsavedData().wouldBeLost()) {
        send(QStringLiteral("clear"));
        return;
    }
    const QString question = events
        ? tr("Clear discards the %1 events on the server. They were not saved.").arg(QLocale().toString(*events))
        : tr("Clear discards the data on the server. The server does not report whether there are any.");
    sendIfAgreed(QStringLiteral("clear"), question, tr("&Clear"));
}

void RunControl::sendIfAgreed(const QString& command, const QString& question, const QString& action)
{
    if (m_question)
        return; // asked already
    auto* const box =
        new QMessageBox(QMessageBox::Warning, m_window.windowTitle(), question, QMessageBox::Cancel, &m_window);
    const QAbstractButton* const agree = box->addButton(action, QMessageBox::AcceptRole);
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(QMessageBox::Cancel);
    box->setEscapeButton(QMessageBox::Cancel);
    box->setObjectName(QStringLiteral("discardBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [this, box, agree, command] {
        // The server may be lost by the time of the answer.
        if (box->clickedButton() == agree && commonRefusal().isEmpty())
            send(command);
    });
    m_question = box;
    box->open();
}

void RunControl::send(const QString& command)
{
    m_channel->send(new TarnisCmd(command)); // the channel takes ownership
}

void RunControl::onReplied(const QString& command, const QByteArray& reply)
{
    const QString text = QString::fromUtf8(reply);
    Q_EMIT answered(command, reply);
    if (replyKind(text) == ReplyKind::Refused)
        Q_EMIT statusMessage(alertOf(Alert::Severity::Warning, [command, answer = text.trimmed()] {
            return tr("The server refused \u201c%1\u201d: %2").arg(command, answer);
        }));
    // Delayed, because a poll under way was requested before the command.
    delay_call([this] { m_poller.request(); }, settleMs, this);
}

} // namespace console
