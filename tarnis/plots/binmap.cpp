#include "tarnis/plots/binmap_p.h"

#include "tarnis/plots/pixeltarget_p.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <optional>

namespace tarnis {

namespace {

/// True if the painter paints nothing outside of `rect`.
bool isClippedTo(const QPainter& painter, const QRect& rect)
{
    return painter.hasClipping() && QRectF(rect).contains(painter.clipBoundingRect());
}

/// Pixels over those of a line; transparent ones leave it as it is.
void copyOver(QRgb* line, const QRgb* pixels, int count)
{
    for (int i = 0; i < count; ++i)
        line[i] = pixels[i] == BinPixels::noPixel ? line[i] : pixels[i];
}

/// Writes a strip straight to an image. `topLeft` is the plot rectangle's, in device coordinates.
void writeStrip(const PixelTarget& target, QPoint topLeft, const BinRaster::Strip& strip)
{
    const QRect area = strip.area.translated(topLeft);
    const QRect visible = area & target.clip;
    if (visible.isEmpty())
        return;
    for (int y = visible.top(); y <= visible.bottom(); ++y) {
        const QRgb* pixels =
            strip.pixels + static_cast<qsizetype>(y - area.top()) * area.width() + visible.left() - area.left();
        QRgb* line = target.rows.at(visible.left(), y);
        if (strip.isOpaque)
            std::copy_n(pixels, visible.width(), line);
        else
            copyOver(line, pixels, visible.width());
    }
}

/// The same by way of the painter, for clips that are no rectangle.
void drawStrip(QPainter& painter, QPoint topLeft, const BinRaster::Strip& strip)
{
    const QImage image(reinterpret_cast<const uchar*>(strip.pixels), strip.area.width(), strip.area.height(),
        strip.area.width() * static_cast<qsizetype>(sizeof(QRgb)),
        strip.isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    painter.drawImage(topLeft + strip.area.topLeft(), image);
}

void paintRow(QPainter& painter, const BinView& view, int row, const QList<double>& values, const ColorScale& scale)
{
    const int end = static_cast<int>(std::min<qsizetype>(view.x.end, values.size()));
    int lastPainted = -1;
    for (int column = view.x.first; column < end; ++column) {
        const double value = values.at(column);
        if (isEmptyBin(value))
            continue;
        const int left = view.left(column);
        if (left == lastPainted)
            continue;
        lastPainted = left;
        const QColor color = scale.color(value);
        painter.setPen(color);
        if (view.paintsBars()) {
            painter.setBrush(QBrush(color, Qt::SolidPattern));
            const QRect bar = view.bar(row, column);
            painter.drawRects(&bar, 1);
        } else {
            painter.drawLine(left, view.lineBottom(row), left, view.lineTop(row));
        }
    }
}

} // namespace

void paintBinsOneByOne(QPainter& painter, const BinView& view, const BinRows& rows, const ColorScale& scale)
{
    for (int row = view.y.first; row < view.y.end; ++row)
        paintRow(painter, view, row, rows.at(row), scale);
}

void BinMap::paint(QPainter& painter, const BinView& view, const BinRows& rows, const ColorScale& scale)
{
    const std::optional<QPoint> offset = wholePixelOffset(painter);
    if (!coversWholePixels(painter) || plainImageBehind(painter) == nullptr || !offset
        || !isClippedTo(painter, view.rect) || !scale.isOpaque() || !BinRaster::canCompose(view)) {
        paintBinsOneByOne(painter, view, rows, scale);
        return;
    }
    m_converter.setScale(scale);
    const QPoint topLeft = view.rect.topLeft();
    const std::optional<PixelTarget> target = pixelTargetOf(painter);
    m_raster.compose(view, rows, m_converter, offset->x(), [&](const BinRaster::Strip& strip) {
        if (target)
            writeStrip(*target, topLeft + *offset, strip);
        else
            drawStrip(painter, topLeft, strip);
    });
}

} // namespace tarnis
