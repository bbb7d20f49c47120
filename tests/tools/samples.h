// Curves for tests of tools.
#pragma once

#include <tarnis/plots/vectorgraphwidget.h>

namespace tarnis::testing {

/// Shows samples on axes from 0 to 100 and from 0 to 10; the largest is 9 unless one is far above the axis.
inline void fill(VectorGraphWidget& plot, const QList<double>& samples)
{
    plot.init("Time", "Counts", 100, 10, true, true);
    plot.initManualX(0, 100);
    plot.setData(samples);
    plot.setMaxValue(9);
}

} // namespace tarnis::testing
