#include "app/controlhelp.h"

#include <QAbstractButton>
#include <QAction>
#include <QShortcut>
#include <QToolButton>
#include <QVariant>

namespace console {

QString withKey(const QString& help, const QKeySequence& key)
{
    return key.isEmpty() ? help : QStringLiteral("%1 (%2)").arg(help, key.toString(QKeySequence::NativeText));
}

void addKey(QAbstractButton* button, const QKeySequence& key)
{
    auto* const shortcut = new QShortcut(key, button); // does nothing while the button is disabled
    QObject::connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
}

namespace {

constexpr char waitingProperty[] = "waitsForKeyboard";

/// A button that is disabled by its own click would pass the focus on, perhaps to a line edit, which then selects its
/// text, so that the next key replaces it. In the meantime no widget has the focus; the button gets it back.
void enable(QWidget& control, bool isEnabled)
{
    QWidget* const window = control.window();
    const bool hasKeyboard = window->focusWidget() == &control && qobject_cast<QAbstractButton*>(&control);
    if (!isEnabled && control.isEnabled() && hasKeyboard) {
        control.clearFocus();
        control.setProperty(waitingProperty, true);
    }
    control.setEnabled(isEnabled);
    if (!isEnabled || !control.property(waitingProperty).toBool())
        return;
    control.setProperty(waitingProperty, false);
    if (!window->focusWidget())
        control.setFocus(Qt::OtherFocusReason);
}

} // namespace

void setEnabledWithHelp(QWidget* control, bool isEnabled, const QString& help, const QString& reason)
{
    const QString usual = help.isEmpty() ? control->property(helpProperty).toString() : help;
    enable(*control, isEnabled);
    control->setToolTip(isEnabled ? usual : reason);
    control->setAccessibleDescription(isEnabled ? usual : reason);
}

void setEnabledWithHelp(QAction* action, bool isEnabled, const QString& help, const QString& reason)
{
    const auto users = action->associatedObjects();
    for (QObject* const user : users) {
        if (auto* const button = qobject_cast<QToolButton*>(user); button && button->defaultAction() == action)
            enable(*button, isEnabled);
    }
    action->setEnabled(isEnabled);
    action->setToolTip(isEnabled ? withKey(help, action->shortcut()) : reason);
}

} // namespace console
