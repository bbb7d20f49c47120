// The statistics of regions: one row for each region and curve. No widgets.
#pragma once

#include "tarnis/analysis/energycalibration.h"
#include "tarnis/analysis/mapregion.h"
#include "tarnis/analysis/regionstatistics.h"
#include "tarnis/tools/panels/plotspectra_p.h"
#include "tarnis/tools/plotregion.h"

#include <QColor>
#include <QString>

#include <array>
#include <vector>

namespace tarnis {

/// A number with its error; NaN if undefined.
struct RegionValue {
    double value = noNumber;
    double error = noNumber;
};

/// The statistics of one region for one curve or map.
struct RegionRow {
    int region = 0; ///< index in the list of regions
    QString name; ///< name of the region
    QString curve; ///< name of the curve; empty if there is only one
    QColor colour;
    QRectF limits; ///< snapped to bins for curves, as drawn for maps
    QString fault; ///< why there are no numbers, for the user; else empty
    QString note; ///< a remark for the user
    int bins = 0;
    RegionValue sum;
    CountInterval sumInterval { noNumber, noNumber }; ///< shown below 10 counts
    double sumUpperLimit = noNumber; ///< shown for zero counts
    RegionValue net;
    bool isSignificant = false;
    double detectionLimit = noNumber;
    RegionValue centroid; ///< net centroid if significant, else gross
    RegionValue centroidY; ///< of maps
    RegionValue energy; ///< of the centroid of a calibrated curve
    double fwhm = noNumber;
    RegionValue maximum;
    double maximumAt = noNumber;
    double maximumAtY = noNumber;
    double share = noNumber; ///< fraction of all counts of the curve, 0..1
};

/// Whether two rows are shown alike. Numbers that do not exist are alike.
bool isSameRow(const RegionRow& a, const RegionRow& b);

/// Sum and net area at the time of a freeze.
struct FrozenRow {
    QString name;
    QString curve;
    RegionValue sum;
    RegionValue net;
};

/// Options for evaluating regions.
struct RegionTableOptions {
    int sideBins = 3; ///< of curves
    int frame = 2; ///< of maps
    EnergyCalibration calibration; ///< of curves; not valid: no energies
};

/// Rows of all regions, with one row per curve for each.
std::vector<RegionRow> regionRows(
    const QList<PlotRegion>& regions, const QList<PlotSpectrum>& spectra, const RegionTableOptions& options = {});
std::vector<RegionRow> regionRows(
    const QList<PlotRegion>& regions, const MapContents& map, const RegionTableOptions& options = {});

/// The increase of a number since it was frozen. New counts are independent of the previous ones, so the variance is
/// the difference of the variances. NaN if the sum has decreased, for example after a clear.
RegionValue since(const RegionValue& now, const RegionValue& frozen);

/// The bins of a region of a map.
MapRegion binsOf(const PlotRegion& region, const MapData& map);

/// Texts of a row for display. @{
QString sumText(const RegionRow& row);
QString netText(const RegionRow& row);
QString valueText(const RegionValue& value);
/// @}

/// The rows as text, columns separated by tabs, full digits. frozen: rows in the same order, or empty.
QString regionTableText(const std::vector<RegionRow>& rows, bool isMap, const std::vector<FrozenRow>& frozen);

/// The frozen counterpart of a row; null without one.
const FrozenRow* frozenOf(const RegionRow& row, const std::vector<FrozenRow>& frozen);

} // namespace tarnis
