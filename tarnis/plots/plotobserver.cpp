#include "tarnis/plots/plotobserver.h"

#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotoverlay.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QPainter>

namespace tarnis {

PlotObserver::PlotObserver(XYGraphWidget* plot)
    : m_observed(plot)
{
    if (plot == nullptr)
        qCWarning(TARNIS_TRACE_CATEGORY(), "PlotObserver: no plot to observe; pass one that exists");
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

void PlotObserver::crosshairMoved(const QPointF& /*value*/)
{
}

void PlotObserver::linkedCrosshairMoved(Qt::Orientation /*axis*/, double /*value*/)
{
}

PlotOverlay::PlotOverlay(XYGraphWidget* plot, int zOrder)
    : m_plot(plot)
    , m_zOrder(zOrder)
{
    if (plot == nullptr)
        qCWarning(TARNIS_TRACE_CATEGORY(), "PlotOverlay: no plot to draw on; pass one that exists");
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

/// At fractional pixel ratios the edges of an area would be inside of pixels.
bool PlotOverlay::canUpdateArea() const
{
    return m_isAreaKnown && m_plot->m_doubleBuffered && !m_plot->m_refreshRequired && !isTurned(m_plot->m_rotation)
        && hasWholePixels(*m_plot);
}

void PlotOverlay::updateOverlayArea(const QRegion& area)
{
    if (m_plot == nullptr)
        return;
    constexpr int maxParts = 300; // with more of them, copying each takes longer than the pixels saved
    m_area += area;
    if (m_area.rectCount() > maxParts)
        m_area = m_area.boundingRect();
    if (canUpdateArea())
        m_plot->update(m_area);
    else
        m_plot->update();
}

void PlotOverlay::noteDrawn(const QPainter& painter, const QRegion& area, bool dependsOnOthers)
{
    if (m_plot == nullptr || painter.device() != static_cast<const QPaintDevice*>(m_plot))
        return; // in a file
    // Another tool has moved the overlay, and the current repaint does not cover its new area.
    const bool isMoved = m_isAreaKnown && PlotHooks::of(*m_plot).isPartial() && !area.subtracted(m_area).isEmpty();
    if (isMoved)
        updateOverlayArea(area);
    m_area = area;
    m_isAreaKnown = true;
    m_dependsOnOthers = dependsOnOthers;
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
