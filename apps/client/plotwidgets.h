// Creates the plots of datasets for `tarnis plot`.
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

/// The options of `tarnis plot`.
struct FigureOptions {
    QSize size { 800, 500 };
    double dpi = 96.0;
    std::optional<tarnis::PlotStyle::Theme> theme = tarnis::PlotStyle::Theme::Print; ///< empty: the classic look
    QString title; ///< drawn above the plot; empty: none
    bool residuals = false; ///< residuals of the first curve relative to the second one, below the plot
    std::optional<Range<double>> x;
    std::optional<Range<double>> y;
    bool log = false;
    QString map; ///< colours; empty: those of the library
    std::optional<Range<double>> levels; ///< percent
};

/// Reads the options; every invalid value is a failure.
Result<FigureOptions> figureOptions(const Arguments& arguments);

/// A plot of spectra, each with its own x axis, or of one map.
Result<std::unique_ptr<XYGraphWidget>> makePlot(const std::vector<tarnis::Dataset>& data, const FigureOptions& options);

} // namespace cli
