// Numbers that several sources of XY2DGraphWidget share.
#pragma once

namespace tarnis {

/// The button stands on this line and the colour bar hangs from it; the same room is left below the bar.
constexpr int colorBarTop = 30;
constexpr int besideAutoButton = 6;

} // namespace tarnis
