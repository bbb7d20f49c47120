// Pictures with the pixels of the painter's device, drawn over its content.
#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QRect>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

/// Pixels of the device for one of the painter's; 0 if a picture of these cannot be laid over it, as in vector files.
double deviceScale(const QPainter& painter);

/// Lays an image of deviceScale() over the device, its corner at a place of the painter.
void layOver(QPainter& painter, const QPoint& corner, const QImage& image, double scale);

/// Rows of a pixel column, both ends included.
struct ColumnSpan {
    int column = 0;
    int top = 0;
    int bottom = 0;
};

/// Fills the spans inside of `area` with a colour that may be transparent. Neighbouring columns share a picture: the
/// raster engine takes a tenth of a microsecond for every row of a rectangle one pixel wide. Ascending or descending
/// columns, each once.
void fillColumns(QPainter& painter, const QRect& area, const QList<ColumnSpan>& spans, const QColor& colour);

} // namespace tarnis
