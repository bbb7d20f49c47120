#include "tarnis/plots/raster/deviceimage_p.h"

#include <QPaintEngine>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace tarnis {

double deviceScale(const QPainter& painter)
{
    if (painter.paintEngine() == nullptr || painter.paintEngine()->type() != QPaintEngine::Raster)
        return 0.0;
    const QTransform transform = painter.deviceTransform();
    const bool isUpright = transform.m12() == 0.0 && transform.m21() == 0.0 && transform.m11() == transform.m22();
    const bool isTurned = transform.m11() == 0.0 && transform.m22() == 0.0 && transform.m12() == -transform.m21();
    if (!transform.isAffine() || !(isUpright || isTurned))
        return 0.0;
    return std::sqrt(std::abs(transform.determinant()));
}

void layOver(QPainter& painter, const QPoint& corner, const QImage& image, double scale)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    if (scale == 1.0) {
        painter.drawImage(corner, image);
        return;
    }
    const QTransform transform = painter.deviceTransform();
    QPointF place = corner;
    if (transform.m12() == 0.0) { // onto whole pixels of the device
        const QPointF onDevice = transform.map(place);
        place += (QPointF(std::round(onDevice.x()), std::round(onDevice.y())) - onDevice) / scale;
    }
    painter.drawImage(QRectF(place, QSizeF(image.size()) / scale), image);
}

namespace {

/// Columns of a picture: few enough that a band which rises covers little more than its pixels.
constexpr int blockColumns = 32;

/// Sets the pixels of the spans, which are inside of `area`, in a picture with the height of the band.
void fillBlock(
    QPainter& painter, const QRect& area, const ColumnSpan* begin, const ColumnSpan* end, QRgb pixel, double scale)
{
    int first = begin->top;
    int last = begin->bottom;
    for (const ColumnSpan* span = begin; span != end; ++span) {
        first = std::min(first, span->top);
        last = std::max(last, span->bottom);
    }
    const auto onDevice = [scale](int distance) { return static_cast<int>(std::lround(distance * scale)); };
    QImage image(onDevice(area.width()), onDevice(last - first + 1), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return;
    image.fill(0U);
    auto* const bits = reinterpret_cast<QRgb*>(image.bits());
    const qsizetype line = image.bytesPerLine() / qsizetype(sizeof(QRgb));
    for (const ColumnSpan* span = begin; span != end; ++span) {
        const int right = std::min(onDevice(span->column + 1 - area.left()), image.width());
        const int bottom = std::min(onDevice(span->bottom + 1 - first), image.height());
        for (int column = onDevice(span->column - area.left()); column < right; ++column) {
            for (int row = onDevice(span->top - first); row < bottom; ++row)
                bits[row * line + column] = pixel;
        }
    }
    layOver(painter, QPoint(area.left(), first), image, scale);
}

} // namespace

void fillColumns(QPainter& painter, const QRect& area, const QList<ColumnSpan>& spans, const QColor& colour)
{
    QList<ColumnSpan> inside;
    inside.reserve(spans.size());
    for (ColumnSpan span : spans) {
        span.top = std::max(span.top, area.top());
        span.bottom = std::min(span.bottom, area.bottom());
        if (span.top <= span.bottom && span.column >= area.left() && span.column <= area.right())
            inside.append(span);
    }
    if (inside.isEmpty())
        return;
    const double scale = deviceScale(painter);
    if (scale <= 0.0) {
        for (const ColumnSpan& span : std::as_const(inside))
            painter.fillRect(QRect(span.column, span.top, 1, span.bottom - span.top + 1), colour);
        return;
    }
    const QRgb pixel = qPremultiply(colour.rgba());
    const ColumnSpan* const end = inside.constData() + inside.size();
    if (scale != std::floor(scale)) { // the edges of blocks would be inside of pixels
        fillBlock(painter, area, inside.constData(), end, pixel, scale);
        return;
    }
    for (const ColumnSpan* begin = inside.constData(); begin != end;) {
        const int block = (begin->column - area.left()) / blockColumns;
        const auto* const next = std::find_if(
            begin, end, [&](const ColumnSpan& span) { return (span.column - area.left()) / blockColumns != block; });
        const QRect part(area.left() + block * blockColumns, area.top(), blockColumns, area.height());
        fillBlock(painter, part.intersected(area), begin, next, pixel, scale);
        begin = next;
    }
}

} // namespace tarnis
