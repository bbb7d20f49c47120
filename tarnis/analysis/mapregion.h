/** @file
 * Numbers of a region of a map: gross and net content, centroids, covariance, and whether there is a spot at all. Pure
 * functions, re-entrant. Formulae and sources: docs/analysis.md. */
#pragma once

#include <tarnis/analysis/countstatistics.h>
#include <tarnis/analysis/regionstatistics.h>
#include <tarnis/tarnis_export.h>

#include <QPointF>
#include <QString>

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace tarnis {

/// A view of the contents of a map in row-major order: bin (column, row) is contents[row * columns + column]. Column i
/// has its centre at firstX + i * widthX; rows alike.
struct TARNIS_EXPORT MapData {
    std::span<const double> contents; ///< columns * rows contents
    int columns = 0; ///< bins along x
    int rows = 0; ///< bins along y
    double firstX = 0.0; ///< centre of column 0
    double firstY = 0.0; ///< centre of row 0
    double widthX = 1.0; ///< width of a column
    double widthY = 1.0; ///< height of a row
    bool areCounts = true; ///< false: scaled or subtracted contents, to which tests of counts do not apply

    /// Centre of a column on the x axis.
    double x(int column) const { return firstX + column * widthX; }
    /// Centre of a row on the y axis.
    double y(int row) const { return firstY + row * widthY; }
    /// The error in sizes or axes, for the user; empty if valid.
    QString fault() const;
};

/// The bins of a region of a map: those whose centre is inside its outline.
class TARNIS_EXPORT MapRegion {
public:
    /// No bins.
    MapRegion() = default;

    /// Bins of the columns x0 to x1 and the rows y0 to y1, both inclusive, clipped to the map.
    static MapRegion bins(const MapData& map, int x0, int x1, int y0, int y1);
    /// Bins whose centre is in [x0, x1) and [y0, y1). Infinite limits select a band.
    static MapRegion rectangle(const MapData& map, double x0, double x1, double y0, double y1);
    /// Bins whose centre is inside an ellipse of the given half axes, turned counterclockwise by an angle in radians.
    static MapRegion ellipse(
        const MapData& map, double x, double y, double halfWidth, double halfHeight, double angle = 0.0);
    /// Bins whose centre is inside a polygon by the even-odd rule.
    static MapRegion polygon(const MapData& map, std::span<const QPointF> corners);

    /// Whether no bin is inside.
    bool isEmpty() const { return m_count == 0; }
    /// Number of bins.
    int count() const { return m_count; }
    /// @{ The smallest box of columns and rows around the region, both ends included.
    int left() const { return m_left; }
    int right() const { return m_right; }
    int top() const { return m_top; }
    int bottom() const { return m_bottom; }
    /// @}
    /// Whether a bin belongs to the region; false outside of the map.
    bool contains(int column, int row) const;

private:
    template <typename Inside> static MapRegion fill(const MapData& map, Inside inside);

    int m_left = 0;
    int m_right = -1;
    int m_top = 0;
    int m_bottom = -1;
    int m_count = 0;
    std::vector<char> m_inside; ///< flags of the bounding box, row-major
};

/// How a region of a map is evaluated.
struct MapRegionOptions {
    int frame = 2; ///< width in bins of the background frame around the region; 0: no net quantities
    double liveTime = noNumber; ///< live time in seconds, for the rates
};

/// The background under a region of a map and the net counts above it.
struct MapBackground {
    double background = noNumber; ///< summed over the region
    double backgroundError = noNumber; ///< its standard error
    double net = noNumber; ///< sum - background
    double netError = noNumber; ///< its standard error
};

/// Statistics of a region of a map. Pairs are along x and y; covariances are in the order xx, xy, yy. A number that
/// does not exist is NaN.
struct TARNIS_EXPORT MapRegionStatistics {
    QString fault; ///< why there are no results, for the user; empty on success
    QString note; ///< a remark for the user, for example about a clipped frame; usually empty

    int bins = 0; ///< bins of the region
    int frameBins = 0; ///< bins of the frame
    bool frameClipped = false; ///< the frame touches the edge of the map or another region

    /// @{ Gross quantities, with standard errors.
    double sum = noNumber;
    double sumError = noNumber;
    CountInterval sumInterval { noNumber, noNumber };
    double sumUpperLimit = noNumber;
    double mean = noNumber;
    double meanError = noNumber;
    double maximum = noNumber;
    int maximumColumn = 0;
    int maximumRow = 0;
    std::array<double, 2> centroid { noNumber, noNumber };
    std::array<double, 2> centroidError { noNumber, noNumber };
    std::array<double, 3> covariance { noNumber, noNumber, noNumber };
    double rate = noNumber;
    double rateError = noNumber;
    /// @}

    bool hasNet = false; ///< whether there is a frame; otherwise the rest is NaN
    double frameSum = noNumber; ///< sum of the frame
    MapBackground flat; ///< background from the mean of the frame
    MapBackground plane; ///< background from a plane fitted to the frame with equal weights
    /// Coefficients of the plane: value at the middle of the region's box, slopes per unit of x and y.
    std::array<double, 3> planeCoefficients { noNumber, noNumber, noNumber };
    /// The plane if the frame is clipped, else the mean of the frame, which then removes a plane exactly.
    MapBackground chosen;
    double netRate = noNumber; ///< chosen.net per second
    double netRateError = noNumber; ///< its standard error

    /// @{ Is there something? As in RegionStatistics, from the mean of the frame.
    double criticalLevel = noNumber;
    double detectionLimit = noNumber;
    bool aboveCriticalLevel = false;
    double excessProbability = noNumber;
    bool significant = false;
    /// @}

    /// @{ Moments above the mean of the frame; to be shown only if the net content is significant.
    std::array<double, 2> netCentroid { noNumber, noNumber };
    std::array<double, 2> netCentroidError { noNumber, noNumber };
    std::array<double, 3> netCovariance { noNumber, noNumber, noNumber };
    /// @}
};

/// Statistics of a region of a map. Its frame excludes the bins of `others`.
TARNIS_EXPORT MapRegionStatistics mapRegionStatistics(const MapData& map, const MapRegion& region,
    const MapRegionOptions& options = {}, std::span<const MapRegion> others = {});

} // namespace tarnis
