#include "browse/chooserguide.h"

#include "app/controlhelp.h"

#include <tarnis/foundation/messagelabel.h>
#include <tarnis/foundation/retranslator.h>

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>

#include <utility>

namespace console {

ChooserGuide::ChooserGuide(QDialog& chooser, std::function<Choice()> choice)
    : m_chooser(chooser)
    , m_choice(std::move(choice))
    , m_label(new tarnis::MessageLabel(&chooser))
    , m_list(chooser.findChild<QListWidget*>(QStringLiteral("curDirListWidget")))
{
    auto* const buttons = chooser.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_label->setObjectName(QStringLiteral("stateLabel"));
    if (auto* const grid = qobject_cast<QGridLayout*>(chooser.layout())) {
        grid->removeWidget(buttons);
        grid->addWidget(m_label, 3, 0);
        grid->addWidget(buttons, 4, 0);
    }
    m_ok->installEventFilter(this);
    m_list->installEventFilter(this);
    tarnis::onLanguageChange(chooser, [this] { update(); });
    connect(m_list, &QListWidget::itemSelectionChanged, this, &ChooserGuide::update);
    connect(chooser.findChild<QComboBox*>(QStringLiteral("dirComboBox")), &QComboBox::currentIndexChanged, this,
        &ChooserGuide::update);
    connect(chooser.findChild<QLineEdit*>(QStringLiteral("fileNameLineEdit")), &QLineEdit::textChanged, this,
        &ChooserGuide::update);
    update();
}

void ChooserGuide::onReply(const PTarnisCmd& command, const QByteArray& reply)
{
    const bool isAccepted = reply.startsWith("OK:");
    const bool isListing = command->getCmdString().startsWith(u"ls-F");
    if (isListing) {
        m_isListed = isAccepted;
        // Removes the empty entry after the last line feed, which would match any name.
        for (QListWidgetItem* const item : m_list->findItems(QString(), Qt::MatchExactly))
            delete item;
    }
    if (!isAccepted) {
        m_refusal = QString::fromUtf8(reply).trimmed();
        m_isRefusalFresh = true;
    } else if (isListing && !std::exchange(m_isRefusalFresh, false)) {
        m_refusal.clear();
    }
    if (m_list->isEnabled())
        m_isRefusalFresh = false; // the chooser sends no further request itself
    update();
}

void ChooserGuide::setLost(bool isLost)
{
    m_isLost = isLost;
    if (isLost) {
        for (QMessageBox* const question : m_chooser.findChildren<QMessageBox*>())
            question->reject();
        m_list->setEnabled(false); // as while a folder is being listed
        m_chooser.findChild<QComboBox*>(QStringLiteral("dirComboBox"))->setEnabled(false);
    }
    update();
}

QString ChooserGuide::problem(const Choice& choice) const
{
    if (m_isLost)
        return tr("There is no connection to the server. This window resumes when it is back.");
    if (!m_list->isEnabled())
        return tr("Listing...");
    return m_isListed || !m_refusal.isEmpty() ? choice.problem : tr("The server lists no folder");
}

void ChooserGuide::update()
{
    if (m_isUpdating)
        return;
    const QScopedValueRollback guard(m_isUpdating, true);
    const Choice choice = m_choice();
    const QString refusal = tr("The server does not list the folder: %1").arg(m_refusal);
    QString why = problem(choice);
    if (why.isEmpty() && !m_isListed)
        why = refusal;
    QString text = why.isEmpty() ? tr("OK selects %1").arg(choice.path) : why;
    if (!m_refusal.isEmpty() && !m_isLost && text != refusal)
        text.prepend(refusal + u'\n');
    m_label->setAccessibleName(tr("State of the choice"));
    m_label->setText(text);
    setEnabledWithHelp(m_ok, why.isEmpty(), QString(), why);
}

bool ChooserGuide::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::EnabledChange)
        update();
    return QObject::eventFilter(watched, event);
}

} // namespace console
