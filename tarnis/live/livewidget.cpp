#include "tarnis/live/livewidget.h"

#include "tarnis/client/timerlimit_p.h"
#include "tarnis/foundation/messagelabel.h"
#include "tarnis/foundation/shorttext_p.h"
#include "tarnis/plots/plotlayoutitem.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/plotcrosshair.h"
#include "tarnis/tools/plotnavigator.h"
#include "tarnis/tools/plottoolbar.h"

#include <QDateTime>
#include <QEvent>
#include <QLocale>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

namespace tarnis {

using std::chrono::milliseconds;

namespace {

constexpr qsizetype maxReasonChars = 1000;
constexpr int maxReasonLines = 5;

} // namespace

class TARNIS_NO_EXPORT LiveWidget::Private {
public:
    Private(LiveWidget& widget, XYGraphWidget* graph);
    void restart();
    void follow();
    void startAge(milliseconds age);
    void unfollow();
    void onUpdated(const HistogramReply& histogram);
    void setFailure(const QString& why);
    void renewStatus();
    State state() const;
    QString text() const;
    QString ageText() const;

    LiveWidget& q;
    XYGraphWidget* plot;
    MessageLabel* status;
    QPointer<PlotNavigator> navigator;
    QPointer<PlotCrosshair> crosshair;
    QPointer<PlotToolBar> toolBar;
    QPointer<QWidget> window; ///< the window whose events are filtered

    QPointer<Client> client;
    QString command;
    std::optional<HistogramFormat> format;
    PollOptions options;
    bool isPaused = false;
    std::shared_ptr<HistogramPoller> poller;
    QTimer staleTimer;

    HistogramReply last;
    QDateTime lastTime; ///< invalid without data on the plot
    bool isFresh = false; ///< data have arrived since polling started
    bool isStale = false;
    QString failure; ///< failure of the last poll
    std::pair<State, QString> reported { State::Idle, {} };
};

LiveWidget::Private::Private(LiveWidget& widget, XYGraphWidget* graph)
    : q(widget)
    , plot(graph)
    , status(new MessageLabel(&widget))
{
    plot->setParent(&q);
    plot->m_doubleBuffered = true;
    auto* const layout = new QVBoxLayout(&q);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addItem(new PlotLayoutItem(plot));
    layout->setStretch(0, 1);
    layout->addWidget(status);
    staleTimer.setSingleShot(true);
    connect(&staleTimer, &QTimer::timeout, &q, [this] {
        isStale = true;
        renewStatus();
    });
}

void LiveWidget::Private::restart()
{
    const QPointer<LiveWidget> guard(&q);
    unfollow();
    if (q.isVisible())
        follow();
    if (guard)
        renewStatus();
}

void LiveWidget::Private::follow()
{
    if (poller || isPaused || !client || command.isEmpty())
        return;
    poller = HistogramPoller::shared(*client, command, q.format(), options);
    connect(poller.get(), &HistogramPoller::updated, &q, [this](const HistogramReply& histogram) {
        startAge(milliseconds(0));
        onUpdated(histogram);
    });
    connect(poller.get(), &HistogramPoller::failed, &q, [this](const QString& reason) { setFailure(reason); });
    // The age counts for this widget alone: the poller has the options of its first viewer.
    startAge(milliseconds(0));
    // The poller may already have data from another widget.
    if (const HistogramReply shared = poller->last(); !shared.rows.isEmpty()) {
        startAge(poller->age());
        onUpdated(shared);
    }
}

/// Data of this age become stale when they are older than allowed.
void LiveWidget::Private::startAge(milliseconds age)
{
    if (options.staleAfter > milliseconds(0))
        staleTimer.start(std::max(options.staleAfter - age, milliseconds(0)));
}

void LiveWidget::Private::unfollow()
{
    if (poller)
        poller->disconnect(&q);
    poller.reset();
    staleTimer.stop();
    isFresh = false;
    isStale = false;
    failure.clear();
}

void LiveWidget::Private::setFailure(const QString& why)
{
    failure = shortText(why, maxReasonChars, maxReasonLines); // which may be the server's, of any size
    renewStatus();
}

void LiveWidget::Private::onUpdated(const HistogramReply& histogram)
{
    if (const QString why = q.unsuitability(histogram); !why.isEmpty()) {
        setFailure(why);
        return;
    }
    last = histogram;
    lastTime = QDateTime::currentDateTime().addMSecs(-poller->age().count());
    isFresh = true;
    isStale = options.staleAfter > milliseconds(0) && poller->age() > options.staleAfter;
    failure.clear();
    q.showData(histogram);
    plot->refreshPixmap();
    const QPointer<LiveWidget> guard(&q);
    renewStatus();
    if (guard)
        Q_EMIT q.updated(histogram);
}

LiveWidget::State LiveWidget::Private::state() const
{
    if (!client || command.isEmpty())
        return State::Idle;
    if (isPaused)
        return State::Paused;
    if (!failure.isEmpty())
        return State::Failed;
    if (isStale)
        return State::Stale;
    return isFresh ? State::Current : State::Waiting;
}

QString LiveWidget::Private::ageText() const
{
    return lastTime.isValid() ? LiveWidget::tr("The plot shows the data of %1.")
                                    .arg(QLocale().toString(lastTime.time(), QStringLiteral("HH:mm:ss")))
                              : LiveWidget::tr("There are no data yet.");
}

QString LiveWidget::Private::text() const
{
    QStringList sentences;
    switch (state()) {
    case State::Idle:
        sentences << (command.isEmpty() ? LiveWidget::tr("No histogram is chosen.")
                                        : LiveWidget::tr("There is no connection to a server."));
        break;
    case State::Paused:
        sentences << LiveWidget::tr("Paused.");
        break;
    case State::Failed:
        sentences << LiveWidget::tr("No new data: %1").arg(failure);
        if (!failure.endsWith(u'.'))
            sentences.last() += u'.';
        break;
    case State::Stale:
        sentences << LiveWidget::tr("No new data: the server is late.");
        break;
    case State::Waiting:
        sentences << LiveWidget::tr("Waiting for data.");
        break;
    case State::Current:
        break;
    }
    sentences << ageText();
    if (lastTime.isValid() && last.nonFinite > 0)
        sentences << LiveWidget::tr("Values that are not finite: %1.").arg(QLocale().toString(last.nonFinite));
    return sentences.join(u' ');
}

void LiveWidget::Private::renewStatus()
{
    const std::pair<State, QString> present { state(), text() };
    if (present == reported)
        return;
    reported = present;
    status->setText(present.second);
    Q_EMIT q.statusChanged(present.first, present.second);
}

LiveWidget::LiveWidget(XYGraphWidget* plot, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this, plot))
{
    setTools(true);
    d->renewStatus();
}

