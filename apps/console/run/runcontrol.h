// Starts and stops runs and clears their data.
#pragma once

#include "notices/alert.h"

#include <QObject>
#include <QPointer>
#include <QString>

class QMessageBox;
class QWidget;

namespace console {

class CommandChannel;
class ServerController;
class StatusPoller;

/// Sends "start", "stop" and "clear" on its own connection, so that a run can be stopped while the command line waits
/// for a long reply. Asks first if data would be lost. GUI thread.
class RunControl : public QObject {
    Q_OBJECT
public:
    /// All three must outlive it. Questions appear on `window`.
    RunControl(ServerController& controller, StatusPoller& poller, QWidget& window);
    ~RunControl() override;

    /// Why the command cannot be sent now, as a text for users; empty if it can.
    QString startRefusal() const;
    QString stopRefusal() const;
    QString clearRefusal() const;

public Q_SLOTS:
    void start();
    void stop();
    void clear();

Q_SIGNALS:
    /// A command has been answered. A refusal is also emitted by `statusMessage`.
    void answered(const QString& command, const QByteArray& reply);
    void statusMessage(const console::Alert& message);
    /// A refusal may have changed.
    void changed();

protected:
    QString commonRefusal() const;
    void send(const QString& command);
    void sendIfAgreed(const QString& command, const QString& question, const QString& action);
    void onReplied(const QString& command, const QByteArray& reply);

    ServerController& m_controller;
    StatusPoller& m_poller;
    QWidget& m_window;
    CommandChannel* m_channel;
    QPointer<QMessageBox> m_question;
};

} // namespace console
