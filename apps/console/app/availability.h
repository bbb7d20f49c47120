// No dead controls: what cannot be used now is disabled and says why.
#pragma once

class QAbstractButton;
class QAction;
class QKeySequence;
class QString;
class QWidget;

namespace console {

/// "Ask the server (F5)": the key as the desktop writes it in the current language.
QString withKey(const QString& help, const QKeySequence& key);

/// `key` presses the button while its window is in front. A key of the button's own would go with each new text.
void addKey(QAbstractButton* button, const QKeySequence& key);

/// A property of a control: its tool tip while it can be used, for callers of setAvailable() that have no text of their
/// own.
inline constexpr char helpProperty[] = "help";

/// Enables or disables the control. Its tooltip is `help`, or `reason` while it is disabled. An action's own key is
/// added to its help. A button that has the keyboard when it is disabled gets it back, unless another control took it.
void setAvailable(QWidget* control, bool isAvailable, const QString& help, const QString& reason);
void setAvailable(QAction* action, bool isAvailable, const QString& help, const QString& reason);

} // namespace console
