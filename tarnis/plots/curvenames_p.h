// The terms that a plot uses for its series.
#pragma once

#include "tarnis/plots/math/seriesnames_p.h"

namespace tarnis {

/// Terms, numbers and set names of a plot.
SeriesTexts seriesTextsOf(const MultiVectorGraphWidget& plot);

} // namespace tarnis
