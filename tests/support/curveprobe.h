// 1D plots with accessible protected state, for comparison with the oracle of the curves.
#pragma once

#include "support/curveoracle.h"
#include "support/frameprobe.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>

namespace tarnis::testing {

/// `Plot` is one of the 1D plots.
template <typename Plot> class CurveProbe : public FrameProbe<Plot> {
public:
    using FrameProbe<Plot>::FrameProbe;

    /// The current inputs of the curves.
    CurveAxes curveAxes() const
    {
        CurveAxes axes;
        axes.minX = this->m_minX;
        axes.maxX = this->m_maxX;
        axes.minY = this->m_minY;
        axes.maxY = this->m_maxY;
        axes.initMinX = this->m_initMinX;
        axes.initMaxX = this->m_initMaxX;
        axes.manualX = this->m_manualX;
        axes.logScaleY = this->m_logScaleY;
        axes.autoScaleY = this->m_autoScaleY;
        axes.graphRect = this->m_graphRect;
        return axes;
    }

    using Plot::m_data;
    using Plot::m_peaks;
};

class VectorProbe : public CurveProbe<VectorGraphWidget> {
public:
    using CurveProbe::CurveProbe;

    VectorState curveState() const
    {
        VectorState state;
        static_cast<CurveAxes&>(state) = curveAxes();
        state.data = m_data;
        state.peaks = m_peaks;
        return state;
    }

    using VectorGraphWidget::m_index;
    using VectorGraphWidget::m_maxValue;
    using VectorGraphWidget::m_modeless;
};

class MultiProbe : public CurveProbe<MultiVectorGraphWidget> {
public:
    using CurveProbe::CurveProbe;

    MultiState curveState() const
    {
        MultiState state;
        static_cast<CurveAxes&>(state) = curveAxes();
        state.data = m_data;
        state.maxValues = m_maxValues;
        state.groupSize = m_groupSize;
        state.addType = m_addType;
        state.resolution = m_resolution;
        state.columnChart = m_columnChart;
        state.connectPoints = m_connectPoints;
        state.x2plot = m_funcX2Plot;
        state.plot2x = m_funcPlot2X;
        state.peaks = m_peaks;
        state.peakDialogOpen = !m_peakDialogs.map.isEmpty();
        state.peakSelected = m_peakSelected;
        state.peakThreshold = m_peakThreshold;
        state.peakDisplayPoints = m_peakDisplayPoints;
        return state;
    }

    using MultiVectorGraphWidget::m_addType;
    using MultiVectorGraphWidget::m_columnChart;
    using MultiVectorGraphWidget::m_connectPoints;
    using MultiVectorGraphWidget::m_funcPlot2X;
    using MultiVectorGraphWidget::m_funcX2Plot;
    using MultiVectorGraphWidget::m_manualIndex;
    using MultiVectorGraphWidget::m_maxValues;
    using MultiVectorGraphWidget::m_peakDialogs;
    using MultiVectorGraphWidget::m_peakDisplayPoints;
    using MultiVectorGraphWidget::m_peakSelected;
    using MultiVectorGraphWidget::m_peakThreshold;
    using MultiVectorGraphWidget::m_resolution;
    using MultiVectorGraphWidget::m_visibleDialogs;
};

} // namespace tarnis::testing
