// The plot frame drawn call by call from its written rules, without any code of the plots: the reference for the
// product's pictures. Oracles of plots with data use it for the frame and pass their own drawing.
#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QMargins>
#include <QPixmap>
#include <QRect>
#include <QString>

#include <functional>

class QPainter;
class QWidget;

namespace tarnis::testing {

/// Inputs and results of painting a frame.
struct FrameState {
    double minX = 0.0, maxX = 0.0, minY = 0.0, maxY = 0.0;
    double xRangeMin = 0.0, xRangeMax = 0.0; ///< for the overlay only
    int decimalX = 0, decimalY = 0;
    bool logScaleY = false;
    bool showGrid = true;
    bool paintGridOnGraph = false;
    QString nameX, nameY, notes;
    QMargins margin;
    double rotation = 0.0;
    QFont font; ///< of the widget
    QColor backGround = Qt::black;
    double (*x2tick)(double, void*) = nullptr; ///< null means the identity
    double (*tick2x)(double, void*) = nullptr;
    void* userData = nullptr;

    // Read and written by a paint
    int tickDecimalX = 0, tickDecimalY = 0;
    QRect graphRect;
    QRect labelRectMinX, labelRectMaxX, labelRectMinY, labelRectMaxY;
};

/// Draws data into the plot rectangle, which the painter is clipped to.
using PaintData = std::function<void(QPainter&, const QRect& graph)>;

/// Draws the frame into `rect`, or into the painter's viewport if it is null.
void paintFrame(FrameState& state, QPainter& painter, const QRect* rect, const PaintData& paintData = {});

/// Draws the lines of the selected X range over the picture.
void paintFrameOverlay(const FrameState& state, QPainter& painter);

/// The picture that a double-buffered widget keeps: its size, palette, font and pixel ratio come from `widget`, the
/// rotation from the state.
QPixmap framePicture(FrameState& state, QWidget& widget, const PaintData& paintData = {});

/// Column of a value, by the rules of the tick positions.
int frameColumn(const FrameState& state, double x);
int frameRow(const FrameState& state, double y);

/// The tick values of a range, by the same rules.
QList<double> frameTicks(double a, double b, int& decimal);

/// Truncates the fraction; values are clamped to +-2^30, NaN becomes -2^30.
int cutToPixel(double value);

} // namespace tarnis::testing
