// The look of figures: theme, size of texts, colours.
#pragma once

#include "curvesplot.h"
#include "plotwidgets.h"

namespace cli {

/// Attaches the theme, with texts and lines as large as the figure needs, and the title. The classic look has neither.
/// `unitZ` is the name of a map's values.
void applyTheme(XYGraphWidget& plot, const FigureOptions& options, const QString& unitZ = {});

/// How several curves are drawn under the theme.
CurvesLook curvesLook(const FigureOptions& options);

/// The range of y of several curves: from 0 or the smallest value to somewhat more than the largest one, on a
/// logarithmic axis from below the smallest value above 0.
Range<double> roomyRange(const CurvesPlot& curves, bool isLog);

} // namespace cli
