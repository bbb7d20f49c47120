// Constants shared by several sources of XY2DGraphWidget.
#pragma once

namespace tarnis {

/// The button ends and the colour bar begins at this Y; the same space is left below the bar.
constexpr int colorBarTop = 30;
constexpr int besideAutoButton = 6;

} // namespace tarnis
