// The colour settings of a map made by tools, in addition to the five points that all maps share.
#pragma once

#include "tarnis/plots/math/binreduction_p.h"
#include "tarnis/plots/raster/colourscale_p.h"

#include <optional>

namespace tarnis {

/// The palettes of five points, in the order of the colour bar's menu.
enum class FivePoints { Rainbow1, Rainbow2, Grays, BlueRedGreen, RedWhiteBlue, CyanMagenta, YellowHot, Blue };
constexpr int fivePointsCount = 8;
ScaleColours fivePoints(FivePoints palette); ///< from the lower end of the scale to its upper one

/// Settings of one map. With the default values the map looks as without tools.
struct MapColouring {
    const ColourTable* table = nullptr; ///< table of this map; has priority over `colors`
    std::optional<ScaleColours> colors; ///< five points of this map, instead of those of all maps
    bool squareRoot = false; ///< square root scale, unless the scale is logarithmic
    BinReduction reduction = BinReduction::First; ///< reduction of bins that share a pixel
    int besideBar = 0; ///< pixels kept free between the plot rectangle and the colour bar
};

/// Sets the table for all maps without their own settings; null for the five points. GUI thread only.
void setSharedColourTable(const ColourTable* table);

/// The effective table: the map's own, or the shared one; null for five points. `colouring` may be null.
const ColourTable* tableInUse(const MapColouring* colouring);

} // namespace tarnis
