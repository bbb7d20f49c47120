#include "tarnis/plots/raster/rastercheck_p.h"

#include "tarnis/plots/raster/linerasterizer_p.h"
#include "tarnis/plots/raster/mappainter_p.h"

#include <QColor>
#include <QImage>
#include <QLine>
#include <QPainter>

namespace tarnis {

namespace {

constexpr int side = 96; // pixels of the pattern
constexpr QRgb ink = qRgb(255, 51, 0);

/// Integer counts and fractions, with empty bins between them.
BinRows referenceBins(int columns, int rows)
{
    BinRows bins;
    for (int row = 0; row < rows; ++row) {
        QList<double> values;
        for (int column = 0; column < columns; ++column) {
            const int mixed = (row * 31 + column * 17) % 23;
            values.append(mixed < 6 ? 0.0 : mixed % 2 == 0 ? mixed : mixed * 0.37);
        }
        bins.append(values);
    }
    return bins;
}

/// The visible range begins within a bin, so that the left edge clips the first column.
BinGeometry referenceView(const QRect& rect, int columns, int rows)
{
    BinGeometry view { rect, {}, {} };
    view.x = visibleBins({ 0.6, columns - 0.3, 0.0, true, 1.0, 1 }, rect.width(), columns);
    view.y = visibleBins({ 0.4, rows - 0.2, 0.0, true, 1.0, 1 }, rect.height(), rows);
    return view;
}

using MapDrawing = std::function<void(QPainter&, const BinGeometry&, const BinRows&, const ColourScale&)>;

void drawMaps(QImage& image, const MapDrawing& draw)
{
    const ColourScale scale(0.0, 20.0, false,
        { QColor(0, 0, 80), QColor(0, 120, 200), QColor(40, 200, 60), QColor(240, 220, 0), QColor(200, 0, 0) });
    QPainter painter(&image);
    const auto drawOne = [&](const QRect& rect, int columns, int rows) {
        painter.setClipRect(rect);
        draw(painter, referenceView(rect, columns, rows), referenceBins(columns, rows), scale);
    };
    drawOne(QRect(0, 0, side, side / 3), 13, 7); // bars
    drawOne(QRect(0, side / 3, side, side / 3), 400, 50); // several bins to a pixel
}

/// A fan of lines in the lowest third: every slope, both directions.
QList<QLine> referenceLines()
{
    const int top = 2 * side / 3 + 1;
    const int bottom = side - 2;
    QList<QLine> lines;
    for (int x = 1; x < side - 1; x += 5) {
        lines.append({ side / 2, bottom, x, top });
        lines.append({ x, bottom, side / 3, top + 7 });
    }
    lines.append({ 1, bottom - 3, side - 2, bottom - 4 });
    return lines;
}

} // namespace

void drawReferenceDirectly(QImage& image)
{
    MapPainter map;
    drawMaps(image, [&](auto&&... arguments) { map.paint(arguments...); });
    LineRasterizer lines(image.rect());
    const QList<QLine> reference = referenceLines();
    for (const QLine& line : reference)
        lines.addLine(line.p1(), line.p2());
    lines.writeTo({ image.bits(), image.bytesPerLine() }, ink);
}

void drawReferenceByPainter(QImage& image)
{
    drawMaps(image, paintBinsOneByOne);
    QPainter painter(&image);
    painter.setPen(QColor(ink));
    painter.drawLines(referenceLines());
}

bool referencePatternsMatch(const ReferenceDrawing& direct)
{
    QImage byPainter(side, side, QImage::Format_RGB32);
    byPainter.fill(Qt::black);
    QImage directly = byPainter;
    drawReferenceByPainter(byPainter);
    direct(directly);
    return byPainter == directly;
}

} // namespace tarnis
