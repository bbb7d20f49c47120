/** @file
 * Lines of known energy: of common calibration sources, or of the user's file, and their assignment to the peaks of a
 * spectrum. Pure functions, re-entrant. */
#pragma once

#include <tarnis/analysis/energycalibration.h>
#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <span>
#include <vector>

namespace tarnis {

/// A line of known energy.
struct CalibrationLine {
    double energy = 0.0; ///< keV
    double energyError = 0.0; ///< one standard deviation, keV
    double intensity = 0.0; ///< photons in 100 decays; 0 if unknown
    QString name; ///< nuclide, for example "Ba-133"
    double position = -1.0; ///< channel at which the user's file places it; negative: to be found
};

/// Lines, or why there are none.
struct CalibrationLines {
    std::vector<CalibrationLine> lines; ///< by energy
    QString error; ///< for the user; empty on success
};

/// Names of the built-in sources, for example "co60".
TARNIS_EXPORT QStringList calibrationSources();

/// Lines of one or more built-in sources, joined by "+", for example "ba133+cs137". Energies: R. Helmer, C. van der
/// Leun, NIM A 450 (2000) 35; intensities: Decay Data Evaluation Project, Table of Radionuclides, rounded.
TARNIS_EXPORT CalibrationLines linesOfSource(const QString& names);

/// Lines of a text: in each line energy, error, and if known channel and name, separated by commas, semicolons, tabs or
/// blanks. "#" begins a comment; a first line of words is skipped. Without an error 0.
TARNIS_EXPORT CalibrationLines linesFromText(const QByteArray& text);

/// A peak to which a line can be assigned.
struct MeasuredPeak {
    double position = 0.0; ///< on the axis
    double error = 0.0; ///< of the position
    double fwhm = 0.0; ///< full width at half maximum
    double area = 0.0; ///< counts
};

/// Assigns lines to peaks. Lines that the user has placed are assigned to the nearest peak within a full width. If
/// there are none, the assignment is searched under which most strong lines meet strong peaks along a curve that rises
/// nearly linearly. approximate: coefficients of a known calibration in powers of x, lowest first, which is tried too;
/// may be empty. The result is empty if nothing fits.
TARNIS_EXPORT std::vector<CalibrationPoint> assignLines(std::span<const CalibrationLine> lines,
    std::span<const MeasuredPeak> peaks, double axisLower, double axisUpper, std::span<const double> approximate = {});

} // namespace tarnis
