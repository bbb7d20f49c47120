#include "tarnis/dialogs/livewindow_p.h"

#include "tarnis/client/histogramwire_p.h"
#include "tarnis/foundation/checkedconnect_p.h"
#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/server/sessionend.h"
#include "tarnis/server/tarniscmd.h"
#include "tarnis/server/tarnissession.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>

#include <utility>

namespace tarnis {

TarnisSession* startPrivateSession(TarnisSession& model, QObject* window)
{
    auto* const session = new TarnisSession(model.m_host, model.m_port, model.GetPrompt(), nullptr);
    checkedConnect(session, SIGNAL(connected()), window, SLOT(onTimeout()));
    checkedConnect(session, SIGNAL(result(PTarnisCmd, QByteArray)), window, SLOT(result(PTarnisCmd, QByteArray)));
    checkedConnect(session, SIGNAL(error(int, QString)), window, SLOT(error(int, QString)));
    session->start(QThread::InheritPriority);
    return session;
}

void endPrivateSession(TarnisSession*& session, const QObject* window)
{
    if (!session)
        return;
    session->disconnect(window);
    endInBackground(std::exchange(session, nullptr));
}

void sendInitialCommands(TarnisSession& session, const QStringList& commands)
{
    for (const QString& command : commands) {
        TARNIS_TRACE(QStringLiteral(">>>") + command);
        session.send(new TarnisCmd(command));
    }
}

void sendPoll(TarnisSession& session, const QString& text)
{
    session.cancel();
    auto* const command = new TarnisCmd(text);
    command->m_bBinary = true;
    command->m_afterSleep = pollIntervalMs;
    TARNIS_TRACE(QStringLiteral(">>>") + text);
    session.send(command);
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

} // namespace tarnis
