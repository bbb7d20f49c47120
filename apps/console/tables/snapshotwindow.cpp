#include "tables/snapshotwindow.h"

#include "app/controlhelp.h"
#include "server/commandchannel.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "server/statuspoller.h"
#include "tables/tabledialog.h"
#include <tarnis/foundation/retranslator.h>

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

#include <utility>

namespace console {

SnapshotWindow::SnapshotWindow(
    ServerController& controller, StatusPoller& poller, const Source& source, QWidget* parent)
    : NameValueListDialog(QList<NameValues>(), headers(), parent)
    , m_controller(controller)
    , m_poller(poller)
    , m_source(source)
    , m_channel(new CommandChannel(controller, QStringLiteral("snapshot"), this))
    , m_filterLabel(new QLabel(this))
    , m_filterEdit(new QLineEdit(this))
    , m_stateLabel(stateLabelOf(*this))
    , m_refreshButton(mainButtonOf(*this))
{
    tarnis::onLanguageChange(*this, [this] { setTexts(); });
    setUp();
    setTexts();
    addKey(m_refreshButton, Qt::Key_F5);
    connect(m_refreshButton, &QPushButton::clicked, this, &SnapshotWindow::refresh);
    connect(m_filterEdit, &QLineEdit::textChanged, this, &SnapshotWindow::fill);
    connect(m_channel, &CommandChannel::replied, this, &SnapshotWindow::onReplied);
    connect(m_channel, &CommandChannel::waitingChanged, this, &SnapshotWindow::updateControls);
    connect(m_channel, &CommandChannel::failed, this, [this](const QString& message) {
        stopWaiting([message] { return tr("No reply: %1. Refresh to ask again.").arg(message); });
        m_controller.checkServer();
    });
    connect(&controller, &ServerController::aboutToStop, this, [this] {
        if (isAsking())
            stopWaiting([] { return tr("No reply: the server was stopped."); });
        m_channel->drop();
    });
    bindPoller();
    connect(&controller, &ServerController::stateChanged, this, &SnapshotWindow::updateControls);
    refresh();
}

void SnapshotWindow::bindPoller()
{
    connect(&m_poller, &StatusPoller::replied, this, [this](const QByteArray& reply) {
        if (!std::exchange(m_isPollAwaited, false))
            return;
        onReplied(PTarnisCmd(m_source.make()), reply);
        updateControls();
    });
    connect(&m_poller, &StatusPoller::failed, this, [this](const QString& message) {
        if (m_isPollAwaited)
            stopWaiting([message] { return tr("No reply: %1. Refresh to ask again.").arg(message); });
    });
}

void SnapshotWindow::stopWaiting(const tarnis::TranslatedText& translated)
{
    m_isPollAwaited = false;
    tarnis::setTranslatedText(*m_stateLabel, translated);
    updateControls();
}

bool SnapshotWindow::isAsking() const
{
    return m_isPollAwaited || !m_channel->waiting().isEmpty();
}

void SnapshotWindow::setUp()
{
    m_filterLabel->setObjectName(QStringLiteral("filterLabel"));
    m_filterLabel->setBuddy(m_filterEdit);
    m_filterEdit->setObjectName(QStringLiteral("filterEdit"));
    m_filterEdit->setClearButtonEnabled(true);
    m_refreshButton->setObjectName(QStringLiteral("refreshButton"));
    auto* const row = new QHBoxLayout;
    row->addWidget(m_filterLabel);
    row->addWidget(m_filterEdit);
    putOnTop(*this, *row);
    layTable(*table());
    setTabOrder(m_filterEdit, table());
    resize(600, 480);
    m_filterEdit->setFocus();
}

void SnapshotWindow::setTexts()
{
    m_filterLabel->setText(tr("Sho&w:"));
    m_filterEdit->setAccessibleName(tr("Part of the names to show"));
    m_filterEdit->setPlaceholderText(tr("part of a name; empty for all"));
    table()->setAccessibleName(tr("Values of the snapshot"));
    m_stateLabel->setAccessibleName(tr("State of the snapshot"));
    m_refreshButton->setText(tr("&Refresh"));
    table()->setHorizontalHeaderLabels(headers());
    updateControls();
}

QStringList SnapshotWindow::headers()
{
    return { tr("Name"), tr("Value"), tr("Before"), tr("Change") };
}

void SnapshotWindow::refresh()
{
    if (m_controller.state() != ServerState::Up || isAsking())
        return;
    tarnis::setTranslatedText(*m_stateLabel, [] { return tr("Asking the server..."); });
    if (m_source.isPolled) {
        m_isPollAwaited = true;
        m_poller.request();
        updateControls();
    } else {
        m_channel->send(m_source.make());
    }
}

void SnapshotWindow::onReplied(const PTarnisCmd& command, const QByteArray& reply)
{
    const QString text = QString::fromUtf8(reply);
    if (replyKind(text) == ReplyKind::Refused) {
        tarnis::setTranslatedText(*m_stateLabel, [answer = text.trimmed()] { return answer; });
        return;
    }
    m_record.take(m_source.read(*command, reply));
    m_time = QTime::currentTime();
    fill();
}

void SnapshotWindow::fill()
{
    const QString part = m_filterEdit->text().trimmed();
    QList<NameValues> shown = m_record.rows();
    shown.removeIf([&](const NameValues& row) { return !row.name.contains(part, Qt::CaseInsensitive); });
    updateList(shown, nullptr);
    if (!m_time.isValid())
        return;
    if (!std::exchange(m_areNamesFitted, true))
        fitNames(*table());
    tarnis::setTranslatedText(*m_stateLabel, [this, isPart = !part.isEmpty(), rows = shown.size()] {
        const int all = int(m_record.count());
        const QString count =
            isPart ? tr("%L1 of %Ln value(s)", nullptr, all).arg(rows) : tr("%Ln value(s)", nullptr, all);
        const int changes = int(m_record.changes());
        const QString time = m_time.toString(u"HH:mm:ss");
        return changes == 0
            ? tr("%1, as of %2").arg(count, time)
            : tr("%1, %Ln of them changed since the previous snapshot, as of %2", nullptr, changes).arg(count, time);
    });
}

void SnapshotWindow::resizeEvent(QResizeEvent* event)
{
    NameValueListDialog::resizeEvent(event);
    if (m_areNamesFitted)
        fitNames(*table());
}

void SnapshotWindow::updateControls()
{
    const bool isUp = m_controller.state() == ServerState::Up;
    setEnabledWithHelp(m_refreshButton, isUp && !isAsking(), withKey(tr("Ask the server again"), Qt::Key_F5),
        isUp ? tr("Wait for the reply") : tr("Needs a connected server. Showing the previous values."));
}

} // namespace console
