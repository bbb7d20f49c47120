// tarnis plot: figures from files and from histograms of the server.
#pragma once

#include "arguments.h"

namespace cli {

/// The program `tarnis` passes the command line on to `tarnis-plot`, which has the widgets that draw: each of the two
/// programs has its own version of this function.
Outcome plot(const Arguments& arguments);

/// Runs tarnis-plot with the words, which begin with "plot", for commands that draw a figure beside their numbers.
/// Returns its failure, or that it cannot be run. Its warnings, which the command itself has given, are dropped.
Outcome runPlotProgram(const QStringList& words);

} // namespace cli
