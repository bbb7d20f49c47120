// Prepares a file for sending: reads it, looks up its name on the server, and asks before overwriting.
#pragma once

#include "server/commandchannel.h"
#include <tarnis/foundation/retranslator.h>

#include <QByteArray>
#include <QObject>
#include <QString>

class QWidget;

namespace console {

class ServerController;

/// One file at a time. Each start() ends with ready(), refused(), or cancellation by the user. GUI thread.
class FileSender : public QObject {
    Q_OBJECT
public:
    /// Questions are shown on `window`.
    FileSender(ServerController& controller, QWidget& window);
    ~FileSender() override;

    /// Sends the file under its own name, to the server's current folder.
    void start(const QString& path);

Q_SIGNALS:
    /// `request` is the first line of the request, "txfile" and a name.
    void ready(const QString& request, const QByteArray& content);
    /// The file cannot be sent; the reason is a sentence.
    void refused(const tarnis::TranslatedText& translated);

protected:
    bool read(const QString& path);
    void lookUp(const QString& command);
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onStopping();
    void onUnknown(const QString& why);
    void question(const tarnis::TranslatedText& translated);
    void finish();
    void refuse(const tarnis::TranslatedText& why);

    ServerController& m_controller;
    QWidget& m_window;
    CommandChannel* m_channel;
    bool m_isBusy = false;
    QString m_path; ///< path on this machine
    QString m_name; ///< name on the server
    QString m_folder; ///< folder of the server
    QByteArray m_content;
};

} // namespace console
