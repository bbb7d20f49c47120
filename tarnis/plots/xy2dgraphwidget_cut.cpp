// The 1D cut: its rectangle, dragging of its edges, and the sums for hosts. The windows are in _cutwindows.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/labeleditor_p.h"
#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/projection_p.h"
#include "tarnis/plots/plottool_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/xyrangeinputdialog.h"

#include <QAction>
#include <QDebug>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>
#include <utility>

void XY2DGraphWidget::on1dCut(bool on)
{
    m_act1dCutInside->setVisible(on);
    if (!on) {
        m_1dCutMode = false;
        m_1dCutActive = false;
        updateModeAndCursor();
        refreshPixmap();
        close1dCut();
        return;
    }
    uncheckTools();
    if (m_actRoi != nullptr)
        m_actRoi->setChecked(false);
    m_1dCutMode = true;
    m_1dCutActive = true;
    init1dCutRect();
    refresh1dCut(true);
    updateModeAndCursor();
}

void XY2DGraphWidget::on1dCutInside(bool on)
{
    m_1dCutInside = on;
    refresh1dCut(true);
}

void XY2DGraphWidget::on1dCutEdited(double x_min, double x_max, double y_min, double y_max)
{
    update1dCutRect(x_min, x_max, y_min, y_max);
}

void XY2DGraphWidget::init1dCutRect()
{
    // Bin numbers, independent of the axes.
    m_cutMinX = 0.0;
    m_cutMinY = 0.0;
    m_cutMaxX = static_cast<double>(columnCount());
    m_cutMaxY = static_cast<double>(m_data.size());
}

void XY2DGraphWidget::init1dCutRectWithDrawingRange()
{
    m_cutMinX = m_minX;
    m_cutMaxX = m_maxX;
    m_cutMinY = m_minY;
    m_cutMaxY = m_maxY;
}

void XY2DGraphWidget::update1dCutRangeX(double& min, double& max)
{
    const tarnis::AxisRange range = tarnis::snappedToBins({ min, max }, binAxisX(), columnCount());
    min = range.min;
    max = range.max;
    if (m_cutRangeDialog != nullptr) {
        m_cutRangeDialog->setXMin(min);
        m_cutRangeDialog->setXMax(max);
    }
}

void XY2DGraphWidget::update1dCutRangeY(double& min, double& max)
{
    const tarnis::AxisRange range = tarnis::snappedToBins({ min, max }, binAxisY(), m_data.size());
    min = range.min;
    max = range.max;
    if (m_cutRangeDialog != nullptr) {
        m_cutRangeDialog->setYMin(min);
        m_cutRangeDialog->setYMax(max);
    }
}

void XY2DGraphWidget::update1dCutRect(double x1, double x2, double y1, double y2)
{
    const tarnis::AxisRange x = tarnis::roundedToBins({ x1, x2 }, columnCount());
    const tarnis::AxisRange y = tarnis::roundedToBins({ y1, y2 }, m_data.size());
    const bool hasRows = !m_data.isEmpty();
    setCutRect(hasRows ? x : tarnis::AxisRange(), hasRows ? y : tarnis::AxisRange());
}

void XY2DGraphWidget::update1dCutRectSimply(double x1, double x2, double y1, double y2)
{
    setCutRect({ std::min(x1, x2), std::max(x1, x2) }, { std::min(y1, y2), std::max(y1, y2) });
}

void XY2DGraphWidget::setCutRect(tarnis::AxisRange x, tarnis::AxisRange y)
{
    m_cutMinX = x.min;
    m_cutMaxX = x.max;
    m_cutMinY = y.min;
    m_cutMaxY = y.max;
    fillRangeBox();
    refresh1dCut(true);
}

void XY2DGraphWidget::fillRangeBox()
{
    if (m_cutRangeDialog == nullptr)
        return;
    m_cutRangeDialog->setXMin(m_cutMinX);
    m_cutRangeDialog->setXMax(m_cutMaxX);
    m_cutRangeDialog->setYMin(m_cutMinY);
    m_cutRangeDialog->setYMax(m_cutMaxY);
}

void XY2DGraphWidget::get1dData(QList<double>& horizontal, QList<double>& vertical)
{
    const tarnis::CutSpan x = tarnis::cutSpan(binAxisX(), {}, columnCount());
    const tarnis::CutSpan y = tarnis::cutSpan(binAxisY(), {}, m_data.size());
    QString note;
    QDebug(&note) << "get1dData Horz:" << x.first << "-" << x.end << " Vert:" << y.first << "-" << y.end;
    TARNIS_TRACE(note);
    tarnis::sumVisible(m_data, x, y, horizontal, vertical);
}

