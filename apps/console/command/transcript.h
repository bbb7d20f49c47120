// The record of commands and replies, as the user reads it.
#pragma once

#include "server/replytext.h"

#include <QPlainTextEdit>
#include <QTextCursor>

class QSyntaxHighlighter;

namespace console {

/// Read-only text; the latest entry is kept in view unless the user has scrolled up. Old lines go beyond 20000.
class Transcript : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit Transcript(QWidget* parent = nullptr);

    /// A command that goes out now, with the time of day.
    void addCommand(const QString& command);
    /// A reply, in place of its live text if there is any.
    void addReply(const QString& text, ReplyKind kind);
    /// A remark of the console's own.
    void addNote(const QString& text);

    /// Shows what has come of a reply that is still under way, in place of what was shown of it before.
    void setLive(const QString& text);
    /// Takes the live text away.
    void clearLive();

protected:
    enum LineKind { Reply, Command, Refusal, Note };

    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool isAtEnd() const;
    void goToEnd();
    void append(const QString& text, LineKind kind);

    QSyntaxHighlighter* m_highlighter;
    QTextCursor m_live; ///< stands in front of the live text; null without one
};

} // namespace console
