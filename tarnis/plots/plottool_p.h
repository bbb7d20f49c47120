// Names of the values of XYGraphWidget::m_mode.
#pragma once

namespace tarnis {

/// The active mouse tool.
enum PlotTool : int {
    NoTool = 0,
    RubberBandTool = 1, ///< Rectangle, or the selection of an X range
    ZoomInTool = 2,
    ZoomOutTool = 3,
    MoveTool = 4
};

} // namespace tarnis
