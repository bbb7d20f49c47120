// A plot with accessible protected state, for comparison with the frame's oracle.
#pragma once

#include "support/children.h"
#include "support/frameoracle.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <utility>

namespace tarnis::testing {

/// `Plot` is XYGraphWidget or a class derived from it. Constructors are those of the plot.
template <typename Plot> class FrameProbe : public Plot {
public:
    using Plot::Plot;

    /// The current state; take it before a paint, so that the oracle can repeat that paint.
    FrameState frameState() const
    {
        FrameState state;
        state.minX = m_minX;
        state.maxX = m_maxX;
        state.minY = m_minY;
        state.maxY = m_maxY;
        state.xRangeMin = m_xRangeMin;
        state.xRangeMax = m_xRangeMax;
        state.decimalX = m_decimalX;
        state.decimalY = m_decimalY;
        state.logScaleY = m_logScaleY;
        state.showGrid = m_showGrid;
        state.paintGridOnGraph = m_paintGridOnGraph;
        state.nameX = m_nameX;
        state.nameY = m_nameY;
        state.notes = m_notes;
        state.margin = m_margin;
        state.rotation = this->m_rotation;
        state.font = this->font();
        state.backGround = Plot::m_backGroundColor;
        state.x2tick = m_funcX2Tick;
        state.tick2x = m_funcTick2X;
        state.userData = m_funcUserData;
        state.tickDecimalX = m_tickDecimalX;
        state.tickDecimalY = m_tickDecimalY;
        state.graphRect = m_graphRect;
        state.labelRectMinX = m_labelRectMinX;
        state.labelRectMaxX = m_labelRectMaxX;
        state.labelRectMinY = m_labelRectMinY;
        state.labelRectMaxY = m_labelRectMaxY;
        return state;
    }

    /// True if a refresh was requested since the last call.
    bool wasRefreshed() { return std::exchange(this->m_refreshRequired, false); }
    /// Draws at once, as the next paint event would.
    void paintNow()
    {
        this->m_doubleBuffered = true;
        this->m_refreshRequired = true;
        this->refreshPixmapIfRequired();
    }
    QImage picture()
    {
        paintNow();
        return this->m_pixmap.toImage();
    }
    /// The entry of the context menu with this text; null without one.
    QAction* entry(const QString& text) const { return entryOf(*this, text); }

    // initPainter() is protected in QWidget.
    void initPainter(QPainter* painter) const override { Plot::initPainter(painter); }

    using Plot::m_actAutoScaleX;
    using Plot::m_actAutoScaleY;
    using Plot::m_actClearXRange;
    using Plot::m_actMove;
    using Plot::m_actRectangle;
    using Plot::m_actSelectXRange;
    using Plot::m_actShowGrid;
    using Plot::m_actZoomIn;
    using Plot::m_actZoomOut;
    using Plot::m_autoScaleX;
    using Plot::m_autoScaleY;
    using Plot::m_decimalX;
    using Plot::m_decimalY;
    using Plot::m_edit;
    using Plot::m_funcTick2X;
    using Plot::m_funcUserData;
    using Plot::m_funcX2Tick;
    using Plot::m_graphRect;
    using Plot::m_initAutoScaleX;
    using Plot::m_initMaxX;
    using Plot::m_initMaxY;
    using Plot::m_initMinX;
    using Plot::m_initMinY;
    using Plot::m_labelRectMaxX;
    using Plot::m_labelRectMaxY;
    using Plot::m_labelRectMinX;
    using Plot::m_labelRectMinY;
    using Plot::m_lastPos;
    using Plot::m_logScaleY;
    using Plot::m_manualX;
    using Plot::m_manualY;
    using Plot::m_margin;
    using Plot::m_maxX;
    using Plot::m_maxY;
    using Plot::m_minX;
    using Plot::m_minY;
    using Plot::m_mode;
    using Plot::m_nameX;
    using Plot::m_nameY;
    using Plot::m_notes;
    using Plot::m_paintGridOnGraph;
    using Plot::m_printer;
    using Plot::m_rubberBand;
    using Plot::m_selecting;
    using Plot::m_selectRect;
    using Plot::m_showGrid;
    using Plot::m_tickDecimalX;
    using Plot::m_tickDecimalY;
    using Plot::m_title;
    using Plot::m_xRangeDialog;
    using Plot::m_xRangeMax;
    using Plot::m_xRangeMin;
    using Plot::m_xRangeName;
};

} // namespace tarnis::testing
