#include "tarnis/plots/math/curvescale_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

// With fewer samples per column, checking each of them is faster than the formula.
constexpr double maxPixelsPerSampleToJump = 0.25;

template <typename Scale> int scanColumn(const Scale& scale, int begin, int end)
{
    const int column = scale.pixel(begin);
    int index = begin + 1;
    while (index < end && scale.pixel(index) == column)
        ++index;
    return index;
}

} // namespace

SampleView sampleView(
    AxisRange visible, AxisRange initial, bool manual, qsizetype count, int widthPixels, unsigned int resolution)
{
    SampleView view { visible.min, visible.max, widthPixels / (visible.max - visible.min) };
    if (!manual) {
        view.pixelsPerSample *= resolution;
        return view;
    }
    const auto samples = static_cast<double>(count);
    const double span = initial.max - initial.min;
    view.first = (visible.min - initial.min) / span * samples;
    view.last = (visible.max - initial.min) / span * samples;
    view.pixelsPerSample = view.pixelsPerSample * span / samples;
    return view;
}

SampleRange wholeSamples(double first, double last, qsizetype count)
{
    const auto end = static_cast<double>(std::min<qsizetype>(count, pixelLimit));
    if (std::isnan(first) || std::isnan(last))
        return {};
    SampleRange range;
    range.begin = static_cast<int>(std::clamp(std::floor(first), 0.0, end));
    range.end = static_cast<int>(std::clamp(std::ceil(last), 0.0, end));
    return range;
}

double valuePixels(AxisRange y, bool logScale, int heightPixels)
{
    const double range = y.max - y.min;
    if (logScale)
        return range > 1.0 ? heightPixels / (floorLog10(y.max) - floorLog10(y.min)) : 0.0;
    return range > 0.0 ? heightPixels / range : 0.0;
}

// The inverse formula gives an estimate, which is corrected by the exact pixel of each index. That pixel is monotone in
// the index.
int SampleScale::endOfColumn(int begin, int end) const
{
    if (!(pixelsPerSample > 0.0 && pixelsPerSample <= maxPixelsPerSampleToJump))
        return scanColumn(*this, begin, end);
    const int column = pixel(begin);
    const double guess = (column + 1.0 - left) / pixelsPerSample + first - 0.5;
    int index = begin + 1;
    if (guess > index)
        index = guess < end ? static_cast<int>(guess) : end;
    while (index > begin + 1 && pixel(index - 1) > column)
        --index;
    while (index < end && pixel(index) == column)
        ++index;
    return index;
}

int FunctionScale::endOfColumn(int begin, int end) const
{
    return scanColumn(*this, begin, end);
}

double basePosition(double position, unsigned int resolution)
{
    if (!std::isfinite(position))
        return 0.0;
    return std::floor(std::trunc(position) / resolution) * resolution;
}

bool ValueScale::isMonotone() const
{
    if (!std::isfinite(m_minimum) || !std::isfinite(m_pixelsPerUnit) || m_pixelsPerUnit < 0.0)
        return false;
    return m_kind != Kind::LogWithFloor || m_minimum >= 0.0;
}

bool ValueScale::zeroesShareARow() const
{
    const int zero = pixel(0.0);
    return pixel(DBL_EPSILON) == zero && pixel(-DBL_EPSILON) == zero;
}

} // namespace tarnis
