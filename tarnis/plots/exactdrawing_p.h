// Draws plots on paper and in vector files: data in floating point instead of whole pixels, maps as one image.
#pragma once

#include "tarnis/plots/curvepaint_p.h"
#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/math/binvalues_p.h"
#include "tarnis/plots/raster/colourscale_p.h"

namespace tarnis {

/// Base class of paint devices on which plots draw their data exactly. On all others they draw as on the screen.
class ExactDevice {
public:
    /// `finest` is the smallest visible distance on the device, in units of the painter. Of samples that are closer
    /// together, the first, the last and both extremes are drawn.
    explicit ExactDevice(double finest)
        : m_finest(finest)
    {
    }
    virtual ~ExactDevice() = default;
    ExactDevice(const ExactDevice&) = delete;
    ExactDevice& operator=(const ExactDevice&) = delete;

    double finest() const { return m_finest; }

private:
    double m_finest;
};

/// The device of the painter if it is an ExactDevice, else null.
const ExactDevice* exactDeviceBehind(const QPainter& painter);

/// Draws the same as paintCurve(), with every sample as a vertex. Two zeros are not joined, as on the screen.
void paintCurveExactly(QPainter& painter, const SampleRun& samples, SampleRange range, const CurveDrawing& drawing,
    const ExactDevice& device);

/// Draws the visible bins as an image of one pixel each. A small image, which viewers might smooth, is enlarged by an
/// integer factor. Empty bins are transparent.
void paintMapExactly(QPainter& painter, const BinGeometry& view, const BinRows& rows, const ColourScale& scale);

} // namespace tarnis
