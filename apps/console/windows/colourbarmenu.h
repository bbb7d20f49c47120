// The menu of a map's colour bar, which the library leaves in English.
#pragma once

class QMenu;

namespace console {

/// Gives the entries of a colour bar's menu their text in the current language; leaves every other entry alone.
void translateColourBarMenu(QMenu& menu);

} // namespace console
