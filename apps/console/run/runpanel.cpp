#include "run/runpanel.h"

#include "app/controlhelp.h"
#include "app/flowlayout.h"
#include "run/runcontrol.h"
#include "server/servercontroller.h"
#include "server/statuspoller.h"

#include <tarnis/foundation/retranslator.h>

#include <QAction>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QToolButton>

#include <algorithm>

namespace console {

namespace {

/// Hidden without a text. It never shrinks, so that the following fields do not move while digits change.
void showField(QLabel& label, const QString& text)
{
    label.setText(text);
    label.setVisible(!text.isEmpty());
    const bool hasDigits = std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
    label.setMinimumWidth(hasDigits ? std::max(label.minimumWidth(), label.sizeHint().width()) : 0);
}

} // namespace

RunPanel::RunPanel(ServerController& controller, StatusPoller& poller, QWidget* parent)
    : QWidget(parent)
    , m_controller(controller)
    , m_poller(poller)
    , m_control(new RunControl(controller, poller, *parent->window()))
    , m_startAction(new QAction(this))
    , m_stopAction(new QAction(this))
    , m_clearAction(new QAction(this))
{
    tarnis::onLanguageChange(*this, [this] { setTexts(); });
    setLayout(new FlowLayout);
    m_startAction->setObjectName(QStringLiteral("startRunAction"));
    m_startAction->setShortcut(QKeySequence(Qt::Key_F9));
    m_stopAction->setObjectName(QStringLiteral("stopRunAction"));
    m_stopAction->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F9));
    m_clearAction->setObjectName(QStringLiteral("clearRunAction"));
    addButton(m_startAction);
    addButton(m_stopAction);
    addButton(m_clearAction);
    m_runLabel = addField("runLabel");
    QFont font = m_runLabel->font();
    font.setBold(true);
    m_runLabel->setFont(font);
    m_stateLabel = addField("runStateLabel");
    m_realTimeLabel = addField("realTimeLabel");
    m_liveTimeLabel = addField("liveTimeLabel");
    m_eventsLabel = addField("eventsLabel");
    m_rateLabel = addField("rateLabel");

    connect(m_startAction, &QAction::triggered, m_control, &RunControl::start);
    connect(m_stopAction, &QAction::triggered, m_control, &RunControl::stop);
    connect(m_clearAction, &QAction::triggered, m_control, &RunControl::clear);
    connect(m_control, &RunControl::changed, this, &RunPanel::updateControls);
    setTexts();
}

void RunPanel::addButton(QAction* action)
{
    auto* const button = new QToolButton(this);
    button->setObjectName(action->objectName().replace(QLatin1String("Action"), QLatin1String("Button")));
    button->setFocusPolicy(Qt::StrongFocus);
    button->setDefaultAction(action);
    layout()->addWidget(button);
}

QLabel* RunPanel::addField(const char* name)
{
    auto* const label = new QLabel(this);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    layout()->addWidget(label);
    return label;
}

void RunPanel::setTexts()
{
    m_startAction->setText(tr("Start &Run"));
    m_stopAction->setText(tr("St&op Run"));
    m_clearAction->setText(tr("&Clear"));
    m_runLabel->setToolTip(tr("Number of the current or last run"));
    m_stateLabel->setToolTip(tr("Whether the server is acquiring data"));
    m_realTimeLabel->setToolTip(tr("Time since the run began or was cleared"));
    m_liveTimeLabel->setToolTip(tr("Time in which the detectors could count"));
    m_eventsLabel->setToolTip(tr("Events since the run began or was cleared"));
    m_rateLabel->setToolTip(tr("Current number of events per second"));
    for (QLabel* const label : findChildren<QLabel*>())
        label->setMinimumWidth(0);
    updateControls();
}

void RunPanel::updateControls()
{
    const auto set = [](QAction* action, const QString& help, const QString& refusal) {
        setEnabledWithHelp(action, refusal.isEmpty(), help, refusal);
    };
    set(m_startAction, tr("Begin the next run (the command start)"), m_control->startRefusal());
    set(m_stopAction, tr("End the run (the command stop)"), m_control->stopRefusal());
    set(m_clearAction, tr("Set histograms, counts and times to zero (the command clear)"), m_control->clearRefusal());
    showRun();
}

void RunPanel::showRun()
{
    const RunStatus& run = m_poller.runStatus();
    const QLocale locale;
    const bool isUp = m_controller.state() == ServerState::Up;
    const auto text = [&](const auto& value, const auto& show) { return isUp && value ? show(*value) : QString(); };
    showField(*m_runLabel, isUp && !run.run && run.isRunning ? tr("No run yet") : text(run.run, [](qint64 number) {
        return tr("Run %1").arg(number);
    }));
    showField(
        *m_stateLabel, text(run.isRunning, [](bool isRunning) { return isRunning ? tr("running") : tr("stopped"); }));
    showField(
        *m_realTimeLabel, text(run.realTime, [](double time) { return tr("Elapsed %1").arg(durationText(time)); }));
    showField(*m_liveTimeLabel, text(run.liveTime, [](double time) { return tr("Live %1").arg(durationText(time)); }));
    showField(
        *m_eventsLabel, text(run.events, [&](qint64 events) { return tr("Events %1").arg(locale.toString(events)); }));
    showField(*m_rateLabel, text(run.rate, [](double rate) { return tr("Rate %1 /s").arg(rateText(rate)); }));
}

void RunPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        setTexts();
}

} // namespace console
