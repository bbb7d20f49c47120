#include "notices/alertbar.h"

#include "app/colours.h"
#include "app/controlhelp.h"
#include "ui_alertbar.h"

#include <tarnis/foundation/retranslator.h>

#include <QAccessible>
#include <QEvent>
#include <QStyle>

namespace console {

namespace {

QString actionText(AlertAction action)
{
    switch (action) {
    case AlertAction::StartAgain:
        return AlertBar::tr("Start Again");
    case AlertAction::ConnectAgain:
        return AlertBar::tr("Connect Again");
    case AlertAction::ChooseServer:
        return AlertBar::tr("Choose a Server...");
    case AlertAction::Stop:
        return AlertBar::tr("Stop Waiting");
    case AlertAction::EndByForce:
        return AlertBar::tr("End by Force");
    case AlertAction::SendAgain:
        return AlertBar::tr("Send Again");
    case AlertAction::None:
        break;
    }
    return {};
}

tarnis::TranslatedText textOf(const Alert& alert)
{
    return alert.translated ? alert.translated : tarnis::TranslatedText([text = alert.text] { return text; });
}

QStyle::StandardPixmap severityIcon(Alert::Severity severity)
{
    switch (severity) {
    case Alert::Severity::Failure:
        return QStyle::SP_MessageBoxCritical;
    case Alert::Severity::Warning:
        return QStyle::SP_MessageBoxWarning;
    case Alert::Severity::Information:
        break;
    }
    return QStyle::SP_MessageBoxInformation;
}

} // namespace

QColor alertBackground(const QPalette& palette, Alert::Severity severity)
{
    switch (severity) {
    case Alert::Severity::Failure:
        return tintedWindow(palette, QColor(0xd93025), 0.22);
    case Alert::Severity::Warning:
        return tintedWindow(palette, QColor(0xf9ab00), 0.25);
    case Alert::Severity::Information:
        break;
    }
    return tintedWindow(palette, QColor(0x1a73e8), 0.15);
}

AlertBar::AlertBar(QWidget* parent)
    : QFrame(parent)
    , ui(std::make_unique<Ui::AlertBar>())
{
    tarnis::onLanguageChange(*this, [this] {
        ui->retranslateUi(this);
        m_alert.text = textOf(m_alert)();
        setActionText();
    });
    ui->setupUi(this);
    connect(ui->alertButton, &QPushButton::clicked, this, [this] { Q_EMIT actionTriggered(m_alert.action); });
    connect(ui->dismissButton, &QToolButton::clicked, this, [this] { dismiss(); });
    ui->alertButton->hide();
    ui->messageLabel->hide();
    hide();
}

AlertBar::~AlertBar() = default;

QString AlertBar::note() const
{
    return ui->messageLabel->isHidden() ? QString() : ui->messageLabel->text();
}

void AlertBar::setAlert(const Alert& alert)
{
    m_isPassing = false;
    showMessage({});
    show(alert);
}

void AlertBar::setStatusMessage(const Alert& alert)
{
    const bool isStanding = !m_alert.text.isEmpty()
        && ((!m_isPassing && m_alert.severity == Alert::Severity::Failure)
            || (m_alert.action != AlertAction::None && alert.action == AlertAction::None));
    if (isStanding) {
        showMessage(alert);
        return;
    }
    if (alert.text.isEmpty() && !m_isPassing)
        return;
    m_isPassing = true;
    showMessage({}); // it is older
    show(alert);
}

/// Dismisses the last alert first.
void AlertBar::dismiss()
{
    if (note().isEmpty())
        setAlert({});
    else
        showMessage({});
}

void AlertBar::showMessage(const Alert& alert)
{
    tarnis::setTranslatedText(*ui->messageLabel, textOf(alert));
    ui->messageLabel->setVisible(!alert.text.isEmpty());
    if (!alert.text.isEmpty())
        announce(*ui->messageLabel);
}

void AlertBar::announce(QWidget& label)
{
    QAccessibleEvent alert(&label, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void AlertBar::show(const Alert& alert)
{
    m_alert = alert;
    // A button that is hidden would pass the focus to an arbitrary control.
    QWidget* const focused = window()->focusWidget();
    const bool isHiding = alert.text.isEmpty() || (focused == ui->alertButton && alert.action == AlertAction::None);
    if (focused && isAncestorOf(focused) && isHiding)
        focused->clearFocus();
    if (alert.text.isEmpty()) {
        hide();
        return;
    }
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize) + 6;
    ui->iconLabel->setPixmap(style()->standardIcon(severityIcon(alert.severity)).pixmap(size, size));
    tarnis::setTranslatedText(*ui->textLabel, textOf(alert));
    setActionText();
    ui->alertButton->setVisible(alert.action != AlertAction::None);
    applyColours();
    setVisible(true);
    announce(*ui->textLabel);
}

void AlertBar::setActionText()
{
    if (m_alert.action == AlertAction::None)
        return; // the button is hidden
    ui->alertButton->setText(withKey(actionText(m_alert.action), Qt::Key_F8));
    ui->alertButton->setShortcut(Qt::Key_F8); // a new text removes the shortcut
}

void AlertBar::applyColours()
{
    QPalette ground;
    ground.setColor(QPalette::Window, alertBackground(ground, m_alert.severity));
    setPalette(ground);
}

void AlertBar::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    // A child widget is notified of a change of the application's palette by these events. The comparison prevents
    // recursion.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange
        || event->type() == QEvent::StyleChange)
        applyColours();
}

} // namespace console
