// The server's list of histograms as plain values, and the request parameters for showing one of them.
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
    HistogramAxis y; ///< Y axis of a map

    bool operator==(const HistogramInfo& other) const = default;
};

/// Reads the reply to "hists": a line for each histogram, with its name, a colon, and name-value pairs. Invalid lines
/// are ignored.
QList<HistogramInfo> histogramsOf(const QString& reply);

/// The number of bins to request: the largest divisor of `bins` up to `limit`; all bins if that divisor is too small.
int binsToShow(int bins, int limit);

/// The number of rows, starting with the first, that one window shows, one curve each.
int rowsToShow(const HistogramInfo& histogram);
/// The displayed name, with a remark if rows are omitted.
QString titleOf(const HistogramInfo& histogram, const QString& name);

CurvesRequest curvesRequest(const HistogramInfo& histogram);
MapRequest mapRequest(const HistogramInfo& histogram);

} // namespace console
