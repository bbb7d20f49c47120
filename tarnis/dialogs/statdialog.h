// The server's statistics in a table that keeps itself up to date. GUI thread only.
#pragma once

#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/server/tarniscmd.h>

class TarnisSession;

/// Polls a text command and shows the lines "name:value" of each reply, in the order in which names first appear. The
/// next command goes out when a reply has come, and the session pauses a second after each. A socket error empties the
/// table and ends the polling; an "NG:" line shows nothing and does not end it.
class TARNIS_EXPORT StatDialog : public NameValueListDialog {
    Q_OBJECT
public:
    /// Takes over `session`, which must not have been started, and starts it. An empty `title` becomes the
    /// application's name, an empty `cmd` "stat". Polls until destroyed, also while closed.
    StatDialog(TarnisSession* session, QString const& title, QString const& cmd, QWidget* parent);
    ~StatDialog() override;

public Q_SLOTS:
    /// Replaces the table by the "name:value" lines of the reply, and sends the next command.
    virtual void result(PTarnisCmd cmd, QByteArray const& payload);
    virtual void error(int code, QString const& text); ///< empties the table; nothing is sent any more

protected:
    void sendCommand(); ///< queues one more poll; needs a session

    TarnisSession* session; ///< owned
    QString cmd; ///< what is polled
};
