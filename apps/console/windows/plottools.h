// The library's tools on the console's plots, and the bar above a live plot.
#pragma once

class QWidget;
class XYGraphWidget;

namespace console {

/// Attaches navigator, cross, ruler and markers, and a legend to curves. The cross waits for its key. A plot that has
/// tools keeps those.
void attachTools(XYGraphWidget& plot);

/// Attaches the tools to the plot of a window with a histogram and puts their bar above it. Nothing happens in other
/// windows, and in one that has a bar.
void addToolBar(QWidget& window);

/// The plot that belongs to the window itself, not to a box beside it; null without one.
XYGraphWidget* plotOf(const QWidget& window);

} // namespace console
