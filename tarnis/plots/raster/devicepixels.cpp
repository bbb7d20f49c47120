#include "tarnis/plots/raster/devicepixels_p.h"

#include "tarnis/plots/raster/pixeltarget_p.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

// Rounds halves up, equally on both sides of an edge.
int roundedUp(double value)
{
    return static_cast<int>(std::floor(value + 0.5));
}

QPoint rounded(QPointF point)
{
    return { roundedUp(point.x()), roundedUp(point.y()) };
}

// From an edge in the direction of the other one.
void setThickness(int from, int to, int thickness, int& first, int& size)
{
    first = to >= from ? from : from - thickness;
    size = thickness;
}

bool isUprightOrQuarterTurn(const QTransform& transform)
{
    const bool isUpright = transform.m12() == 0.0 && transform.m21() == 0.0;
    const bool isQuarterTurn = transform.m11() == 0.0 && transform.m22() == 0.0;
    return transform.isAffine() && (isUpright || isQuarterTurn);
}

} // namespace

std::optional<DevicePixels> DevicePixels::of(const QPainter& painter)
{
    const QTransform& transform = painter.deviceTransform();
    const double scale = std::sqrt(std::abs(transform.determinant()));
    if (!coversWholePixels(painter) || !isUprightOrQuarterTurn(transform) || !std::isfinite(scale) || scale == 1.0
        || scale == 0.0)
        return std::nullopt;
    return DevicePixels(transform);
}

DevicePixels::DevicePixels(const QTransform& transform)
    : m_transform(transform)
    , m_inverse(transform.inverted())
    , m_thickness(std::max(roundedUp(std::sqrt(std::abs(transform.determinant()))), 1))
{
}

QRect DevicePixels::onDevice(const QRect& pixels) const
{
    const QPoint a = rounded(m_transform.map(QPointF(pixels.topLeft())));
    const QPoint b = rounded(m_transform.map(QPointF(pixels.bottomRight() + QPoint(1, 1))));
    return QRect(QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
        QPoint(std::max(a.x(), b.x()) - 1, std::max(a.y(), b.y()) - 1));
}

QRectF DevicePixels::aligned(const QRect& pixels) const
{
    return m_inverse.mapRect(QRectF(onDevice(pixels)));
}

void DevicePixels::fill(QPainter& painter, const QRect& pixels, const QColor& color) const
{
    fillOnDevice(painter, onDevice(pixels), color);
}

// After mapping back, the edges are close enough to the device's that the engine's rounding restores them.
void DevicePixels::fillOnDevice(QPainter& painter, const QRect& device, const QColor& color) const
{
    if (device.isValid())
        painter.fillRect(m_inverse.mapRect(QRectF(device)), color);
}

void DevicePixels::drawColumn(QPainter& painter, int x, int top, int bottom, const QColor& color) const
{
    const QPoint from = rounded(m_transform.map(QPointF(x, top)));
    const QPoint to = rounded(m_transform.map(QPointF(x + 1, bottom + 1)));
    QRect line = onDevice(QRect(QPoint(x, top), QPoint(x, bottom)));
    int first = 0;
    int size = 0;
    if (m_transform.m12() == 0.0) {
        setThickness(from.x(), to.x(), m_thickness, first, size);
        line = QRect(first, line.top(), size, line.height());
    } else {
        setThickness(from.y(), to.y(), m_thickness, first, size);
        line = QRect(line.left(), first, line.width(), size);
    }
    fillOnDevice(painter, line, color);
}

void DevicePixels::drawRow(QPainter& painter, int y, int left, int right, const QColor& color) const
{
    const QPoint from = rounded(m_transform.map(QPointF(left, y)));
    const QPoint to = rounded(m_transform.map(QPointF(right + 1, y + 1)));
    QRect line = onDevice(QRect(QPoint(left, y), QPoint(right, y)));
    int first = 0;
    int size = 0;
    if (m_transform.m12() == 0.0) {
        setThickness(from.y(), to.y(), m_thickness, first, size);
        line = QRect(line.left(), first, line.width(), size);
    } else {
        setThickness(from.x(), to.x(), m_thickness, first, size);
        line = QRect(first, line.top(), size, line.height());
    }
    fillOnDevice(painter, line, color);
}

void DevicePixels::drawFrame(QPainter& painter, const QRect& rect, const QColor& line, const QColor& inside) const
{
    fill(painter, rect, inside);
    const int right = rect.right() + 1;
    const int bottom = rect.bottom() + 1;
    drawColumn(painter, rect.left(), rect.top(), bottom, line);
    drawColumn(painter, right, rect.top(), bottom, line);
    drawRow(painter, rect.top(), rect.left(), right, line);
    drawRow(painter, bottom, rect.left(), right, line);
}

} // namespace tarnis
