// What the two live windows share: a private session, the poll, the line of information, the bar of progress.
#pragma once

#include <QString>
#include <QStringList>

class QLabel;
class QObject;
class QProgressBar;
class QTimer;
class QWidget;
class TarnisCmd;
class TarnisSession;

namespace tarnis {

/// The pause of the session and the time of the window's timer between two polls.
inline constexpr int pollIntervalMs = 1000;

/// A started session for host, port and prompt of `model`, owned by the caller, whose `connected`, `result` and `error`
/// reach the slots onTimeout(), result() and error() of `window`.
TarnisSession* startPrivateSession(TarnisSession& model, QObject* window);

/// Ends the session in the background and sets the pointer to null. What the session has queued for `window` by
/// then still reaches its slots, which find the pointer null.
void endPrivateSession(TarnisSession*& session, const QObject* window);

/// Queues each of `commands` as a text command.
void sendInitialCommands(TarnisSession& session, const QStringList& commands);

/// Drops what the session has still queued and sends `text` as the next poll.
void sendPoll(TarnisSession& session, const QString& text);

/// A single-shot timer of the poll's interval, a child of `window`, bound to its slot onTimeout() and not started.
QTimer* newPollTimer(QObject* window);

/// Shows the trimmed text, or hides the label where nothing is left.
void showInfo(QLabel& label, const QString& text);

/// Shows value / maximum in per cent, or hides the bar.
void showProgress(QProgressBar& bar, bool visible, unsigned long long value, unsigned long long maximum);

/// The lines in which the server complains, joined.
QString complaints(const QStringList& lines);

/// Tells the user, in a box, that the server has refused the command. `form` is ">>> %1\n<<< %2", translated in the
/// window's own context.
void showRefusal(QWidget* window, const QString& form, const TarnisCmd& command, const QByteArray& reply);

} // namespace tarnis
