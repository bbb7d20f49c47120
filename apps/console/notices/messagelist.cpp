#include "notices/messagelist.h"

#include <tarnis/foundation/sysmsg.h>

#include <QRegularExpression>
#include <QTime>

#include <array>

namespace console {

MessageList::MessageList(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setMaximumBlockCount(2000);
    setUndoRedoEnabled(false);
    connect(&_g_sysMsg, &SysMsg::onSysMsg, this, &MessageList::onSysMsg);
}

QString MessageList::translated(const QString& message)
{
    // What the library tells, word for word.
    static constexpr std::array known {
        QT_TR_NOOP("Local Server[%1] Started"),
        QT_TR_NOOP("Could not Start Local Server[%1] - check velmark.xml localServer element"),
        QT_TR_NOOP("Local Tarnis Server Started on port %1"),
        QT_TR_NOOP("Remote Tarnis Server Started on port %1"),
        QT_TR_NOOP("Server process crashed."),
        QT_TR_NOOP("ServerError: Crashed but shutting down or idle. err[%1]"),
        QT_TR_NOOP("Socket Error %1 %2"),
    };
    for (const char* const text : known) {
        QString pattern = QRegularExpression::escape(QLatin1String(text));
        pattern.replace(QLatin1String("\\%1"), QLatin1String("(.*?)"))
            .replace(QLatin1String("\\%2"), QLatin1String("(.*)"));
        const auto match = QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(message);
        if (!match.hasMatch())
            continue;
        QString words = tr(text);
        if (match.lastCapturedIndex() == 1)
            words = words.arg(match.captured(1));
        else if (match.lastCapturedIndex() == 2)
            words = words.arg(match.captured(1), match.captured(2));
        return words;
    }
    return message;
}

void MessageList::onSysMsg(const QString& message)
{
    appendPlainText(QStringLiteral("%1  %2").arg(QTime::currentTime().toString(u"HH:mm:ss"), translated(message)));
}

} // namespace console
