// The mapping between values and pixels of a plot, as a small value type.
#pragma once

#include <tarnis/plots/axisrange.h>
#include <tarnis/tarnis_export.h>

#include <QPointF>
#include <QRect>

class XYGraphWidget;

namespace tarnis {

/// A copy of a plot's geometry at one moment. Supports logarithmic Y axes, X axes with a tick function or a plot
/// function, and plots rotated by 90 degrees. Pixels are widget coordinates, as in mouse events. Frame coordinates are
/// those of a painter of the plot's picture; they differ only on a rotated plot. All functions are cheap. On an invalid
/// mapping they return finite but meaningless values.
class TARNIS_EXPORT PlotMapping {
public:
    /// An invalid mapping.
    PlotMapping() = default;
    /// The current mapping: the visible ranges, and the plot rectangle of the last paint.
    static PlotMapping of(const XYGraphWidget& plot);

    /// True if the plot rectangle has an area and both ranges are finite and not empty.
    bool isValid() const;

    /// The plot rectangle. @{
    QRect plotRect() const; ///< in pixels of the widget
    QRect frameRect() const; ///< in the frame's coordinates
    /// @}
    /// The visible ranges. @{
    AxisRange x() const;
    AxisRange y() const;
    /// @}
    bool isLogY() const; ///< Y is logarithmic; values at or below 0 count as 1, or with a PlotStyle as the lower end
    double rotation() const; ///< 0, 90 or -90 degrees

    /// Value under a pixel, and pixel of a value. Both are also defined outside of the plot rectangle. @{
    QPointF valueAt(const QPointF& pixel) const;
    QPointF pixelOf(const QPointF& value) const;
    /// @}

    /// Conversion between widget pixels and frame coordinates. @{
    QPointF toFrame(const QPointF& pixel) const;
    QPointF fromFrame(const QPointF& point) const;
    /// @}
    /// Conversion between values and frame coordinates, one axis at a time. @{
    double columnOf(double x) const;
    double rowOf(double y) const;
    double xAt(double column) const;
    double yAt(double row) const;
    /// @}

    /// The value of X on the second scale of setFuncX2Tick(); x itself without one. @{
    double tickOf(double x) const;
    bool hasTickFunction() const;
    /// @}

    /// Bins of the X axis: samples of a curve, columns of a map. @{
    qsizetype columns() const; ///< their number; 0 without data
    qsizetype columnAt(double x) const; ///< the bin that contains x, -1 outside of the data
    AxisRange columnEdges(qsizetype column) const; ///< the bin's edges in units of X; the lower end is inclusive
    /// @}
    /// Bins of the Y axis: rows of a map. Curves have none. @{
    qsizetype rows() const; ///< their number; 0 for curves
    qsizetype rowAt(double y) const; ///< the bin that contains y, -1 outside of the data
    AxisRange rowEdges(qsizetype row) const; ///< the bin's edges in units of Y; the lower end is inclusive
    /// @}

private:
    /// Bins of equal width along an axis.
    struct TARNIS_NO_EXPORT Bins {
        double origin = 0.0; // lower edge of bin 0
        double width = 1.0;
        qsizetype count = 0;

        qsizetype at(double value) const;
        AxisRange edges(qsizetype bin) const;
    };
    /// A function that plots apply to an axis, with its user data.
    struct Function {
        double (*function)(double, void*) = nullptr;
        void* data = nullptr;

        double operator()(double value) const { return function != nullptr ? function(value, data) : value; }
    };
    struct Reader;

    QRect m_rect; // in the frame's coordinates
    AxisRange m_x;
    AxisRange m_y;
    bool m_logY = false;
    bool m_zeroAtLowEnd = false; // on a logarithmic Y axis: values at or below 0 are there
    int m_rotation = 0;
    QPointF m_turn; // position of a rotated picture's origin in the widget
    Bins m_binsX;
    Bins m_binsY;
    Function m_tick;
    bool m_hasTick = false;
    Function m_positionToX; // set by setFuncX2Plot(); bins of X then count positions
    Function m_xToPosition;
};

} // namespace tarnis
