// Common code of the cut tests: a small map on a graph with round pixel coordinates, and access to range box and cut
// plots.
#pragma once

#include "support/cutoracle.h"
#include "support/map2dprobe.h"
#include "support/plotmouse.h"
#include "tarnis/plots/xyrangeinputdialog.h"

#include <tarnis/plots/vectorgraphwidget.h>

#include <QDialog>

namespace tarnis::testing {

/// The state of a cut plot, read through pointers to members.
struct CutView : VectorGraphWidget {
    using VectorGraphWidget::m_data;
    using VectorGraphWidget::m_index;
    using VectorGraphWidget::m_logScaleY;
    using VectorGraphWidget::m_maxValue;
    using VectorGraphWidget::m_notes;
    using VectorGraphWidget::m_peaks;
};

/// The range box's values.
struct BoxView : XYRangeInputDialog {
    using XYRangeInputDialog::m_xMax;
    using XYRangeInputDialog::m_xMin;
    using XYRangeInputDialog::m_yMax;
    using XYRangeInputDialog::m_yMin;
};

/// 10 columns of 1 unit from 0 on and 8 rows of 1 unit; bin (column, row) holds 1 + column + 100 * row. The graph is
/// 200 x 160 pixels: 20 for each bin.
class CutMap : public MapProbe {
public:
    explicit CutMap(QWidget* parent = nullptr)
        : MapProbe(parent)
    {
        init("x", "y", 10.0, 8.0, false, false);
        initManualX(0.0, 10.0);
        initManualY(0.0, 8.0);
        resize(400, 300);
    }
    void fill(int rows = 8, int columns = 10)
    {
        for (int row = 0; row < rows; ++row) {
            QList<double> bins;
            for (int column = 0; column < columns; ++column)
                bins.append(1.0 + column + 100.0 * row);
            setData(row, bins, bins.isEmpty() ? 0.0 : bins.constLast(), false);
        }
    }
    /// Sets a graph with round pixel coordinates, and paints the overlay.
    void useRoundPixels()
    {
        m_graphRect = QRect(50, 40, 200, 160);
        QImage image(size(), QImage::Format_RGB32);
        QPainter painter(&image);
        paintSelectedRect(painter);
    }
    void switchOn()
    {
        m_act1dCut->setChecked(true);
        useRoundPixels();
    }
    void setCut(double minX, double maxX, double minY, double maxY)
    {
        update1dCutRectSimply(minX, maxX, minY, maxY);
        useRoundPixels();
    }
    QRectF cut() const { return { QPointF(m_cutMinX, m_cutMinY), QPointF(m_cutMaxX, m_cutMaxY) }; }
    CutState cutState() const { return { m_cutMinX, m_cutMaxX, m_cutMinY, m_cutMaxY, m_1dCutActive, m_1dCutInside }; }
    QWidget* windowX() const { return m_cutXWindows.map.value(nullptr); }
    QWidget* windowY() const { return m_cutYWindows.map.value(nullptr); }
    VectorGraphWidget* plotX() const { return windowX() ? windowX()->findChild<VectorGraphWidget*>() : nullptr; }
    VectorGraphWidget* plotY() const { return windowY() ? windowY()->findChild<VectorGraphWidget*>() : nullptr; }
    bool hasAllWindows() const { return m_cutRangeDialog && windowX() && windowY(); }
    bool hasNoWindow() const { return !m_cutRangeDialog && !windowX() && !windowY(); }
    QList<QAction*> tools() const { return { m_actRectangle, m_actZoomIn, m_actZoomOut, m_actMove }; }

    using XY2DGraphWidget::mousePressEvent;
    using XY2DGraphWidget::onSetRectangle;
    using XY2DGraphWidget::paintSelectedRect;
    using XY2DGraphWidget::updateModeAndCursor;
};

inline QRectF rect(double minX, double maxX, double minY, double maxY)
{
    return { QPointF(minX, minY), QPointF(maxX, maxY) };
}

} // namespace tarnis::testing
