// Reference implementation of the peak search with its working lists: the expected results of PeakSearch, segment by
// segment.
#pragma once

#include <tarnis/peak/peaksearch.h>

#include <QList>

namespace tarnis::testing {

struct OracleSegment {
    QList<double> y;
    QList<double> second; ///< x mode: abscissae; index mode: samples over threshold
    int pos = 0; ///< index mode only
};

QList<OracleSegment> oracleIndexSegments(
    const QList<double>& y, int start, int end, double threshold, int width, bool peak);

QList<OracleSegment> oracleXSegments(
    const QList<double>& x, const QList<double>& y, double threshold, int width, bool peak);

/// The expected result of exec(): the segments above, each fitted by mpfit() with separately computed limits and
/// starting values. calls, if given, is raised by the calls of the residuals.
QList<PeakSearch::Gaussian> oracleIndexPeaks(
    const QList<double>& y, int start, int end, double threshold, int width, bool peak, int* calls = nullptr);

QList<PeakSearch::Gaussian> oracleXPeaks(
    const QList<double>& x, const QList<double>& y, double threshold, int width, bool peak);

} // namespace tarnis::testing
