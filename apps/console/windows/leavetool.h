// What Escape does in the windows of plots: the tool of the mouse goes, the window stays.
#pragma once

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

class XYGraphWidget;

namespace console {

/// Leaves an editor inside the plot, else the tool in use: zoom, move, rectangle, range, cut, regions. What the tool
/// has made stays. False if there was nothing to leave.
bool leaveTool(XYGraphWidget& plot);

/// Escape in a window: true if the window must not see it. That is so for every window with a plot, and for the boxes
/// beside it that belong to a tool.
bool takesEscape(QWidget& window);

} // namespace console
