// A text file on the server's side: opened, edited and saved there.
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

/// How the bytes of a file became text, so that the same bytes come of it again.
struct TextForm {
    bool isUtf8 = true; ///< else Latin-1
    bool hasCarriageReturns = false; ///< in front of each line feed
};

/// The text of a file; nothing if it holds what no text holds (zero bytes, carriage returns here and there).
std::optional<QString> textOfFile(const QByteArray& bytes, TextForm& form);
/// The bytes of a text; nothing if the form cannot hold a character of it.
std::optional<QByteArray> bytesOfText(const QString& text, const TextForm& form);

/// Reads with `rxfile`, writes with `txfile`. What is typed counts as saved only when the server has written that very
/// text; it survives a server that goes. Closing, and opening another file, ask about changes. GUI thread.
class ServerTextWindow : public QDialog {
    Q_OBJECT
public:
    explicit ServerTextWindow(const WindowContext& context);
    ~ServerTextWindow() override;

    /// Asks the server for this file. Changes go as soon as it is there, without a question.
    void openFile(const QString& path);
    /// Writes the text to this file on the server, in place of what is there.
    void saveTo(const QString& path);

    /// Asks first if there are changes.
    void reject() override;

protected:
    void changeEvent(QEvent* event) override;
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
    void tell(const tarnis::TranslatedText& words);
    void updateControls();

    WindowContext m_context;
    std::unique_ptr<Ui::ServerText> ui;
    CommandChannel* m_link;
    QString m_path; ///< of the text on show; empty for one that has no file yet
    QString m_asked; ///< what is being read or written
    TextForm m_form;
    int m_sentRevision = 0; ///< of the text that is being written
    std::function<void()> m_afterSave; ///< what waits for it
};

} // namespace console
