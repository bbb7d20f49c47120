// Translates the menu of a map's colour bar, which the library shows in English.
#pragma once

class QMenu;

namespace console {

/// Gives the entries of a colour bar's menu their text in the current language; other entries are unchanged.
void translateColourBarMenu(QMenu& menu);

} // namespace console
