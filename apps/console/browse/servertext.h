// Opens, edits and saves a text file on the server.
#pragma once

#include "windows/window.h"
#include <tarnis/foundation/retranslator.h>

#include <tarnis/server/tarniscmd.h>

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>

namespace Ui {
class ServerText;
}

namespace console {

class CommandChannel;

/// How the bytes of a file were converted to text, so that the same bytes can be restored.
struct TextForm {
    bool isUtf8 = true; ///< else Latin-1
    bool hasCarriageReturns = false; ///< before each line feed
};

/// The text of a file; empty if it contains zero bytes or inconsistent carriage returns.
std::optional<QString> textOfFile(const QByteArray& bytes, TextForm& form);
/// The bytes of a text; empty if the form cannot represent a character.
std::optional<QByteArray> bytesOfText(const QString& text, const TextForm& form);

/// Reads with `rxfile`, writes with `txfile`. Text counts as saved only when the server has written exactly that text;
/// it is kept when the server is lost. Closing, and opening another file, ask about unsaved changes. GUI thread.
class ServerTextWindow : public QDialog {
    Q_OBJECT
public:
    explicit ServerTextWindow(const WindowContext& context);
    ~ServerTextWindow() override;

    /// Requests this file from the server. It replaces unsaved changes without confirmation.
    void openFile(const QString& path);
    /// Writes the text to this file on the server, replacing its content.
    void saveTo(const QString& path);

    /// Asks first if there are unsaved changes.
    void reject() override;

protected:
    void chooseOpen();
    void chooseSaveAs();
    void save();
    void askAboutChanges(const std::function<void()>& goOn);
    void onAnswered(int button, const std::function<void()>& goOn);
    void stay();
    bool mayChoose();
    bool isUnderWay(QLatin1String name) const;
    bool send(const QString& request, const QString& name, bool isBinary);
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onRead(const PTarnisCmd& command, const QByteArray& bytes);
    void onWritten(const QByteArray& reply);
    bool isModified() const;
    void keepModified();
    void setStateText(const tarnis::TranslatedText& translated);
    void updateControls();

    WindowContext m_context;
    std::unique_ptr<Ui::ServerText> ui;
    CommandChannel* m_channel;
    QString m_path; ///< file of the shown text; empty if it has no file yet
    QString m_asked; ///< file being read or written
    TextForm m_form;
    int m_sentRevision = 0; ///< revision of the text that is being written
    std::function<void()> m_afterSave; ///< action that waits for the save
};

} // namespace console
