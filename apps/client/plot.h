// tarnis plot: figures from files and from histograms of the server.
#pragma once

#include "arguments.h"

namespace cli {

/// The program `tarnis` passes the command line on to `tarnis-plot`, which draws with widgets. Each of the two programs
/// has its own version of this function.
Outcome plot(const Arguments& arguments);

/// Runs tarnis-plot with these words, which begin with "plot", and this standard input, for commands that draw a figure
/// in addition to their numbers. Returns its failure, or that it cannot be run. Its warnings are dropped, because the
/// command has already printed them.
Outcome runPlotProgram(const QStringList& words, const QByteArray& input);

} // namespace cli
