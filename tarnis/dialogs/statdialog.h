// The server's statistics in a table that is updated continuously. GUI thread only.
#pragma once

#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/server/tarniscmd.h>

class TarnisSession;

/// Polls a text command and shows the lines "name:value" of each reply, in the order in which names first appear. The
/// next command is sent when a reply has arrived; the session pauses one second after each. A socket error clears the
/// table and stops the polling; an "NG:" line is not shown and does not stop it.
class TARNIS_EXPORT StatDialog : public NameValueListDialog {
    Q_OBJECT
public:
    /// Takes ownership of `session`, which must not have been started, and starts it. An empty `title` becomes the
    /// application's name, an empty `cmd` "stat". Polls until destroyed, also while closed.
    StatDialog(TarnisSession* session, QString const& title, QString const& cmd, QWidget* parent);
    ~StatDialog() override;

public Q_SLOTS:
    /// Replaces the table by the "name:value" lines of the reply, and sends the next command.
    virtual void result(PTarnisCmd cmd, QByteArray const& payload);
    virtual void error(int code, QString const& text); ///< clears the table; nothing more is sent

protected:
    TarnisSession* session; ///< owned
    QString cmd; ///< the polled command

    void sendCommand(); ///< queues one more poll, for a subclass with a new session
};
