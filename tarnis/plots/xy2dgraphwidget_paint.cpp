// Bins, crosses, the layout of button and colour bar, and the overlay of cut and regions.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/exactdrawing_p.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"

#include <QAction>
#include <QPainter>
#include <QPushButton>
#include <QResizeEvent>

#include <algorithm>

void XY2DGraphWidget::showPoint(double x, double y)
{
    m_points.append(QPointF(x, y));
    refreshPixmap();
}

void XY2DGraphWidget::hidePoint()
{
    m_points.clear();
    refreshPixmap();
}

void XY2DGraphWidget::onPaint(QPainter& painter, QRect const& graph)
{
    m_parts->colors.feedBar();
    m_parts->colors.fitScale();
    if (m_data.isEmpty())
        return;
    const tarnis::BinGeometry view = m_parts->colors.geometry(graph);
    if (tarnis::exactDeviceBehind(painter) != nullptr) { // it shows every bin
        tarnis::paintMapExactly(painter, view, m_data, m_parts->colors.scale());
    } else {
        const std::optional<tarnis::BinRows> reduced = m_parts->colors.reducedBins(view);
        if (reduced && m_colouring->reduction != tarnis::BinReduction::Maximum && m_colorBar->isAutoScale()) {
            m_maxZ = tarnis::largestBin(*reduced); // sums and means have a separate scale
            m_colorBar->setMax(m_maxZ);
        }
        m_parts->painter.paint(painter, view, reduced ? *reduced : m_data, m_parts->colors.scale());
    }
    paintPoints(painter, graph);
}

void XY2DGraphWidget::paintPoints(QPainter& painter, const QRect& graph) const
{
    if (m_points.isEmpty())
        return;
    painter.setPen(QPen(QBrush(Qt::red), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    for (const QPointF& point : m_points) {
        const QRect cross = tarnis::pointPixels(point, { m_minX, m_maxX }, { m_minY, m_maxY }, graph);
        tarnis::drawEvenLines(
            painter, { QLine(cross.topLeft(), cross.bottomRight()), QLine(cross.topRight(), cross.bottomLeft()) });
    }
}

void XY2DGraphWidget::adjustWidgetPosition(QSize size)
{
    m_autoButton->move(size.width() - m_autoButton->width() - tarnis::besideAutoButton,
        std::max(0, tarnis::colourBarTop - m_autoButton->sizeHint().height())); // a large font needs more space
    const int barWidth = m_margin.right() - besideBar();
    m_colorBar->move(size.width() - barWidth, tarnis::colourBarTop);
    m_colorBar->resize(barWidth, size.height() - 2 * tarnis::colourBarTop);
}

int XY2DGraphWidget::besideBar() const
{
    return m_colouring != nullptr ? m_colouring->besideBar : 0;
}

void XY2DGraphWidget::resizeEvent(QResizeEvent* event)
{
    adjustWidgetPosition(event->size());
    refreshPixmap();
    onViewChanged();
}

void XY2DGraphWidget::onColorBarSizeChanging(int width)
{
    m_margin.setRight(width + besideBar());
    m_colorBar->move(this->width() - width, tarnis::colourBarTop);
    m_colorBar->resize(width, height() - 2 * tarnis::colourBarTop);
    refreshPixmap();
    onViewChanged();
}

void XY2DGraphWidget::paintSelectedRect(QPainter& painter)
{
    XYGraphWidget::paintSelectedRect(painter);
    painter.setClipRect(m_graphRect);
    if (m_act1dCut->isChecked())
        m_parts->cut.paint(painter);
    else if (IsRoiEnabled())
        m_parts->regions.paint(painter);
    painter.setClipping(false);
}
