#include "command/transcript.h"

#include "app/colours.h"

#include <QEvent>
#include <QFontDatabase>
#include <QScrollBar>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <QTime>

namespace console {

namespace {

/// Colours lines by their kind, so that a palette change also affects old lines.
class LineColours : public QSyntaxHighlighter {
public:
    LineColours(QTextDocument* document, const QWidget& view, int commandKind, int refusalKind, int noteKind)
        : QSyntaxHighlighter(document)
        , m_view(view)
        , m_commandKind(commandKind)
        , m_refusalKind(refusalKind)
        , m_noteKind(noteKind)
    {
    }

protected:
    void highlightBlock(const QString& text) override
    {
        const int kind = currentBlock().userState();
        QTextCharFormat format;
        if (kind == m_commandKind)
            format.setFontWeight(QFont::Bold);
        else if (kind == m_refusalKind)
            format.setForeground(badText(m_view.palette()));
        else if (kind == m_noteKind)
            format.setForeground(quietText(m_view.palette()));
        setFormat(0, int(text.size()), format);
    }

    const QWidget& m_view;
    int m_commandKind;
    int m_refusalKind;
    int m_noteKind;
};

} // namespace

Transcript::Transcript(QWidget* parent)
    : QPlainTextEdit(parent)
    , m_highlighter(new LineColours(document(), *this, Command, Refusal, Note))
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setMaximumBlockCount(20000);
    setUndoRedoEnabled(false);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void Transcript::addCommand(const QString& command)
{
    append(QStringLiteral("%1  > %2").arg(QTime::currentTime().toString(u"HH:mm:ss"), command), Command);
}

void Transcript::addReply(const QString& text, ReplyKind kind)
{
    clearLive();
    append(text, kind == ReplyKind::Refused ? Refusal : Reply);
}

void Transcript::addNote(const QString& text)
{
    clearLive();
    append(QStringLiteral("-- %1").arg(text), Note);
}

void Transcript::append(const QString& text, LineKind kind)
{
    const bool wasAtEnd = isAtEnd();
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    for (const QString& line : text.split(u'\n')) {
        if (!document()->isEmpty())
            cursor.insertBlock();
        cursor.block().setUserState(kind);
        cursor.insertText(line);
    }
    cursor.endEditBlock();
    if (wasAtEnd)
        goToEnd();
}

bool Transcript::isAtEnd() const
{
    const QScrollBar* bar = verticalScrollBar();
    return bar->value() >= bar->maximum() - 2;
}

void Transcript::goToEnd()
{
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void Transcript::resizeEvent(QResizeEvent* event)
{
    const bool wasAtEnd = isAtEnd();
    QPlainTextEdit::resizeEvent(event);
    if (wasAtEnd)
        goToEnd();
}

void Transcript::setLive(const QString& text)
{
    clearLive();
    m_live = QTextCursor(document());
    m_live.movePosition(QTextCursor::End);
    m_live.setKeepPositionOnInsert(true);
    append(text, Reply);
}

void Transcript::clearLive()
{
    if (m_live.isNull())
        return;
    // Insertions have moved the anchor of the cursor, but not its position.
    m_live.setPosition(m_live.position());
    m_live.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    m_live.removeSelectedText();
    m_live = QTextCursor();
}

void Transcript::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_highlighter->rehighlight();
}

} // namespace console
