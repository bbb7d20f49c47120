#include "messagelist.h"

#include <tarnis/foundation/sysmsg.h>

#include <QTime>

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

void MessageList::onSysMsg(const QString& message)
{
    appendPlainText(QStringLiteral("%1  %2").arg(QTime::currentTime().toString(u"HH:mm:ss"), message));
}

} // namespace console
