// Pixels of grabbed pictures, in the coordinates of the widget on a screen of any pixel ratio.
#pragma once

#include <QColor>
#include <QImage>

namespace tarnis::testing {

/// The colour in the middle of a pixel of the widget; invalid outside of the picture.
inline QColor colorAt(const QImage& image, const QPoint& pixel)
{
    const double ratio = image.devicePixelRatio();
    const QPoint place(static_cast<int>((pixel.x() + 0.5) * ratio), static_cast<int>((pixel.y() + 0.5) * ratio));
    return image.rect().contains(place) ? image.pixelColor(place) : QColor();
}

} // namespace tarnis::testing
