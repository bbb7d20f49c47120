// The text of the CSV files that the 1D plots write, and the way in which plots write numbers into texts.
#pragma once

#include <QList>
#include <QString>

namespace tarnis {

/// A number in a CSV file or a read-out: six digits, format 'g', whatever the locale.
QString plainNumber(double value);

/// One sample a line, with its abscissa and a comma before it if there are as many of them as samples.
QString csvOfSeries(const QList<double>& index, const QList<double>& samples);

/// Columns side by side, as many lines as the longest has samples; a column without a sample leaves its place empty.
/// The first lines, as many as `index` has values, begin with those; the others have no place for them.
QString csvOfColumns(const QList<double>& index, const QList<QList<double>>& columns);

} // namespace tarnis
