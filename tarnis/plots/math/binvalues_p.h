// The values of a map's bins. Pure functions on arrays.
#pragma once

#include <QList>

namespace tarnis {

/// The bins of a map, row by row.
using BinRows = QList<QList<double>>;

/// The smallest bin that is above 0 beyond the plot tolerance; 1.0 if none is smaller than that.
double smallestPositiveBin(const BinRows& rows);

} // namespace tarnis
