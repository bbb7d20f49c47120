#include "tarnis/plots/raster/mappainter_p.h"

#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/raster/pixeltarget_p.h"

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

/// Writes a line directly to an image. `topLeft` is the plot rectangle's, in device coordinates.
void writeLine(const PixelTarget& target, QPoint topLeft, const BinRaster::Line& line)
{
    const int y = topLeft.y() + line.y;
    const int x = topLeft.x() + line.x;
    const int left = std::max(x, target.clip.left());
    const int count = std::min(x + line.width - 1, target.clip.right()) - left + 1;
    if (y < target.clip.top() || y > target.clip.bottom() || count <= 0)
        return;
    const QRgb* pixels = line.pixels + (left - x);
    if (line.isOpaque)
        std::copy_n(pixels, count, target.rows.at(left, y));
    else
        copyOver(target.rows.at(left, y), pixels, count);
}

/// As above, with the painter, for non-rectangular clips.
void drawLine(QPainter& painter, QPoint topLeft, const BinRaster::Line& line)
{
    const QImage image(reinterpret_cast<const uchar*>(line.pixels), line.width, 1,
        line.width * static_cast<qsizetype>(sizeof(QRgb)),
        line.isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    painter.drawImage(topLeft + QPoint(line.x, line.y), image);
}

/// The pixels that drawRects() and drawLine() cover at ratio 1, including the corner that drawRects() omits.
QRect pixelsOf(const BinGeometry& view, int row, int column)
{
    if (view.paintsBars())
        return view.bar(row, column).adjusted(0, 0, 1, 1);
    const int left = view.left(column);
    return { QPoint(left, view.lineTop(row)), QPoint(left, view.lineBottom(row)) };
}

void paintRow(QPainter& painter, const BinGeometry& view, int row, const QList<double>& values,
    const ColourScale& scale, const std::optional<DevicePixels>& pixels)
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
        const QColor colour = scale.colour(value);
        if (pixels) {
            pixels->fill(painter, pixelsOf(view, row, column), colour);
            continue;
        }
        painter.setPen(colour);
        if (view.paintsBars()) {
            painter.setBrush(QBrush(colour, Qt::SolidPattern));
            const QRect bar = view.bar(row, column);
            painter.drawRects(&bar, 1);
        } else {
            painter.drawLine(left, view.lineBottom(row), left, view.lineTop(row));
        }
    }
}

} // namespace

void paintBinsOneByOne(QPainter& painter, const BinGeometry& view, const BinRows& rows, const ColourScale& scale)
{
    const std::optional<DevicePixels> pixels = DevicePixels::of(painter);
    for (int row = view.y.first; row < view.y.end; ++row)
        paintRow(painter, view, row, rows.at(row), scale, pixels);
}

void MapPainter::paint(QPainter& painter, const BinGeometry& view, const BinRows& rows, const ColourScale& scale)
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
    m_raster.compose(view, rows, m_converter, offset->x(), [&](const BinRaster::Line& line) {
        if (target)
            writeLine(*target, topLeft + *offset, line);
        else
            drawLine(painter, topLeft, line);
    });
}

} // namespace tarnis
