// Random curves with typical and odd samples, ranges, flags and peaks.
#pragma once

#include "support/curveprobe.h"
#include "support/randomcases.h"

#include <QString>
#include <QWidget>

#include <cmath>
#include <limits>

namespace tarnis::testing {

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

inline double oddNumber(Generator& random)
{
    const double odd[] = { infinity, -infinity, notANumber, 1e308, -1e308, 5e-324, -5e-324, 1e-17, -1e-17, 2.2e-16,
        2.3e-16, 4e9, -4e9, 1e18, -1e18 };
    return odd[whole(random, 0, 14)];
}

inline int sampleCount(Generator& random)
{
    switch (whole(random, 0, 9)) {
    case 0:
        return whole(random, 0, 3);
    case 1:
        return whole(random, 4, 60);
    case 2:
    case 3:
        return whole(random, 4000, 30000);
    default:
        return whole(random, 60, 4000);
    }
}

/// Typical samples of plots, and some that break naive merging.
inline QList<double> samples(Generator& random, int count)
{
    QList<double> values(count);
    const int kind = whole(random, 0, 11);
    const double height = std::pow(10.0, uniform(random, -2.0, 6.0));
    const double phase = uniform(random, 0.0, 6.0);
    const int stretch = whole(random, 1, 400);
    for (int i = 0; i < count; ++i) {
        double& v = values[i];
        const double noise = uniform(random, 0.0, 1.0);
        switch (kind) {
        case 0: // noise
            v = noise * height;
            break;
        case 1: // smooth
            v = height * (1.0 + std::sin(phase + i * 12.0 / count));
            break;
        case 2: // counts, many of them 0
            v = noise < 0.8 ? 0.0 : std::floor(noise * 30.0);
            break;
        case 3: // stretches of 0
            v = i / stretch % 2 == 0 ? 0.0 : std::floor(noise * height);
            break;
        case 4: // a peak on a low background
            v = std::floor(height * std::exp(-std::pow((i - count / 3.0) / (count * 0.02 + 1.0), 2)) + noise * 3.0);
            break;
        case 5: // below and above 0
            v = (noise - 0.5) * height;
            break;
        case 6: // constant
            v = height;
            break;
        case 7: // spikes
            v = i % stretch == 0 ? height : 0.0;
            break;
        case 8: // around the smallest numbers that do not count as 0
            v = noise < 0.3 ? 0.0 : noise < 0.6 ? 1e-17 * noise : std::pow(10.0, uniform(random, -20.0, 1.0));
            break;
        case 9: // decades
            v = std::pow(10.0, uniform(random, -3.0, 6.0));
            break;
        case 10: // a staircase of whole numbers
            v = i / stretch;
            break;
        default: // a slow ramp
            v = height * i / count;
            break;
        }
    }
    if (count > 0 && chance(random, 0.15)) {
        for (int k = whole(random, 1, 6); k > 0; --k)
            values[whole(random, 0, count - 1)] = oddNumber(random);
    }
    return values;
}

inline double largest(const QList<double>& values)
{
    double high = 0.0;
    for (const double value : values)
        high = std::isfinite(value) ? std::max(high, value) : high;
    return high;
}

inline double smallest(const QList<double>& values)
{
    double low = 0.0;
    for (const double value : values)
        low = std::isfinite(value) ? std::min(low, value) : low;
    return low;
}

inline QSize plotSize(Generator& random)
{
    switch (whole(random, 0, 12)) {
    case 0:
        return { whole(random, 1, 90), whole(random, 1, 70) };
    case 1:
        return { whole(random, 800, 1600), whole(random, 600, 1200) };
    default:
        return { whole(random, 90, 900), whole(random, 70, 500) };
    }
}

inline PeakSearch::Gaussian randomPeak(Generator& random, double low, double high, double top)
{
    PeakSearch::Gaussian peak;
    peak.N = uniform(random, 0.0, top);
    peak.center = uniform(random, low, high + 1e-3);
    peak.sigma = uniform(random, -0.02, 0.1) * (high - low);
    peak.offset = uniform(random, 0.0, 0.2 * top);
    peak.start = whole(random, -5, 100);
    for (int k = whole(random, 0, 40); k > 0; --k)
        peak.points.append(chance(random, 0.02) ? oddNumber(random) : uniform(random, 0.0, top));
    return peak;
}

/// Ranges and flags of the frame for data of `count` samples from `low` to `high`.
template <typename Plot> void shuffleFrame(Plot& plot, Generator& random, double count, double low, double high)
{
    plot.resize(plotSize(random));
    plot.m_nameX = chance(random, 0.5) ? QString() : QStringLiteral("Channel");
    plot.m_showGrid = chance(random, 0.7);
    plot.m_paintGridOnGraph = chance(random, 0.2);
    plot.m_margin = chance(random, 0.8) ? QMargins() : QMargins(whole(random, 0, 60), 3, whole(random, 0, 60), 9);
    const double rotations[] = { 90.0, -90.0 };
    plot.m_rotation = chance(random, 0.75) ? 0.0 : rotations[whole(random, 0, 1)];
    plot.m_logScaleY = chance(random, 0.4);

    plot.m_manualX = false;
    plot.m_initMinX = 0.0;
    plot.m_initMaxX = count;
    if (chance(random, 0.3))
        plot.initManualX(uniform(random, -1000.0, 1000.0), uniform(random, -1000.0, 5000.0));
    const double from = plot.m_initMinX;
    const double to = plot.m_initMaxX;
    switch (whole(random, 0, 7)) {
    case 0: // zoomed in
        plot.setMinMaxX(from + (to - from) * uniform(random, 0.0, 0.5), from + (to - from) * uniform(random, 0.5, 1.0));
        break;
    case 1: // far in
        plot.setMinMaxX(from + (to - from) * 0.3, from + (to - from) * (0.3 + uniform(random, 0.0, 0.02)));
        break;
    case 2: // moved and zoomed out
        plot.setMinMaxX(from - (to - from) * uniform(random, -1.0, 1.0), to + (to - from) * uniform(random, 0.0, 2.0));
        break;
    case 3: // whole numbers
        plot.setMinMaxX(whole(random, -10, 10), whole(random, 11, 4000));
        break;
    case 4: // anything, reversed and empty ranges too
        plot.setMinMaxX(chance(random, 0.2) ? oddNumber(random) : uniform(random, -100.0, count + 100.0),
            chance(random, 0.2) ? oddNumber(random) : uniform(random, -100.0, count + 100.0));
        break;
    default:
        plot.setMinMaxX(from, to);
        break;
    }
    switch (whole(random, 0, 6)) {
    case 0:
        plot.setMinMaxY(low, high);
        break;
    case 1:
        plot.setMinMaxY(uniform(random, low, high), high * uniform(random, 0.1, 2.0));
        break;
    case 2:
        plot.setMinMaxY(chance(random, 0.3) ? oddNumber(random) : uniform(random, -10.0, 10.0),
            chance(random, 0.3) ? oddNumber(random) : uniform(random, -10.0, 1000.0));
        break;
    case 3:
        plot.setMinMaxY(1.0, std::pow(10.0, whole(random, 1, 6)));
        break;
    case 4:
        plot.setMinMaxY(0.01, high * 1.2);
        break;
    default:
        plot.setMinMaxY(0.0, high * 1.1);
        break;
    }
}

inline void shuffle(VectorProbe& plot, Generator& random)
{
    const QList<double> values = samples(random, sampleCount(random));
    plot.m_autoScaleX = plot.m_autoScaleY = chance(random, 0.2);
    shuffleFrame(plot, random, double(values.size()), smallest(values), largest(values));
    plot.m_data = values;
    plot.m_peaks.clear();
    if (chance(random, 0.3))
        plot.m_peaks = { randomPeak(random, plot.m_minX, plot.m_maxX, largest(values)) };
}

inline double sampleToMass(double position, void*)
{
    return 0.02 * position + 1e-5 * position * position;
}

inline double massToSample(double mass, void*)
{
    return (std::sqrt(4e-4 + 4e-5 * std::max(mass, 0.0)) - 0.02) / 2e-5;
}

inline double sine(double position, void*)
{
    return 100.0 * std::sin(position * 0.01);
}

inline double minusSeven(double, void*)
{
    return -7.5;
}

inline void shuffleForm(MultiProbe& plot, Generator& random)
{
    plot.m_columnChart = chance(random, 0.25);
    plot.m_connectPoints = chance(random, 0.75);
    plot.m_resolution = chance(random, 0.6) ? 1 : static_cast<unsigned int>(whole(random, 1, 20));
    plot.m_funcX2Plot = nullptr;
    plot.m_funcPlot2X = nullptr;
    if (chance(random, 0.15)) {
        const bool wavy = chance(random, 0.3);
        plot.m_funcX2Plot = wavy ? sine : sampleToMass;
        plot.m_funcPlot2X = wavy ? minusSeven : massToSample;
    }
}

inline void shufflePeaks(MultiProbe& plot, Generator& random, double top)
{
    plot.m_peaks.clear();
    for (int k = chance(random, 0.4) ? whole(random, 1, 5) : 0; k > 0; --k)
        plot.m_peaks.append(randomPeak(random, plot.m_minX, plot.m_maxX, top));
    qDeleteAll(plot.m_peakDialogs.map);
    plot.m_peakDialogs.map.clear();
    if (chance(random, 0.5))
        plot.m_peakDialogs.map.insert(&plot, new QWidget);
    plot.m_peakSelected = whole(random, -1, 4);
    plot.m_peakThreshold = uniform(random, 0.0, top);
    plot.m_peakDisplayPoints = chance(random, 0.5);
}

inline void shuffle(MultiProbe& plot, Generator& random)
{
    const int count = sampleCount(random);
    const int records = whole(random, 0, chance(random, 0.2) ? 20 : 6);
    plot.m_data.clear();
    plot.m_maxValues.clear();
    double low = 0.0;
    double high = 0.0;
    for (int i = 0; i < records; ++i) {
        const bool other = chance(random, 0.2);
        MultiVectorGraphWidget::Data data;
        data.values = samples(random, other ? sampleCount(random) : count);
        data.enable = chance(random, 0.8);
        data.color = QColor(whole(random, 0, 255), whole(random, 0, 255), whole(random, 0, 255),
            chance(random, 0.9) ? 255 : whole(random, 0, 255));
        low = std::min(low, smallest(data.values));
        high = std::max(high, largest(data.values));
        plot.m_data.append(data);
        if (chance(random, 0.9))
            plot.m_maxValues.append(largest(data.values));
    }
    plot.m_groupSize = whole(random, 1, 9);
    plot.m_addType = static_cast<MultiVectorGraphWidget::AddType>(whole(random, 0, 4));
    shuffleForm(plot, random);
    plot.m_autoScaleY = chance(random, 0.4);
    shuffleFrame(plot, random, double(count) * plot.m_resolution, low, high);
    shufflePeaks(plot, random, high);
}

template <typename Plot> QString describe(const Plot& plot, int number)
{
    return QStringLiteral("case %1: %2x%3, x %4 to %5, y %6 to %7, log %8, manual %9")
        .arg(number)
        .arg(plot.width())
        .arg(plot.height())
        .arg(plot.m_minX)
        .arg(plot.m_maxX)
        .arg(plot.m_minY)
        .arg(plot.m_maxY)
        .arg(plot.m_logScaleY)
        .arg(plot.m_manualX);
}

inline QString describeForm(const MultiProbe& plot)
{
    return QStringLiteral(", type %1, groups of %2, columns %3, joined %4, resolution %5, function %6, records %7")
        .arg(plot.m_addType)
        .arg(plot.m_groupSize)
        .arg(plot.m_columnChart)
        .arg(plot.m_connectPoints)
        .arg(plot.m_resolution)
        .arg(plot.m_funcX2Plot != nullptr)
        .arg(plot.m_data.size());
}

} // namespace tarnis::testing
