#include "tarnis/plots/raster/devicepixels_p.h"

#include "tarnis/plots/raster/pixeltarget_p.h"

#include <QBrush>
#include <QPainter>
#include <QPolygon>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

/// Larger than any device; the distance between two such edges still fits into an int.
constexpr double farAway = 1 << 29;

// Rounds halves up, equally on both sides of an edge.
int roundedUp(double value)
{
    return static_cast<int>(std::floor(std::clamp(value, -farAway, farAway) + 0.5));
}

QPoint rounded(QPointF point)
{
    return { roundedUp(point.x()), roundedUp(point.y()) };
}

/// The first pixel that a pen covers on one axis. `from` and `to` are the edges, in device pixels, of one pixel of the
/// painter.
int firstOf(int from, int to, int thickness)
{
    return to >= from ? from : from - thickness;
}

// From an edge in the direction of the other one.
void setThickness(int from, int to, int thickness, int& first, int& size)
{
    first = firstOf(from, to, thickness);
    size = thickness;
}

bool isUprightOrQuarterTurn(const QTransform& transform)
{
    const bool isUpright = transform.m12() == 0.0 && transform.m21() == 0.0;
    const bool isQuarterTurn = transform.m11() == 0.0 && transform.m22() == 0.0;
    return transform.isAffine() && (isUpright || isQuarterTurn);
}

} // namespace

/// Switches the painter to device pixels, with the pen width scaled accordingly, until it is destroyed.
class DevicePixels::PenOnDevice {
public:
    PenOnDevice(const DevicePixels& pixels, QPainter& painter)
        : m_pixels(pixels)
        , m_painter(painter)
        , m_thickness(pixels.thicknessOf(painter.pen().widthF()))
        , m_before(static_cast<int>(painter.pen().widthF()) / 2)
    {
        QPen pen = painter.pen();
        pen.setCosmetic(true);
        pen.setWidth(m_thickness);
        pen.setJoinStyle(Qt::MiterJoin); // rectangles keep their corners
        if (pen.style() != Qt::SolidLine)
            pen.setCapStyle(Qt::FlatCap); // others would close the gaps of a wide pen
        painter.save();
        painter.setTransform(pixels.m_inverse, true);
        painter.setPen(pen);
    }
    ~PenOnDevice() { m_painter.restore(); }
    PenOnDevice(const PenOnDevice&) = delete;
    PenOnDevice& operator=(const PenOnDevice&) = delete;

    /// The first of the device's pixels that the pen covers at a point: it begins at an edge of the painter's pixel.
    QPoint firstAt(QPointF point) const
    {
        const QPointF corner = point - QPointF(m_before, m_before);
        const QPoint from = rounded(m_pixels.m_transform.map(corner));
        const QPoint to = rounded(m_pixels.m_transform.map(corner + QPointF(1, 1)));
        return { firstOf(from.x(), to.x(), m_thickness), firstOf(from.y(), to.y(), m_thickness) };
    }

    /// The position for the middle of the pen that results in these pixels.
    QPoint at(QPointF point) const { return firstAt(point) + QPoint(m_thickness / 2, m_thickness / 2); }

    /// The pixels of a solid line, if it is parallel to an axis of the device.
    std::optional<QRect> pixelsOf(const QLineF& line) const
    {
        const QPoint from = firstAt(line.p1());
        const QPoint to = firstAt(line.p2());
        if (from.x() != to.x() && from.y() != to.y())
            return std::nullopt;
        return QRect(QPoint(std::min(from.x(), to.x()), std::min(from.y(), to.y())),
            QPoint(std::max(from.x(), to.x()) + m_thickness - 1, std::max(from.y(), to.y()) + m_thickness - 1));
    }

private:
    const DevicePixels& m_pixels;
    QPainter& m_painter;
    int m_thickness;
    int m_before; ///< pixels of the painter that its pen covers left of a line, and above
};

std::optional<DevicePixels> DevicePixels::of(const QPainter& painter)
{
    const QTransform& transform = painter.deviceTransform();
    const double scale = std::sqrt(std::abs(transform.determinant()));
    if (!drawsWholePixels(painter) || !isUprightOrQuarterTurn(transform) || !std::isfinite(scale) || scale == 1.0
        || scale == 0.0)
        return std::nullopt;
    return DevicePixels(transform);
}

DevicePixels::DevicePixels(const QTransform& transform)
    : m_transform(transform)
    , m_inverse(transform.inverted())
    , m_scale(std::sqrt(std::abs(transform.determinant())))
    , m_thickness(thicknessOf(1.0))
{
}

