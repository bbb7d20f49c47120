/** @file
 * All peaks of a spectrum: search by second differences, widths along the axis, windows, multiplets, and one table of
 * fitted peaks. Pure functions, re-entrant. Formulae and sources: docs/analysis.md. */
#pragma once

#include <tarnis/analysis/spectrumfit.h>
#include <tarnis/tarnis_export.h>

#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

namespace tarnis {

/// A peak found by a search.
struct PeakCandidate {
    double position = 0.0; ///< centre of a bin
    std::size_t bin = 0; ///< that bin
    double significance = 0.0; ///< significance of the second difference, in standard deviations
};

/// Positions where the second difference of the contents, computed with the local width, has a maximum above the
/// significance, from left to right. Noise causes less than one false peak in 10^5 bins at 4, and more below. Empty for
/// invalid data or non-finite contents.
TARNIS_EXPORT std::vector<PeakCandidate> findPeaks(const BinnedData& data, const WidthCalibration& widths,
    double significance = 4.0, std::size_t first = 0, std::size_t last = static_cast<std::size_t>(-1));

/// The width of the peaks along the axis, from fits of strong isolated peaks. Empty if there are none.
TARNIS_EXPORT std::optional<WidthCalibration> estimateWidths(
    const BinnedData& data, std::size_t first = 0, std::size_t last = static_cast<std::size_t>(-1));

/// The background of a spectrum for display and search, clipped below peaks (C. Ryan et al., NIM B 34 (1988) 396). It
/// is biased low by noise and must not be subtracted before a fit of counts. One value for each bin.
TARNIS_EXPORT std::vector<double> clippedBackground(const BinnedData& data, const WidthCalibration& widths);

/// Options of the peak search and the fits.
struct PeakTableOptions {
    std::optional<WidthCalibration> widths; ///< empty: estimated from the spectrum
    double significance = 4.0; ///< threshold of the search
    PeakShape shape = PeakShape::Gaussian; ///< shape of all peaks
    FitBackground background = FitBackground::Linear; ///< background of all windows
    FitOptions fit; ///< options of all fits
    bool multiplets = true; ///< adds peaks to windows with an unacceptable fit
};

/// One peak of a table. Errors are those to show.
struct TablePeak {
    std::size_t window = 0; ///< in PeakTable::windows
    std::size_t number = 0; ///< index among the peaks of its window, from 0
    double significance = 0.0; ///< significance of the search; 0 for a peak added by a fit
    double centre = 0.0; ///< top of the peak on the axis
    double centreError = 0.0; ///< its standard error
    double area = 0.0; ///< counts
    double areaError = 0.0; ///< its standard error
    std::optional<ProfileError> areaProfile; ///< asymmetric error of the area below ten errors
    double fwhm = 0.0; ///< full width at half maximum
    double fwhmError = 0.0; ///< its standard error
    double height = 0.0; ///< height above the background, in counts per unit of the axis
    double background = 0.0; ///< background below the peak, in counts per unit of the axis
    bool acceptable = false; ///< whether the fit of its window is acceptable
};

/// All peaks of a spectrum.
struct PeakTable {
    QString fault; ///< why there is no table, for the user; empty on success
    WidthCalibration widths; ///< widths used for the search
    std::vector<FitResult> windows; ///< the fits, from left to right
    std::vector<TablePeak> peaks; ///< the peaks, from left to right
};

/// Searches and fits all peaks of the bins first to last, both inclusive, clipped to the axis.
TARNIS_EXPORT PeakTable analysePeaks(const BinnedData& data, const PeakTableOptions& options = {},
    std::size_t first = 0, std::size_t last = static_cast<std::size_t>(-1));

/// The table as text with one line for each peak, columns separated by tabs, full digits: position, error, area, error,
/// FWHM, error, height, background, significance, acceptable. The first line names the columns.
TARNIS_EXPORT QString tableText(const PeakTable& table);

} // namespace tarnis
