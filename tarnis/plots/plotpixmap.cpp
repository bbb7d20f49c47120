#include "tarnis/plots/plotpixmap_p.h"

#include "tarnis/plots/math/floatcomparison_p.h"

#include <QFile>
#include <QPaintEngine>
#include <QPainter>
#include <QRegion>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tarnis {

QColor fillOf(const QWidget& widget)
{
    return widget.palette().brush(QPalette::Current, QPalette::Window).color();
}

QPixmap windowPixmap(const QWidget& widget, const QSize& size)
{
    const qreal ratio = widget.devicePixelRatio();
    QPixmap pixmap(size * ratio);
    if (pixmap.isNull())
        return pixmap;
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(fillOf(widget));
    return pixmap;
}

void useWidgetCoordinates(QPainter& painter, const QPixmap& pixmap, const QSize& size)
{
    if (pixmap.devicePixelRatio() == 1.0)
        return;
    const QRect rect(QPoint(0, 0), size);
    painter.setWindow(rect);
    painter.setViewport(rect);
}

void copyParts(QPainter& painter, const QPixmap& picture, const QRegion& parts, const QPoint& corner)
{
    painter.save();
    for (const QRect& part : parts) {
        painter.setClipRect(part);
        painter.drawPixmap(corner, picture);
    }
    painter.restore();
}

/// Threads begin at 96 spans; a row of a smooth shape has up to three of them.
void paintInBands(QPainter& painter, const QRect& area, const std::function<void()>& draw, int bandHeight)
{
    const QPaintEngine* const engine = painter.paintEngine();
    const bool isRaster = engine != nullptr && engine->type() == QPaintEngine::Raster;
    if (!isRaster || area.height() <= bandHeight || painter.transform().type() > QTransform::TxTranslate) {
        draw();
        return;
    }
    painter.save();
    const bool isClipped = painter.hasClipping();
    const QRegion clip = isClipped ? painter.clipRegion() : QRegion();
    for (int top = area.top(); top <= area.bottom(); top += bandHeight) {
        const QRect band(area.left(), top, area.width(), std::min(bandHeight, area.bottom() - top + 1));
        if (!isClipped)
            painter.setClipRect(band);
        else if (const QRegion part = clip & band; part.isEmpty())
            continue;
        else if (part.rectCount() == 1) // has a faster path than a region
            painter.setClipRect(part.boundingRect());
        else
            painter.setClipRegion(part);
        draw();
    }
    painter.restore();
}

bool hasWholePixels(const QWidget& widget)
{
    const qreal ratio = widget.devicePixelRatio();
    return ratio == std::floor(ratio);
}

bool isQuarterTurn(double rotation)
{
    return plotEqual(rotation, 90.0);
}

bool isQuarterTurnBack(double rotation)
{
    return plotEqual(rotation, -90.0);
}

bool isTurned(double rotation)
{
    return isQuarterTurn(rotation) || isQuarterTurnBack(rotation);
}

bool savePixmap(const QPixmap& pixmap, const QString& path)
{
    // The image writer opens the file, selects the format from its name and removes the file on failure. It does not
    // check its last flush, so the file is checked here.
    QFile file(path);
    if (!pixmap.save(&file))
        return false;
    file.close();
    return file.error() == QFileDevice::NoError;
}

} // namespace tarnis