bool XY2DGraphWidget::takeEdge(Qt::MouseButton button, const QPoint& point)
{
    if (button != Qt::LeftButton && button != Qt::RightButton)
        return false;
    if (m_edit != nullptr) {
        m_edit->deleteLater();
        m_edit = nullptr;
    }
    if (m_graphRect.contains(point))
        m_cutDragEdge = tarnis::edgeAt(m_cutPixelRect, point);
    if (m_cutDragEdge == tarnis::NoEdge)
        return false;
    if (button == Qt::LeftButton) {
        const bool onX = m_cutDragEdge == tarnis::MinXEdge || m_cutDragEdge == tarnis::MaxXEdge;
        setCursor(onX ? Qt::SplitHCursor : Qt::SplitVCursor);
    } else {
        openEdgeEditor(point);
    }
    return true;
}

void XY2DGraphWidget::openEdgeEditor(const QPoint& point)
{
    const double values[] = { 0.0, m_cutMinX, m_cutMaxX, m_cutMaxY, m_cutMinY };
    m_edit = new tarnis::LabelEditor(QString::number(values[m_cutDragEdge], 'g', 6), this);
    connect(m_edit, &QLineEdit::returnPressed, this, &XY2DGraphWidget::on1dCutEntered);
    m_edit->move(point);
    m_edit->show();
    m_edit->setFocus();
}

void XY2DGraphWidget::on1dCutEntered()
{
    if (m_edit != nullptr) {
        enterEdge(m_edit->text().toDouble());
        m_edit->deleteLater();
        m_edit = nullptr;
    }
    m_cutDragEdge = tarnis::NoEdge;
    refreshPixmap();
    refresh1dCut(true);
}

void XY2DGraphWidget::enterEdge(double value)
{
    const bool onX = m_cutDragEdge == tarnis::MinXEdge || m_cutDragEdge == tarnis::MaxXEdge;
    const bool isVisible = onX ? value >= m_minX && value <= m_maxX : value >= m_minY && value <= m_maxY;
    if (isVisible)
        moveEdge(m_cutDragEdge, value);
}

void XY2DGraphWidget::moveEdge(int edge, double value)
{
    switch (edge) {
    case tarnis::MinXEdge:
        m_cutMinX = value;
        break;
    case tarnis::MaxXEdge:
        m_cutMaxX = value;
        break;
    case tarnis::MaxYEdge:
        m_cutMaxY = value;
        break;
    case tarnis::MinYEdge:
        m_cutMinY = value;
        break;
    default:
        return;
    }
    if (edge == tarnis::MinXEdge || edge == tarnis::MaxXEdge) {
        if (m_cutMinX > m_cutMaxX)
            std::swap(m_cutMinX, m_cutMaxX);
        update1dCutRangeX(m_cutMinX, m_cutMaxX);
    } else {
        if (m_cutMinY > m_cutMaxY)
            std::swap(m_cutMinY, m_cutMaxY);
        update1dCutRangeY(m_cutMinY, m_cutMaxY);
    }
}

void XY2DGraphWidget::finishEdgeDrag(const QPoint& point)
{
    const tarnis::PlotRanges ranges = visibleRanges();
    moveEdge(m_cutDragEdge,
        tarnis::edgeValue(static_cast<tarnis::CutEdge>(m_cutDragEdge), point, ranges.x, ranges.y, m_graphRect));
    m_cutDragEdge = tarnis::NoEdge;
    setCursor(Qt::ArrowCursor);
    refreshPixmap();
    refresh1dCut(true);
}

void XY2DGraphWidget::paintCut(QPainter& painter)
{
    m_cutPixelRect = tarnis::cutPixels(
        { m_cutMinX, m_cutMaxX }, { m_cutMinY, m_cutMaxY }, { m_minX, m_maxX }, { m_minY, m_maxY }, m_graphRect);
    painter.setPen(QPen(Qt::red, 1, Qt::DashLine));
    for (const int y : { m_cutPixelRect.top(), m_cutPixelRect.bottom() })
        tarnis::drawEvenLine(painter, QLine(m_graphRect.left(), y, m_graphRect.right(), y));
    for (const int x : { m_cutPixelRect.left(), m_cutPixelRect.right() })
        tarnis::drawEvenLine(painter, QLine(x, m_graphRect.top(), x, m_graphRect.bottom()));
}
