// The 1D cut: its rectangle, dragging of its edges, and the sums for hosts. The windows are in _cutwindows.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/labeleditor_p.h"
#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"
#include "tarnis/plots/xyrangeinputdialog.h"

#include <QAction>
#include <QDebug>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

bool isOnX(int edge)
{
    return edge == tarnis::MinXEdge || edge == tarnis::MaxXEdge;
}

} // namespace

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
    m_parts->cut.setRect(hasRows ? x : tarnis::AxisRange(), hasRows ? y : tarnis::AxisRange());
}

void XY2DGraphWidget::update1dCutRectSimply(double x1, double x2, double y1, double y2)
{
    m_parts->cut.setRect({ std::min(x1, x2), std::max(x1, x2) }, { std::min(y1, y2), std::max(y1, y2) });
}

void XY2DGraphWidget::Cut::setRect(tarnis::AxisRange x, tarnis::AxisRange y)
{
    m_plot.m_cutMinX = x.min;
    m_plot.m_cutMaxX = x.max;
    m_plot.m_cutMinY = y.min;
    m_plot.m_cutMaxY = y.max;
    fillRangeBox();
    m_plot.refresh1dCut(true);
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

bool XY2DGraphWidget::Cut::takeEdge(Qt::MouseButton button, const QPoint& point)
{
    if (button != Qt::LeftButton && button != Qt::RightButton)
        return false;
    m_plot.dropEditor();
    int& edge = m_plot.m_cutDragEdge;
    if (m_plot.m_graphRect.contains(point))
        edge = tarnis::edgeAt(m_plot.m_cutPixelRect, point);
    if (edge == tarnis::NoEdge)
        return false;
    if (button == Qt::LeftButton)
        m_plot.setCursor(isOnX(edge) ? Qt::SplitHCursor : Qt::SplitVCursor);
    else
        openEdgeEditor(point);
    return true;
}

void XY2DGraphWidget::Cut::openEdgeEditor(const QPoint& point)
{
    const double values[] = { 0.0, m_plot.m_cutMinX, m_plot.m_cutMaxX, m_plot.m_cutMaxY, m_plot.m_cutMinY };
    auto* const edit = new tarnis::LabelEditor(QString::number(values[m_plot.m_cutDragEdge], 'g', 6), &m_plot);
    m_plot.m_edit = edit;
    QObject::connect(edit, &QLineEdit::returnPressed, &m_plot, &XY2DGraphWidget::on1dCutEntered);
    edit->move(point);
    edit->show();
    edit->setFocus();
}

void XY2DGraphWidget::on1dCutEntered()
{
    if (m_edit != nullptr) {
        m_parts->cut.enterEdge(m_edit->text().toDouble());
        dropEditor();
    }
    m_cutDragEdge = tarnis::NoEdge;
    refreshPixmap();
    refresh1dCut(true);
}

void XY2DGraphWidget::Cut::enterEdge(double value)
{
    const int edge = m_plot.m_cutDragEdge;
    const auto [x, y] = m_plot.visibleRanges();
    const tarnis::AxisRange visible = isOnX(edge) ? x : y;
    if (value >= visible.min && value <= visible.max)
        moveEdge(edge, value);
}

void XY2DGraphWidget::Cut::moveEdge(int edge, double value)
{
    switch (edge) {
    case tarnis::MinXEdge:
        m_plot.m_cutMinX = value;
        break;
    case tarnis::MaxXEdge:
        m_plot.m_cutMaxX = value;
        break;
    case tarnis::MaxYEdge:
        m_plot.m_cutMaxY = value;
        break;
    case tarnis::MinYEdge:
        m_plot.m_cutMinY = value;
        break;
    default:
        return;
    }
    double& min = isOnX(edge) ? m_plot.m_cutMinX : m_plot.m_cutMinY;
    double& max = isOnX(edge) ? m_plot.m_cutMaxX : m_plot.m_cutMaxY;
    if (min > max)
        std::swap(min, max);
    if (isOnX(edge))
        m_plot.update1dCutRangeX(min, max);
    else
        m_plot.update1dCutRangeY(min, max);
}

void XY2DGraphWidget::Cut::finishDrag(const QPoint& point)
{
    const auto [x, y] = m_plot.visibleRanges();
    const auto edge = static_cast<tarnis::CutEdge>(m_plot.m_cutDragEdge);
    moveEdge(edge, tarnis::edgeValue(edge, point, x, y, m_plot.m_graphRect));
    m_plot.m_cutDragEdge = tarnis::NoEdge;
    m_plot.setCursor(Qt::ArrowCursor);
    m_plot.refreshPixmap();
    m_plot.refresh1dCut(true);
}

void XY2DGraphWidget::Cut::paint(QPainter& painter)
{
    const auto [x, y] = m_plot.visibleRanges();
    const QRect& graph = m_plot.m_graphRect;
    const QRect pixels =
        tarnis::cutPixels({ m_plot.m_cutMinX, m_plot.m_cutMaxX }, { m_plot.m_cutMinY, m_plot.m_cutMaxY }, x, y, graph);
    m_plot.m_cutPixelRect = pixels;
    painter.setPen(QPen(Qt::red, 1, Qt::DashLine));
    for (const int row : { pixels.top(), pixels.bottom() })
        tarnis::drawEvenLine(painter, QLine(graph.left(), row, graph.right(), row));
    for (const int column : { pixels.left(), pixels.right() })
        tarnis::drawEvenLine(painter, QLine(column, graph.top(), column, graph.bottom()));
}
