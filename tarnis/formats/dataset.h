/// @file
/// The content of a data file: a spectrum, several curves over one axis, or a map, with axes, units and errors. Values
/// only; any thread.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <vector>

namespace tarnis {

/// One axis: bins given by edges, by centres, or only by their number.
struct DataAxis {
    QString name; ///< for example "Time"; may be empty
    QString unit; ///< for example "us"; may be empty
    std::vector<double> values; ///< bins + 1 edges, or one centre per bin, or empty: bin i is then from i to i + 1

    friend bool operator==(const DataAxis&, const DataAxis&) = default; ///< exact
};

/// Bin values in rows. A spectrum is one row, curves over a common x axis have one row each, a map has one row for each
/// y bin (lowest y first if the axis increases).
struct Dataset {
    /// What the rows are.
    enum class Kind {
        Curves, ///< each row is a curve over x
        Map ///< the rows are the bins of y
    };

    Kind kind = Kind::Curves; ///< what the rows are
    QString title; ///< of a figure, for example the name of the histogram
    QString source; ///< origin of the values, for example server and run
    QDateTime time; ///< when the values were taken; invalid if unknown
    double liveTime = 0.0; ///< seconds; 0 if unknown
    double realTime = 0.0; ///< seconds; 0 if unknown
    /// Coefficients, lowest power first, of the polynomial that maps channel c to the energy of its middle. Empty
    /// without a calibration.
    std::vector<double> calibration;
    QString calibrationUnit; ///< unit of the energy, for example "keV"
    DataAxis x; ///< along a row
    DataAxis y; ///< across the rows of a map; unused for curves
    QStringList rowNames; ///< names of the curves, as many as rows, or none
    QString name = QStringLiteral("counts"); ///< what the values are
    QString unit; ///< of the values; may be empty
    qsizetype rows = 0; ///< curves, or bins of y
    qsizetype columns = 0; ///< bins of x
    std::vector<double> values; ///< rows * columns values in row-major order; a missing value is NaN
    std::vector<double> errors; ///< standard deviations in the order of the values, or none

    /// The value of a bin. Both indices must be in range.
    double at(qsizetype row, qsizetype column) const
    {
        return values[static_cast<std::size_t>(row * columns + column)];
    }
    friend bool operator==(const Dataset&, const Dataset&) = default; ///< exact; NaN differs from NaN
};

/// What a reader returns: a dataset that isConsistent(), or an error.
struct DatasetResult {
    Dataset data; ///< without values if there is an error
    QString error; ///< empty on success, else the error, its position and what to do, without the path
};

/// The largest number of values that a reader accepts: 134,217,728, which is 1 GiB.
constexpr qsizetype maxDatasetValues = qsizetype { 1 } << 27;

/// bins + 1 edges from `low` to `high`: edge i is low + i * ((high - low) / bins), the last one is `high`.
TARNIS_EXPORT std::vector<double> uniformEdges(double low, double high, qsizetype bins);
/// Whether uniformEdges() of the first and the last value returns exactly these edges. False for less than two values.
TARNIS_EXPORT bool areUniformEdges(const std::vector<double>& edges);
/// Bin edges of an axis: the stored edges, else the midpoints between the centres, else bin numbers.
TARNIS_EXPORT std::vector<double> edgesOf(const DataAxis& axis, qsizetype bins);
/// Bin centres of an axis: the stored centres, else the midpoints of the edges, else bin number + 0.5.
TARNIS_EXPORT std::vector<double> centresOf(const DataAxis& axis, qsizetype bins);
/// Whether there is at least one row and column and every list has the matching length. Writers refuse other datasets.
TARNIS_EXPORT bool isConsistent(const Dataset& data);

} // namespace tarnis
