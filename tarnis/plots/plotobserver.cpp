#include "tarnis/plots/plotobserver.h"

#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotoverlay.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QDebug>

namespace tarnis {

PlotObserver::PlotObserver(XYGraphWidget* plot)
    : m_observed(plot)
{
    if (plot == nullptr)
        qWarning("PlotObserver: no plot to observe; pass one that exists");
    else
        PlotHooks::of(*plot).add(*this);
}

PlotObserver::~PlotObserver()
{
    if (m_observed != nullptr)
        PlotHooks::of(*m_observed).remove(*this);
}

void PlotObserver::announceData(XYGraphWidget& plot)
{
    if (PlotHooks* const hooks = PlotHooks::existing(plot))
        hooks->touchData();
}

void PlotObserver::plotChanged(Changes /*changes*/)
{
}

void PlotObserver::axisInitialized(Qt::Orientation /*axis*/, double /*previousMin*/, double /*previousMax*/)
{
}

PlotOverlay::PlotOverlay(XYGraphWidget* plot, int zOrder)
    : m_plot(plot)
    , m_zOrder(zOrder)
{
    if (plot == nullptr)
        qWarning("PlotOverlay: no plot to draw on; pass one that exists");
    else
        PlotHooks::of(*plot).add(*this);
}

PlotOverlay::~PlotOverlay()
{
    if (m_plot != nullptr)
        PlotHooks::of(*m_plot).remove(*this);
}

void PlotOverlay::updateOverlay()
{
    if (m_plot != nullptr)
        m_plot->update();
}

void PlotOverlay::paintAll(const XYGraphWidget& plot, QPainter& painter)
{
    if (const PlotHooks* const hooks = PlotHooks::existing(plot))
        hooks->paintOverlays(painter, true);
}

bool PlotOverlay::isSaved() const
{
    return true;
}

} // namespace tarnis
