// The values of a plot as a dataset.
#pragma once

#include <tarnis/export/plotexporter.h>

namespace tarnis {

/// The scale of X in a table of a calibrated plot.
enum class TableScale {
    Named, ///< that of the labels: energies
    Positions ///< channels
};

/// The plot's values; without rows for an unsupported plot class or a plot without values.
Dataset plotData(XYGraphWidget& plot, Extent extent, TableScale scale = TableScale::Named);

} // namespace tarnis
