// Tool tips for the controls that come without one: those of the library's forms and the standard buttons.
#pragma once

class QWidget;

namespace console {

/// Gives each control of the window that has no tool tip one in the current language. Called again when the language
/// changes or controls are added, it replaces its own texts only.
void addToolTips(QWidget& window);

} // namespace console
