// The text of the CSV files that the plots write, and the way in which plots write numbers into texts.
#pragma once

#include <QList>
#include <QString>

namespace tarnis {

/// A number in a CSV file or a read-out: six digits, format 'g', independent of the locale.
QString plainNumber(double value);

/// One sample per line, preceded by its abscissa and a comma if there are as many abscissae as samples.
QString csvOfSeries(const QList<double>& index, const QList<double>& samples);

/// Columns side by side, as many lines as the longest has samples; missing samples are empty fields. The first lines
/// begin with the values of `index`; the others have no such field.
QString csvOfColumns(const QList<double>& index, const QList<QList<double>>& columns);

/// The bins of a map, one line for each row from row 0 up.
QString csvOfRows(const QList<QList<double>>& rows);

} // namespace tarnis
