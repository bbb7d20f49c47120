// The displayed record of commands and replies.
#pragma once

#include "server/replytext.h"

#include <QPlainTextEdit>
#include <QTextCursor>

class QSyntaxHighlighter;

namespace console {

/// Read-only text; the last entry is kept visible unless the user has scrolled up. Limited to 20000 lines.
class Transcript : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit Transcript(QWidget* parent = nullptr);

    /// Adds a command that is being sent, with the time of day.
    void addCommand(const QString& command);
    /// Adds a reply, replacing its live text if there is any.
    void addReply(const QString& text, ReplyKind kind);
    /// Adds a note of the console.
    void addNote(const QString& text);

    /// Shows the received part of a reply under way, replacing the previous part.
    void setLive(const QString& text);
    /// Removes the live text.
    void clearLive();

protected:
    enum LineKind { Reply, Command, Refusal, Note };

    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool isAtEnd() const;
    void goToEnd();
    void append(const QString& text, LineKind kind);

    QSyntaxHighlighter* m_highlighter;
    QTextCursor m_live; ///< at the start of the live text; null without one
};

} // namespace console
