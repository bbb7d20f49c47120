#include "tarnis/plots/binmap_p.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarnis {

namespace {

/// What the painter adds to X coordinates on their way to the device, if it does no more than moving whole pixels onto
/// a raster device of 32 bits, and paints nothing outside of `rect`.
std::optional<int> plainOffset(const QPainter& painter, const QRect& rect)
{
    const QPaintEngine* engine = painter.paintEngine();
    if (engine == nullptr || engine->type() != QPaintEngine::Raster || painter.device()->depth() != 32)
        return std::nullopt;
    if (painter.opacity() != 1.0 || painter.compositionMode() != QPainter::CompositionMode_SourceOver
        || painter.testRenderHint(QPainter::Antialiasing))
        return std::nullopt;
    const QTransform transform = painter.deviceTransform();
    if (transform.type() > QTransform::TxTranslate || std::trunc(transform.dx()) != transform.dx()
        || std::trunc(transform.dy()) != transform.dy())
        return std::nullopt;
    if (!painter.hasClipping() || !QRectF(rect).contains(painter.clipBoundingRect()))
        return std::nullopt;
    return static_cast<int>(transform.dx());
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
    const std::optional<int> offset = plainOffset(painter, view.rect);
    if (!offset || !scale.isOpaque() || !BinRaster::canCompose(view)) {
        paintBinsOneByOne(painter, view, rows, scale);
        return;
    }
    m_converter.setScale(scale);
    m_raster.compose(view, rows, m_converter, *offset, [&](const BinRaster::Strip& strip) {
        const QImage image(reinterpret_cast<const uchar*>(strip.pixels), strip.area.width(), strip.area.height(),
            strip.area.width() * static_cast<qsizetype>(sizeof(QRgb)),
            strip.isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
        painter.drawImage(view.rect.topLeft() + strip.area.topLeft(), image);
    });
}

} // namespace tarnis
