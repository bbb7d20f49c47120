// The numbers of regions: one row for each region and curve. Values; no widgets.
#pragma once

#include "tarnis/analysis/mapregion.h"
#include "tarnis/analysis/regionstatistics.h"
#include "tarnis/tools/panels/plotspectra_p.h"
#include "tarnis/tools/plotregion.h"

#include <QColor>
#include <QString>

#include <array>
#include <vector>

namespace tarnis {

/// A number with its error; NaN where there is none.
struct RegionValue {
    double value = noNumber;
    double error = noNumber;
};

/// The numbers of one region in one curve or map.
struct RegionRow {
    int region = 0; ///< in the list of regions
    QString name; ///< of the region
    QString curve; ///< empty where there is one
    QColor color;
    QRectF limits; ///< snapped to bins for curves, as drawn for maps
    QString fault; ///< why there are no numbers; empty if there are
    QString note; ///< what to know about the numbers
    int bins = 0;
    RegionValue sum;
    CountInterval sumInterval { noNumber, noNumber }; ///< shown below 10 counts
    double sumUpperLimit = noNumber; ///< shown for no counts
    RegionValue net;
    bool isSignificant = false;
    double detectionLimit = noNumber;
    RegionValue centroid; ///< net if significant, else gross
    RegionValue centroidY; ///< of maps
    double fwhm = noNumber;
    RegionValue maximum;
    double maximumAt = noNumber;
    double maximumAtY = noNumber;
    double share = noNumber; ///< of all counts of the curve, 0..1
};

/// Sum and net area at the moment of a freeze.
struct FrozenRow {
    QString name;
    QString curve;
    RegionValue sum;
    RegionValue net;
};

/// How regions are evaluated.
struct RegionTableOptions {
    int sideBins = 3; ///< of curves
    int frame = 2; ///< of maps
};

/// Rows of all regions, curve by curve within each.
std::vector<RegionRow> regionRows(
    const QList<PlotRegion>& regions, const QList<PlotSpectrum>& spectra, const RegionTableOptions& options = {});
std::vector<RegionRow> regionRows(
    const QList<PlotRegion>& regions, const PlotMap& map, const RegionTableOptions& options = {});

/// What has come to a number since it was frozen. Counts that came are independent of those before, so that the
/// variances differ by theirs; no number if the sum has fallen, as after a clear.
RegionValue since(const RegionValue& now, const RegionValue& frozen);

/// The bins of a region of a map.
MapRegion binsOf(const PlotRegion& region, const MapData& map);

/// Texts of a row for people. @{
QString sumText(const RegionRow& row);
QString netText(const RegionRow& row);
QString valueText(const RegionValue& value);
/// @}

/// The rows as text, columns separated by tabs, full digits. frozen: rows of the same order, or empty.
QString regionTableText(const std::vector<RegionRow>& rows, bool isMap, const std::vector<FrozenRow>& frozen);

/// The frozen row of a row; null without one.
const FrozenRow* frozenOf(const RegionRow& row, const std::vector<FrozenRow>& frozen);

} // namespace tarnis
