#include "app/availability.h"

#include <QAbstractButton>
#include <QAction>
#include <QShortcut>

namespace console {

QString withKey(const QString& help, const QKeySequence& key)
{
    return key.isEmpty() ? help : QStringLiteral("%1 (%2)").arg(help, key.toString(QKeySequence::NativeText));
}

void addKey(QAbstractButton* button, const QKeySequence& key)
{
    auto* const shortcut = new QShortcut(key, button); // silent while the button is disabled
    QObject::connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
}

void setAvailable(QWidget* control, bool isAvailable, const QString& help, const QString& reason)
{
    control->setEnabled(isAvailable);
    control->setToolTip(isAvailable ? help : reason);
    control->setAccessibleDescription(isAvailable ? help : reason);
}

void setAvailable(QAction* action, bool isAvailable, const QString& help, const QString& reason)
{
    action->setEnabled(isAvailable);
    action->setToolTip(isAvailable ? withKey(help, action->shortcut()) : reason);
}

} // namespace console
