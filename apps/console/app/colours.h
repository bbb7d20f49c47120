// Colours that stay readable on a light and on a dark desktop, made from the palette in use.
#pragma once

#include <QColor>
#include <QPalette>

class QPixmap;

namespace console {

enum class StatusIndicator { Off, Waiting, Good, Busy, Bad };

/// Whether text stands light on dark.
bool isDark(const QPalette& palette);

/// Text on the palette's base in a hue that says good or bad; contrast at least 4.5 to 1 on white and on #202020.
QColor goodText(const QPalette& palette);
QColor badText(const QPalette& palette);
QColor quietText(const QPalette& palette);

/// The palette's window colour with a share (0 to 1) of another colour.
QColor tintedWindow(const QPalette& palette, const QColor& tint, double share);

/// An indicator of `size` pixels. Each has a shape of its own, so that the colour is not needed to tell them apart.
QPixmap indicatorPicture(StatusIndicator indicator, int size, qreal devicePixelRatio);

/// A dark palette for the night shift.
QPalette darkPalette();

} // namespace console
