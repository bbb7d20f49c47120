// The 5 by 5 filter on a 2D histogram. Plain values.
#pragma once

#include <QList>

struct Graph2DFilter;

namespace tarnis {

/// `source` with the kernel applied to every bin that is at least two rows and columns away from the border; bins
/// nearer to it keep their values. The first kernel row is applied to the highest row index, which is the top on the
/// screen. The width is that of row 0; missing bins of a shorter row count as 0 and are not added.
QList<QList<double>> filtered(const QList<QList<double>>& source, const Graph2DFilter& filter);

} // namespace tarnis
