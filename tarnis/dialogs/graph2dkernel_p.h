// The 5 by 5 filter on a 2D histogram. Plain values.
#pragma once

#include <QList>

struct Graph2DFilter;

namespace tarnis {

/// `source` with the kernel applied to every bin that is at least two rows and columns away from the border; those
/// nearer keep their values. The first kernel row meets the highest row index, the upper one on the screen. The width
/// is that of row 0; bins that a shorter row lacks count as 0 and are not made.
QList<QList<double>> filtered(const QList<QList<double>>& source, const Graph2DFilter& filter);

} // namespace tarnis
