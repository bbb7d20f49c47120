#include "tarnis/plots/curvepaint_p.h"

#include "tarnis/plots/exactdrawing_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/raster/pixeltarget_p.h"

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

/// With fewer samples, merging them is not worth the check.
constexpr int fewSamples = 32;

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

bool drawsFineLines(const QPainter& painter)
{
    return coversWholePixels(painter) && isFineOpaquePen(painter.pen());
}

QRectF deviceInPaintersUnits(const QPainter& painter)
{
    return painter.deviceTransform().inverted().mapRect(QRectF(deviceRect(*painter.paintEngine())));
}

template <typename Scale>
void paintOn(
    QPainter& painter, const SampleRun& samples, SampleRange range, const Scale& x, const CurveDrawing& drawing)
{
    Merging merging = range.end - range.begin > fewSamples ? mergingOn(painter) : Merging();
    if (drawing.columnChart) {
        // The engine omits the last corner of a rectangle that begins left of the device. On a rotated picture that
        // side is the top of a column, so a column that extends beyond it does not hide those inside.
        if (merging.columns && isQuarterTurn(painter.deviceTransform()))
            merging.area &= deviceInPaintersUnits(painter).toAlignedRect();
        drawEvenBars(painter, columnsOfSamples(samples, range, x, drawing.y, drawing.shape, merging));
    } else if (drawing.joined) {
        paintLines(painter, joinSamples(samples, range, x, drawing.y, merging));
    } else {
        paintLines(painter, crossesOfSamples(samples, range, x, drawing.y, merging));
    }
}

/// The target for lines of the painter's pen, which must have a colour of 8 bits per channel.
std::optional<PixelTarget> lineTargetOf(const QPainter& painter)
{
    const QColor colour = painter.pen().color();
    if (!isFineOpaquePen(painter.pen()) || QColor(colour.rgb()).rgba64() != colour.rgba64())
        return std::nullopt;
    return pixelTargetOf(painter);
}

/// QRect::contains() is not inline.
bool isWithin(const QRect& rect, QPoint point)
{
    return point.x() >= rect.left() && point.x() <= rect.right() && point.y() >= rect.top()
        && point.y() <= rect.bottom();
}

/// Whether the engine needs more time for the lines than for `enough` pixels. A line costs as much as 25 of its pixels.
bool costMoreThan(qint64 enough, const QList<QLine>& lines)
{
    qint64 pixels = 25 * lines.size();
    for (auto line = lines.cbegin(); line != lines.cend() && pixels <= enough; ++line)
        pixels += std::max(std::abs(qint64(line->x2()) - line->x1()), std::abs(qint64(line->y2()) - line->y1()));
    return pixels > enough;
}

/// The cost of setting up a mask, in pixels, with a safe margin.
qint64 costOfAMask(const QRect& clip)
{
    return qint64(clip.width()) * clip.height() / 64;
}

} // namespace

void paintLines(QPainter& painter, const QList<QLine>& lines)
{
    constexpr qint64 atTheLeast = 2000; // the search for the target has a cost too
    const std::optional<PixelTarget> target = costMoreThan(atTheLeast, lines) ? lineTargetOf(painter) : std::nullopt;
    if (!target || target->clip.isEmpty() || !costMoreThan(costOfAMask(target->clip), lines)) {
        drawEvenLines(painter, lines);
        return;
    }
    LineRasterizer mask(target->clip);
    QList<QLine> beyond; // the engine cuts these at the edges of the device before it chooses pixels
    for (const QLine& line : lines) {
        const QLine shifted = line.translated(target->offset);
        if (isWithin(target->device, shifted.p1()) && isWithin(target->device, shifted.p2()))
            mask.addLine(shifted.p1(), shifted.p2());
        else
            beyond.append(line);
    }
    mask.writeTo(target->rows, painter.pen().color().rgb());
    if (!beyond.isEmpty())
        painter.drawLines(beyond);
}

Merging mergingOn(const QPainter& painter)
{
    if (!drawsFineLines(painter))
        return {};
    const QTransform& transform = painter.deviceTransform();
    if (transform.type() <= QTransform::TxTranslate || isQuarterTurn(transform))
        return { true, true };
    if (transform.type() != QTransform::TxScale)
        return {};
    // Lines are as wide as the scale here: their ends extend beyond the columns, and the edge of the device may clip
    // them.
    const QRect device = deviceInPaintersUnits(painter).toAlignedRect();
    return { true, false, device.adjusted(awayFromEdge, awayFromEdge, -awayFromEdge, -awayFromEdge) };
}

SampleRange CurveDrawing::visited(qsizetype count) const
{
    return plotX ? wholeSamples(0.0, static_cast<double>(count), count) : wholeSamples(first, last, count);
}

void paintCurve(QPainter& painter, const SampleRun& samples, SampleRange range, const CurveDrawing& drawing)
{
    if (const ExactDevice* const device = exactDeviceBehind(painter))
        return paintCurveExactly(painter, samples, range, drawing, *device);
    if (drawing.plotX)
        paintOn(painter, samples, range, *drawing.plotX, drawing);
    else
        paintOn(painter, samples, range, drawing.x, drawing);
}

} // namespace tarnis
