// Mouse events of the map: the menu of the colour bar, the edges of the cut, the read-out.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/labeleditor_p.h"
#include "tarnis/plots/math/maptext_p.h"
#include "tarnis/plots/math/projection_p.h"
#include "tarnis/plots/plottool_p.h"

#include <QAction>
#include <QLineEdit>
#include <QMouseEvent>
#include <QToolTip>

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

QString XY2DGraphWidget::readOutAt(const QPoint& point)
{
    return tarnis::readOut(
        m_data, { binAxisX(), m_nameX, m_decimalX }, { binAxisY(), m_nameY, m_decimalY }, point, m_graphRect);
}
