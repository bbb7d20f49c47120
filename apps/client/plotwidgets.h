// Plots of datasets: what `tarnis plot` draws.
#pragma once

#include "arguments.h"
#include "outcome.h"

#include <tarnis/formats/dataset.h>
#include <tarnis/tools/plotstyle.h>

#include <QSize>

#include <memory>
#include <vector>

class XYGraphWidget;

namespace cli {

/// What the options of `tarnis plot` choose.
struct FigureOptions {
    QSize size { 800, 500 };
    double dpi = 96.0;
    std::optional<tarnis::PlotStyle::Theme> theme = tarnis::PlotStyle::Theme::Print; ///< nothing: the classic look
    QString title; ///< drawn above the plot; empty: none
    bool residuals = false; ///< of the first curve from the second one, below the plot
    std::optional<Range<double>> x;
    std::optional<Range<double>> y;
    bool log = false;
    QString map; ///< colours; empty: those of the library
    std::optional<Range<double>> levels; ///< percent
};

/// Reads the options; every wrong value is a failure.
Result<FigureOptions> figureOptions(const Arguments& arguments);

/// A plot of spectra, each with its own x axis, or of one map.
Result<std::unique_ptr<XYGraphWidget>> makePlot(const std::vector<tarnis::Dataset>& data, const FigureOptions& options);

} // namespace cli
