/// @file
/// Tables of numbers as text (RFC 4180, with comments that begin with #). Values only; any thread.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QByteArray>
#include <QByteArrayView>

namespace tarnis {

/// The dataset as text. decodeCsv() restores every value exactly: the digits are the shortest that do, with a decimal
/// point in any locale. The text has a header in comments (title, source, time, axes, units), then one line for each
/// bin of curves (x, value of each curve, error of each curve), or one line for each row of a map (y, values). An x
/// axis of edges that are not evenly spaced has two columns, low and high edge. Line ends are LF. An inconsistent
/// dataset returns an empty text.
TARNIS_EXPORT QByteArray encodeCsv(const Dataset& data);

/// Reads what encodeCsv() writes, and tables without its header: one column is counts; two are x and counts; three or
/// more are x and several curves if the first column rises strictly, else the rows of a map. A column whose name is
/// "error" or ends with " error" belongs to the curve before it. Fields are separated by commas, semicolons, tabs or
/// spaces. A first line of names is accepted, an empty field is NaN, a byte order mark and CR LF are accepted. Errors
/// name line and field.
TARNIS_EXPORT DatasetResult decodeCsv(QByteArrayView text);

/// Tab-separated numbers, as spreadsheets paste them from the clipboard: a line of names, then low and high edge of
/// each bin and the value of each curve. A map is a matrix with the x centres in the first line and the y centres in
/// the first column.
TARNIS_EXPORT QString tableText(const Dataset& data);

} // namespace tarnis
