#include "tarnis/plots/plotlayoutitem.h"

#include "tarnis/plots/xygraphwidget.h"

namespace tarnis {

PlotLayoutItem::PlotLayoutItem(XYGraphWidget* plot, const QSize& usual, const QSize& minimum)
    : QWidgetItem(plot)
    , m_usual(usual)
    , m_minimum(minimum)
{
}

QSize PlotLayoutItem::bounded(const QSize& size) const
{
    const QWidget& plot = *const_cast<PlotLayoutItem*>(this)->widget();
    return size.expandedTo(plot.minimumSize()).boundedTo(plot.maximumSize());
}

QSize PlotLayoutItem::sizeHint() const
{
    return isEmpty() ? QSize(0, 0) : bounded(m_usual.expandedTo(m_minimum));
}

QSize PlotLayoutItem::minimumSize() const
{
    return isEmpty() ? QSize(0, 0) : bounded(m_minimum);
}

QSize PlotLayoutItem::maximumSize() const
{
    return isEmpty() ? QSize(0, 0) : const_cast<PlotLayoutItem*>(this)->widget()->maximumSize();
}

Qt::Orientations PlotLayoutItem::expandingDirections() const
{
    return isEmpty() ? Qt::Orientations() : Qt::Horizontal | Qt::Vertical;
}

} // namespace tarnis
