// The interface by which a style replaces the classic drawing of a plot. Without a style it costs one test of a null
// pointer.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QColor>
#include <QRect>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE
class ColorBarWidget;
class QWidget;
class XYGraphWidget;

namespace tarnis {

/// Draws frame, axes, grid and curves of one plot, and fits its automatic axes. The plot's own drawing calls it.
class PlotStyling {
public:
    PlotStyling() = default;
    PlotStyling(const PlotStyling&) = delete;
    PlotStyling& operator=(const PlotStyling&) = delete;
    virtual ~PlotStyling() = default;

    /// Positions in a picture, in the painter's coordinates.
    struct Layout {
        QRect graph; ///< inner plot rectangle
        /// Where a click opens an editor of the axis end. @{
        QRect minX, maxX, minY, maxY;
        /// @}
    };

    /// Samples or bins have changed.
    virtual void noteData() = 0;
    /// Sets the ranges of the automatic axes according to the style.
    virtual void fitAxes() = 0;
    /// Fills `whole` and draws everything inside `frame` but outside of the plot rectangle.
    virtual Layout paintFrame(QPainter& painter, const QRect& whole, const QRect& frame) = 0;
    /// Grid lines, clipped to the plot rectangle.
    virtual void paintGrid(QPainter& painter, const QRect& graph) = 0;
    /// The curves of a plot of one or many series, with the same clip.
    virtual void paintCurves(QPainter& painter, const QRect& graph) = 0;

    /// The layout computed by ColorBarWidget::paint().
    struct BarLayout {
        QRect minLabel; ///< click areas
        QRect maxLabel;
        int width = 0; ///< width of bar and labels
    };
    virtual BarLayout paintColourBar(QPainter& painter, const QRect& frame, const ColorBarWidget& bar) = 0;

    /// The part of the space above the plot rectangle that the last frame left without texts; null without such a part.
    virtual QRect freeAbove() const = 0;

    virtual QColor surround() const = 0; ///< colour around the plot rectangle
    virtual QColor foreground() const = 0; ///< of texts
    virtual QColor lineOverData() const = 0; ///< colour of lines and marks over the data; maps are dark in every theme
    virtual QColor accent() const = 0; ///< colour of peaks and marks over the data
    /// Colour of a curve of the plot's current type; `given` is the classic one.
    virtual QColor curveColour(int number, const QColor& given) const = 0;
};

/// The current style; null without one. `plot` may be null or any other widget.
PlotStyling* stylingOf(const QWidget* plot);

/// Implements XYGraphWidget::paint() with a style.
void paintStyled(XYGraphWidget& plot, PlotStyling& styling, QPainter& painter, QRect* rect);

/// The colour of a curve as it is drawn.
QColor shownCurveColour(const XYGraphWidget& plot, int number, const QColor& given);

} // namespace tarnis
