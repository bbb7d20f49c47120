// The colour of a bin: five colours at equal distances over a range of values, or a table of many; on a linear, a
// logarithmic or a square root scale. No widget.
#pragma once

#include "tarnis/plots/raster/bincolouring_avx2_p.h"
#include "tarnis/plots/raster/colourtables_p.h"

#include <QColor>

#include <array>
#include <cmath>

namespace tarnis {

/// Five points of the scale, from its lower end to its upper one.
using ScaleColours = std::array<QColor, 5>;

/// How the colours are distributed over the values.
enum class ScaleCurve {
    Linear,
    Log, ///< values at or below 0 count as 1
    SquareRoot ///< values below 0 count as 0
};

/// Maps values to colours. A blend of a and b takes each channel as b * t + a * (1 - t), truncated. The order of these
/// operations is fixed: between two equal channels the result can be one lower, so a table of levels could not
/// reproduce it.
///
/// With a table, a value v has the entry t * 256, truncated and limited to the table, for t = (v - low) / (high - low)
/// in this order, where each of the three is transformed by the scale's curve.
class ColourScale {
public:
    ColourScale() = default;
    /// Range from `low` to `high`, which need not ascend; on a log scale values at or below 0 count as 1.
    ColourScale(double low, double high, bool logScale, const ScaleColours& colors);
    ColourScale(double low, double high, ScaleCurve curve, const ScaleColours& colors);
    /// Uses a table, which must outlive the scale.
    ColourScale(double low, double high, ScaleCurve curve, const ColourTable& table);

    /// The unchanged end colour beyond the range, an opaque blend inside it. Invalid where the blend is undefined: for
    /// NaN, and for a value that equals both ends.
    QColor colour(double value) const;

    /// The pixel that a pen of colour() paints on a raster device: an invalid colour is black.
    QRgb pixel(double value) const
    {
        const double v = curved(value);
        if (m_table != nullptr)
            return tablePixel(v);
        return m_ascending ? ascendingPixel(v) : anyPixel(v);
    }

    /// pixel() of each of `count` values.
    void pixels(const double* values, int count, QRgb* pixels) const;

    /// False if an end colour is not opaque, so that the result depends on the background.
    bool isOpaque() const;

    /// True if both give the same colour for every value. A NaN range equals nothing.
    bool operator==(const ColourScale& other) const;

private:
    static constexpr int below = -1; ///< the lower end
    static constexpr int above = 4; ///< the upper end

    static double logarithm(double value);
    static double squareRoot(double value) { return value < 0.0 ? 0.0 : std::sqrt(value); }
    double curved(double value) const
    {
        if (m_curve == ScaleCurve::Linear)
            return value;
        return m_curve == ScaleCurve::Log ? logarithm(value) : squareRoot(value);
    }
    void curveAll(const double* values, int count, double* curvedValues) const;
    void pixelsOfCurved(const double* values, int count, QRgb* pixels) const;
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

    /// Without branches: adjacent bins are noise, and a misprediction costs more than the blend.
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

    QRgb tablePixel(double v) const
    {
        const double t = (v - m_ranges.low) / (m_ranges.high - m_ranges.low);
        if (std::isnan(t))
            return ScaleRanges::undefinedPixel;
        constexpr double last = std::tuple_size_v<ColourTable> - 1;
        const double step = t * (last + 1.0);
        return (*m_table)[static_cast<std::size_t>(step < 0.0 ? 0.0 : (step > last ? last : step))];
    }

    ScaleRanges m_ranges; ///< ranges of the transformed values
    ScaleCurve m_curve = ScaleCurve::Linear;
    const ColourTable* m_table = nullptr; ///< null for five colours
    bool m_ascending = false; ///< the five points are finite and ascend
    ScaleColours m_colors;
};

} // namespace tarnis
