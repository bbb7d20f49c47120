/// @file
/// Texts that are set in code, not by a form, and follow the application's language. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QAction;
class QLabel;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// Returns a text in the current language. Called again after each change of the language.
using TranslatedText = std::function<QString()>;

/// Calls `apply` after each change of the application's language, once `widget` itself has taken it up. Ends with the
/// widget.
TARNIS_EXPORT void onLanguageChange(QWidget& widget, std::function<void()> apply);

/// Sets the label's text, now and after each change of the language, until the next call for this label.
TARNIS_EXPORT void setTranslatedText(QLabel& label, const TranslatedText& text);

/// Sets the text of the action, now and after each change of the language that reaches `owner`, in place of an earlier
/// call's. A text that the host has set since stays.
TARNIS_EXPORT void setTranslatedText(QAction& action, QWidget& owner, const TranslatedText& text);

/// Sets the window's title, now and after each change of the language, until the next call for this window. A title
/// of the window's form, which the form sets again with each change, is replaced.
TARNIS_EXPORT void setTranslatedTitle(QWidget& window, const TranslatedText& title);

} // namespace tarnis
