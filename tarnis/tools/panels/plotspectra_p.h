// The curves of a plot in the form used by tarnis/analysis. No painter.
#pragma once

#include "tarnis/analysis/binneddata.h"
#include "tarnis/analysis/mapregion.h"

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class XYGraphWidget;

namespace tarnis {

/// One visible curve. Shares the samples of the plot if possible. A copy can be used on any thread and does not change
/// with the plot.
struct PlotSpectrum {
    QString name; ///< name of the curve; empty if the plot has only one
    QColor colour;
    QList<double> contents;
    std::shared_ptr<const std::vector<double>> edges; ///< edges of unequal bins; null: equal bins
    double firstCentre = 0.0;
    double width = 1.0;

    /// A view of this object, which must outlive it.
    BinnedData data() const;
};

/// The visible curves of a plot that have samples; empty for a map or a plot of another class.
QList<PlotSpectrum> spectraOf(const XYGraphWidget& plot);

/// Their names, in the same order.
QStringList spectrumNames(const XYGraphWidget& plot);

/// The contents of a map.
struct MapContents {
    std::vector<double> contents; ///< row-major; a short row is padded with 0
    MapData data; ///< a view of contents
};

/// The contents of a map; no columns for other plots.
MapContents mapOf(const XYGraphWidget& plot);

/// The first and the last bin whose centre is in [lower, upper); last < first if there is none.
struct BinRange {
    std::ptrdiff_t first = 0;
    std::ptrdiff_t last = -1;

    bool isEmpty() const { return last < first; }
};
/// These bins, clipped to the axis; the ends in any order. An infinite end selects the end of the axis.
BinRange binsBetween(const BinnedData& data, double lower, double upper);

} // namespace tarnis
