#include "notices/messagelist.h"

#include <tarnis/foundation/systemmessages.h>

#include <QTime>

namespace console {

MessageList::MessageList(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setMaximumBlockCount(2000);
    setUndoRedoEnabled(false);
    connect(&tarnis::SystemMessages::instance(), &tarnis::SystemMessages::posted, this, &MessageList::append);
}

void MessageList::append(const tarnis::SystemMessage& message)
{
    appendPlainText(QStringLiteral("%1  %2").arg(QTime::currentTime().toString(u"HH:mm:ss"), message.translated()));
}

} // namespace console
