#include "histograms/histogramchooser.h"

#include "app/controlhelp.h"
#include "histograms/histogramwindowupdater.h"
#include "histograms/serverhistograms.h"
#include "server/commandchannel.h"
#include "server/replytext.h"
#include "server/servercontroller.h"

#include <tarnis/foundation/retranslator.h>

#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>

#include <algorithm>
#include <utility>

namespace console {

namespace {

constexpr QLatin1String storeKey("histograms/checked");

/// "time: 8 rows of 16384 bins, Time [us]"
QString textOf(const HistogramInfo& histogram)
{
    if (histogram.isMap)
        return HistogramChooser::tr("%1: map of %2 x %3 bins, %4 by %5")
            .arg(histogram.name)
            .arg(histogram.x.bins)
            .arg(histogram.y.bins)
            .arg(histogram.x.text(), histogram.y.text());
    const QString text = HistogramChooser::tr("%1: %Ln row(s) of %2 bins, %3", nullptr, histogram.rows)
                             .arg(histogram.name, QString::number(histogram.x.bins), histogram.x.text());
    const int shown = rowsToShow(histogram);
    return shown == histogram.rows ? text
                                   : HistogramChooser::tr("%1; only the first %2 are shown").arg(text).arg(shown);
}

} // namespace

void openHistogram(const WindowContext& context, const HistogramInfo& histogram)
{
    using Listed = HistogramWindow::Listed; // never empty: these windows open only for listed histograms
    const auto make = [context](const Listed& listed) -> QWidget* {
        if (listed->isMap)
            return new LiveMap(context, std::function([listed] { return mapRequest(*listed); }));
        return new LiveCurves(context, std::function([listed] { return curvesRequest(*listed); }));
    };
    const HistogramInfo newest = context.histograms.find(histogram.name).value_or(histogram);
    context.windowUpdater.show({ QStringLiteral("histogram %1").arg(histogram.name), histogram.name, newest, make,
        [](const Listed& listed) { return Windows::tr("Histogram %1").arg(titleOf(*listed, listed->name)); } });
}

HistogramChooser::HistogramChooser(const WindowContext& context)
    : DialogCheckList(QString(), context.parent)
    , m_context(context)
    , m_channel(new CommandChannel(context.controller, QStringLiteral("histograms"), this))
    , m_checked(context.store.value(storeKey).toStringList())
{
    tarnis::onLanguageChange(*this, [this] {
        if (!m_reply.isNull())
            showReply(); // in the new language
        if (m_context.controller.state() != ServerState::Up)
            showLost();
        else if (!m_channel->waiting().isEmpty())
            showText(tr("Asking the server..."));
        updateControls();
    });
    resize(460, 400);
    connect(m_channel, &CommandChannel::replied, this, [this](const PTarnisCmd&, const QByteArray& reply) {
        m_reply = QString::fromUtf8(reply);
        showReply();
        m_context.histograms.read(m_reply); // may be newer than its list
    });
    connect(m_channel, &CommandChannel::failed, this, [this](const QString& message) {
        showText(tr("No reply: %1. Close and open this window to ask again.").arg(message));
        m_context.controller.checkServer();
    });
    connect(&context.controller, &ServerController::aboutToStop, m_channel, &CommandChannel::drop);
    connect(&context.controller, &ServerController::stateChanged, this, &HistogramChooser::onServerState);
    connect(this, &QDialog::accepted, this, &HistogramChooser::openChecked);
    auto* const list = findChild<QListWidget*>(QStringLiteral("listWidget"));
    connect(list, &QListWidget::itemChanged, this, &HistogramChooser::updateControls);
    const auto nameList = [list] { list->setAccessibleName(tr("Histograms of the server")); };
    nameList();
    tarnis::onLanguageChange(*list, nameList);
    list->setWordWrap(true); // of texts that are wider than fitWidth() allows
    ask();
}

void HistogramChooser::ask()
{
    showText(tr("Asking the server..."));
    auto* const command = new TarnisCmd(QStringLiteral("hists")); // the channel takes ownership
    command->m_cmdName = QStringLiteral("hists");
    m_channel->send(command);
    updateControls();
}

void HistogramChooser::showReply()
{
    noteChecks();
    m_histograms = histogramsOf(m_reply);
    findChild<QListWidget*>(QStringLiteral("listWidget"))->clear();
    for (const HistogramInfo& histogram : std::as_const(m_histograms))
        addItem(textOf(histogram), m_checked.contains(histogram.name));
    if (replyKind(m_reply) == ReplyKind::Refused)
        showText(tr("The server does not list its histograms: %1").arg(m_reply.trimmed()));
    else if (m_histograms.isEmpty())
        showText(tr("The server has no histograms."));
    else
        showText(tr("A live window opens for each checked histogram."));
    fitWidth();
    updateControls();
}

void HistogramChooser::fitWidth()
{
    auto* const list = findChild<QListWidget*>(QStringLiteral("listWidget"));
    const int needed =
        list->sizeHintForColumn(0) + 2 * list->frameWidth() + list->verticalScrollBar()->sizeHint().width();
    list->setMinimumWidth(std::min(needed, screen()->availableGeometry().width() * 3 / 4));
}

bool HistogramChooser::isChecked(int index) const
{
    QString text;
    bool isChecked = false;
    getItem(index, text, isChecked);
    return isChecked;
}

void HistogramChooser::noteChecks()
{
    for (int i = 0; i < count(); ++i) {
        m_checked.removeAll(m_histograms.at(i).name);
        if (isChecked(i))
            m_checked.append(m_histograms.at(i).name);
    }
}

void HistogramChooser::onServerState()
{
    const bool isUp = m_context.controller.state() == ServerState::Up;
    if (isUp == std::exchange(m_isUp, isUp))
        return; // a run that begins or ends
    if (!isUp)
        showLost();
    else if (m_channel->waiting().isEmpty())
        ask();
    updateControls();
}

void HistogramChooser::openChecked()
{
    QStringList names;
    for (int i = 0; i < count(); ++i) {
        if (!isChecked(i))
            continue;
        names.append(m_histograms.at(i).name);
        openHistogram(m_context, m_histograms.at(i));
    }
    m_context.store.setValue(storeKey, names);
}

void HistogramChooser::showLost()
{
    showText(tr("There is no connection to the server. The list is read again when it is back."));
}

void HistogramChooser::showText(const QString& text)
{
    setDescription(text);
}

void HistogramChooser::updateControls()
{
    auto* const ok = findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Ok);
    bool isAnyChecked = false;
    for (int i = 0; i < count(); ++i)
        isAnyChecked = isAnyChecked || isChecked(i);
    const bool isUp = m_context.controller.state() == ServerState::Up;
    setEnabledWithHelp(ok, isUp && isAnyChecked, tr("Open a live window for each checked histogram"),
        isUp ? tr("Check a histogram first") : tr("Needs a connected server"));
    for (const char* const name : { "buttonCheckAll", "buttonUncheckAll", "buttonInvert" }) {
        if (auto* const button = findChild<QPushButton*>(QLatin1String(name)))
            setEnabledWithHelp(button, count() > 0, QString(), tr("There is no histogram to check"));
    }
}

} // namespace console
