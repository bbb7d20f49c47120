// Texts that are set in code, not by a form, and follow the application's language all the same.
#pragma once

#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QAction;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// Calls `apply` after each change of the application's language, when `widget` itself has taken it up. Ends with the
/// widget.
void followLanguage(QWidget& widget, std::function<void()> apply);

/// Gives the action `text()` now and after each change of the language that reaches `owner`, in place of what an
/// earlier call gave it. A text that someone else has set since stays.
void nameAction(QAction& action, QWidget& owner, std::function<QString()> text);

} // namespace tarnis
