// Curves for tests of tools.
#pragma once

#include <tarnis/plots/multivectorgraphwidget.h>
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

/// Shows samples, four as a rule, on axes from 0 to 4 and from 0 to 40.
inline void fillFourBins(VectorGraphWidget& plot, const QList<double>& samples)
{
    plot.init("Time", "Counts", 10, 40, true, true);
    plot.initManualX(0, 4);
    plot.initManualY(0, 40);
    plot.setData(samples);
}

/// Curves of two channels, a group for each: 1 and 10, 2 and 11, and so on.
inline void fillGroups(MultiVectorGraphWidget& plot, int count)
{
    plot.init("Channel", "Counts", 0, 0, true, true);
    plot.m_groupSize = 1;
    for (int i = 0; i < count; ++i)
        plot.setData(i, { 1.0 + i, 10.0 + i }, 9 + count);
    plot.resizeData(count);
}

} // namespace tarnis::testing
