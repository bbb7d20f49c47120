// The library's tools on the console's plots, and the bar above a live plot.
#pragma once

class QWidget;
class XYGraphWidget;

namespace console {

/// Attaches navigator, crosshair, ruler and markers, and for curves a legend. The crosshair is initially off. A plot
/// that already has tools is not changed.
void attachTools(XYGraphWidget& plot);

/// Attaches the tools to the plot of a histogram window and adds their bar above it. Ignores other windows, and windows
/// that already have a bar.
void addToolBar(QWidget& window);

/// The live time of the data in seconds, by which the plot of the window scales references; 0 if it is unknown.
void setLiveTime(const QWidget& window, double seconds);

/// The plot of the window itself, not of a box beside it; null without one.
XYGraphWidget* plotOf(const QWidget& window);

} // namespace console
