// The style of figures: theme, size of texts, colours.
#pragma once

#include "curvesplot.h"
#include "plotwidgets.h"

namespace cli {

/// Attaches the theme with texts and lines scaled to the figure, and the title. The classic theme has neither. `unitZ`
/// is the name of a map's values.
void applyTheme(XYGraphWidget& plot, const FigureOptions& options, const QString& unitZ = {});

/// How several curves are drawn under the theme.
CurvesStyle curvesStyle(const FigureOptions& options);

/// The range of y of several curves: from 0 or the smallest value to slightly above the largest one; on a logarithmic
/// axis from below the smallest positive value.
Range<double> roomyRange(const CurvesPlot& curves, bool isLog);

} // namespace cli
