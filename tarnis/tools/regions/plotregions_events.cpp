// Draws regions, and handles drawing and dragging by the user.
#include "tarnis/tools/regions/plotregions_p.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/base/labelplacement_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/panels/fitcurves_p.h"

#include <QCursor>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>

#include <cmath>

namespace tarnis {

namespace {

constexpr double reach = 5.0; // reach in pixels around an edge
const QColor regionColour(110, 220, 170);
const QColor selectedColour(255, 235, 120);

QPointF reachAt(const PlotMapping& mapping, const QPointF& position)
{
    const QPointF a = mapping.valueAt(position);
    const QPointF b = mapping.valueAt(position + QPointF(reach, reach));
    return { std::fabs(b.x() - a.x()), std::fabs(b.y() - a.y()) };
}

/// The outline in the frame's coordinates, clipped to ranges that a painter can draw.
QPolygonF outlineOf(const PlotRegion& region, const PlotMapping& mapping)
{
    const auto at = [&](double x, double y) {
        return QPointF(limitedCoordinate(mapping.columnOf(x)), limitedCoordinate(mapping.rowOf(y)));
    };
    const QRectF box = region.bounds();
    const QRectF frame = mapping.frameRect();
    QPolygonF outline;
    switch (region.kind) {
    case PlotRegion::Kind::Polygon:
        for (const QPointF& point : region.points)
            outline << at(point.x(), point.y());
        return outline;
    case PlotRegion::Kind::Ellipse: {
        constexpr int corners = 64;
        for (int i = 0; i < corners; ++i) {
            const double angle = 2.0 * 3.14159265358979 * i / corners;
            outline << at(box.center().x() + box.width() / 2.0 * std::cos(angle),
                box.center().y() + box.height() / 2.0 * std::sin(angle));
        }
        return outline;
    }
    default:
        break;
    }
    QPointF low = at(box.left(), box.top());
    QPointF high = at(box.right(), box.bottom());
    if (region.kind == PlotRegion::Kind::RangeX) {
        low.setY(frame.bottom() + 2.0);
        high.setY(frame.top() - 2.0);
    } else if (region.kind == PlotRegion::Kind::RangeY) {
        low.setX(frame.left() - 2.0);
        high.setX(frame.right() + 2.0);
    }
    return QPolygonF { low, { high.x(), low.y() }, high, { low.x(), high.y() } };
}

void paintRegion(
    QPainter& painter, const PlotRegion& region, const PlotMapping& mapping, const QColor& colour, bool isClosed)
{
    const QPolygonF outline = outlineOf(region, mapping);
    if (outline.isEmpty())
        return;
    QColor fill = colour;
    fill.setAlpha(36);
    painter.setPen(QPen(QColor(0, 0, 0, 140), 3.0));
    painter.setBrush(isClosed ? QBrush(fill) : QBrush(Qt::NoBrush));
    if (isClosed)
        painter.drawPolygon(outline);
    else
        painter.drawPolyline(outline);
    painter.setPen(QPen(colour, 1.2));
    painter.setBrush(Qt::NoBrush);
    if (isClosed)
        painter.drawPolygon(outline);
    else
        painter.drawPolyline(outline);
}

/// The box of the region's name in its visible part, beside the boxes in the corners; null if nothing of it is visible.
QRect nameBoxOf(
    const PlotRegion& region, const PlotMapping& mapping, const QFont& font, const QList<QRect>& cornerBoxes)
{
    const QRect frame = mapping.frameRect();
    const QRectF visible = outlineOf(region, mapping).boundingRect() & QRectF(frame);
    if (region.name.isEmpty() || visible.isEmpty())
        return {};
    QRect box(visible.topLeft().toPoint() + QPoint(2, 2), labelSize(QFontMetrics(font), region.name));
    box.moveLeft(std::max(std::min(box.left(), frame.right() - box.width()), frame.left()));
    return movedPast(box, frame, cornerBoxes, Qt::BottomEdge);
}

} // namespace

void PlotRegions::setDrawing(bool on)
{
    // The last corner of a polygon follows the pointer.
    setNeeds(on ? KeyboardFocus | MouseMoves : Needs(KeyboardFocus));
    if (on) {
        receiveEventsFirst(); // also with a ruler that was switched on before
        showCursor(Qt::CrossCursor);
    } else {
        restoreCursor();
    }
    updateOverlay();
    Q_EMIT drawingChanged(on);
}

bool PlotRegions::isDrawing() const
{
    return m_data->drawn.has_value();
}

void PlotRegions::draw(PlotRegion::Kind kind)
{
    cancel();
    PlotRegion probe { kind, {}, { {}, {}, {} } };
    if (kind != PlotRegion::Kind::Polygon)
        probe.points.removeLast();
    if (!fits(probe))
        return;
    m_data->drawn = PlotRegion { kind, {}, {} };
    if (plot() != nullptr)
        plot()->setFocus();
    setDrawing(true);
}

void PlotRegions::cancel()
{
    if (m_data->handle) {
        m_data->handle.reset();
        const PlotRegion before = m_data->before;
        replace(m_data->selected, before);
    }
    if (!m_data->drawn)
        return;
    m_data->drawn.reset();
    setDrawing(false);
}

void PlotRegions::finishDrawing()
{
    const PlotRegion region = *m_data->drawn;
    m_data->drawn.reset();
    setDrawing(false);
    const int index = add(region);
    if (index >= 0)
        select(index);
}

void PlotRegions::addCorner(const QPointF& position)
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    const QPointF place = mapping.valueAt(position);
    PlotRegion& region = *m_data->drawn;
    // The last point follows the pointer.
    if (region.points.isEmpty()) {
        region.points = { place, place };
    } else {
        const QPointF slack = reachAt(mapping, position);
        const QPointF fromFirst = place - region.points.first();
        region.points.last() = place;
        if (region.points.size() > 3 && std::fabs(fromFirst.x()) <= slack.x()
            && std::fabs(fromFirst.y()) <= slack.y()) {
            region.points.removeLast();
            finishDrawing();
            return;
        }
        region.points << place;
    }
    updateOverlay();
}

