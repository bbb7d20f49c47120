#include "tarnis/plots/colorscale_p.h"

#include "tarnis/plots/plotaxis_p.h"

#include <cmath>

namespace tarnis {

namespace {

std::array<double, 3> channels(const QColor& color)
{
    return { static_cast<double>(color.red()), static_cast<double>(color.green()), static_cast<double>(color.blue()) };
}

bool isOpaqueColor(const QColor& color)
{
    return !color.isValid() || color.rgba64().alpha() == 0xffff;
}

} // namespace

ColorScale::ColorScale(double low, double high, bool logScale, const ScaleColors& colors)
    : m_low(logScale ? logarithm(low) : low)
    , m_high(logScale ? logarithm(high) : high)
    , m_logScale(logScale)
    , m_ascending(true)
    , m_colors(colors)
    , m_lowPixel(colors.front().isValid() ? colors.front().rgb() : undefinedPixel)
    , m_highPixel(colors.back().isValid() ? colors.back().rgb() : undefinedPixel)
{
    const std::array<double, 5> points = { m_low, m_low * 0.75 + m_high * 0.25, (m_low + m_high) * 0.5,
        m_low * 0.25 + m_high * 0.75, m_high };
    for (std::size_t i = 0; i < m_segments.size(); ++i) {
        m_segments[i] = { points[i], points[i + 1] - points[i], channels(colors[i]), channels(colors[i + 1]) };
        m_ascending = m_ascending && points[i] < points[i + 1] && std::isfinite(m_segments[i].width);
    }
}

QColor ColorScale::color(double value) const
{
    const double v = m_logScale ? logarithm(value) : value;
    const int index = segmentOf(v);
    if (index == below)
        return m_colors.front();
    if (index == above)
        return m_colors.back();
    const Segment& segment = m_segments[static_cast<std::size_t>(index)];
    const double t = (v - segment.base) / segment.width;
    // The order of the comparisons keeps t in 0 to 1, unless it is not a number.
    if (std::isnan(t))
        return {};
    const std::array<int, 3> rgb = segment.blend(t);
    return { rgb[0], rgb[1], rgb[2] };
}

bool ColorScale::isOpaque() const
{
    return isOpaqueColor(m_colors.front()) && isOpaqueColor(m_colors.back());
}

bool ColorScale::operator==(const ColorScale& other) const
{
    return m_low == other.m_low && m_high == other.m_high && m_logScale == other.m_logScale
        && m_colors == other.m_colors;
}

double ColorScale::logarithm(double value)
{
    return floorLog10(value);
}

int ColorScale::segmentOf(double v) const
{
    // In this order also where the points do not ascend or are not numbers.
    if (v < m_segments[1].base)
        return v < m_low ? below : 0;
    if (v < m_segments[2].base)
        return 1;
    if (v < m_segments[3].base)
        return 2;
    return v > m_high ? above : 3;
}

QRgb ColorScale::anyPixel(double v) const
{
    const int index = segmentOf(v);
    if (index == below)
        return m_lowPixel;
    if (index == above)
        return m_highPixel;
    const Segment& segment = m_segments[static_cast<std::size_t>(index)];
    const double t = (v - segment.base) / segment.width;
    if (std::isnan(t))
        return undefinedPixel;
    const std::array<int, 3> rgb = segment.blend(t);
    return qRgb(rgb[0], rgb[1], rgb[2]);
}

} // namespace tarnis
