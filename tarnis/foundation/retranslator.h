/// @file
/// Texts that are set in code rather than by a form, and that follow the application's language. GUI thread only.
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

/// Calls `apply` after each change of the application's language, after `widget` itself has handled the change. Ends
/// when the widget is destroyed.
TARNIS_EXPORT void onLanguageChange(QWidget& widget, std::function<void()> apply);

/// Sets the label's text, now and after each change of the language, until the next call for this label.
TARNIS_EXPORT void setTranslatedText(QLabel& label, const TranslatedText& text);

/// Sets the text of the action, now and after each change of the language that reaches `owner`, replacing an earlier
/// call. A text that the host has set in the meantime is kept.
TARNIS_EXPORT void setTranslatedText(QAction& action, QWidget& owner, const TranslatedText& text);

/// Sets the window's title, now and after each change of the language, until the next call for this window. A title
/// of the window's form, which the form sets again with each change, is replaced.
TARNIS_EXPORT void setTranslatedTitle(QWidget& window, const TranslatedText& title);

} // namespace tarnis
