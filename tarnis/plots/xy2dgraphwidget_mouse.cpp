// The mouse on the map: tools, rubber band, read-out.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/math/mapreadout_p.h"
#include "tarnis/plots/math/projection_p.h"
#include "tarnis/plots/plottool_p.h"

#include <QAction>
#include <QLineEdit>
#include <QMouseEvent>
#include <QToolTip>

void XY2DGraphWidget::updateModeAndCursor()
{
    XYGraphWidget::updateModeAndCursor();
    if (m_mode == tarnis::NoTool && (m_1dCutMode || IsRoiEnabled()))
        m_mode = tarnis::RubberBandTool;
    m_cutDragEdge = tarnis::NoEdge;
}

void XY2DGraphWidget::uncheckTools()
{
    for (QAction* tool : { m_actRectangle, m_actZoomIn, m_actZoomOut, m_actMove })
        tool->setChecked(false);
}

void XY2DGraphWidget::mousePressEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    m_pressPos = point;
    m_cutDragEdge = tarnis::NoEdge;
    m_colorBar->deleteEditLine();
    if (event->button() == Qt::RightButton && m_colorBar->geometry().contains(point)) {
        openColorBarMenu(event->globalPosition().toPoint());
        return;
    }
    if (m_mode == tarnis::RubberBandTool && m_1dCutActive && !m_selecting && takeEdge(event->button(), point))
        return;
    XYGraphWidget::mousePressEvent(event);
    const bool isZoom = m_mode == tarnis::ZoomInTool || m_mode == tarnis::ZoomOutTool;
    if (event->button() == Qt::LeftButton && isZoom && m_act1dCut->isChecked())
        refresh1dCut(true);
}

void XY2DGraphWidget::mouseReleaseEvent(QMouseEvent* event)
{
    const bool isLeft = event->button() == Qt::LeftButton;
    if (m_actRectangle->isChecked()) {
        XYGraphWidget::mouseReleaseEvent(event);
        if (isLeft && m_act1dCut->isChecked())
            refresh1dCut(true);
    } else if (isLeft && m_mode == tarnis::RubberBandTool && m_1dCutActive && m_cutDragEdge != tarnis::NoEdge) {
        if (m_edit != nullptr) {
            m_edit->deleteLater();
            m_edit = nullptr;
        } else {
            finishEdgeDrag(event->position().toPoint());
        }
    } else {
        XYGraphWidget::mouseReleaseEvent(event);
    }
}

void XY2DGraphWidget::mouseMoveEvent(QMouseEvent* event)
{
    const QString text = isReadOutByTool() ? QString() : readOutAt(event->position().toPoint());
    if (text.isEmpty())
        QToolTip::showText(QPoint(), QString(), nullptr, QRect());
    else
        QToolTip::showText(event->globalPosition().toPoint(), text, this, QRect(0, 0, 120, 20));
    XYGraphWidget::mouseMoveEvent(event);
    if (m_mode == tarnis::MoveTool && m_selecting && m_act1dCut->isChecked())
        refresh1dCut(true);
}

void XY2DGraphWidget::onSetRectangle(double x1, double x2, double y1, double y2)
{
    if (m_actRectangle->isChecked()) {
        XYGraphWidget::onSetRectangle(x1, x2, y1, y2);
    } else if (m_act1dCut->isChecked()) {
        m_1dCutActive = true;
        update1dCutRangeX(x1, x2);
        update1dCutRangeY(y1, y2);
        update1dCutRect(x1, x2, y1, y2);
    } else if (IsRoiEnabled()) {
        addRegion(x1, x2, y1, y2);
    }
}

QString XY2DGraphWidget::readOutAt(const QPoint& point)
{
    return tarnis::readOut(
        m_data, { binAxisX(), m_nameX, m_decimalX }, { binAxisY(), m_nameY, m_decimalY }, point, m_graphRect);
}
