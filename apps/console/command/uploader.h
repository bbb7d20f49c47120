// A file on its way to the server: read, its name looked up there, and a question asked before one is overwritten.
#pragma once

#include "server/commandchannel.h"
#include <tarnis/foundation/retranslator.h>

#include <QByteArray>
#include <QObject>
#include <QString>

class QWidget;

namespace console {

class ServerController;

/// One file at a time. Ends each start() with ready(), refused(), or an answer to the question that says no. GUI
/// thread.
class Uploader : public QObject {
    Q_OBJECT
public:
    /// The questions stand in front of `window`.
    Uploader(ServerController& controller, QWidget& window);
    ~Uploader() override;

    /// Uploads the file under its own name, into the folder that the server takes names from.
    void start(const QString& path);

Q_SIGNALS:
    /// `request` is the first line of the upload.
    void ready(const QString& request, const QByteArray& content);
    /// Why not, as a sentence.
    void refused(const tarnis::TranslatedText& words);

protected:
    bool read(const QString& path);
    void look(const QString& command);
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onStopping();
    void onUnknown(const QString& why);
    void question(const tarnis::TranslatedText& words);
    void finish();
    void refuse(const tarnis::TranslatedText& why);

    ServerController& m_controller;
    QWidget& m_window;
    CommandChannel* m_link;
    bool m_isBusy = false;
    QString m_path; ///< on this machine
    QString m_name; ///< on the server
    QString m_folder; ///< of the server
    QByteArray m_content;
};

} // namespace console
