// Draws a plot's pixels on a device with a higher resolution, for example a device pixel ratio of 1.5.
#pragma once

#include <QLine>
#include <QList>
#include <QRect>
#include <QTransform>

#include <optional>

QT_BEGIN_NAMESPACE
class QBrush;
class QColor;
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

/// Draws the painter's pixels so that every edge is on an edge of the device's pixels: adjacent figures touch without a
/// gap, and all lines have the same thickness. Qt rounds position and size of each figure separately, and a scaled pen
/// covers sometimes one and sometimes two pixels.
class DevicePixels {
public:
    /// For a raster engine without antialiasing that scales, upright or by quarter turns. Empty at ratio 1, where the
    /// painter's own calls draw whole pixels.
    static std::optional<DevicePixels> of(const QPainter& painter);

    /// The painter's rectangle whose edges on the device are the rounded ones of `pixels`.
    QRectF aligned(const QRect& pixels) const;
    /// Fills a rectangle of the painter's pixels.
    void fill(QPainter& painter, const QRect& pixels, const QColor& colour) const;
    /// A line through the painter's pixels of a column or a row, both ends inclusive. Its width in device pixels is the
    /// rounded ratio, at least one. @{
    void drawColumn(QPainter& painter, int x, int top, int bottom, const QColor& colour) const;
    void drawRow(QPainter& painter, int y, int left, int right, const QColor& colour) const;
    /// @}
    /// The outline that QPainter::drawRects() draws, and its inside.
    void drawFrame(QPainter& painter, const QRect& rect, const QColor& line, const QBrush& inside) const;
    /// Lines of the painter's pen, its width in whole pixels of the device, at least one. Dashes have flat ends. @{
    void drawLines(QPainter& painter, const QList<QLineF>& lines) const;
    void drawRect(QPainter& painter, const QRect& rect) const; ///< filled with the painter's brush
    /// @}

private:
    class PenOnDevice;
    explicit DevicePixels(const QTransform& transform);
    int thicknessOf(double width) const;
    QRect onDevice(const QRect& pixels) const;
    void drawLine(QPainter& painter, const QRect& pixels, Qt::Orientation along, const QColor& colour) const;
    void fillOnDevice(QPainter& painter, const QRect& device, const QColor& colour) const;

    QTransform m_transform; ///< from painter to device
    QTransform m_inverse;
    double m_scale; ///< device pixels for each of the painter's
    int m_thickness; ///< thickness of a line in device pixels
};

/// What QPainter draws with its pen, in whole pixels of the device also where the painter scales. @{
void drawEvenLine(QPainter& painter, const QLineF& line);
void drawEvenLine(QPainter& painter, const QLine& line);
void drawEvenLines(QPainter& painter, const QList<QLine>& lines);
void drawEvenRect(QPainter& painter, const QRect& rect);
/// @}
/// As drawRects() with a brush of the pen's colour, which the painter keeps.
void drawEvenBars(QPainter& painter, const QList<QRect>& bars);

} // namespace tarnis