LiveWidget::~LiveWidget()
{
    d->unfollow();
}

void LiveWidget::setClient(Client* client)
{
    if (client == d->client)
        return;
    if (d->client)
        d->client->disconnect(this);
    d->client = client;
    if (client != nullptr) {
        // At this point the pointer is null, and the poller has no client.
        connect(client, &QObject::destroyed, this, [this] { d->restart(); });
    }
    d->restart();
}

Client* LiveWidget::client() const
{
    return d->client;
}

void LiveWidget::setCommand(const QString& command)
{
    if (command == d->command)
        return;
    d->command = command;
    d->last = {};
    d->lastTime = {};
    clearData();
    d->plot->refreshPixmap();
    d->restart();
}

QString LiveWidget::command() const
{
    return d->command;
}

void LiveWidget::setFormat(const HistogramFormat& format)
{
    d->format = format;
    d->restart();
}

HistogramFormat LiveWidget::format() const
{
    return d->format.value_or(HistogramFormat::ofCommand(d->command));
}

void LiveWidget::setOptions(const PollOptions& options)
{
    d->options = options;
    d->options.interval = std::clamp(options.interval, milliseconds(1), maxTimerRun);
    d->options.staleAfter = timerRun(options.staleAfter);
    d->restart();
}

PollOptions LiveWidget::options() const
{
    return d->options;
}

void LiveWidget::setInterval(int interval)
{
    PollOptions options = d->options;
    options.interval = milliseconds(interval);
    setOptions(options);
}

int LiveWidget::interval() const
{
    return static_cast<int>(d->options.interval.count());
}

void LiveWidget::setStaleAfter(int age)
{
    PollOptions options = d->options;
    options.staleAfter = milliseconds(age);
    setOptions(options);
}

int LiveWidget::staleAfter() const
{
    return static_cast<int>(d->options.staleAfter.count());
}

void LiveWidget::setNameX(const QString& name)
{
    d->plot->setNameX(name);
}

QString LiveWidget::nameX() const
{
    return d->plot->getNameX();
}

void LiveWidget::setNameY(const QString& name)
{
    d->plot->setNameY(name);
}

QString LiveWidget::nameY() const
{
    return d->plot->getNameY();
}

void LiveWidget::setStatusShown(bool shown)
{
    d->status->setVisible(shown);
}

bool LiveWidget::isStatusShown() const
{
    return !d->status->isHidden();
}

void LiveWidget::setTools(bool on)
{
    if (on == hasTools())
        return;
    if (on) {
        d->navigator = new PlotNavigator(d->plot);
        d->crosshair = new PlotCrosshair(d->plot);
    } else {
        delete d->navigator;
        delete d->crosshair;
    }
}

bool LiveWidget::hasTools() const
{
    return d->navigator || d->crosshair;
}

void LiveWidget::setToolBarShown(bool shown)
{
    if (shown == isToolBarShown())
        return;
    if (!shown) {
        delete d->toolBar;
        return;
    }
    d->toolBar = new PlotToolBar(d->plot, this);
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, d->toolBar);
}

bool LiveWidget::isToolBarShown() const
{
    return d->toolBar;
}

bool LiveWidget::isPaused() const
{
    return d->isPaused;
}

void LiveWidget::setPaused(bool paused)
{
    if (paused == d->isPaused)
        return;
    d->isPaused = paused;
    d->restart();
}

LiveWidget::State LiveWidget::state() const
{
    return d->reported.first;
}

QString LiveWidget::statusText() const
{
    return d->reported.second;
}

HistogramReply LiveWidget::last() const
{
    return d->last;
}

XYGraphWidget* LiveWidget::frame() const
{
    return d->plot;
}

QString LiveWidget::unsuitability(const HistogramReply& /*histogram*/) const
{
    return {};
}

bool LiveWidget::eventFilter(QObject* object, QEvent* event)
{
    if (object == d->window) {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
            followWindow();
        else if (event->type() == QEvent::WindowActivate)
            raiseWindows();
    }
    return QWidget::eventFilter(object, event);
}

void LiveWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (d->window != window()) {
        if (d->window)
            d->window->removeEventFilter(this);
        d->window = window();
        d->window->installEventFilter(this);
    }
    d->restart();
}

void LiveWidget::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    d->unfollow();
    d->renewStatus();
}

void LiveWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange || event->type() == QEvent::LocaleChange)
        d->renewStatus();
}

} // namespace tarnis
