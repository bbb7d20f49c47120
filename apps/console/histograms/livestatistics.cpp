// The table of statistics of livewindows.h.
#include "histograms/livewindows.h"

#include "app/controlhelp.h"
#include "server/servercontroller.h"
#include "windows/window.h"

#include <tarnis/foundation/messagelabel.h>
#include <tarnis/foundation/retranslator.h>
#include <tarnis/server/tarnissession.h>

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>

namespace console {

LiveStatistics::LiveStatistics(const WindowContext& context, const QString& title)
    : StatDialog(context.controller.tarnis().NewTarnisSession(nullptr), title, QString(), context.parent)
    , m_controller(context.controller)
    , m_recovery(context.controller, session)
    , m_infoLabel(new tarnis::MessageLabel(this))
    , m_age(*this, [this] { return session != nullptr; })
{
    tarnis::onLanguageChange(*this, [this] {
        setTexts();
        m_infoLabel->setText(m_recovery.text());
    });
    m_infoLabel->setObjectName(QStringLiteral("infoLabel"));
    m_infoLabel->hide();
    if (auto* const box = qobject_cast<QBoxLayout*>(layout())) { // above the buttons
        box->insertWidget(box->count() - 1, m_age.label());
        box->insertWidget(box->count() - 1, m_infoLabel);
    }
    // The columns fill the table, without row numbers.
    table()->verticalHeader()->hide();
    updateSaveButton();
    m_sinceResult.start();
    connect(&m_recovery, &SessionRecovery::lost, this, &LiveStatistics::onLost);
    connect(&m_recovery, &SessionRecovery::wanted, this, &LiveStatistics::resume);
}

void LiveStatistics::result(PTarnisCmd command, QByteArray const& payload)
{
    if (!session)
        return; // still queued when the session ended
    m_infoLabel->hide();
    m_age.arrived();
    m_controller.readState(payload, m_sinceResult.restart());
    StatDialog::result(command, payload);
    updateSaveButton();
}

void LiveStatistics::updateSaveButton()
{
    if (const auto* const buttons = findChild<QDialogButtonBox*>())
        setEnabledWithHelp(
            buttons->button(QDialogButtonBox::Save), table()->rowCount() > 0, tr("Save to a file"), tr("No data yet"));
}

void LiveStatistics::error(int /*code*/, QString const& text)
{
    m_recovery.fail(sender(), text);
}

void LiveStatistics::setTexts()
{
    table()->setHorizontalHeaderLabels({ tr("Name"), tr("Value") });
    updateSaveButton();
}

void LiveStatistics::onLost()
{
    m_infoLabel->setText(m_recovery.text());
    m_infoLabel->show();
}

void LiveStatistics::resume()
{
    TarnisSession& fresh = *m_recovery.renew();
    connect(&fresh, &TarnisSession::result, this, &LiveStatistics::result);
    connect(&fresh, &TarnisSession::error, this, &LiveStatistics::error);
    fresh.start(QThread::InheritPriority);
    sendCommand();
}

} // namespace console
