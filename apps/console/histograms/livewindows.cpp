#include "histograms/livewindows.h"

#include "app/controlhelp.h"
#include "histograms/lastdatabar.h"
#include "histograms/rowcaption.h"
#include "saves/savereports.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "windows/window.h"

#include <tarnis/foundation/retranslator.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/server/tarnis.h>
#include <tarnis/server/tarnissession.h>

#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>

namespace console {

namespace {

constexpr int maxColumns = 64; // bins of a histogram that opens as columns
constexpr int minPlotLines = 9; // height of a plot, in lines of text
constexpr int minCurveChars = 30; // width of a plot, in average characters
constexpr int minMapChars = 52; // with its colour bar

/// Enables the buttons that need a session, or shows why they are disabled. "Update" also requests a refused session.
void setPolling(QDialog& window, bool isPolling, bool isRefused = false)
{
    const QString reason = SessionRecovery::tr("Needs a connected server");
    const auto set = [&](QWidget* control, bool isAvailable) {
        if (control)
            setEnabledWithHelp(control, isAvailable, QString(), reason);
    };
    set(window.findChild<QPushButton*>(QStringLiteral("updatePushButton")), isPolling || isRefused);
    set(window.findChild<QCheckBox*>(QStringLiteral("autoUpdateCheckBox")), isPolling);
}

/// Shows why there is no session, and what the user can do.
template <typename Window> void showLost(Window& window, const SessionRecovery& recovery)
{
    const QString advice =
        recovery.isRefused() ? u' ' + SessionRecovery::tr("\u201cUpdate\u201d tries at once.") : QString();
    window.setInfoText(recovery.text() + advice);
    setPolling(window, false, recovery.isRefused());
}

/// Adds the lines below the controls of every live plot.
void addLines(QDialog& window, DataAge& age, LastDataBar& kept)
{
    if (auto* const box = qobject_cast<QBoxLayout*>(window.layout())) {
        box->addWidget(age.label());
        box->addWidget(&kept);
    }
}

/// A smaller plot cannot be read, beside a pane with boxes either.
void setMinPlotSize(QWidget& plot, int chars)
{
    const QFontMetrics metrics = plot.fontMetrics();
    plot.setMinimumSize(metrics.averageCharWidth() * chars, metrics.height() * minPlotLines);
}

/// The server's name of the histogram, the second word of the request.
QString histogramOf(const QString& command)
{
    return command.section(u' ', 1, 1, QString::SectionSkipEmpty);
}

constexpr char filteredProperty[] = "filteredData"; // on a filtered map: the time of the data

int rowsOf(const MapRequest& request)
{
    return request.yBins > 0 ? request.yBins : request.bins;
}

double endOf(double min, double max, int bins)
{
    return min == 0.0 && max == 0.0 ? bins : max;
}

QString infoOf(const QDialog& window)
{
    const auto* const label = window.findChild<QLabel*>(QStringLiteral("infoLabel"));
    return label ? label->text() : QString();
}

bool isRefused(const QStringList& lines)
{
    for (const QString& line : lines) {
        if (line.startsWith(u"NG:"))
            return true;
    }
    return false;
}

/// Why a reply is not drawn, for the line below the plot.
QString undrawnText(const tarnis::UndrawnReply& reply)
{
    using Reason = tarnis::UndrawnReply::Reason;
    switch (reply.reason) {
    case Reason::NoAxis:
        return LiveCurves::tr("The reply contains no axis and is not shown: %1").arg(reply.replyText.trimmed());
    case Reason::OutsideAxis:
        return LiveCurves::tr("The reply contains a value outside of its axis and is not shown.");
    case Reason::SizeMismatch:
        return LiveMap::tr("The reply contains %1 values for %2 x %3 bins and is not shown.")
            .arg(reply.values)
            .arg(reply.binsX)
            .arg(reply.binsY);
    case Reason::TooLarge:
        break;
    }
    return reply.text;
}

/// The values of a reply that the plot cannot show, as a text; empty if it shows everything.
QString drawnText(const tarnis::DrawnReply& reply)
{
    QStringList sentences;
    if (reply.unusedBytes > 0)
        sentences << LiveCurves::tr("The reply is incomplete: its last bin is not shown.");
    else if (reply.values == 0)
        sentences << LiveCurves::tr("The reply contains no values.");
    if (reply.notFinite > 0)
        sentences << LiveCurves::tr("%1 of %2 values are not finite.").arg(reply.notFinite).arg(reply.values);
    return sentences.join(u' ');
}

/// Both texts are shown below the plot, and the polling continues.
template <typename Window> tarnis::LiveWindowHooks hooksOf(Window& window, bool& isDrawn)
{
    return { [&window](const tarnis::UndrawnReply& reply) {
                window.setInfoText(undrawnText(reply));
                return true;
            },
        [&window, &isDrawn](const tarnis::DrawnReply& reply) {
            isDrawn = true;
            const QString text = drawnText(reply);
            if (!text.isEmpty())
                window.setInfoText(text);
        } };
}

/// The first valid reply clears the line below the plot, but without "AutoUpdate" none is requested.
template <typename Window> void resumePolling(Window& window, const tarnis::ServerAddress& address)
{
    setPolling(window, true);
    if (!window.isAutoUpdate())
        window.setInfoText(QString());
    window.renewSession(address);
}

} // namespace

template <typename Dialog>
template <typename... Arguments>
LivePlotDialog<Dialog>::LivePlotDialog(const WindowContext& context, const Arguments&... arguments)
    : Dialog(context.controller.tarnis().GetSessionAddress(), arguments..., context.parent)
    , m_recovery(context.controller, this->session)
    , m_age(*this, [this] { return this->session && (this->isAutoUpdate() || m_isAsked); })
    , m_kept(new LastDataBar(context.controller, *this->getGraphWidget(),
          [this] { return this->getGraphWidget()->getMaxValue() > 0.0 ? m_age.time() : QTime(); }))
{
    addLines(*this, m_age, *m_kept);
    this->connect(m_kept, &LastDataBar::released, this, [this] { update(); });
    this->hooks = hooksOf(*this, m_isDrawn);
    this->connect(&m_recovery, &SessionRecovery::lost, this, [this] { onLost(); });
    this->connect(&m_recovery, &SessionRecovery::wanted, this, [this] { resume(); });
}

template <typename Dialog>
void LivePlotDialog<Dialog>::read(
    const PTarnisCmd& command, const QByteArray& payload, bool arePairs, const std::function<void()>& show)
{
    const bool isData = command->m_bBinary && replyKind(command->m_replyText) != ReplyKind::Refused;
    m_isAsked = false;
    m_isDrawn = false;
    if (isData && this->isVisible() && m_kept->holds(isAllZero(payload, arePairs))) {
        this->setInfoText(QString());
        this->timer->start();
    } else {
        show();
    }
    if (m_isDrawn)
        m_age.arrived();
    else
        m_age.answered();
}

template <typename Dialog> void LivePlotDialog<Dialog>::update()
{
    const bool isLost = !this->session;
    if (isLost && (!m_recovery.retry() || this->isAutoUpdate()))
        return; // a new session polls by itself
    m_isAsked = true;
    Dialog::update();
}

template <typename Dialog> bool LivePlotDialog<Dialog>::onResultExInfo(QList<QString> const& lines)
{
    return Dialog::onResultExInfo(lines) && !isRefused(lines);
}

template <typename Dialog> void LivePlotDialog<Dialog>::changeEvent(QEvent* event)
{
    const QString info = infoOf(*this);
    Dialog::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    setTexts();
    this->setInfoText(info);
    if (!this->session)
        onLost();
}

template <typename Dialog> void LivePlotDialog<Dialog>::closeEvent(QCloseEvent* event)
{
    m_recovery.end();
    Dialog::closeEvent(event);
}

template <typename Dialog> void LivePlotDialog<Dialog>::onLost()
{
    this->timer->stop();
    showLost(*this, m_recovery);
}

template <typename Dialog> void LivePlotDialog<Dialog>::resume()
{
    resumePolling(*this, m_recovery.renewedAddress());
}

template class LivePlotDialog<Graph1DDialog>;
template class LivePlotDialog<Graph2DDialog>;

LiveCurves::LiveCurves(const WindowContext& context, const std::function<CurvesRequest()>& request)
    : LiveCurves(context, request())
{
    m_request = request;
}

LiveCurves::LiveCurves(const WindowContext& context, const CurvesRequest& request)
    : LivePlotDialog(context, request.title, request.xLabel, request.xMin, request.xMax, request.resolution, 0,
        request.description, QStringList(), request.command, request.first, request.last)
    , m_request([request] { return request; })
{
    setSavedName(*this, histogramOf(request.command));
    setMinPlotSize(*getGraphWidget(), minCurveChars);
    getGraphWidget()->installEventFilter(this);
    // The library's slot expects the English entries, but was called with the translated ones.
    if (auto* const box = findChild<QComboBox*>(QStringLiteral("typeComboBox")))
        connect(box, &QComboBox::currentIndexChanged, this,
            [this](int index) { onTypeChanged(index == 0 ? QStringLiteral("Each") : QStringLiteral("All")); });
    LiveCurves::setTexts();
}

void LiveCurves::result(PTarnisCmd command, QByteArray const& payload)
{
    read(command, payload, pairMode, [&] {
        Graph1DDialog::result(command, payload);
        chooseForm();
    });
}

void LiveCurves::error(int /*code*/, QString const& text)
{
    m_recovery.fail(sender(), text);
}

void LiveCurves::setTexts()
{
    const CurvesRequest request = m_request();
    MultiVectorGraphWidget& plot = *getGraphWidget();
    plot.setNameX(request.xLabel);
    plot.setNameY(tr("Intensity"));
    plot.setTitle(request.title);
    plot.m_groupName = request.description;
    plot.SetEnableSelectXRangeFeature(true, request.rangeName.isEmpty() ? tr("X") : request.rangeName);
    showCaption();
    if (auto* const box = findChild<QComboBox*>(QStringLiteral("typeComboBox"))) {
        box->setItemText(0, tr("Each Curve"));
        box->setItemText(1, tr("Sum of All"));
    }
    if (auto* const button = findChild<QToolButton*>(QStringLiteral("toolButton")))
        button->setText(tr("Curves..."));
}

/// Shows the names of the drawn curves.
void LiveCurves::showCaption()
{
    auto* const label = findChild<QLabel*>(QStringLiteral("descLabel"));
    if (!label)
        return;
    const CurvesRequest request = m_request();
    if (start == end) { // a single row has a fixed name
        label->setText(request.description.trimmed());
        return;
    }
    const QString text = rowCaption(
        request.description, visibleRows(*getGraphWidget(), start, end), std::max(request.rows, end - start + 1));
    if (label->text() != text)
        label->setText(text);
}

/// A line between few points would suggest values that were not measured.
void LiveCurves::chooseForm()
{
    MultiVectorGraphWidget& plot = *getGraphWidget();
    if (m_isFormChosen || !plot.hasData())
        return;
    m_isFormChosen = true;
    if (plot.getMaxCount() <= maxColumns)
        showAsColumns(plot);
}

bool LiveCurves::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Paint && object == getGraphWidget())
        showCaption(); // the selection of visible curves has no signal
    return Graph1DDialog::eventFilter(object, event);
}

