// What tools have chosen for the colours of a map, beside the five points that all maps share.
#pragma once

#include "tarnis/plots/math/binreduction_p.h"
#include "tarnis/plots/raster/colorscale_p.h"

#include <optional>

namespace tarnis {

/// The palettes of five points, in the order of the colour bar's menu.
enum class FivePoints { Rainbow1, Rainbow2, Grays, BlueRedGreen, RedWhiteBlue, CyanMagenta, YellowHot, Blue };
constexpr int fivePointsCount = 8;
ScaleColors fivePoints(FivePoints palette); ///< from the lower end of the scale to its upper one

/// Choices for one map. As they are made, the map looks as without tools.
struct MapColoring {
    const ColorTable* table = nullptr; ///< of this map; before `colors`
    std::optional<ScaleColors> colors; ///< of this map, instead of the five points of all maps
    bool squareRoot = false; ///< while the scale is not logarithmic
    BinReduction reduction = BinReduction::First; ///< of bins that share a pixel
    int besideBar = 0; ///< pixels kept free between the plot rectangle and the colour bar
};

/// A table for all maps that have no choice of their own; null for the five points. GUI thread only. @{
const ColorTable* sharedColorTable();
void setSharedColorTable(const ColorTable* table);
/// @}

/// The table in use: the map's own, or the shared one; null for five points. `coloring` may be null.
const ColorTable* tableInUse(const MapColoring* coloring);

} // namespace tarnis
