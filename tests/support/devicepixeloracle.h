// What a plot draws where the painter's pixels are not the device's, spelt out in coordinates of the device: edges are
// rounded, and a line is as wide as the ratio says.
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

/// The device's pixels between the rounded edges of a rectangle of the painter's pixels.
inline QRect devicePixels(const QTransform& transform, const QRect& rect)
{
    const QRectF exact = transform.mapRect(QRectF(rect.x(), rect.y(), rect.width(), rect.height()));
    const int left = int(std::floor(exact.left() + 0.5));
    const int top = int(std::floor(exact.top() + 0.5));
    return QRect(left, top, int(std::floor(exact.right() + 0.5)) - left, int(std::floor(exact.bottom() + 0.5)) - top);
}

inline void fillDevice(QPainter& painter, const QRect& device, const QColor& color)
{
    painter.save();
    painter.setTransform(painter.deviceTransform().inverted(), true);
    painter.fillRect(device, color);
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
    // The first edge of the line stays where it is; a quarter turn may put it on the other side.
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