int DevicePixels::thicknessOf(double width) const
{
    return std::max(roundedUp(width * m_scale), 1);
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

void DevicePixels::fill(QPainter& painter, const QRect& pixels, const QColor& colour) const
{
    fillOnDevice(painter, onDevice(pixels), colour);
}

// After mapping back, the edges are close enough to the device's that the engine's rounding restores them.
void DevicePixels::fillOnDevice(QPainter& painter, const QRect& device, const QColor& colour) const
{
    if (device.isValid())
        painter.fillRect(m_inverse.mapRect(QRectF(device)), colour);
}

void DevicePixels::drawColumn(QPainter& painter, int x, int top, int bottom, const QColor& colour) const
{
    drawLine(painter, QRect(QPoint(x, top), QPoint(x, bottom)), Qt::Vertical, colour);
}

void DevicePixels::drawRow(QPainter& painter, int y, int left, int right, const QColor& colour) const
{
    drawLine(painter, QRect(QPoint(left, y), QPoint(right, y)), Qt::Horizontal, colour);
}

void DevicePixels::drawLine(QPainter& painter, const QRect& pixels, Qt::Orientation along, const QColor& colour) const
{
    const QPoint from = rounded(m_transform.map(QPointF(pixels.topLeft())));
    const QPoint to = rounded(m_transform.map(QPointF(pixels.bottomRight() + QPoint(1, 1))));
    const bool isTurned = m_transform.m12() != 0.0;
    QRect line = onDevice(pixels);
    int first = 0;
    int size = 0;
    if ((along == Qt::Vertical) != isTurned) { // upright on the device
        setThickness(from.x(), to.x(), m_thickness, first, size);
        line = QRect(first, line.top(), size, line.height());
    } else {
        setThickness(from.y(), to.y(), m_thickness, first, size);
        line = QRect(line.left(), first, line.width(), size);
    }
    fillOnDevice(painter, line, colour);
}

void DevicePixels::drawFrame(QPainter& painter, const QRect& rect, const QColor& line, const QBrush& inside) const
{
    painter.fillRect(aligned(rect), inside);
    const int right = rect.right() + 1;
    const int bottom = rect.bottom() + 1;
    drawColumn(painter, rect.left(), rect.top(), bottom, line);
    drawColumn(painter, right, rect.top(), bottom, line);
    drawRow(painter, rect.top(), rect.left(), right, line);
    drawRow(painter, bottom, rect.left(), right, line);
}

void DevicePixels::drawLines(QPainter& painter, const QList<QLineF>& lines) const
{
    const PenOnDevice pen(*this, painter);
    // In the engine a wide line that leaves the device begins a pixel early.
    const bool isSolid = painter.pen().style() == Qt::SolidLine;
    QList<QLine> others;
    for (const QLineF& line : lines) {
        if (const std::optional<QRect> pixels = isSolid ? pen.pixelsOf(line) : std::nullopt)
            painter.fillRect(*pixels, painter.pen().brush());
        else
            others.append(QLine(pen.at(line.p1()), pen.at(line.p2())));
    }
    painter.drawLines(others);
}

void DevicePixels::drawRect(QPainter& painter, const QRect& rect) const
{
    const PenOnDevice pen(*this, painter);
    const QPoint farCorner = rect.topLeft() + QPoint(rect.width(), rect.height());
    painter.drawPolygon(QPolygon { pen.at(rect.topLeft()), pen.at(QPoint(farCorner.x(), rect.top())), pen.at(farCorner),
        pen.at(QPoint(rect.left(), farCorner.y())) });
}

void drawEvenLine(QPainter& painter, const QLineF& line)
{
    if (const auto pixels = DevicePixels::of(painter))
        pixels->drawLines(painter, { line });
    else
        painter.drawLine(line);
}

void drawEvenLine(QPainter& painter, const QLine& line)
{
    drawEvenLines(painter, { line });
}

void drawEvenLines(QPainter& painter, const QList<QLine>& lines)
{
    const auto pixels = DevicePixels::of(painter);
    if (!pixels) {
        painter.drawLines(lines);
        return;
    }
    pixels->drawLines(painter, QList<QLineF>(lines.cbegin(), lines.cend()));
}

void drawEvenRect(QPainter& painter, const QRect& rect)
{
    if (const auto pixels = DevicePixels::of(painter))
        pixels->drawRect(painter, rect);
    else
        painter.drawRects(&rect, 1);
}

void drawEvenBars(QPainter& painter, const QList<QRect>& bars)
{
    const QColor colour = painter.pen().color();
    painter.setBrush(QBrush(colour));
    const auto pixels = DevicePixels::of(painter);
    if (!pixels) {
        painter.drawRects(bars);
        return;
    }
    for (const QRect& bar : bars) { // with the pixels of the outline
        const QPoint end = bar.topLeft() + QPoint(bar.width(), bar.height());
        pixels->fill(painter,
            QRect(QPoint(std::min(bar.left(), end.x()), std::min(bar.top(), end.y())),
                QPoint(std::max(bar.left(), end.x()), std::max(bar.top(), end.y()))),
            colour);
    }
}

} // namespace tarnis