bool PlotRegions::grab(const QPointF& position)
{
    if (PlotAccess::mode(*plot()) != 0)
        return false; // a mouse tool of the plot uses the left button
    const PlotMapping mapping = PlotMapping::of(*plot());
    const QPointF place = mapping.valueAt(position);
    const QPointF slack = reachAt(mapping, position);
    // Tests the selected region first, then the last one, which is drawn on top.
    QList<int> order { m_data->selected };
    for (int i = static_cast<int>(m_data->regions.size()) - 1; i >= 0; --i)
        order << i;
    for (const int index : order) {
        if (index < 0)
            continue;
        const std::optional<RegionHandle> handle = handleAt(m_data->regions.at(index), place, slack);
        if (!handle)
            continue;
        select(index);
        m_data->handle = handle;
        m_data->before = m_data->regions.at(index);
        m_data->pressed = place;
        m_data->pressedPixel = position;
        m_data->hasMoved = false;
        return true;
    }
    select(-1);
    return false;
}

bool PlotRegions::press(const QPointF& position)
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (!mapping.isValid() || !mapping.plotRect().contains(position.toPoint()))
        return false;
    if (!m_data->drawn)
        return grab(position);
    if (m_data->drawn->kind == PlotRegion::Kind::Polygon) {
        addCorner(position);
        return true;
    }
    const QPointF place = mapping.valueAt(position);
    m_data->drawn->points = { place, place };
    m_data->pressedPixel = position;
    return true;
}

bool PlotRegions::move(const QPointF& position)
{
    const QPointF place = PlotMapping::of(*plot()).valueAt(position);
    if (m_data->drawn) {
        if (m_data->drawn->points.isEmpty())
            return false;
        m_data->drawn->points.last() = place;
        updateOverlay();
        return true;
    }
    if (!m_data->handle)
        return false;
    m_data->hasMoved = m_data->hasMoved || (position - m_data->pressedPixel).manhattanLength() > reach;
    if (m_data->hasMoved)
        replace(m_data->selected, dragged(m_data->before, *m_data->handle, m_data->pressed, place));
    return true;
}

