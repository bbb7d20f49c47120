// The mouse tools: their actions, the events, and how a drag or a click changes the ranges.
#include "tarnis/plots/xygraphwidget.h"

#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/mousestate_p.h"
#include "tarnis/plots/plothooks_p.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>

namespace {

/// Unchecks the others if `chosen` is checked: the tools are exclusive without an action group.
void excludeOthers(const QAction* chosen, std::initializer_list<QAction*> tools)
{
    if (!chosen->isChecked())
        return;
    for (QAction* tool : tools) {
        if (tool != chosen)
            tool->setChecked(false);
    }
}

/// Values are divided by width and height, which may be negative if a plot is smaller than its margins.
bool hasExtent(const QRect& graph)
{
    return graph.width() != 0 && graph.height() != 0;
}

} // namespace

void XYGraphWidget::onRectangle()
{
    excludeOthers(m_actRectangle, { m_actRectangle, m_actZoomIn, m_actZoomOut, m_actMove, m_actSelectXRange });
    updateModeAndCursor();
}

void XYGraphWidget::onZoomIn()
{
    excludeOthers(m_actZoomIn, { m_actRectangle, m_actZoomIn, m_actZoomOut, m_actMove, m_actSelectXRange });
    updateModeAndCursor();
}

void XYGraphWidget::onZoomOut()
{
    excludeOthers(m_actZoomOut, { m_actRectangle, m_actZoomIn, m_actZoomOut, m_actMove, m_actSelectXRange });
    updateModeAndCursor();
}

void XYGraphWidget::onMove()
{
    excludeOthers(m_actMove, { m_actRectangle, m_actZoomIn, m_actZoomOut, m_actMove, m_actSelectXRange });
    updateModeAndCursor();
}

void XYGraphWidget::onReset()
{
    onAutoScaleX(true);
    onAutoScaleY(true);
}

void XYGraphWidget::onShowGrid()
{
    m_showGrid = !m_showGrid;
    refreshPixmap();
}

void XYGraphWidget::updateModeAndCursor()
{
    struct Tool {
        const QAction* action;
        tarnis::PlotTool mode;
        Qt::CursorShape cursor;
    };
    const Tool tools[] = {
        { m_actRectangle, tarnis::RubberBandTool, Qt::CrossCursor },
        { m_actZoomIn, tarnis::ZoomInTool, Qt::SizeAllCursor },
        { m_actZoomOut, tarnis::ZoomOutTool, Qt::SizeAllCursor },
        { m_actMove, tarnis::MoveTool, Qt::OpenHandCursor },
        { m_actSelectXRange, tarnis::RubberBandTool, Qt::CrossCursor },
    };
    for (const Tool& tool : tools) {
        if (tool.action->isChecked()) {
            m_mode = tool.mode;
            setCursor(tool.cursor);
            return;
        }
    }
    m_mode = tarnis::NoTool;
    setCursor(Qt::ArrowCursor);
}

tarnis::PlotRanges XYGraphWidget::visibleRanges() const
{
    return { { m_minX, m_maxX }, { m_minY, m_maxY } };
}

void XYGraphWidget::changeRanges(const tarnis::PlotRanges& ranges)
{
    setMinMaxX(ranges.x.min, ranges.x.max);
    setMinMaxY(ranges.y.min, ranges.y.max);
    m_actAutoScaleX->setChecked(false);
    m_actAutoScaleY->setChecked(false);
    refreshPixmap();
}

void XYGraphWidget::dropEditor()
{
    if (m_edit == nullptr)
        return;
    m_edit->deleteLater();
    m_edit = nullptr;
}

void XYGraphWidget::showRubberBand()
{
    m_rubberBand.setGeometry(m_selectRect.normalized() & m_graphRect);
    m_rubberBand.show();
}

void XYGraphWidget::finishRubberBand()
{
    m_selecting = false;
    const QRect band = m_selectRect.normalized();
    if (band.isValid() && hasExtent(m_graphRect)) {
        const auto [x, y] = tarnis::valuesOf(band, visibleRanges(), m_graphRect);
        onSetRectangle(x.min, x.max, y.min, y.max);
    }
    refreshPixmap();
}

void XYGraphWidget::takeStep(tarnis::MouseStep step, const QPoint& point)
{
    using tarnis::MouseStep;
    switch (step) {
    case MouseStep::Nothing:
        break;
    case MouseStep::BeginBand:
        m_selecting = true;
        m_selectRect = QRect(point, QSize(0, 0));
        showRubberBand();
        break;
    case MouseStep::StretchBand:
        m_selectRect.setBottomRight(point);
        showRubberBand();
        if (m_hooks == nullptr) // moving the rubber band repaints what it leaves; tools draw nothing with it
            update();
        break;
    case MouseStep::EndBand:
        finishRubberBand();
        break;
    case MouseStep::ZoomIn:
        changeRanges(tarnis::zoomedInAt(point, visibleRanges(), m_graphRect));
        break;
    case MouseStep::ZoomOut:
        changeRanges(tarnis::zoomedOutAt(point, visibleRanges(), m_graphRect));
        break;
    case MouseStep::BeginMove:
        m_selecting = true;
        m_lastPos = point;
        setCursor(Qt::ClosedHandCursor);
        break;
    case MouseStep::Move:
        if (point == m_lastPos || !hasExtent(m_graphRect))
            break;
        changeRanges(tarnis::movedAlong(m_lastPos, point, visibleRanges(), m_graphRect));
        m_lastPos = point;
        break;
    case MouseStep::EndMove:
        m_selecting = false;
        setCursor(Qt::OpenHandCursor);
        break;
    case MouseStep::EditLabel:
        if (m_edit == nullptr)
            openEditorAt(point);
        break;
    }
}

void XYGraphWidget::mousePressEvent(QMouseEvent* event)
{
    dropEditor();
    const QPoint point = event->position().toPoint();
    if (event->button() == Qt::LeftButton && m_graphRect.contains(point))
        takeStep(tarnis::stepAtPress(tarnis::mouseState(m_mode, m_selecting)), point);
    if (event->button() == Qt::RightButton && !actions().isEmpty()) {
        auto* menu = new QMenu(this);
        menu->addActions(actions());
        menu->popup(event->globalPosition().toPoint());
        menu->setAttribute(Qt::WA_DeleteOnClose);
    }
    DoubleBufferedWidget::mousePressEvent(event);
}

void XYGraphWidget::mouseMoveEvent(QMouseEvent* event)
{
    takeStep(tarnis::stepAtMove(tarnis::mouseState(m_mode, m_selecting)), event->position().toPoint());
    DoubleBufferedWidget::mouseMoveEvent(event);
}

void XYGraphWidget::mouseReleaseEvent(QMouseEvent* event)
{
    m_rubberBand.hide();
    if (event->button() == Qt::LeftButton)
        takeStep(tarnis::stepAtRelease(tarnis::mouseState(m_mode, m_selecting)), event->position().toPoint());
    DoubleBufferedWidget::mouseReleaseEvent(event);
}

void XYGraphWidget::onSetRectangle(double x1, double x2, double y1, double y2)
{
    if (!m_actRectangle->isChecked()) {
        if (m_actSelectXRange->isChecked())
            SetXRange(x1, x2);
        return;
    }
    if (x2 > x1)
        setMinMaxX(x1, x2);
    if (y2 > y1)
        setMinMaxY(y1, y2);
    m_actAutoScaleX->setChecked(false);
    m_actAutoScaleY->setChecked(false);
}
