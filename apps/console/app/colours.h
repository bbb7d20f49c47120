// Colours that are readable on a light and on a dark desktop, derived from the current palette.
#pragma once

#include <QColor>
#include <QPalette>

class QPixmap;

namespace console {

enum class StatusIndicator { Off, Waiting, Good, Busy, Bad };

/// Whether text is light on dark.
bool isDark(const QPalette& palette);

/// Text colours on the palette's base, for failures and for details; contrast at least 4.5 to 1 on white and on
/// #202020.
/// @{
QColor badText(const QPalette& palette);
QColor quietText(const QPalette& palette);
/// @}

/// The palette's window colour with a share (0 to 1) of another colour.
QColor tintedWindow(const QPalette& palette, const QColor& tint, double share);

/// An indicator of `size` pixels. Each has a distinct shape, so that they can be distinguished without the colour.
QPixmap indicatorPicture(StatusIndicator indicator, int size, qreal devicePixelRatio);

/// A dark palette.
QPalette darkPalette();

} // namespace console
