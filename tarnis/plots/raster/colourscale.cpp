#include "tarnis/plots/raster/colourscale_p.h"

#include "tarnis/plots/math/axisticks_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

std::array<double, 3> channels(const QColor& colour)
{
    return { static_cast<double>(colour.red()), static_cast<double>(colour.green()),
        static_cast<double>(colour.blue()) };
}

bool isOpaqueColour(const QColor& colour)
{
    return !colour.isValid() || colour.rgba64().alpha() == 0xffff;
}

} // namespace

ColourScale::ColourScale(double low, double high, bool logScale, const ScaleColours& colors)
    : ColourScale(low, high, logScale ? ScaleCurve::Log : ScaleCurve::Linear, colors)
{
}

ColourScale::ColourScale(double low, double high, ScaleCurve curve, const ScaleColours& colors)
    : m_curve(curve)
    , m_ascending(true)
    , m_colors(colors)
{
    m_ranges.low = curved(low);
    m_ranges.high = curved(high);
    m_ranges.lowPixel = colors.front().isValid() ? colors.front().rgb() : ScaleRanges::undefinedPixel;
    m_ranges.highPixel = colors.back().isValid() ? colors.back().rgb() : ScaleRanges::undefinedPixel;
    const double from = m_ranges.low;
    const double to = m_ranges.high;
    const std::array<double, 5> points = { from, from * 0.75 + to * 0.25, (from + to) * 0.5, from * 0.25 + to * 0.75,
        to };
    for (std::size_t i = 0; i < m_ranges.base.size(); ++i) {
        m_ranges.base[i] = points[i];
        m_ranges.width[i] = points[i + 1] - points[i];
        for (std::size_t channel = 0; channel < m_ranges.lower.size(); ++channel) {
            m_ranges.lower[channel][i] = channels(colors[i])[channel];
            m_ranges.upper[channel][i] = channels(colors[i + 1])[channel];
        }
        m_ascending = m_ascending && points[i] < points[i + 1] && std::isfinite(m_ranges.width[i]);
    }
}

ColourScale::ColourScale(double low, double high, ScaleCurve curve, const ColourTable& table)
    : m_curve(curve)
    , m_table(&table)
{
    // Normalises -0.0: equal limits must not differ in the sign of their width.
    m_ranges.low = curved(low) + 0.0;
    m_ranges.high = curved(high) + 0.0;
}

QColor ColourScale::colour(double value) const
{
    const double v = curved(value);
    if (m_table != nullptr) {
        const double t = (v - m_ranges.low) / (m_ranges.high - m_ranges.low);
        return std::isnan(t) ? QColor() : QColor(tablePixel(v));
    }
    const int index = rangeOf(v);
    if (index == below)
        return m_colors.front();
    if (index == above)
        return m_colors.back();
    const auto range = static_cast<std::size_t>(index);
    const double t = (v - m_ranges.base[range]) / m_ranges.width[range];
    // The order of the comparisons keeps t in 0 to 1, unless it is NaN.
    if (std::isnan(t))
        return {};
    const std::array<int, 3> rgb = blend(range, t);
    return { rgb[0], rgb[1], rgb[2] };
}

void ColourScale::pixels(const double* values, int count, QRgb* pixels) const
{
    if ((m_table == nullptr && !m_ascending) || !hasAvx2()) {
        for (int i = 0; i < count; ++i)
            pixels[i] = pixel(values[i]);
        return;
    }
    if (m_curve == ScaleCurve::Linear) {
        pixelsOfCurved(values, count, pixels);
        return;
    }
    constexpr int block = 256;
    std::array<double, block> onCurve {};
    for (int first = 0; first < count; first += block) {
        const int inBlock = std::min(block, count - first);
        curveAll(values + first, inBlock, onCurve.data());
        pixelsOfCurved(onCurve.data(), inBlock, pixels + first);
    }
}

void ColourScale::curveAll(const double* values, int count, double* curvedValues) const
{
    if (m_curve == ScaleCurve::Log) {
        for (int i = 0; i < count; ++i)
            curvedValues[i] = logarithm(values[i]);
        return;
    }
    for (int i = 0; i < count; ++i)
        curvedValues[i] = squareRoot(values[i]);
}

void ColourScale::pixelsOfCurved(const double* values, int count, QRgb* pixels) const
{
    if (m_table == nullptr)
        blendWide(m_ranges, values, count, pixels);
    else
        pickWide({ m_ranges.low, m_ranges.high - m_ranges.low, m_table->data(), std::tuple_size_v<ColourTable> },
            values, count, pixels);
}

bool ColourScale::isOpaque() const
{
    return m_table != nullptr || (isOpaqueColour(m_colors.front()) && isOpaqueColour(m_colors.back()));
}

bool ColourScale::operator==(const ColourScale& other) const
{
    return m_ranges.low == other.m_ranges.low && m_ranges.high == other.m_ranges.high && m_curve == other.m_curve
        && m_table == other.m_table && m_colors == other.m_colors;
}

double ColourScale::logarithm(double value)
{
    return floorLog10(value);
}

int ColourScale::rangeOf(double v) const
{
    // Tested in this order even if the points do not ascend or are NaN.
    if (v < m_ranges.base[1])
        return v < m_ranges.low ? below : 0;
    if (v < m_ranges.base[2])
        return 1;
    if (v < m_ranges.base[3])
        return 2;
    return v > m_ranges.high ? above : 3;
}

QRgb ColourScale::anyPixel(double v) const
{
    const int index = rangeOf(v);
    if (index == below)
        return m_ranges.lowPixel;
    if (index == above)
        return m_ranges.highPixel;
    const auto range = static_cast<std::size_t>(index);
    const double t = (v - m_ranges.base[range]) / m_ranges.width[range];
    if (std::isnan(t))
        return ScaleRanges::undefinedPixel;
    const std::array<int, 3> rgb = blend(range, t);
    return qRgb(rgb[0], rgb[1], rgb[2]);
}

} // namespace tarnis
