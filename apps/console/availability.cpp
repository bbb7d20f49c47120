#include "availability.h"

#include <QAction>
#include <QWidget>

namespace console {

void setAvailable(QWidget* control, bool isAvailable, const QString& help, const QString& reason)
{
    control->setEnabled(isAvailable);
    control->setToolTip(isAvailable ? help : reason);
    control->setAccessibleDescription(isAvailable ? help : reason);
}

void setAvailable(QAction* action, bool isAvailable, const QString& help, const QString& reason)
{
    action->setEnabled(isAvailable);
    action->setToolTip(isAvailable ? help : reason);
}

} // namespace console
