// The colour of a bin: five colours at equal distances over a range of values, on a linear or a logarithmic scale.
// Values in, colours out; no widget.
#pragma once

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

    /// False if an end colour is not opaque: what it paints depends on what lies below.
    bool isOpaque() const;

    /// True if both give the same colour for every value. A range that is not a number equals nothing.
    bool operator==(const ColorScale& other) const;

private:
    struct Segment {
        double base = 0.0; ///< where the lower colour stands
        double width = 0.0; ///< from there to the upper colour
        std::array<double, 3> lower {}; ///< red, green, blue
        std::array<double, 3> upper {};

        std::array<int, 3> blend(double t) const
        {
            const double rest = 1.0 - t;
            std::array<int, 3> rgb {};
            for (std::size_t i = 0; i < rgb.size(); ++i)
                rgb[i] = static_cast<int>(upper[i] * t + lower[i] * rest);
            return rgb;
        }
    };
    static constexpr int below = -1; ///< the lower end
    static constexpr int above = 4; ///< the upper end
    static constexpr QRgb undefinedPixel = 0xff000000;

    static double logarithm(double value);
    int segmentOf(double v) const;
    QRgb anyPixel(double v) const;

    /// Without branches: neighbouring bins are noise, and a wrong guess costs more than the blend.
    QRgb ascendingPixel(double v) const
    {
        const double inside = v < m_low ? m_low : (v > m_high ? m_high : v);
        const auto index = static_cast<std::size_t>(inside >= m_segments[1].base)
            + static_cast<std::size_t>(inside >= m_segments[2].base)
            + static_cast<std::size_t>(inside >= m_segments[3].base);
        const Segment& segment = m_segments[index];
        const bool isNumber = inside == inside;
        const std::array<int, 3> rgb = segment.blend(isNumber ? (inside - segment.base) / segment.width : 0.0);
        const QRgb between = isNumber ? qRgb(rgb[0], rgb[1], rgb[2]) : undefinedPixel;
        return v < m_low ? m_lowPixel : (v > m_high ? m_highPixel : between);
    }

    double m_low = 0.0; ///< lower end; its logarithm on a log scale
    double m_high = 0.0;
    bool m_logScale = false;
    bool m_ascending = false; ///< the five points are finite and ascend
    std::array<Segment, 4> m_segments;
    ScaleColors m_colors;
    QRgb m_lowPixel = undefinedPixel;
    QRgb m_highPixel = undefinedPixel;
};

} // namespace tarnis
