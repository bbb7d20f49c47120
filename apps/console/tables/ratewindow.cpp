#include "tables/ratewindow.h"

#include "app/controlhelp.h"
#include "histograms/dataage.h"
#include "server/replytext.h"
#include "server/runstatus.h"
#include "server/servercontroller.h"
#include "server/statuspoller.h"
#include "ui_ratewindow.h"
#include <tarnis/foundation/retranslator.h>

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QPushButton>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace console {

namespace {

constexpr qsizetype maxRates = 3600;

} // namespace

std::optional<double> rateOf(const QString& reply)
{
    bool isNumber = false;
    const QString text = valueOf(reply.split(u'\n'), QStringLiteral("rate"), QStringLiteral(":"), QString(), true);
    const double rate = text.toDouble(&isNumber);
    return isNumber && std::isfinite(rate) ? std::optional(rate) : std::nullopt;
}

RateWindow::RateWindow(ServerController& controller, StatusPoller& poller, QWidget* parent)
    : QDialog(parent)
    , m_controller(controller)
    , ui(std::make_unique<Ui::RateWindow>())
    , m_plot(new VectorGraphWidget(this))
{
    tarnis::onLanguageChange(*this, [this] {
        ui->retranslateUi(this);
        setTexts();
        draw();
    });
    ui->setupUi(this);
    ui->windowLayout->insertWidget(0, m_plot, 1);
    m_plot->setMinimumSize(300, 160);
    m_plot->init(QString(), QString(), 60, 1, true, true);
    m_plot->setMaxValue(1);
    m_age = new DataAge(*this, [this] { return m_controller.state() == ServerState::Up; });
    ui->windowLayout->insertWidget(1, m_age->label());
    setTabOrder(m_plot, ui->clearButton);
    setTexts();
    connect(ui->clearButton, &QPushButton::clicked, this, &RateWindow::clear);
    connect(ui->closeButton, &QPushButton::clicked, this, &RateWindow::close);
    connect(&poller, &StatusPoller::replied, this, &RateWindow::onReplied);
    connect(&poller, &StatusPoller::failed, this, [this](const QString& message) {
        tarnis::setTranslatedText(
            *ui->infoLabel, [message] { return tr("No reply: %1. Polling continues.").arg(message); });
    });
    connect(&controller, &ServerController::stateChanged, this, &RateWindow::updateControls);
    m_elapsed.start();
    poller.watch(this);
}

RateWindow::~RateWindow() = default;

void RateWindow::clear()
{
    m_rates.clear();
    m_seconds.clear();
    m_elapsed.start();
    tarnis::setTranslatedText(*ui->infoLabel, [] { return QString(); });
    draw();
}

void RateWindow::onReplied(const QByteArray& reply)
{
    const QString text = QString::fromUtf8(reply);
    const std::optional<double> rate = rateOf(text);
    if (!rate) {
        m_age->answered();
        tarnis::setTranslatedText(*ui->infoLabel, [text] {
            return replyKind(text) == ReplyKind::Refused
                ? text.trimmed()
                : tr("The server reports no rate: its reply to stat has no line \"rate:\".");
        });
        return;
    }
    if (m_rates.size() == maxRates) {
        m_rates.removeFirst();
        m_seconds.removeFirst();
    }
    m_age->arrived();
    m_rates.append(*rate);
    m_seconds.append(double(m_elapsed.elapsed()) / 1000.0);
    draw();
}

void RateWindow::draw()
{
    updateControls();
    m_plot->setData(m_rates);
    m_plot->setIndex(m_seconds);
    if (m_rates.isEmpty()) {
        m_plot->setMaxValue(1);
        m_plot->setNotes(QString());
    } else {
        const double largest = *std::max_element(m_rates.cbegin(), m_rates.cend());
        const double mean = std::accumulate(m_rates.cbegin(), m_rates.cend(), 0.0) / double(m_rates.size());
        m_plot->setMaxValue(std::max(largest, 1.0));
        m_plot->setNotes(tr("largest %1 /s").arg(rateText(largest)));
        tarnis::setTranslatedText(
            *ui->infoLabel, [now = m_rates.constLast(), mean, span = m_seconds.constLast() - m_seconds.constFirst()] {
                return tr("%1 /s now, %2 /s on average over %3 s")
                    .arg(rateText(now), rateText(mean), numStr(span, 'f', 0));
            });
    }
    m_plot->refreshPixmap();
}

void RateWindow::setTexts()
{
    m_plot->setNameX(tr("Reply, one a second"));
    m_plot->setNameY(tr("Rate [1/s]"));
    m_plot->setTitle(tr("Event Rate"));
    updateControls();
}

void RateWindow::updateControls()
{
    setEnabledWithHelp(
        ui->clearButton, !m_rates.isEmpty(), tr("Clear the curve and start again"), tr("There is no point yet"));
    if (m_controller.state() != ServerState::Up)
        tarnis::setTranslatedText(
            *ui->infoLabel, [] { return tr("Needs a connected server; the curve continues when it is back."); });
}

} // namespace console
