// Prepares an upload: reads the file, looks up its name on the server, and asks before overwriting.
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
class Uploader : public QObject {
    Q_OBJECT
public:
    /// Questions are shown on `window`.
    Uploader(ServerController& controller, QWidget& window);
    ~Uploader() override;

    /// Uploads the file under its own name, to the server's current folder.
    void start(const QString& path);

Q_SIGNALS:
    /// `request` is the first line of the upload.
    void ready(const QString& request, const QByteArray& content);
    /// The upload is not possible; the reason is a sentence.
    void refused(const tarnis::TranslatedText& translated);

protected:
    bool read(const QString& path);
    void look(const QString& command);
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
