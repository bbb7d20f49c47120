#include "tarnis/plots/plothooks_p.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotoverlay.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/bandpicture_p.h"

#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QRubberBand>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

bool isSameNumber(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

PlotHooks::PlotHooks(XYGraphWidget& plot)
    : m_plot(plot)
    , m_reported(state())
{
    PlotAccess::rubberBand(plot).installEventFilter(this);
}

PlotHooks::~PlotHooks()
{
    for (PlotObserver* const observer : std::as_const(m_observers))
        observer->m_observed = nullptr;
    for (PlotOverlay* const overlay : std::as_const(m_overlays))
        overlay->m_plot = nullptr;
}

PlotHooks& PlotHooks::of(XYGraphWidget& plot)
{
    std::unique_ptr<PlotHooks>& hooks = PlotAccess::hooks(plot);
    if (hooks == nullptr)
        hooks = std::make_unique<PlotHooks>(plot);
    return *hooks;
}

PlotHooks* PlotHooks::existing(const XYGraphWidget& plot)
{
    return PlotAccess::hooks(plot);
}

QSize PlotHooks::pictureSize() const
{
    if (!m_pictureSize.isEmpty())
        return m_pictureSize;
    return PlotMapping::of(m_plot).rotation() != 0.0 ? m_plot.size().transposed() : m_plot.size();
}

bool PlotHooks::eventFilter(QObject* watched, QEvent* event)
{
    QRubberBand& band = PlotAccess::rubberBand(m_plot);
    if (watched != &band || event->type() != QEvent::Paint)
        return QObject::eventFilter(watched, event);
    paintRubberBand(band);
    return true;
}

void PlotHooks::add(PlotObserver& observer)
{
    if (m_observers.isEmpty()) {
        m_reported = state(); // changes while there was no observer are not reported
        m_dataChanged = false;
    }
    m_observers.append(&observer);
}

void PlotHooks::remove(PlotObserver& observer)
{
    m_observers.removeOne(&observer);
}

void PlotHooks::add(PlotOverlay& overlay)
{
    const auto above = std::upper_bound(m_overlays.cbegin(), m_overlays.cend(), overlay.zOrder(),
        [](int zOrder, const PlotOverlay* other) { return zOrder < other->zOrder(); });
    m_overlays.insert(above, &overlay);
    m_plot.update();
}

void PlotHooks::remove(PlotOverlay& overlay)
{
    m_overlays.removeOne(&overlay);
    m_plot.update();
}

PlotHooks::State PlotHooks::state() const
{
    State state { PlotAccess::x(m_plot), PlotAccess::y(m_plot), {}, PlotAccess::isAutoX(m_plot),
        PlotAccess::isAutoY(m_plot), true, PlotAccess::isLogY(m_plot), PlotAccess::plotRect(m_plot) };
    if (const auto* map = qobject_cast<const XY2DGraphWidget*>(&m_plot)) {
        state.levels = PlotAccess::levels(*map);
        state.autoLevels = PlotAccess::colourBar(*map).isAutoScale();
        state.logScale = PlotAccess::isLogZ(*map);
    }
    return state;
}

template <typename Call> bool PlotHooks::forEachObserver(const Call& call)
{
    const QPointer<PlotHooks> guard(this);
    const QList<PlotObserver*> receivers = m_observers;
    for (PlotObserver* const observer : receivers) {
        if (m_observers.contains(observer))
            call(*observer);
        if (guard.isNull())
            return false;
    }
    return true;
}

void PlotHooks::touch()
{
    if (!m_observers.isEmpty() && !m_isPosted)
        post();
}

void PlotHooks::touchData()
{
    m_dataChanged = true;
    m_blocks.clear();
    if (PlotStyling* const style = styling())
        style->noteData();
    touch();
}

void PlotHooks::post()
{
    m_isPosted = true;
    QMetaObject::invokeMethod(
        this, [this] { deliver(); }, Qt::QueuedConnection);
}

void PlotHooks::deliver()
{
    m_isPosted = false;
    if (PlotStyling* const style = styling())
        style->fitAxes(); // observers must see the ranges that will be painted
    const State now = state();
    PlotObserver::Changes changes;
    changes.setFlag(PlotObserver::RangeX, now.x != m_reported.x);
    changes.setFlag(PlotObserver::RangeY, now.y != m_reported.y);
    changes.setFlag(PlotObserver::ScaleType, now.logScale != m_reported.logScale);
    changes.setFlag(PlotObserver::PlotRect, now.rect != m_reported.rect);
    changes.setFlag(PlotObserver::Data, std::exchange(m_dataChanged, false));
    changes.setFlag(PlotObserver::Levels, now.levels != m_reported.levels);
    changes.setFlag(PlotObserver::AutoScale,
        now.autoX != m_reported.autoX || now.autoY != m_reported.autoY || now.autoLevels != m_reported.autoLevels);
    m_reported = now;
    if (!changes)
        return;
    forEachObserver([changes](PlotObserver& observer) { observer.plotChanged(changes); });
}

void PlotHooks::initialized(Qt::Orientation axis, AxisRange previous)
{
    const auto call = [&](PlotObserver& observer) { observer.axisInitialized(axis, previous.min, previous.max); };
    if (forEachObserver(call))
        touch();
}

void PlotHooks::moveCrosshair(const QPointF& value)
{
    if (isSameNumber(value.x(), m_crosshair.x()) && isSameNumber(value.y(), m_crosshair.y()))
        return;
    m_crosshair = value;
    forEachObserver([value](PlotObserver& observer) { observer.crosshairMoved(value); });
}

void PlotHooks::moveLinkedCrosshair(Qt::Orientation axis, double value)
{
    double& current = axis == Qt::Horizontal ? m_linkedCrosshair.rx() : m_linkedCrosshair.ry();
    if (isSameNumber(value, current))
        return;
    current = value;
    forEachObserver([axis, value](PlotObserver& observer) { observer.linkedCrosshairMoved(axis, value); });
}

void PlotHooks::setSeriesNames(const QStringList& names)
{
    if (names == m_seriesNames)
        return;
    m_seriesNames = names;
    touchData();
}

void PlotHooks::paintOverlays(QPainter& painter, bool saved) const
{
    const PlotMapping mapping = PlotMapping::of(m_plot);
    if (!mapping.isValid())
        return;
    const QList<PlotOverlay*> overlays = m_overlays;
    for (PlotOverlay* const overlay : overlays) {
        if (saved && !overlay->isSaved())
            continue;
        if (isPartial() && overlay->m_isAreaKnown && !overlay->m_dependsOnOthers
            && !m_parts.intersects(overlay->m_area))
            continue;
        painter.save();
        overlay->paintOverlay(painter, mapping);
        painter.restore();
    }
}

void PlotHooks::paintOverlaysTurned(QPainter& painter, bool saved) const
{
    const PlotMapping mapping = PlotMapping::of(m_plot);
    if (mapping.rotation() == 0.0) {
        paintOverlays(painter, saved);
        return;
    }
    painter.save();
    painter.translate(mapping.fromFrame(QPointF(0.0, 0.0)));
    painter.rotate(mapping.rotation());
    paintOverlays(painter, saved);
    painter.restore();
}

void PlotHooks::paintOverlaysIn(QPainter& painter, const QRegion& parts)
{
    m_parts = parts;
    paintOverlays(painter, false);
    m_parts = QRegion();
}

void PlotHooks::acquireTracking()
{
    if (m_tracking++ > 0)
        return;
    m_hadTracking = m_plot.hasMouseTracking();
    m_plot.setMouseTracking(true);
}

void PlotHooks::releaseTracking()
{
    if (--m_tracking == 0)
        m_plot.setMouseTracking(m_hadTracking);
}

void PlotHooks::acquireFocus()
{
    if (m_focus++ > 0)
        return;
    m_hadFocusPolicy = m_plot.focusPolicy();
    m_plot.setFocusPolicy(Qt::StrongFocus);
}

void PlotHooks::releaseFocus()
{
    if (--m_focus == 0)
        m_plot.setFocusPolicy(m_hadFocusPolicy);
}

void PlotHooks::showCursor(const void* owner, const QCursor& cursor)
{
    if (m_cursorOwner == nullptr) {
        m_hadOwnCursor = m_plot.testAttribute(Qt::WA_SetCursor);
        m_hadCursor = m_plot.cursor();
    } else if (m_cursorOwner != owner) {
        return; // owned by the first one until it releases it
    }
    m_cursorOwner = owner;
    m_plot.setCursor(cursor);
}

void PlotHooks::restoreCursor(const void* owner)
{
    if (m_cursorOwner == nullptr || m_cursorOwner != owner)
        return;
    m_cursorOwner = nullptr;
    if (m_hadOwnCursor)
        m_plot.setCursor(m_hadCursor);
    else
        m_plot.unsetCursor();
}

} // namespace tarnis
