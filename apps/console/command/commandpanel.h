// The command part of the main window: the record of replies, the command line, files to send and progress.
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
class FileSender;

/// Sends typed commands one after the other on its own connection, and shows every reply. GUI thread.
class CommandPanel : public QWidget {
    Q_OBJECT
public:
    CommandPanel(ServerController& controller, QWidget* parent);
    ~CommandPanel() override;

    History& history();
    /// Gives the focus to the command line.
    void focusCommand();
    /// True while a command is unanswered.
    bool isBusy() const;
    bool hasRecord() const;
    /// The complete record as text.
    QString recordText() const;
    void addMessage(const QString& text);
    /// Records a command sent by another part of the console, with its reply, and handles the reply like that of a
    /// typed command.
    void addExchange(const QString& command, const QByteArray& reply);
    /// Inserts a path of the server at the cursor of the command line, quoted for the server.
    void insertPath(const QString& path);

public Q_SLOTS:
    /// Sends the text of the command line.
    void sendTyped();
    /// Drops the unanswered commands and their connection.
    void giveUp();
    /// Lets the user choose a file and sends it.
    void chooseFileToSend();
    /// Sends the file under its own name, after checking that this is possible; asks before overwriting a file.
    void sendFile(const QString& path);
    /// Sends the last lost commands again; does nothing without a server.
    void sendAgain();
    void clearRecord();

Q_SIGNALS:
    void statusMessage(const console::Alert& message);
    /// The panel has become busy or free, or the record empty or not.
    void busyChanged();
    /// A command was added to the history.
    void commandTyped();
    /// The user has sent the lost commands again manually.
    void nothingLost();
    /// The server has not refused the command.
    void accepted(const QString& command);

protected:
    void send(const Request& request);
    void sendContent(const QString& request, const QByteArray& content);
    void takeReply(const QString& command, const QByteArray& reply);
    void onProgress(const QByteArray& piece);
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onFailed(const QString& message, const QList<Request>& unanswered);
    void onWaitingChanged();
    void announce();
    void onTyped(const QString& text);
    void keepLost(const QList<Request>& unanswered);
    void showProgress();
    void updateControls();
    void hint(const QString& text);

    ServerController& m_controller;
    std::unique_ptr<Ui::CommandPanel> ui;
    CommandChannel* m_channel;
    FileSender* m_fileSender;
    QTimer m_progressTimer;
    bool m_isAnnounced = false; ///< the command being sent is in the record
    QElapsedTimer m_elapsed; ///< time since the current command was sent
    QByteArray m_liveTail; ///< the end of the reply under way
    qint64 m_received = 0; ///< bytes received of it
    qint64 m_shown = 0; ///< bytes of it when it was last displayed
    bool m_hadRecord = false; ///< whether there was a record at its last change
    QList<Request> m_lost; ///< lost commands that can be sent again
    bool m_isBinaryChosen = false; ///< the user has set the check box "binary", which no longer follows the text
};

} // namespace console
