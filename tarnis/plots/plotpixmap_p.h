// Pixmaps that widgets paint themselves on, at the resolution of the screen.
#pragma once

#include <QColor>
#include <QPixmap>

QT_BEGIN_NAMESPACE
class QPainter;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// The colour that a widget's picture is filled with: that of its palette's window brush.
QColor fillOf(const QWidget& widget);

/// A pixmap for a picture of `size` in the widget's coordinates, at the widget's device pixel ratio, filled. Null for
/// an empty size; beyond the memory no painter begins on it.
QPixmap windowPixmap(const QWidget& widget, const QSize& size);

/// Makes window and viewport of a painter that has just begun on such a pixmap count in the widget's coordinates. At a
/// ratio of 1 it does nothing.
void useWidgetCoordinates(QPainter& painter, const QPixmap& pixmap, const QSize& size);

/// True for about +90 degrees, with the tolerance of the plots.
bool isQuarterTurn(double rotation);
/// True for about -90 degrees.
bool isQuarterTurnBack(double rotation);
/// True for either.
bool isTurned(double rotation);

/// Writes the picture in the format of the file's extension. False if anything fails, a full disk included.
bool savePixmap(const QPixmap& pixmap, const QString& path);

} // namespace tarnis
