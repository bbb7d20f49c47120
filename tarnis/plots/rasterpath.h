// The rendering path of maps and dense curves.
#pragma once

#include <tarnis/tarnis_export.h>

namespace tarnis {

/// How bins and samples are converted to pixels. Both paths draw the same picture.
enum class RasterPath {
    Direct, ///< plots write pixels directly where Qt's raster engine is used
    Painter, ///< one drawing call for each bin or line; slower by one to two orders of magnitude
};

/// The current path. The first call determines it: `Painter` if the environment variable `TARNIS_RASTER` is "painter",
/// or if reference patterns drawn both ways differ on this Qt (with a warning in the category `tarnis.plots`); `Direct`
/// otherwise. Any thread.
TARNIS_EXPORT RasterPath rasterPath();

/// Sets the path, overriding the environment and the reference patterns. Pictures that plots have already drawn are
/// unchanged until their next refresh. Any thread.
TARNIS_EXPORT void setRasterPath(RasterPath path);

} // namespace tarnis
