#include "tarnis/plots/raster/pixeltarget_p.h"

#include "tarnis/plots/rasterpath.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

bool holdsPlainColours(const QImage& image)
{
    return image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32_Premultiplied
        || image.format() == QImage::Format_ARGB32;
}

} // namespace

const QImage* plainImageBehind(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    if (engine == nullptr || engine->type() != QPaintEngine::Raster)
        return nullptr;
    const auto* image = dynamic_cast<const QImage*>(engine->paintDevice());
    return image != nullptr && holdsPlainColours(*image) ? image : nullptr;
}

bool drawsWholePixels(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    return engine != nullptr && engine->type() == QPaintEngine::Raster
        && !painter.testRenderHint(QPainter::Antialiasing)
        && painter.compositionMode() == QPainter::CompositionMode_SourceOver && painter.opacity() == 1.0;
}

bool coversWholePixels(const QPainter& painter)
{
    return rasterPath() == RasterPath::Direct && drawsWholePixels(painter);
}

QRect deviceRect(const QPaintEngine& engine)
{
    const QRect whole(0, 0, engine.paintDevice()->width(), engine.paintDevice()->height());
    const QRegion systemClip = engine.systemClip();
    return systemClip.isEmpty() ? whole : whole.intersected(systemClip.boundingRect());
}

std::optional<QPoint> wholePixelOffset(const QPainter& painter)
{
    const QTransform& transform = painter.deviceTransform();
    if (!(std::max(std::abs(transform.dx()), std::abs(transform.dy())) <= QWIDGETSIZE_MAX))
        return std::nullopt;
    const QPoint offset(qRound(transform.dx()), qRound(transform.dy()));
    if (transform.type() > QTransform::TxTranslate || transform.dx() != offset.x() || transform.dy() != offset.y())
        return std::nullopt;
    return offset;
}

std::optional<PixelTarget> pixelTargetOf(const QPainter& painter)
{
    const std::optional<QPoint> offset = wholePixelOffset(painter);
    if (!coversWholePixels(painter) || !offset)
        return std::nullopt;
    const QPaintEngine& engine = *painter.paintEngine();
    const QRegion clip = painter.hasClipping() ? painter.clipRegion() : QRegion();
    // The engine writes to the image's own bytes, unshared since it began.
    const QImage* image = plainImageBehind(painter);
    // The engine's rounding of a fractional clip is not reproduced.
    const bool roundedClip = painter.hasClipping() && painter.clipBoundingRect() != QRectF(clip.boundingRect());
    if (image == nullptr || roundedClip || clip.rectCount() > 1 || engine.systemClip().rectCount() > 1)
        return std::nullopt;
    PixelTarget target { { const_cast<uchar*>(image->constBits()), image->bytesPerLine() }, image->rect(),
        deviceRect(engine), *offset };
    if (painter.hasClipping())
        target.clip &= clip.boundingRect().translated(*offset);
    return target;
}

} // namespace tarnis
