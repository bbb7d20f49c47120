// The curves of a plot as the functions of tarnis/analysis read them. Values; no painter.
#pragma once

#include "tarnis/analysis/binneddata.h"
#include "tarnis/analysis/mapregion.h"

#include <QColor>
#include <QList>
#include <QString>

#include <memory>
#include <vector>

class XYGraphWidget;

namespace tarnis {

/// One visible curve. Shares the samples of the plot where it can; a copy keeps what the plot showed when it was read,
/// on any thread.
struct PlotSpectrum {
    QString name; ///< of the curve; empty where the plot has one
    QColor color;
    QList<double> contents;
    std::shared_ptr<const std::vector<double>> edges; ///< of unequal bins; null: equal ones
    double firstCentre = 0.0;
    double width = 1.0;

    /// A view of this object, which must outlive it.
    BinnedData data() const;
};

/// The visible curves of a plot that have samples; none of a map or of a frame with data of its own.
QList<PlotSpectrum> spectraOf(const XYGraphWidget& plot);

/// The contents of a map.
struct PlotMap {
    std::vector<double> contents; ///< row by row; a short row is filled up with 0
    MapData data; ///< a view of contents
};

/// The contents of a plot that is a map; no columns for others.
PlotMap mapOf(const XYGraphWidget& plot);

/// The first and the last bin whose centre is in [lower, upper); last < first if there is none.
struct BinRange {
    std::ptrdiff_t first = 0;
    std::ptrdiff_t last = -1;

    bool isEmpty() const { return last < first; }
};
/// Those bins, clipped at the axis; the ends in any order. An infinite end reaches to the end of the axis.
BinRange binsBetween(const BinnedData& data, double lower, double upper);

} // namespace tarnis
