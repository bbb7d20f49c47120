// The command half of the main window: the record of replies, the command line, uploads and progress.
#pragma once

#include "notices/alert.h"
#include "server/commandchannel.h"

#include <tarnis/server/tarniscmd.h>

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <memory>

namespace Ui {
class CommandPanel;
}

namespace console {

class History;
class ServerController;
class Uploader;

/// Sends what is typed on a session of its own, one after the other, and shows every reply. GUI thread.
class CommandPanel : public QWidget {
    Q_OBJECT
public:
    CommandPanel(ServerController& controller, QWidget* parent);
    ~CommandPanel() override;

    History& history();
    /// Gives the keyboard to the command line.
    void focusCommand();
    /// True while a command has no answer yet.
    bool isBusy() const;
    bool hasRecord() const;
    /// The whole record as text.
    QString recordText() const;
    /// The panel's session, for dialogs that read host, port and prompt from it.
    CommandChannel& link() { return *m_link; }
    void addMessage(const QString& text);
    /// Records a command that another part of the console has sent, with its reply, and acts on the reply as on one to
    /// a typed command.
    void addExchange(const QString& command, const QByteArray& reply);
    /// Puts a path of the server into the command line at the cursor, between quotation marks as the server reads it.
    void insertPath(const QString& path);

public Q_SLOTS:
    /// Sends what stands in the command line.
    void sendTyped();
    /// Forgets the commands that have no answer yet, together with their connection.
    void giveUp();
    /// Asks for a file and sends it.
    void chooseUpload();
    /// Sends the file under its own name, after a look at whether that can work; asks before one is overwritten.
    void upload(const QString& path);
    /// Sends the commands that were lost last once more; does nothing without a server.
    void sendAgain();
    void clearRecord();

Q_SIGNALS:
    void statusMessage(const console::Alert& message);
    /// The panel has become busy or free, or the record empty or not.
    void busyChanged();
    /// A command has come into the history.
    void commandTyped();
    /// What could be sent again was sent by hand.
    void nothingLost();
    /// The server has not refused it.
    void accepted(const QString& command);

protected:
    void changeEvent(QEvent* event) override;
    void send(const Request& request);
    void sendFile(const QString& request, const QByteArray& content);
    void takeReply(const QString& command, const QByteArray& reply);
    void onProgress(const QByteArray& piece);
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onFailed(int socketError, const QString& message, const QList<Request>& unanswered);
    void onWaitingChanged();
    void announce();
    void onTyped(const QString& text);
    void keepLost(const QList<Request>& unanswered);
    void showProgress();
    void updateControls();
    void hint(const QString& text);

    ServerController& m_controller;
    std::unique_ptr<Ui::CommandPanel> ui;
    CommandChannel* m_link;
    Uploader* m_uploader;
    QTimer m_progressTimer;
    bool m_isAnnounced = false; ///< the command on the wire stands in the record
    QElapsedTimer m_elapsed; ///< since the command on the wire went out
    QByteArray m_liveTail; ///< the end of the reply that is coming
    qint64 m_received = 0; ///< bytes of it
    qint64 m_shown = 0; ///< bytes of it when it was last shown
    bool m_hadRecord = false; ///< when the record last changed
    QList<Request> m_lost; ///< commands without a reply that can be sent again
    bool m_isBinaryChosen = false; ///< the user has set the binary mark, it does not follow the text any more
};

} // namespace console
