// A 2D plot with accessible protected state, for comparison with the oracle.
#pragma once

#include "support/frameprobe.h"
#include "support/plot2doracle.h"

#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QPushButton>

namespace tarnis::testing {

/// A colour bar with accessible state.
class BarProbe : public ColorBarWidget {
public:
    using ColorBarWidget::ColorBarWidget;

    using ColorBarWidget::m_autoScale;
    using ColorBarWidget::m_colors;
    using ColorBarWidget::m_editLine;
    using ColorBarWidget::m_logScale;
    using ColorBarWidget::m_max;
    using ColorBarWidget::m_maxRect;
    using ColorBarWidget::m_min;
    using ColorBarWidget::m_minRect;
    using ColorBarWidget::m_positions;
    using ColorBarWidget::m_ticks;
};

/// A 2D plot with accessible state.
class MapProbe : public FrameProbe<XY2DGraphWidget> {
public:
    using FrameProbe::FrameProbe;

    /// The current state; take it before a paint, so that the oracle can repeat that paint.
    MapState mapState() const
    {
        MapState state;
        state.data = m_data;
        state.rowMax = m_rowMax;
        state.minX = m_minX;
        state.maxX = m_maxX;
        state.minY = m_minY;
        state.maxY = m_maxY;
        state.initMinX = m_initMinX;
        state.initMaxX = m_initMaxX;
        state.initMinY = m_initMinY;
        state.initMaxY = m_initMaxY;
        state.manualX = m_manualX;
        state.manualY = m_manualY;
        state.stepX = m_stepX;
        state.stepY = m_stepY;
        state.resolutionX = m_resolutionX;
        state.resolutionY = m_resolutionY;
        state.minZ = m_minZ;
        state.maxZ = m_maxZ;
        state.autoZ = m_colorBar->isAutoScale();
        state.logScale = m_logScale;
        state.colors = { colMin, colHalfMin, colHalf, colHalfMax, colMax };
        state.points = m_points;
        return state;
    }

    using XY2DGraphWidget::m_1dCutActive;
    using XY2DGraphWidget::m_1dCutInside;
    using XY2DGraphWidget::m_1dCutMode;
    using XY2DGraphWidget::m_act1dCut;
    using XY2DGraphWidget::m_act1dCutInside;
    using XY2DGraphWidget::m_actRoi;
    using XY2DGraphWidget::m_autoButton;
    using XY2DGraphWidget::m_colorBar;
    using XY2DGraphWidget::m_colorBarMenu;
    using XY2DGraphWidget::m_cutDragEdge;
    using XY2DGraphWidget::m_cutMaxX;
    using XY2DGraphWidget::m_cutMaxY;
    using XY2DGraphWidget::m_cutMinX;
    using XY2DGraphWidget::m_cutMinY;
    using XY2DGraphWidget::m_cutPixelRect;
    using XY2DGraphWidget::m_cutRangeDialog;
    using XY2DGraphWidget::m_cutXWindows;
    using XY2DGraphWidget::m_cutYWindows;
    using XY2DGraphWidget::m_data;
    using XY2DGraphWidget::m_display1dCutIntensity;
    using XY2DGraphWidget::m_editingColorBar;
    using XY2DGraphWidget::m_finishedEditingColorBar;
    using XY2DGraphWidget::m_logScale;
    using XY2DGraphWidget::m_maxZ;
    using XY2DGraphWidget::m_minZ;
    using XY2DGraphWidget::m_points;
    using XY2DGraphWidget::m_pressPos;
    using XY2DGraphWidget::m_resolutionX;
    using XY2DGraphWidget::m_resolutionY;
    using XY2DGraphWidget::m_roiRange;
    using XY2DGraphWidget::m_roiWindow;
    using XY2DGraphWidget::m_rowMax;
    using XY2DGraphWidget::m_stepX;
    using XY2DGraphWidget::m_stepY;
};

} // namespace tarnis::testing
