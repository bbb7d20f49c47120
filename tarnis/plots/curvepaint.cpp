#include "tarnis/plots/curvepaint_p.h"

#include <QPaintEngine>
#include <QPainter>

namespace tarnis {

namespace {

template <typename Scale>
void paintOn(
    QPainter& painter, const SampleRun& samples, SampleRange range, const Scale& x, const CurveDrawing& drawing)
{
    const Merge merge = mergeOn(painter);
    if (drawing.columnChart) {
        painter.setBrush(QBrush(painter.pen().color()));
        painter.drawRects(columnsOfSamples(samples, range, x, drawing.y, drawing.shape, merge));
    } else if (drawing.joined) {
        painter.drawLines(joinSamples(samples, range, x, drawing.y, merge));
    } else {
        painter.drawLines(crossesOfSamples(samples, range, x, drawing.y, merge));
    }
}

} // namespace

Merge mergeOn(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    const bool exact = engine != nullptr && engine->type() == QPaintEngine::Raster
        && !painter.testRenderHint(QPainter::Antialiasing)
        && painter.compositionMode() == QPainter::CompositionMode_SourceOver && painter.opacity() == 1.0
        && painter.pen().color().alpha() == 255;
    return exact ? Merge::Yes : Merge::No;
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
