#include "tarnis/dialogs/livewindow_p.h"

#include "tarnis/client/histogramwire_p.h"
#include "tarnis/foundation/checkedconnect_p.h"
#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/messagelabel.h"
#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/server/sessionend.h"
#include "tarnis/server/tarniscmd.h"
#include "tarnis/server/tarnissession.h"

#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QProgressBar>
#include <QTime>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

// Number of values that a window always accepts (decoded in some ten milliseconds), and the maximum (one gigabyte).
constexpr double minValueLimit = 1 << 22;
constexpr double largestMaxValues = 1 << 27;

/// The integer part of value / maximum * 100.0, both as doubles; 0 for a maximum of 0.
int percent(unsigned long long value, unsigned long long maximum)
{
    if (maximum == 0)
        return 0;
    const double share = static_cast<double>(value) / static_cast<double>(maximum) * 100.0;
    return static_cast<int>(std::min(share, 1e9));
}

} // namespace

void sendInitialCommands(TarnisSession& session, const QStringList& commands)
{
    for (const QString& command : commands) {
        TARNIS_TRACE(QStringLiteral(">>>") + command);
        session.send(new TarnisCmd(command));
    }
}

TarnisCmd* newPoll(const QString& text)
{
    auto* const command = new TarnisCmd(text);
    command->m_bBinary = true;
    command->m_afterSleep = pollIntervalMs;
    TARNIS_TRACE(QStringLiteral(">>>") + text);
    return command;
}

void sendPoll(TarnisSession& session, const QString& text)
{
    session.cancel();
    session.send(newPoll(text));
}

QTimer* newPollTimer(QObject* window)
{
    auto* const timer = new QTimer(window);
    timer->setInterval(pollIntervalMs);
    timer->setSingleShot(true);
    checkedConnect(timer, SIGNAL(timeout()), window, SLOT(onTimeout()));
    return timer;
}

void showInfo(QLabel& label, const QString& text)
{
    const QString trimmedText = text.trimmed();
    label.setText(trimmedText);
    label.setVisible(!trimmedText.isEmpty());
}

void showProgress(QProgressBar& bar, bool visible, unsigned long long value, unsigned long long maximum)
{
    bar.setVisible(visible);
    bar.setRange(0, 100);
    bar.setValue(percent(value, maximum));
}

QString complaints(const QStringList& lines)
{
    return startsWith(lines, QStringLiteral("NG:")).join(QLatin1Char('\n'));
}

void showRefusal(QWidget* window, const QString& form, const TarnisCmd& command, const QByteArray& reply)
{
    showBox(QMessageBox::Warning, window, QCoreApplication::applicationName(),
        form.arg(command.m_cmd, QString::fromUtf8(reply)));
}

qint64 countNotFinite(const QList<double>& values)
{
    return std::count_if(values.cbegin(), values.cend(), [](double value) { return !std::isfinite(value); });
}

qint64 countNotFinite(const QByteArray& payload)
{
    return countNotFinite(stridedDoubles(payload, 0, 1, doubleCount(payload)));
}

LiveWindow::LiveWindow(QDialog& window, TarnisSession*& session, double expectedValues)
    : QObject(&window)
    , m_window(window)
    , m_session(session)
    , m_maxValues(static_cast<qint64>(std::clamp(4.0 * expectedValues, minValueLimit, largestMaxValues)))
{
}

void LiveWindow::begin(const ServerAddress& address)
{
    end();
    setStopped({});
    m_hasFailed = false;
    m_address = address;
    m_session = new TarnisSession(address.host, address.port, address.prompt, nullptr);
}

void LiveWindow::end()
{
    ++m_generation;
    endInBackground(std::exchange(m_session, nullptr));
}

bool LiveWindow::hasEnded() const
{
    return m_hasFailed || m_session->isFinished();
}

void LiveWindow::setFailed(const QString& message)
{
    m_hasFailed = true;
    setStopped(message);
}

void LiveWindow::setStopped(const QString& reason)
{
    if (reason.isEmpty() && m_reason.isEmpty())
        return;
    m_reason = reason;
    m_stoppedAt = QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
    if (!m_label) {
        m_label = new MessageLabel(&m_window);
        m_label->setObjectName(QStringLiteral("stateLabel"));
        m_window.layout()->addWidget(m_label);
    }
    m_label->setVisible(!reason.isEmpty());
    retranslate();
}

void LiveWindow::retranslate()
{
    if (m_label)
        m_label->setText(tr("Stopped at %1. \"Update\" starts again. %2").arg(m_stoppedAt, m_reason.simplified()));
}

bool LiveWindow::isAnswered(const LiveWindowHooks& hooks, const UndrawnReply& reply, QTimer* timer)
{
    if (!hooks.onUndrawn || !hooks.onUndrawn(reply))
        return false;
    if (timer)
        timer->start();
    return true;
}

void LiveWindow::showUndrawn(const UndrawnReply& reply, QMessageBox::Icon icon)
{
    setStopped(reply.text);
    showBox(icon, &m_window, QCoreApplication::applicationName(), reply.text);
}

void LiveWindow::readText(const TarnisCmd& command, const QByteArray& payload, const QString& form)
{
    TARNIS_TRACE(QString::fromUtf8(payload));
    if (!payload.startsWith("NG:"))
        return;
    const QPointer<QDialog> guard(&m_window);
    showRefusal(&m_window, form, command, payload);
    if (guard)
        guard->close();
}

UndrawnReply LiveWindow::tooLarge(qint64 values) const
{
    UndrawnReply reply;
    reply.reason = UndrawnReply::Reason::TooLarge;
    reply.values = values;
    reply.text =
        tr("The reply is too large for this window: %1 values, at most %2 are accepted.").arg(values).arg(m_maxValues);
    return reply;
}

} // namespace tarnis
