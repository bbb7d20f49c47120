// Pixmaps for the pictures of widgets, at the resolution of the screen.
#pragma once

#include <QColor>
#include <QPixmap>

#include <functional>

QT_BEGIN_NAMESPACE
class QPainter;
class QRect;
class QRegion;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// The fill colour of a widget's picture: that of its palette's window brush.
QColor fillOf(const QWidget& widget);

/// A pixmap for a picture of `size` in the widget's coordinates, at the widget's device pixel ratio, filled. Null for
/// an empty size. If memory is insufficient, no painter can be opened on it.
QPixmap windowPixmap(const QWidget& widget, const QSize& size);

/// Sets window and viewport of a painter on such a pixmap to widget coordinates. Call it directly after opening the
/// painter. Does nothing at a ratio of 1.
void useWidgetCoordinates(QPainter& painter, const QPixmap& pixmap, const QSize& size);

/// Copies the parts of a picture of the whole widget. Each part has a rectangle as its clip, for which the painter has
/// a faster path than for a region.
void copyParts(QPainter& painter, const QPixmap& picture, const QRegion& parts, const QPoint& corner = {});

/// Calls `draw` for one low band of `area` after the other, each as the painter's clip: the same pixels as one call.
/// For translucent shapes: a raster painter distributes the rows of a high one to threads, which takes longer than the
/// rows. A shape without antialiasing has fewer spans in a row: `bandHeight` can be 88 for it.
void paintInBands(QPainter& painter, const QRect& area, const std::function<void()>& draw, int bandHeight = 24);

/// True if a pixel of the widget covers whole pixels of the screen.
bool hasWholePixels(const QWidget& widget);

/// True for about +90 degrees, with the tolerance of the plots.
bool isQuarterTurn(double rotation);
/// True for about -90 degrees.
bool isQuarterTurnBack(double rotation);
/// True for either.
bool isTurned(double rotation);

/// Writes the picture in the format of the file's extension. False on any error, including a full disk.
bool savePixmap(const QPixmap& pixmap, const QString& path);

} // namespace tarnis