LiveMap::LiveMap(const WindowContext& context, const std::function<MapRequest()>& request)
    : LiveMap(context, request())
{
    m_request = request;
}

LiveMap::LiveMap(const WindowContext& context, const MapRequest& request)
    : LivePlotDialog(context, request.title, request.xLabel, request.bins, request.xMin,
        endOf(request.xMin, request.xMax, request.bins), 1, 0, request.yLabel, rowsOf(request), request.yMin,
        endOf(request.yMin, request.yMax, rowsOf(request)), 1, 0, QStringList(), request.command)
    , m_request([request] { return request; })
{
    setSavedName(*this, histogramOf(request.command));
    getGraphWidget()->enalbeRoiSelect(QRect(0, 0, request.bins, rowsOf(request)));
    setMinPlotSize(*getGraphWidget(), minMapChars);
    tarnis::onLanguageChange(*this, [this] { // queued: after the maps have handled it
        QMetaObject::invokeMethod(this, &LiveMap::setFilteredTexts, Qt::QueuedConnection);
    });
}

void LiveMap::result(PTarnisCmd command, QByteArray payload)
{
    read(command, payload, false, [&] { Graph2DDialog::result(command, payload); });
}

void LiveMap::onFilterAccepted(const Graph2DFilter& filter)
{
    const QTime time = m_age.time().isValid() ? m_age.time() : QTime::currentTime();
    const auto before = findChildren<Graph2DDialog*>();
    Graph2DDialog::onFilterAccepted(filter);
    for (Graph2DDialog* const map : findChildren<Graph2DDialog*>()) {
        if (!before.contains(map))
            map->setProperty(filteredProperty, time);
    }
    setFilteredTexts();
}

void LiveMap::error(int /*socketError*/, QString message)
{
    m_recovery.fail(sender(), message);
}

void LiveMap::setTexts()
{
    const MapRequest request = m_request();
    XY2DGraphWidget& plot = *getGraphWidget();
    plot.setNameX(request.xLabel);
    plot.setNameY(request.yLabel);
    plot.setTitle(request.title);
}

/// Updates the texts of the maps that were filtered from this one.
void LiveMap::setFilteredTexts()
{
    const MapRequest request = m_request();
    const auto maps = findChildren<Graph2DDialog*>();
    for (Graph2DDialog* const map : maps) {
        const QString time = map->property(filteredProperty).toTime().toString(u"HH:mm:ss");
        map->setWindowTitle(tr("%1 (filtered, %2)").arg(windowTitle(), time));
        map->getGraphWidget()->setTitle(map->windowTitle());
        map->getGraphWidget()->refreshPixmap();
        map->setInfoText(QString());
        map->getGraphWidget()->setNameX(request.xLabel);
        map->getGraphWidget()->setNameY(request.yLabel);
    }
}

} // namespace console
