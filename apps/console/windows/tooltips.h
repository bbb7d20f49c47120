// Tool tips for controls without one: those of the library's forms and the standard buttons.
#pragma once

class QWidget;

namespace console {

/// Sets a tool tip in the current language for each control of the window that has none. Further calls, after a
/// language change or for new controls, replace only these tool tips.
void addToolTips(QWidget& window);

} // namespace console
