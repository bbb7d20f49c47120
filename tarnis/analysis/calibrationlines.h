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
    double intensity = 0.0; ///< photons per 100 decays; 0 if unknown
    QString name; ///< nuclide, for example "Ba-133"
    double position = -1.0; ///< channel according to the user's file; negative: unknown
};

/// Lines, or an error.
struct CalibrationLines {
    std::vector<CalibrationLine> lines; ///< by energy
    QString error; ///< for the user; empty on success
};

/// Names of the built-in sources, for example "co60".
TARNIS_EXPORT QStringList calibrationSources();

/// Lines of one or more built-in sources, joined by "+", for example "ba133+cs137". Energies: R. Helmer, C. van der
/// Leun, NIM A 450 (2000) 35; intensities: Decay Data Evaluation Project, Table of Radionuclides, rounded.
TARNIS_EXPORT CalibrationLines linesOfSource(const QString& names);

/// Parses lines of text: energy, error, and optionally channel and name, separated by commas, semicolons, tabs or
/// spaces. "#" begins a comment; a header line is skipped. A missing error is 0.
TARNIS_EXPORT CalibrationLines linesFromText(const QByteArray& text);

/// A peak to which a line can be assigned.
struct MeasuredPeak {
    double position = 0.0; ///< position on the axis
    double error = 0.0; ///< error of the position
    double fwhm = 0.0; ///< full width at half maximum
    double area = 0.0; ///< counts
};

/// Assigns lines to peaks. Lines with a position given by the user are assigned to the nearest peak within a full
/// width. Without such lines, searches for the nearly linear increasing curve under which most strong lines match
/// strong peaks. approximate: coefficients of a known calibration in powers of x, lowest first, which is also tried;
/// may be empty. The result is empty if no assignment is found.
TARNIS_EXPORT std::vector<CalibrationPoint> assignLines(std::span<const CalibrationLine> lines,
    std::span<const MeasuredPeak> peaks, double axisLower, double axisUpper, std::span<const double> approximate = {});

} // namespace tarnis
