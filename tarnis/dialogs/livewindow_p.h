// The common parts of the two live windows: sessions, polling, state, information line and progress bar.
#pragma once

#include "tarnis/client/histogramwire_p.h"
#include "tarnis/dialogs/livewindowhooks.h"
#include "tarnis/server/serveraddress.h"
#include "tarnis/server/tarnissession.h"

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

class QDialog;
class QLabel;
class QProgressBar;
class QWidget;

namespace tarnis {

class MessageLabel;

/// The pause of the session and the time of the window's timer between two polls.
inline constexpr int pollIntervalMs = 1000;

/// The length of the text after a payload that is searched for error lines.
inline constexpr qsizetype maxTextChars = 1 << 16;

/// Queues each of `commands` as a text command.
void sendInitialCommands(TarnisSession& session, const QStringList& commands);

/// A binary command followed by the pause between two polls.
TarnisCmd* newPoll(const QString& text);

/// Drops the session's queued commands and sends `text` as the next poll.
void sendPoll(TarnisSession& session, const QString& text);

/// A single-shot timer with the poll interval: a child of `window`, connected to its slot onTimeout(), not started.
QTimer* newPollTimer(QObject* window);

/// Shows the trimmed text, or hides the label if it is empty.
void showInfo(QLabel& label, const QString& text);

/// Shows value / maximum in per cent, or hides the bar.
void showProgress(QProgressBar& bar, bool visible, unsigned long long value, unsigned long long maximum);

/// The server's error lines, joined.
QString complaints(const QStringList& lines);

/// Shows in a message box that the server has refused the command. `form` is ">>> %1\n<<< %2", translated in the
/// window's own context.
void showRefusal(QWidget* window, const QString& form, const TarnisCmd& command, const QByteArray& reply);

/// The number of NaN or infinite values, in a list or in a payload of doubles. @{
qint64 countNotFinite(const QList<double>& values);
qint64 countNotFinite(const QByteArray& payload);
/// @}

/// The state of a live window beside its specified members: its sessions, and why the polling has stopped. GUI thread.
class LiveWindow : public QObject {
    Q_OBJECT
public:
    /// `session` is the window's pointer, which may be set from outside too. `expectedValues` is the size of a reply
    /// that fills the window's bins.
    LiveWindow(QDialog& window, TarnisSession*& session, double expectedValues);

    /// Starts a session whose `connected`, `result` and `error` reach onTimeout(), result() and error() of `window`,
    /// and queues the initial commands. Calls that an earlier session has queued for the window are dropped.
    template <typename Window>
    void start(Window& window, const ServerAddress& address, const QStringList& initialCommands)
    {
        begin(address);
        const int generation = m_generation;
        QObject::connect(m_session, &TarnisSession::connected, &window, [this, &window, generation] {
            if (generation == m_generation)
                window.onTimeout();
        });
        QObject::connect(m_session, &TarnisSession::result, &window,
            [this, &window, generation](const PTarnisCmd& command, const QByteArray& payload) {
                if (generation == m_generation)
                    window.result(command, payload);
            });
        QObject::connect(
            m_session, &TarnisSession::error, &window, [this, &window, generation](int code, const QString& text) {
                if (generation == m_generation)
                    window.error(code, text);
            });
        m_initialCommands = initialCommands;
        m_session->start(QThread::InheritPriority);
        sendInitialCommands(*m_session, m_initialCommands);
    }
    /// Sends `text` as the next poll, with a new session to the same server if the current one has ended.
    template <typename Window> void poll(Window& window, const QString& text)
    {
        setStopped({});
        if (!hasEnded()) {
            sendPoll(*m_session, text);
            return;
        }
        start(window, ServerAddress(m_address), QStringList(m_initialCommands));
        m_session->send(newPoll(text)); // after the initial commands, also if "AutoUpdate" is off
    }
    /// The first steps of result() of `window`. True for a payload to draw; any other reply has been handled, and
    /// `timer`, which may be null, starts the next poll. `form` as in readText().
    template <typename Window>
    bool bringsPayload(
        Window& window, QTimer* timer, const TarnisCmd& command, const QByteArray& payload, const QString& form)
    {
        if (!window.isVisible()) {
            if (timer != nullptr && command.m_bBinary)
                setStopped(tr("The window was hidden."));
            return false;
        }
        if (!window.onResultExInfo(replyTextLines(command.m_replyText.left(maxTextChars)))) {
            if (timer != nullptr)
                timer->start();
            return false;
        }
        if (!command.m_bBinary)
            readText(command, payload, form);
        return command.m_bBinary;
    }
    /// Ends the session in the background; the window's pointer is null then.
    void end();
    /// Call it with the `error` of the current session.
    void setFailed(const QString& message);

    /// Shows below the plot that the polling has stopped and why; an empty reason removes the line.
    void setStopped(const QString& reason);
    QString stopReason() const { return m_reason; } ///< empty while polling continues
    void retranslate(); ///< shows the state in the current language

    /// Passes the reply to the hook. True if the hook has handled it; the polling then continues.
    static bool isAnswered(const LiveWindowHooks& hooks, const UndrawnReply& reply, QTimer* timer);
    /// Stops the polling and reports the reply in a message box.
    void showUndrawn(const UndrawnReply& reply, QMessageBox::Icon icon);
    /// Reads a reply to a text command: a refusal is reported by showRefusal() and closes the window.
    void readText(const TarnisCmd& command, const QByteArray& payload, const QString& form);

    /// A reply with more values than the window accepts is not decoded.
    bool isTooLarge(qint64 values) const { return values > m_maxValues; }
    /// Describes such a reply for onUndrawn.
    UndrawnReply tooLarge(qint64 values) const;
    const QStringList& initialCommands() const { return m_initialCommands; } ///< of start()

private:
    void begin(const ServerAddress& address);
    bool hasEnded() const;

    QDialog& m_window;
    TarnisSession*& m_session;
    ServerAddress m_address;
    QStringList m_initialCommands;
    int m_generation = 0; ///< number of the session; identifies queued calls of an ended one
    bool m_hasFailed = false;
    QString m_reason;
    QString m_stoppedAt; ///< time of day
    MessageLabel* m_label = nullptr; ///< created on first use
    qint64 m_maxValues;
};

} // namespace tarnis
