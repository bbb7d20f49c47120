/** @file
 * Contents of bins on an axis, as the statistics and the fits of this folder read them. A view: it owns nothing, and
 * may be copied and used on any thread while the caller keeps the arrays. */
#pragma once

#include <tarnis/tarnis_export.h>

#include <QString>

#include <cstddef>
#include <limits>
#include <span>

namespace tarnis {

/// Marks a number that does not exist or must not be shown. Test with std::isnan().
inline constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

/// Contents of the bins of one axis. Without edges the bins have equal width: bin i has its centre at firstCentre + i *
/// width. The default is a spectrum in channels, with channel i from i - 0.5 to i + 0.5.
struct TARNIS_EXPORT BinnedData {
    std::span<const double> contents; ///< content of each bin
    /// Variance of each content; empty: the contents are counts, and each is its own variance. Contents that were
    /// scaled, subtracted or weighted are not counts and need variances.
    std::span<const double> variances;
    std::span<const double> edges; ///< increasing edges, one more than bins; empty: bins of equal width
    double firstCentre = 0.0; ///< centre of bin 0, unless there are edges
    double width = 1.0; ///< width of a bin, unless there are edges

    /// Number of bins.
    std::size_t size() const { return contents.size(); }
    /// Left edge of bin i; also the right edge of the last bin, for i = size().
    double edge(std::size_t i) const
    {
        return edges.empty() ? firstCentre + (static_cast<double>(i) - 0.5) * width : edges[i];
    }
    /// Centre of bin i.
    double centre(std::size_t i) const
    {
        return edges.empty() ? firstCentre + static_cast<double>(i) * width : 0.5 * (edges[i] + edges[i + 1]);
    }
    /// Width of bin i.
    double binWidth(std::size_t i) const { return edges.empty() ? width : edges[i + 1] - edges[i]; }
    /// Variance of the content of bin i.
    double variance(std::size_t i) const { return variances.empty() ? contents[i] : variances[i]; }
    /// Bins first to last, both included; both must exist.
    BinnedData part(std::size_t first, std::size_t last) const;
    /// Index of the bin that contains x; -1 outside of the axis and for NaN.
    std::ptrdiff_t binAt(double x) const;

    /// The error in the arrays' sizes, the edges or the variances, as a sentence for the user; empty if valid.
    QString fault() const;
};

/// Why the contents are not counts, as a sentence for the user; empty if all are finite, non-negative integers up to
/// 2^53. firstBin: number of the first content in that sentence, if the contents are a part of a spectrum.
TARNIS_EXPORT QString faultOfCounts(std::span<const double> contents, std::size_t firstBin = 0);

} // namespace tarnis
