// The words of a plot for its series.
#pragma once

#include "tarnis/plots/math/seriesnames_p.h"

namespace tarnis {

/// Words, numbers and given names of a plot.
SeriesWords seriesWordsOf(const MultiVectorGraphWidget& plot);

} // namespace tarnis
