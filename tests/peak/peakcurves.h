// Curves with peaks, and what the search finds in them.
#pragma once

#include "support/peaksearchoracle.h"

#include <tarnis/peak/peaksearch.h>

#include <QTest>

#include <cmath>

namespace tarnis::testing {

using Gaussian = PeakSearch::Gaussian;

// Samples of a curve at 0, 1, ... or at the abscissae x.
inline QList<double> curve(int n, double N, double center, double sigma, double offset)
{
    QList<double> y;
    for (int i = 0; i < n; ++i)
        y.append(N * std::exp(-0.5 * (i - center) * (i - center) / (sigma * sigma)) + offset);
    return y;
}

inline QList<double> abscissae(int n, double first, double step)
{
    QList<double> x;
    for (int i = 0; i < n; ++i)
        x.append(first + step * i);
    return x;
}

inline QList<Gaussian> searchIn(const QList<double>& y, double threshold, int width, bool peak = true)
{
    return PeakSearch(y, 0, int(y.size()), threshold, width, peak).exec();
}

inline bool isNear(double value, double expected, double tolerance)
{
    return std::fabs(value - expected) <= tolerance;
}

inline Gaussian gaussian(double N, double center, double sigma, double offset)
{
    Gaussian g;
    g.N = N;
    g.center = center;
    g.sigma = sigma;
    g.offset = offset;
    return g;
}

// A value that no fit writes.
inline Gaussian untouched()
{
    Gaussian g = gaussian(-1.5, -2.5, -3.5, -4.5);
    g.start = -5;
    g.points = { -6.5 };
    return g;
}

inline bool isUntouched(const Gaussian& g)
{
    return g.N == -1.5 && g.center == -2.5 && g.sigma == -3.5 && g.offset == -4.5 && g.start == -5
        && g.points == QList<double> { -6.5 };
}

} // namespace tarnis::testing
