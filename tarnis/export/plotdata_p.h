// The values of a plot as a dataset.
#pragma once

#include <tarnis/export/plotexporter.h>

namespace tarnis {

/// The plot's values; without rows for an unsupported plot class or a plot without values.
Dataset plotData(XYGraphWidget& plot, Extent extent);

} // namespace tarnis
