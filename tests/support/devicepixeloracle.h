// Reference drawing of a plot for device pixel ratios other than 1, in device coordinates: edges are rounded, and the
// width of a line is the ratio.
#pragma once

#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis::testing {

inline bool isScaled(const QPainter& painter)
{
    return painter.paintEngine()->type() == QPaintEngine::Raster
        && std::abs(std::abs(painter.deviceTransform().determinant()) - 1.0) > 1e-9;
}

/// Rounds halves up. No device is as large as the bound.
inline int nearestEdge(double value)
{
    const double bound = 536870912.0;
    return int(std::floor(std::clamp(value, -bound, bound) + 0.5));
}

/// The device's pixels between the rounded edges of a rectangle of the painter's pixels.
inline QRect devicePixels(const QTransform& transform, const QRect& rect)
{
    const QRectF exact = transform.mapRect(QRectF(rect.x(), rect.y(), rect.width(), rect.height()));
    const int left = nearestEdge(exact.left());
    const int top = nearestEdge(exact.top());
    return QRect(left, top, nearestEdge(exact.right()) - left, nearestEdge(exact.bottom()) - top);
}

inline void fillDevice(QPainter& painter, const QRect& device, const QColor& colour)
{
    painter.save();
    painter.setTransform(painter.deviceTransform().inverted(), true);
    painter.fillRect(device, colour);
    painter.restore();
}

/// QPainter::drawLine() for a straight line from top to bottom or from left to right.
inline void oracleLine(QPainter& painter, QPoint from, QPoint to)
{
    if (!isScaled(painter)) {
        painter.drawLine(from, to);
        return;
    }
    const QTransform transform = painter.deviceTransform();
    QRect device = devicePixels(transform, QRect(from, to));
    const int thickness = std::max(1, int(std::lround(std::sqrt(std::abs(transform.determinant())))));
    const bool isUpright = (from.x() == to.x()) == (transform.m12() == 0.0);
    // The first edge of the line is fixed; a quarter turn may move it to the other side.
    const QPointF step = transform.map(QPointF(1, 1)) - transform.map(QPointF(0, 0));
    if (isUpright) {
        const int edge = step.x() > 0 ? device.left() : device.left() + device.width() - thickness;
        device = QRect(edge, device.top(), thickness, device.height());
    } else {
        const int edge = step.y() > 0 ? device.top() : device.top() + device.height() - thickness;
        device = QRect(device.left(), edge, device.width(), thickness);
    }
    fillDevice(painter, device, painter.pen().color());
}

/// Width of the painter's pen on the device.
inline int penWidthOnDevice(const QPainter& painter)
{
    const double scale = std::sqrt(std::abs(painter.deviceTransform().determinant()));
    return std::max(1, int(std::lround(painter.pen().widthF() * scale)));
}

/// Of the pixels that a pen of that width covers on the device around a place of the painter, the one at the least
/// coordinates. A pen of width 2 begins one of the painter's pixels earlier, as it does at ratio 1.
inline QPoint penOnDevice(const QPainter& painter, QPointF place, int width)
{
    const QTransform transform = painter.deviceTransform();
    const double before = std::floor(painter.pen().widthF() / 2);
    const auto edgesOf = [&](QPointF corner) {
        const QPointF exact = transform.map(corner);
        return QPoint(nearestEdge(exact.x()), nearestEdge(exact.y()));
    };
    const QPoint near = edgesOf(place - QPointF(before, before));
    const QPoint next = edgesOf(place - QPointF(before, before) + QPointF(1, 1));
    return QPoint(
        near.x() <= next.x() ? near.x() : near.x() - width, near.y() <= next.y() ? near.y() : near.y() - width);
}

