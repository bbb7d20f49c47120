// Tool tips of controls: their help, or the reason why they are disabled.
#pragma once

class QAbstractButton;
class QAction;
class QKeySequence;
class QString;
class QWidget;

namespace console {

/// "Read from the server (F5)": appends the key in the desktop's format and the current language.
QString withKey(const QString& help, const QKeySequence& key);

/// `key` clicks the button while its window is active. The button's own shortcut would be reset by each new text.
void addKey(QAbstractButton* button, const QKeySequence& key);

/// A property with the control's tool tip while it is enabled, for callers of setEnabledWithHelp() without a text.
inline constexpr char helpProperty[] = "help";

/// Enables or disables the control. Its tooltip is `help`, or `reason` while it is disabled. An action's shortcut is
/// added to its help. A button that has the focus when it is disabled gets it back, unless another control has taken
/// it.
void setEnabledWithHelp(QWidget* control, bool isEnabled, const QString& help, const QString& reason);
void setEnabledWithHelp(QAction* action, bool isEnabled, const QString& help, const QString& reason);

} // namespace console
