// The line edit for commands.
#pragma once

#include "command/history.h"

#include <QLineEdit>

namespace console {

/// A line edit whose Up and Down keys step through a history.
class CommandEdit : public QLineEdit {
    Q_OBJECT
public:
    using QLineEdit::QLineEdit;

    History& history() { return m_history; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

    History m_history;
};

} // namespace console
