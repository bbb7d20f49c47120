#include "command/commandedit.h"

#include <QKeyEvent>

namespace console {

void CommandEdit::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isPlain && event->key() == Qt::Key_Up)
        setText(m_history.older(text()));
    else if (isPlain && event->key() == Qt::Key_Down)
        setText(m_history.newer(text()));
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace console