bool PlotRegions::release(const QPointF& position)
{
    if (m_data->drawn) {
        if (m_data->drawn->kind == PlotRegion::Kind::Polygon)
            return true;
        if (m_data->drawn->points.isEmpty())
            return false;
        // A click draws no region; wait for the drag.
        if ((position - m_data->pressedPixel).manhattanLength() <= reach) {
            m_data->drawn->points.clear();
            updateOverlay();
        } else {
            m_data->drawn->points.last() = PlotMapping::of(*plot()).valueAt(position);
            finishDrawing();
        }
        return true;
    }
    if (!m_data->handle)
        return false;
    m_data->handle.reset();
    return true;
}

bool PlotRegions::takeKey(int key)
{
    switch (key) {
    case Qt::Key_Escape:
        if (!m_data->drawn && !m_data->handle)
            return false;
        cancel();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!m_data->drawn || m_data->drawn->points.size() < 4)
            return false;
        m_data->drawn->points.removeLast();
        finishDrawing();
        return true;
    case Qt::Key_Delete:
        if (m_data->selected < 0)
            return false;
        removeSelected();
        return true;
    default:
        return false;
    }
}

bool PlotRegions::handleEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto& mouse = static_cast<const QMouseEvent&>(*event);
        return mouse.button() == Qt::LeftButton && press(mouse.position());
    }
    case QEvent::MouseButtonDblClick:
        if (!m_data->drawn || static_cast<const QMouseEvent&>(*event).button() != Qt::LeftButton)
            return false;
        takeKey(Qt::Key_Return);
        return true;
    case QEvent::MouseMove:
        return move(static_cast<const QMouseEvent&>(*event).position());
    case QEvent::MouseButtonRelease: {
        const auto& mouse = static_cast<const QMouseEvent&>(*event);
        return mouse.button() == Qt::LeftButton && release(mouse.position());
    }
    case QEvent::ShortcutOverride: // Escape would close a dialog around the plot
        if (static_cast<const QKeyEvent&>(*event).key() == Qt::Key_Escape && (m_data->drawn || m_data->handle))
            event->accept();
        return false;
    case QEvent::KeyPress: {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        return key.modifiers() == Qt::NoModifier && takeKey(key.key());
    }
    default:
        return false;
    }
}

void PlotRegions::plotChanged(Changes changes)
{
    if (changes.testFlag(Data))
        Q_EMIT dataChanged();
}

void PlotRegions::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    painter.setClipRect(mapping.frameRect());
    painter.setRenderHint(QPainter::Antialiasing);
    const qsizetype highlighted = isForFile(painter, *plot()) ? -1 : m_data->selected;
    for (qsizetype i = 0; i < m_data->regions.size(); ++i)
        paintRegion(painter, m_data->regions.at(i), mapping, i == highlighted ? selectedColour : regionColour, true);
    if (m_data->drawn && !m_data->drawn->points.isEmpty()) {
        const bool isOpen = m_data->drawn->kind == PlotRegion::Kind::Polygon;
        paintRegion(painter, *m_data->drawn, mapping, selectedColour, !isOpen);
    }
    const QList<QRect> taken = cornerBoxesOf(*plot());
    for (const PlotRegion& region : std::as_const(m_data->regions)) { // over the fill of all regions
        const QRect box = nameBoxOf(region, mapping, painter.font(), taken);
        if (!box.isNull())
            paintLabel(painter, region.name, box.topLeft(), Qt::AlignLeft | Qt::AlignTop);
    }
}

QList<QRect> PlotRegions::nameBoxes() const
{
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    QList<QRect> boxes;
    const QList<QRect> taken = mapping.isValid() ? cornerBoxesOf(*plot()) : QList<QRect>();
    for (qsizetype i = 0; mapping.isValid() && i < m_data->regions.size(); ++i) {
        const QRect box = nameBoxOf(m_data->regions.at(i), mapping, plot()->font(), taken);
        if (!box.isNull())
            boxes.append(box);
    }
    return boxes;
}

} // namespace tarnis
