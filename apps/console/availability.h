// No dead controls: what cannot be used now is disabled and says why.
#pragma once

class QAction;
class QString;
class QWidget;

namespace console {

/// Enables or disables the control. Its tooltip is `help`, or `reason` while it is disabled.
void setAvailable(QWidget* control, bool isAvailable, const QString& help, const QString& reason);
void setAvailable(QAction* action, bool isAvailable, const QString& help, const QString& reason);

} // namespace console
