// How plots bring maps and dense curves to the screen.
#pragma once

#include <tarnis/tarnis_export.h>

namespace tarnis {

/// The way from bins and samples to pixels. Both give the same picture.
enum class RasterPath {
    Direct, ///< the plots write pixels themselves wherever Qt's raster engine draws
    Painter, ///< one drawing call for each bin or line; slower by one to two orders of magnitude
};

/// The way in use. The first question decides it: `Painter` if the environment variable `TARNIS_RASTER` is "painter",
/// or if reference patterns drawn both ways differ on this Qt (one warning of the category `tarnis.plots` says so);
/// `Direct` otherwise. Any thread.
TARNIS_EXPORT RasterPath rasterPath();

/// Chooses the way for everything that is drawn from now on, whatever the environment and the reference patterns say.
/// Pictures that plots have already drawn stay until their next refresh. Any thread.
TARNIS_EXPORT void setRasterPath(RasterPath path);

} // namespace tarnis
