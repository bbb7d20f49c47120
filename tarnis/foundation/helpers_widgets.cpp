// The helper for widgets. It is separate because it needs Qt Widgets.
#include "tarnis/foundation/helpers.h"

#include <QWidget>

void setEnabled(QWidget* widget, bool enabled)
{
    if (!widget)
        return;
    widget->setEnabled(enabled);
    widget->setStyleSheet(enabled ? QString() : QStringLiteral("color:gray; background-color:rgb(240,240,240);"));
}
