// Words that stand on the screen for a while and follow the language all the time.
#pragma once

#include <QString>

#include <functional>

class QLabel;
class QWidget;

namespace console {

/// Gives the text in the current language; asked again with each change of it.
using Words = std::function<QString()>;

/// Shows the words on the label, until the next call for it.
void say(QLabel& label, const Words& words);

/// Gives the window its title. Forms of the library take their first one up again when the language changes.
void keepTitle(QWidget& window, const Words& title);

} // namespace console
