// The mouse on the map: tools, rubber band, read-out.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/math/mapreadout_p.h"
#include "tarnis/plots/mousestate_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"

#include <QAction>
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

tarnis::MouseState XY2DGraphWidget::mouseState() const
{
    return tarnis::mouseState(m_mode, m_selecting);
}

tarnis::EdgeState XY2DGraphWidget::edgeState() const
{
    return tarnis::edgeState(mouseState(), m_1dCutActive, m_cutDragEdge != tarnis::NoEdge, m_edit != nullptr);
}

void XY2DGraphWidget::mousePressEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    m_pressPos = point;
    m_cutDragEdge = tarnis::NoEdge;
    m_colorBar->deleteEditLine();
    if (event->button() == Qt::RightButton && m_colorBar->geometry().contains(point)) {
        m_parts->colors.openMenu(event->globalPosition().toPoint());
        return;
    }
    if (edgeState() == tarnis::EdgeState::Ready && m_parts->cut.takeEdge(event->button(), point))
        return;
    XYGraphWidget::mousePressEvent(event);
    const tarnis::MouseState state = mouseState();
    const bool isZoom = state == tarnis::MouseState::ZoomInReady || state == tarnis::MouseState::ZoomOutReady;
    if (event->button() == Qt::LeftButton && isZoom)
        onViewChanged();
}

void XY2DGraphWidget::mouseReleaseEvent(QMouseEvent* event)
{
    const bool isLeft = event->button() == Qt::LeftButton;
    const tarnis::EdgeState edge = edgeState();
    if (m_actRectangle->isChecked()) { // zooms, also over an edge of the cut
        XYGraphWidget::mouseReleaseEvent(event);
        if (isLeft)
            onViewChanged();
    } else if (isLeft && edge == tarnis::EdgeState::InEditor) {
        dropEditor();
    } else if (isLeft && edge == tarnis::EdgeState::Held) {
        m_parts->cut.finishDrag(event->position().toPoint());
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
    if (mouseState() == tarnis::MouseState::MoveDrag)
        onViewChanged();
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
        m_parts->regions.add(x1, x2, y1, y2);
    }
}

QString XY2DGraphWidget::readOutAt(const QPoint& point)
{
    return tarnis::readOut(m_data, { binAxisX(), tarnis::PlotAccess::positionNameX(*this), m_decimalX },
        { binAxisY(), m_nameY, m_decimalY }, point, m_graphRect);
}
