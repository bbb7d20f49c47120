// The comments at the head of a CSV file, "# key: value", and the names of its columns. docs/client.md describes them.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

namespace tarnis {

/// The first line of a file with a header.
inline constexpr QByteArrayView csvMarker = "# Tarnis data 1";

/// How the first columns of a table describe an axis.
enum class AxisColumns {
    Bin, ///< one column: number of the bin
    Centre, ///< one column: centre of the bin
    Edges ///< two columns: low and high edge
};

/// What the header of a table states, besides the values.
struct CsvHeader {
    bool isPresent = false; ///< the file begins with csvMarker
    Dataset data; ///< no values; axes only as far as the header lists them
    AxisColumns axisColumns = AxisColumns::Bin; ///< for x of curves, for y of a map
    /// The axis holds the two ends of evenly spaced bins. @{
    bool hasRangeX = false;
    bool hasRangeY = false;
    /// @}
    bool hasErrors = false; ///< each line has one error per value, after the values
    QStringList columns; ///< names of all columns
};

/// Header lines for a dataset, with the marker and the names of the columns.
QByteArray encodeCsvHeader(const Dataset& data);
/// Reads a comment line, with its "#". Returns an error, or an empty text; unknown keys are ignored.
QString readCsvComment(CsvHeader& header, QByteArrayView line);

/// How encodeCsv() writes the axis that runs down the lines.
AxisColumns axisColumnsOf(const DataAxis& axis, qsizetype bins);

/// The fields of a line, split at the separator. A space as separator matches any run of spaces. Fields may be in
/// double quotes.
QList<QByteArray> csvFields(QByteArrayView line, char separator);
/// A comma, semicolon or tab if the line has one, else a space.
char csvSeparator(QByteArrayView line);

} // namespace tarnis
