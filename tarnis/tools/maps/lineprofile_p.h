// Common declarations of the sources of the line profile.
#pragma once

#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/lineprofile.h"
#include "tarnis/tools/maps/profilearithmetic_p.h"

#include <array>

namespace tarnis {

/// The band in bins and in frame coordinates.
struct TARNIS_NO_EXPORT LineProfile::Shape {
    ProfileBand band;
    ProfileSteps steps;
    QPointF from; // in the frame's coordinates
    QPointF to;
    QPointF middle;
    QPointF handle; // handle of the width
    std::array<QPointF, 4> corners;
};

/// Converts a position to bins and back. Outside of the data, bins continue with the same width. @{
QPointF toBins(const PlotMapping& mapping, const QPointF& position);
QPointF fromBins(const PlotMapping& mapping, const QPointF& bins);
/// @}

} // namespace tarnis
