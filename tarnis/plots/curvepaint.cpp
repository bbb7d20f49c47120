#include "tarnis/plots/curvepaint_p.h"

#include <QPaintEngine>
#include <QPainter>
#include <QTransform>

#include <cmath>

namespace tarnis {

namespace {

/// In units of the painter; more than the half width of a line that is one unit wide.
constexpr int awayFromEdge = 3;

template <typename Scale>
void paintOn(
    QPainter& painter, const SampleRun& samples, SampleRange range, const Scale& x, const CurveDrawing& drawing)
{
    const Merging merging = mergingOn(painter);
    if (drawing.columnChart) {
        painter.setBrush(QBrush(painter.pen().color()));
        painter.drawRects(columnsOfSamples(samples, range, x, drawing.y, drawing.shape, merging));
    } else if (drawing.joined) {
        painter.drawLines(joinSamples(samples, range, x, drawing.y, merging));
    } else {
        painter.drawLines(crossesOfSamples(samples, range, x, drawing.y, merging));
    }
}

bool isQuarterTurn(const QTransform& transform)
{
    return transform.isAffine() && transform.m11() == 0.0 && transform.m22() == 0.0 && std::abs(transform.m12()) == 1.0
        && std::abs(transform.m21()) == 1.0;
}

bool coversWholePixels(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    return engine != nullptr && engine->type() == QPaintEngine::Raster
        && !painter.testRenderHint(QPainter::Antialiasing)
        && painter.compositionMode() == QPainter::CompositionMode_SourceOver && painter.opacity() == 1.0
        && painter.pen().color().alpha() == 255;
}

/// What the engine draws on, in its pixels: an image, also where the painter was opened on a widget.
QRect deviceRect(const QPaintEngine& engine)
{
    const QRect whole(0, 0, engine.paintDevice()->width(), engine.paintDevice()->height());
    const QRegion systemClip = engine.systemClip();
    return systemClip.isEmpty() ? whole : whole.intersected(systemClip.boundingRect());
}

} // namespace

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
    const QRectF device = transform.inverted().mapRect(QRectF(deviceRect(*painter.paintEngine())));
    return { true, false, device.toAlignedRect().adjusted(awayFromEdge, awayFromEdge, -awayFromEdge, -awayFromEdge) };
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
