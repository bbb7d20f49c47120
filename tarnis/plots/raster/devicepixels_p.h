// Pixels of a plot on a device with more of them, as on a screen whose ratio of pixels is 1.5.
#pragma once

#include <QRect>
#include <QTransform>

#include <optional>

QT_BEGIN_NAMESPACE
class QColor;
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

/// Draws the painter's pixels so that every edge is an edge of the device's pixels: neighbours meet without a gap, and
/// lines have one thickness wherever they are. Qt rounds the position and the size of each figure separately, and a
/// scaled pen covers now one and now two pixels.
class DevicePixels {
public:
    /// For a raster engine without antialiasing that scales, upright or by quarter turns. None at ratio 1, where the
    /// painter's own calls draw whole pixels.
    static std::optional<DevicePixels> of(const QPainter& painter);

    /// The painter's rectangle whose edges on the device are the rounded ones of `pixels`.
    QRectF aligned(const QRect& pixels) const;
    /// Fills a rectangle of the painter's pixels.
    void fill(QPainter& painter, const QRect& pixels, const QColor& color) const;
    /// A line through the painter's pixels of a column or a row, both ends included: as many of the device's pixels
    /// wide as the ratio says, rounded, at least one. @{
    void drawColumn(QPainter& painter, int x, int top, int bottom, const QColor& color) const;
    void drawRow(QPainter& painter, int y, int left, int right, const QColor& color) const;
    /// @}
    /// The outline that QPainter::drawRects() draws, and its inside.
    void drawFrame(QPainter& painter, const QRect& rect, const QColor& line, const QColor& inside) const;

private:
    explicit DevicePixels(const QTransform& transform);
    QRect onDevice(const QRect& pixels) const;
    void fillOnDevice(QPainter& painter, const QRect& device, const QColor& color) const;

    QTransform m_transform; ///< from the painter to the device
    QTransform m_inverse;
    int m_thickness; ///< of a line, in pixels of the device
};

} // namespace tarnis
