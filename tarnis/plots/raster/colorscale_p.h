// The colour of a bin: five colours at equal distances over a range of values, on a linear or a logarithmic scale.
// Values in, colours out; no widget.
#pragma once

#include "tarnis/plots/raster/bincolouring_avx2_p.h"

#include <QColor>

#include <array>

namespace tarnis {

/// Five points of the scale, from its lower end to its upper one.
using ScaleColors = std::array<QColor, 5>;

/// Maps values to colours. A blend of a and b takes each channel as b * t + a * (1 - t), truncated. The order of these
/// operations is binding: between two equal channels the result can be one lower, so no table of levels gives the same.
class ColorScale {
public:
    ColorScale() = default;
    /// Range from `low` to `high`, which need not ascend; on a log scale values at or below 0 count as 1.
    ColorScale(double low, double high, bool logScale, const ScaleColors& colors);

    /// An end colour as it stands beyond the range, an opaque blend inside it. Invalid where the blend is undefined:
    /// for NaN, and for a value that equals both ends.
    QColor color(double value) const;

    /// What a pen of color() paints on a raster device: an invalid colour is black.
    QRgb pixel(double value) const
    {
        const double v = m_logScale ? logarithm(value) : value;
        return m_ascending ? ascendingPixel(v) : anyPixel(v);
    }

    /// pixel() of each of `count` values.
    void pixels(const double* values, int count, QRgb* pixels) const;

    /// False if an end colour is not opaque: what it paints depends on what lies below.
    bool isOpaque() const;

    /// True if both give the same colour for every value. A range that is not a number equals nothing.
    bool operator==(const ColorScale& other) const;

private:
    static constexpr int below = -1; ///< the lower end
    static constexpr int above = 4; ///< the upper end

    static double logarithm(double value);
    int rangeOf(double v) const;
    QRgb anyPixel(double v) const;

    /// `t` runs from 0 at the lower end of the range to 1 at its upper one.
    std::array<int, 3> blend(std::size_t range, double t) const
    {
        const double rest = 1.0 - t;
        std::array<int, 3> rgb {};
        for (std::size_t i = 0; i < rgb.size(); ++i)
            rgb[i] = static_cast<int>(m_ranges.upper[i][range] * t + m_ranges.lower[i][range] * rest);
        return rgb;
    }

    /// Without branches: neighbouring bins are noise, and a wrong guess costs more than the blend.
    QRgb ascendingPixel(double v) const
    {
        const ScaleRanges& r = m_ranges;
        const double inside = v < r.low ? r.low : (v > r.high ? r.high : v);
        const auto range = static_cast<std::size_t>(inside >= r.base[1]) + static_cast<std::size_t>(inside >= r.base[2])
            + static_cast<std::size_t>(inside >= r.base[3]);
        const bool isNumber = inside == inside;
        const std::array<int, 3> rgb = blend(range, isNumber ? (inside - r.base[range]) / r.width[range] : 0.0);
        const QRgb between = isNumber ? qRgb(rgb[0], rgb[1], rgb[2]) : ScaleRanges::undefinedPixel;
        return v < r.low ? r.lowPixel : (v > r.high ? r.highPixel : between);
    }

    ScaleRanges m_ranges; ///< of the values, or of their logarithms on a log scale
    bool m_logScale = false;
    bool m_ascending = false; ///< the five points are finite and ascend
    ScaleColors m_colors;
};

} // namespace tarnis
