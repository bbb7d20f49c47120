// The server's list of its histograms as plain values, and what to ask for to show one of them.
#pragma once

#include "histograms/livewindows.h"

#include <QList>
#include <QString>

namespace console {

struct HistogramAxis {
    int bins = 0;
    double min = 0.0; ///< left edge of the first bin
    double max = 0.0; ///< right edge of the last one, above min
    QString label;
    QString unit;

    /// "Time [us]"; empty without a label.
    QString text() const;
    bool operator==(const HistogramAxis& other) const = default;
};

/// Rows of counts over one axis, or a map over two.
struct HistogramInfo {
    QString name;
    bool isMap = false;
    int rows = 1; ///< 1D only
    HistogramAxis x;
    HistogramAxis y; ///< of a map

    bool operator==(const HistogramInfo& other) const = default;
};

/// Reads the reply to "hists": a line for each histogram, a name and pairs of name and value behind a colon. A line
/// that cannot be a histogram is left out.
QList<HistogramInfo> histogramsOf(const QString& reply);

/// The bins to ask for: the most that divide `bins` and are not more than `limit`; all of them if only few do.
int binsToShow(int bins, int limit);

/// How many of its rows, from the first, one window shows: a curve each.
int rowsToShow(const HistogramInfo& histogram);
/// The name for the user, and that rows are left out if some are.
QString titleOf(const HistogramInfo& histogram, const QString& name);

CurvesRequest curvesRequest(const HistogramInfo& histogram);
MapRequest mapRequest(const HistogramInfo& histogram);

} // namespace console
