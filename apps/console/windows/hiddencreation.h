// Creation of windows that show themselves while they are constructed.
#pragma once

#include <functional>

class QWidget;

namespace console {

/// Calls `make`. A list, which shows itself in its constructor, is not shown on the screen then: it has the attribute
/// WA_DontShowOnScreen, which the caller resets. Otherwise it would be mapped, unmapped to become independent and
/// mapped again at once, and a window manager that sees the unmapping late leaves it hidden. GUI thread.
QWidget* createHidden(const std::function<QWidget*()>& make);

} // namespace console
