#include "tarnis/plots/raster/bandpicture_p.h"

#include <QImage>
#include <QPainter>
#include <QRubberBand>
#include <QStyleOptionRubberBand>
#include <QStylePainter>

#include <algorithm>
#include <cstring>

namespace tarnis {

namespace {

constexpr int edge = 16; // pixels; wider than the frame of any style
constexpr int patchSize = 3 * edge;

QStyleOptionRubberBand optionOf(const QRubberBand& band, const QRect& rect)
{
    QStyleOptionRubberBand option;
    option.initFrom(&band);
    option.rect = rect;
    option.shape = band.shape();
    option.opaque = false;
    return option;
}

const QRgb* rowOf(const QImage& image, int y)
{
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

/// True if a larger band differs only in the number of equal pixels between its edges.
bool canStretch(const QImage& patch)
{
    for (int y = 0; y < patchSize; ++y) {
        const QRgb* const row = rowOf(patch, y);
        if (std::any_of(row + edge, row + qsizetype(2) * edge, [row](QRgb pixel) { return pixel != row[edge]; }))
            return false;
        const bool isInside = y > edge && y < 2 * edge;
        if (isInside && std::memcmp(row, rowOf(patch, edge), patchSize * sizeof(QRgb)) != 0)
            return false;
    }
    return true;
}

QImage stretched(const QImage& patch, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        const int fromEnd = size.height() - y;
        const QRgb* const from = rowOf(patch, y < edge ? y : fromEnd <= edge ? patchSize - fromEnd : edge);
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::copy_n(from, edge, row);
        std::fill(row + edge, row + size.width() - edge, from[edge]);
        std::copy_n(from + patchSize - edge, edge, row + size.width() - edge);
    }
    return image;
}

} // namespace

void paintRubberBand(QRubberBand& band)
{
    QStylePainter painter(&band);
    if (std::min(band.width(), band.height()) > patchSize && band.devicePixelRatio() == 1.0) {
        QImage patch(patchSize, patchSize, QImage::Format_ARGB32_Premultiplied);
        patch.fill(0U);
        QPainter inside(&patch);
        const QStyleOptionRubberBand option = optionOf(band, patch.rect());
        band.style()->drawControl(QStyle::CE_RubberBand, &option, &inside, &band);
        inside.end();
        if (canStretch(patch)) {
            painter.drawImage(0, 0, stretched(patch, band.size()));
            return;
        }
    }
    painter.drawControl(QStyle::CE_RubberBand, optionOf(band, band.rect()));
}

} // namespace tarnis
