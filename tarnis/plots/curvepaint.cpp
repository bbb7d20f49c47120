#include "tarnis/plots/curvepaint_p.h"

#include "tarnis/plots/pixelmask_p.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTransform>

#include <cmath>
#include <cstdlib>
#include <optional>

namespace tarnis {

namespace {

/// In units of the painter; more than the half width of a line that is one unit wide.
constexpr int awayFromEdge = 3;

bool isQuarterTurn(const QTransform& transform)
{
    return transform.isAffine() && transform.m11() == 0.0 && transform.m22() == 0.0 && std::abs(transform.m12()) == 1.0
        && std::abs(transform.m21()) == 1.0;
}

bool isFineOpaquePen(const QPen& pen)
{
    return pen.style() == Qt::SolidLine && pen.widthF() <= 1.0 && pen.brush().style() == Qt::SolidPattern
        && pen.color().alpha() == 255;
}

bool coversWholePixels(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    return engine != nullptr && engine->type() == QPaintEngine::Raster
        && !painter.testRenderHint(QPainter::Antialiasing)
        && painter.compositionMode() == QPainter::CompositionMode_SourceOver && painter.opacity() == 1.0
        && isFineOpaquePen(painter.pen());
}

/// What the engine draws on, in its pixels: an image, also where the painter was opened on a widget.
QRect deviceRect(const QPaintEngine& engine)
{
    const QRect whole(0, 0, engine.paintDevice()->width(), engine.paintDevice()->height());
    const QRegion systemClip = engine.systemClip();
    return systemClip.isEmpty() ? whole : whole.intersected(systemClip.boundingRect());
}

QRectF deviceInPaintersUnits(const QPainter& painter)
{
    return painter.deviceTransform().inverted().mapRect(QRectF(deviceRect(*painter.paintEngine())));
}

template <typename Scale>
void paintOn(
    QPainter& painter, const SampleRun& samples, SampleRange range, const Scale& x, const CurveDrawing& drawing)
{
    Merging merging = mergingOn(painter);
    if (drawing.columnChart) {
        // A rectangle that begins left of the device lacks its last corner. On a turned picture that side is the top of
        // a column: one that reaches beyond does not hide those that stay inside.
        if (merging.columns && isQuarterTurn(painter.deviceTransform()))
            merging.area &= deviceInPaintersUnits(painter).toAlignedRect();
        painter.setBrush(QBrush(painter.pen().color()));
        painter.drawRects(columnsOfSamples(samples, range, x, drawing.y, drawing.shape, merging));
    } else if (drawing.joined) {
        paintLines(painter, joinSamples(samples, range, x, drawing.y, merging));
    } else {
        paintLines(painter, crossesOfSamples(samples, range, x, drawing.y, merging));
    }
}

/// The pixels that a painter draws on, where lines may be written to them past the engine.
struct PixelTarget {
    PixelRows rows;
    QRect device; ///< all of the pixels
    QRect clip; ///< those that the painter may change
    QPoint offset; ///< of the painter's coordinates
    QRgb color = 0;
};

bool holdsPlainColors(const QImage& image)
{
    return image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32_Premultiplied
        || image.format() == QImage::Format_ARGB32;
}

/// Where the painter shifts by whole pixels, clips to a rectangle, and has a pen that is a colour of 8 bits a channel.
std::optional<PixelTarget> pixelTargetOf(const QPainter& painter)
{
    if (!coversWholePixels(painter))
        return std::nullopt;
    const QTransform& transform = painter.deviceTransform();
    const QPoint offset(qRound(transform.dx()), qRound(transform.dy()));
    const QColor color = painter.pen().color();
    if (transform.type() > QTransform::TxTranslate || transform.dx() != offset.x() || transform.dy() != offset.y()
        || QColor(color.rgb()).rgba64() != color.rgba64())
        return std::nullopt;

    const QPaintEngine& engine = *painter.paintEngine();
    const QRegion clip = painter.hasClipping() ? painter.clipRegion() : QRegion();
    // The engine writes to the image's own bytes, unshared since it began.
    const auto* image = dynamic_cast<const QImage*>(engine.paintDevice());
    if (image == nullptr || !holdsPlainColors(*image) || clip.rectCount() > 1 || engine.systemClip().rectCount() > 1)
        return std::nullopt;
    PixelTarget target { { const_cast<uchar*>(image->constBits()), image->bytesPerLine() }, image->rect(),
        deviceRect(engine), offset, color.rgb() };
    if (painter.hasClipping())
        target.clip &= clip.boundingRect().translated(offset);
    return target;
}

/// Whether the lines cost the engine clearly more than a mask of the whole clip takes to set up. A line takes it as
/// long as 25 pixels.
bool areWorthAMask(const QList<QLine>& lines, const QRect& clip)
{
    const qint64 enough = qint64(clip.width()) * clip.height() / 64;
    qint64 pixels = 25 * lines.size();
    for (auto line = lines.cbegin(); line != lines.cend() && pixels <= enough; ++line)
        pixels += std::max(std::abs(qint64(line->x2()) - line->x1()), std::abs(qint64(line->y2()) - line->y1()));
    return pixels > enough;
}

} // namespace

void paintLines(QPainter& painter, const QList<QLine>& lines)
{
    const std::optional<PixelTarget> target = pixelTargetOf(painter);
    if (!target || target->clip.isEmpty() || !areWorthAMask(lines, target->clip)) {
        painter.drawLines(lines);
        return;
    }
    PixelMask mask(target->clip);
    QList<QLine> beyond; // the engine cuts these at the edges of the device before it chooses pixels
    const QRect inside = target->device.translated(-target->offset);
    for (const QLine& line : lines) {
        if (inside.contains(line.p1()) && inside.contains(line.p2()))
            mask.addLine(line.p1() + target->offset, line.p2() + target->offset);
        else
            beyond.append(line);
    }
    mask.writeTo(target->rows, target->color);
    if (!beyond.isEmpty())
        painter.drawLines(beyond);
}

Merging mergingOn(const QPainter& painter)
{
    if (!coversWholePixels(painter))
        return {};
    const QTransform& transform = painter.deviceTransform();
    if (transform.type() <= QTransform::TxTranslate || isQuarterTurn(transform))
        return { true, true };
    if (transform.type() != QTransform::TxScale)
        return {};
    // Lines are as wide as the scale here: their ends stick out of the columns, and those that the edge of the device
    // cuts end on either side of a half pixel.
    const QRect device = deviceInPaintersUnits(painter).toAlignedRect();
    return { true, false, device.adjusted(awayFromEdge, awayFromEdge, -awayFromEdge, -awayFromEdge) };
}

SampleRange CurveDrawing::visited(qsizetype count) const
{
    return plotX ? wholeSamples(0.0, static_cast<double>(count), count) : wholeSamples(first, last, count);
}

void paintCurve(QPainter& painter, const SampleRun& samples, SampleRange range, const CurveDrawing& drawing)
{
    if (drawing.plotX)
        paintOn(painter, samples, range, *drawing.plotX, drawing);
    else
        paintOn(painter, samples, range, drawing.x, drawing);
}

} // namespace tarnis
