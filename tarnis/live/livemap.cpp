#include "tarnis/live/livemap.h"

#include "tarnis/plots/xy2dgraphwidget.h"

namespace tarnis {

LiveMap::LiveMap(QWidget* parent)
    : LiveWidget(new XY2DGraphWidget, parent)
    , m_plot(static_cast<XY2DGraphWidget*>(frame()))
{
    m_plot->init(tr("X"), tr("Y"), 0.0, 0.0, true, true);
}

XY2DGraphWidget* LiveMap::plot() const
{
    return m_plot;
}

void LiveMap::setLogScale(bool on)
{
    m_isLogScale = on;
    m_plot->onLogScale(on);
}

bool LiveMap::isLogScale() const
{
    return m_isLogScale;
}

void LiveMap::showData(const HistogramReply& histogram)
{
    if (!(histogram.x == m_x) || !(histogram.y == m_y)) {
        if (histogram.y.bins < m_y.bins)
            m_plot->clearData(); // the only way to remove rows from a map
        m_x = histogram.x;
        m_y = histogram.y;
        m_plot->initManualX(m_x.min, m_x.max);
        m_plot->initManualY(m_y.min, m_y.max);
    }
    // The automatic colours use the largest of the rows' maxima, so that of the map can be passed for each row.
    const int rows = static_cast<int>(histogram.rows.size());
    for (int row = 0; row < rows; ++row)
        m_plot->setData(row, histogram.rows.at(row), histogram.maximum, row == rows - 1);
}

void LiveMap::clearData()
{
    m_plot->clearData();
}

QString LiveMap::unsuitability(const HistogramReply& histogram) const
{
    return histogram.kind == HistogramFormat::Kind::Map
        ? QString()
        : tr("The reply is a 1D histogram, and this widget shows maps. Choose the command of a map.");
}

void LiveMap::followWindow()
{
    m_plot->onParentMoved();
}

void LiveMap::raiseWindows()
{
    m_plot->onParentActivate();
}

} // namespace tarnis
