// The values of a plot as a dataset.
#pragma once

#include <tarnis/export/plotexporter.h>

namespace tarnis {

/// What the plot shows; without rows for a plot of another class, or one without values.
Dataset plotData(XYGraphWidget& plot, Extent extent);

} // namespace tarnis
