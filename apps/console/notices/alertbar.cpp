#include "notices/alertbar.h"

#include "app/availability.h"
#include "app/colours.h"
#include "ui_alertbar.h"

#include <QAccessible>
#include <QEvent>
#include <QStyle>

namespace console {

namespace {

QString remedyText(Remedy remedy)
{
    switch (remedy) {
    case Remedy::StartAgain:
        return NoticeBar::tr("Start Again");
    case Remedy::ConnectAgain:
        return NoticeBar::tr("Connect Again");
    case Remedy::ChooseServer:
        return NoticeBar::tr("Choose a Server...");
    case Remedy::Stop:
        return NoticeBar::tr("Stop Waiting");
    case Remedy::EndByForce:
        return NoticeBar::tr("End by Force");
    case Remedy::SendAgain:
        return NoticeBar::tr("Send Again");
    case Remedy::None:
        break;
    }
    return {};
}

Words wordsOf(const Notice& notice)
{
    return notice.words ? notice.words : Words([text = notice.text] { return text; });
}

QStyle::StandardPixmap severityIcon(Notice::Severity severity)
{
    switch (severity) {
    case Notice::Severity::Failure:
        return QStyle::SP_MessageBoxCritical;
    case Notice::Severity::Warning:
        return QStyle::SP_MessageBoxWarning;
    case Notice::Severity::Information:
        break;
    }
    return QStyle::SP_MessageBoxInformation;
}

} // namespace

QColor noticeGround(const QPalette& palette, Notice::Severity severity)
{
    switch (severity) {
    case Notice::Severity::Failure:
        return tintedWindow(palette, QColor(0xd93025), 0.22);
    case Notice::Severity::Warning:
        return tintedWindow(palette, QColor(0xf9ab00), 0.25);
    case Notice::Severity::Information:
        break;
    }
    return tintedWindow(palette, QColor(0x1a73e8), 0.15);
}

NoticeBar::NoticeBar(QWidget* parent)
    : QFrame(parent)
    , ui(std::make_unique<Ui::NoticeBar>())
{
    ui->setupUi(this);
    connect(ui->remedyButton, &QPushButton::clicked, this, [this] { Q_EMIT remedyPressed(m_notice.remedy); });
    connect(ui->dismissButton, &QToolButton::clicked, this, [this] { dismiss(); });
    ui->remedyButton->hide();
    ui->noteLabel->hide();
    hide();
}

NoticeBar::~NoticeBar() = default;

QString NoticeBar::note() const
{
    return ui->noteLabel->isHidden() ? QString() : ui->noteLabel->text();
}

void NoticeBar::setNotice(const Notice& notice)
{
    m_isPassing = false;
    showNote({});
    show(notice);
}

void NoticeBar::setPassingNotice(const Notice& notice)
{
    const bool isStanding = !m_notice.text.isEmpty()
        && ((!m_isPassing && m_notice.severity == Notice::Severity::Failure)
            || (m_notice.remedy != Remedy::None && notice.remedy == Remedy::None));
    if (isStanding) {
        showNote(notice);
        return;
    }
    if (notice.text.isEmpty() && !m_isPassing)
        return;
    m_isPassing = true;
    showNote({}); // it is older
    show(notice);
}

/// What came last goes first.
void NoticeBar::dismiss()
{
    if (note().isEmpty())
        setNotice({});
    else
        showNote({});
}

void NoticeBar::showNote(const Notice& notice)
{
    say(*ui->noteLabel, wordsOf(notice));
    ui->noteLabel->setVisible(!notice.text.isEmpty());
    if (!notice.text.isEmpty())
        announce(*ui->noteLabel);
}

void NoticeBar::announce(QWidget& label)
{
    QAccessibleEvent alert(&label, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void NoticeBar::show(const Notice& notice)
{
    m_notice = notice;
    // A button that hides would hand the keyboard on to any other control.
    QWidget* const focused = window()->focusWidget();
    const bool isHiding = notice.text.isEmpty() || (focused == ui->remedyButton && notice.remedy == Remedy::None);
    if (focused && isAncestorOf(focused) && isHiding)
        focused->clearFocus();
    if (notice.text.isEmpty()) {
        hide();
        return;
    }
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize) + 6;
    ui->iconLabel->setPixmap(style()->standardIcon(severityIcon(notice.severity)).pixmap(size, size));
    say(*ui->textLabel, wordsOf(notice));
    setRemedyText();
    ui->remedyButton->setVisible(notice.remedy != Remedy::None);
    applyColours();
    setVisible(true);
    announce(*ui->textLabel);
}

void NoticeBar::setRemedyText()
{
    if (m_notice.remedy == Remedy::None)
        return; // the button is hidden
    ui->remedyButton->setText(withKey(remedyText(m_notice.remedy), Qt::Key_F8));
    ui->remedyButton->setShortcut(Qt::Key_F8); // a new text takes it away
}

void NoticeBar::applyColours()
{
    QPalette ground;
    ground.setColor(QPalette::Window, noticeGround(ground, m_notice.severity));
    setPalette(ground);
}

void NoticeBar::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    // Of a change of the application's palette a part of a window hears this way; its own colours do not change twice.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange
        || event->type() == QEvent::StyleChange)
        applyColours();
    if (event->type() == QEvent::LanguageChange) {
        ui->retranslateUi(this);
        m_notice.text = wordsOf(m_notice)();
        setRemedyText();
    }
}

} // namespace console
