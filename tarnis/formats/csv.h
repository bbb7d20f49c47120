/// @file
/// Tables of numbers as text (RFC 4180, with comments that begin with #). Values only; any thread.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QByteArray>
#include <QByteArrayView>

namespace tarnis {

/// The dataset as text that decodeCsv() returns bit for bit: shortest round-trip digits with a decimal point whatever
/// the locale, a header in comments (title, source, time, axes, units), then one line for each bin of curves (x, value
/// of each curve, error of each curve), or one line for each row of a map (y, values). An x axis of edges that are not
/// evenly spaced has two columns, low and high edge. Line ends are LF. An inconsistent dataset returns an empty text.
TARNIS_EXPORT QByteArray encodeCsv(const Dataset& data);

/// Reads what encodeCsv() writes, and tables without its header: one column is counts; two are x and counts; three or
/// more are x and several curves if the first column rises strictly, else the rows of a map. A column whose name is
/// "error" or ends with " error" belongs to the curve before it. Fields are separated by commas, semicolons, tabs or
/// blanks. A first line of names is accepted, an empty field is NaN, a byte order mark and CR LF are accepted. Errors
/// name line and field.
TARNIS_EXPORT DatasetResult decodeCsv(QByteArrayView text);

/// The numbers with tabs between them, as spreadsheets take them from a clipboard: a line of names, then low and high
/// edge of each bin and the value of each curve. A map is a matrix with the centres of x above and of y in front.
TARNIS_EXPORT QString tableText(const Dataset& data);

} // namespace tarnis