/// QPainter::drawLine() of a pen: vertical and horizontal lines as rectangles, others with a pen of the device.
template <typename Line> void oracleStroke(QPainter& painter, const Line& line)
{
    if (!isScaled(painter)) {
        painter.drawLine(line);
        return;
    }
    const int width = penWidthOnDevice(painter);
    const QPoint from = penOnDevice(painter, line.p1(), width);
    const QPoint to = penOnDevice(painter, line.p2(), width);
    const QPoint low(std::min(from.x(), to.x()), std::min(from.y(), to.y()));
    const QPoint high(std::max(from.x(), to.x()), std::max(from.y(), to.y()));
    const bool isSolid = painter.pen().style() == Qt::SolidLine;
    if (isSolid && (low.x() == high.x() || low.y() == high.y())) {
        fillDevice(painter, QRect(low, high + QPoint(width - 1, width - 1)), painter.pen().color());
        return;
    }
    painter.save();
    QPen pen = painter.pen();
    pen.setCosmetic(true);
    pen.setWidthF(width);
    pen.setCapStyle(isSolid ? pen.capStyle() : Qt::FlatCap);
    painter.setTransform(painter.deviceTransform().inverted(), true);
    painter.setPen(pen);
    const QPoint middle(width / 2, width / 2);
    painter.drawLine(from + middle, to + middle);
    painter.restore();
}

/// QPainter::drawRect() of a solid pen, and its brush inside.
inline void oracleRect(QPainter& painter, const QRect& rect)
{
    if (!isScaled(painter)) {
        painter.drawRect(rect);
        return;
    }
    const int width = penWidthOnDevice(painter);
    const QPoint low = penOnDevice(painter, rect.topLeft(), width);
    const QPoint high = penOnDevice(painter, rect.bottomRight() + QPoint(1, 1), width);
    const QRect whole(low, high + QPoint(width - 1, width - 1));
    const QRect inside = whole.adjusted(width, width, -width, -width);
    if (painter.brush().style() != Qt::NoBrush)
        fillDevice(painter, inside, painter.brush().color());
    for (const QRect& side : QRegion(whole).subtracted(inside))
        fillDevice(painter, side, painter.pen().color());
}

/// QPainter::drawRects() with pen and brush of one colour: the rectangle and the pixels after its far edges.
inline void oracleBar(QPainter& painter, const QRect& rect)
{
    if (!isScaled(painter)) {
        painter.drawRects(&rect, 1);
        return;
    }
    const int right = rect.left() + rect.width();
    const int bottom = rect.top() + rect.height();
    const QRect pixels(QPoint(std::min(rect.left(), right), std::min(rect.top(), bottom)),
        QPoint(std::max(rect.left(), right), std::max(rect.top(), bottom)));
    fillDevice(painter, devicePixels(painter.deviceTransform(), pixels), painter.pen().color());
}

/// QPainter::drawRects() with the outline on the rectangle's edges.
inline void oracleFrame(QPainter& painter, const QRect& rect)
{
    if (!isScaled(painter)) {
        painter.drawRects(&rect, 1);
        return;
    }
    const QPoint bottomRight = rect.bottomRight() + QPoint(1, 1);
    const QPoint topRight(bottomRight.x(), rect.top());
    const QPoint bottomLeft(rect.left(), bottomRight.y());
    fillDevice(painter, devicePixels(painter.deviceTransform(), rect), painter.brush().color());
    oracleLine(painter, rect.topLeft(), bottomLeft);
    oracleLine(painter, topRight, bottomRight);
    oracleLine(painter, rect.topLeft(), topRight);
    oracleLine(painter, bottomLeft, bottomRight);
}

/// QPainter::setClipRect()
inline void oracleClip(QPainter& painter, const QRect& rect)
{
    if (!isScaled(painter)) {
        painter.setClipRect(rect, Qt::ReplaceClip);
        return;
    }
    const QTransform transform = painter.deviceTransform();
    painter.setClipRect(transform.inverted().mapRect(QRectF(devicePixels(transform, rect))), Qt::ReplaceClip);
}

} // namespace tarnis::testing
