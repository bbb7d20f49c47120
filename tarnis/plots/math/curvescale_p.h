// Positions of a curve's samples: which of them are visible, and the pixel of an index and of a value. The order of the
// floating-point operations is fixed, so that pictures are reproduced to the pixel. Pure functions.
#pragma once

#include "tarnis/plots/math/axisticks_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"

#include <QtGlobal>

namespace tarnis {

/// Visible samples as fractional indices, and the width of a sample in pixels.
struct SampleView {
    double first = 0.0;
    double last = 0.0;
    double pixelsPerSample = 0.0;
};

/// X axis of a curve. On a manual axis the `count` samples are spread over the initial range, else X is the index.
/// `widthPixels` counts both edges. `resolution` only widens the samples of an axis that is not manual.
SampleView sampleView(
    AxisRange visible, AxisRange initial, bool manual, qsizetype count, int widthPixels, unsigned int resolution = 1);

/// Half-open range of indices.
struct SampleRange {
    int begin = 0;
    int end = 0;
};

/// The complete samples from `first` to `last`, within 0..count; empty if a limit is NaN.
SampleRange wholeSamples(double first, double last, qsizetype count);

/// Pixels per unit of a Y axis of `heightPixels`, or per decade on a log axis. 0 if the range is not above 0, on a log
/// axis if it is not above 1.
double valuePixels(AxisRange y, bool logScale, int heightPixels);

/// Pixel column of the middle of a sample: truncate((index + 0.5 - first) * pixelsPerSample + left).
struct SampleScale {
    double first = 0.0;
    double pixelsPerSample = 0.0;
    int left = 0;

    double position(int index) const { return (index + 0.5 - first) * pixelsPerSample + left; } ///< not truncated
    int pixel(int index) const { return truncateToPixel(position(index)); }
    /// One past the last sample from `begin` on, at most `end`, that shares the pixel column of `begin` with all
    /// between.
    int endOfColumn(int begin, int end) const;
};

/// Pixel column of a sample whose plot X value is a function of its position (index * resolution + base).
struct FunctionScale {
    double (*plotX)(double, void*) = nullptr;
    double resolution = 1.0;
    double base = 0.0;
    AxisRange visible;
    int widthPixels = 0;
    int left = 0;

    double position(int index) const ///< not truncated
    {
        const double x = plotX(resolution * index + base, nullptr);
        return (x - visible.min) * widthPixels / (visible.max - visible.min) + left;
    }
    int pixel(int index) const { return truncateToPixel(position(index)); }
    /// As that of SampleScale.
    int endOfColumn(int begin, int end) const;
};

/// The position of the first sample: `position` truncated to an integer and rounded down to a multiple of `resolution`;
/// 0 if it is not finite.
double basePosition(double position, unsigned int resolution);

/// Pixel row of a value.
class ValueScale {
public:
    enum class Kind {
        Linear,
        Log, ///< values at or below 0 are at the position of 1
        LogWithFloor ///< values not more than 1 above the minimum are at the bottom
    };
    ValueScale(Kind kind, double minimum, double pixelsPerUnit, int bottom)
        : m_kind(kind)
        , m_minimum(minimum)
        , m_origin(kind == Kind::Linear ? minimum : floorLog10(minimum))
        , m_pixelsPerUnit(pixelsPerUnit)
        , m_bottom(bottom)
    {
    }

    Kind kind() const { return m_kind; }

    int pixel(double value) const
    {
        if (m_kind == Kind::LogWithFloor && !(value - m_minimum > 1.0))
            return m_bottom;
        return truncateToPixel(rowOf(value));
    }

    /// pixel() without truncation.
    double position(double value) const
    {
        return m_kind == Kind::LogWithFloor && !(value - m_minimum > 1.0) ? m_bottom : rowOf(value);
    }

    /// True if the row is a monotone function of finite values (on a log axis: of those above 0), so that extreme
    /// values have extreme rows.
    bool isMonotone() const;

    /// True if every value that counts as 0 is on the row of 0. False on a log axis, where small positive values are
    /// far below 0.
    bool zeroesShareARow() const;

private:
    double rowOf(double value) const
    {
        const double height = (m_kind == Kind::Linear ? value : floorLog10(value)) - m_origin;
        return m_bottom - height * m_pixelsPerUnit;
    }

    Kind m_kind;
    double m_minimum;
    double m_origin; ///< lower end of the axis, in decades on a log axis
    double m_pixelsPerUnit;
    int m_bottom;
};

} // namespace tarnis
