// Pixels of grabbed pictures, in the coordinates of the widget on a screen of any pixel ratio.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

#include <cmath>

namespace tarnis::testing {

/// The colour in the middle of a pixel of the widget; invalid outside of the picture.
inline QColor colourAt(const QImage& image, const QPoint& pixel)
{
    const double ratio = image.devicePixelRatio();
    const QPoint place(static_cast<int>((pixel.x() + 0.5) * ratio), static_cast<int>((pixel.y() + 0.5) * ratio));
    return image.rect().contains(place) ? image.pixelColor(place) : QColor();
}

/// Pixels of the picture that make up a rectangle of the widget.
inline QRect onDevice(const QImage& image, const QRect& rect)
{
    const double ratio = image.devicePixelRatio();
    const QPointF end = QPointF(rect.x() + rect.width(), rect.y() + rect.height()) * ratio;
    const QPoint corner(static_cast<int>(std::floor(rect.x() * ratio)), static_cast<int>(std::floor(rect.y() * ratio)));
    return QRect(
        corner, QPoint(static_cast<int>(std::ceil(end.x())), static_cast<int>(std::ceil(end.y()))) - QPoint(1, 1));
}

/// True if a pixel of the picture has a colour that `test` accepts, within `reach` pixels of the widget.
template <typename Test> bool hasPixel(const QImage& image, const QPoint& pixel, const QSize& reach, const Test& test)
{
    const QRect around(pixel - QPoint(reach.width(), reach.height()), reach * 2 + QSize(1, 1));
    const QRect area = onDevice(image, around) & image.rect();
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (test(image.pixelColor(x, y)))
                return true;
        }
    }
    return false;
}

/// The number of pixels of this colour.
inline int countPixels(const QImage& image, const QColor& colour)
{
    int pixels = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            pixels += image.pixelColor(x, y) == colour ? 1 : 0;
    }
    return pixels;
}

} // namespace tarnis::testing
