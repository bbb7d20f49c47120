// Handles Escape in windows with plots: ends the mouse tool, and keeps the window open.
#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

class XYGraphWidget;

namespace console {

/// Closes an editor inside the plot, else ends the active tool: zoom, move, rectangle, range, cut, regions. Results of
/// the tool are kept. False if there was nothing to end.
bool endActiveTool(XYGraphWidget& plot);

/// Handles Escape in a window. True if the window must not receive it, which holds for windows with a plot and for tool
/// boxes beside it.
bool handleEscape(QWidget& window);

} // namespace console
