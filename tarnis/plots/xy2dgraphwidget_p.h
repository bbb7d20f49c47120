// The private parts of XY2DGraphWidget, one for each concern, and the numbers that its sources share.
#pragma once

#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/math/binvalues_p.h"
#include "tarnis/plots/math/projection_p.h"
#include "tarnis/plots/raster/colourscale_p.h"
#include "tarnis/plots/raster/mappainter_p.h"
#include "tarnis/plots/xy2dgraphwidget.h"

#include <optional>

namespace tarnis {

enum class FivePoints;

/// The button's lower edge and the upper edge of the colour bar; the same room is left below the bar.
constexpr int colourBarTop = 30;
constexpr int besideAutoButton = 6;

} // namespace tarnis

/// The colours of the scale, its limits, and the menu of the colour bar - xy2dgraphwidget_colour.cpp.
class TARNIS_NO_EXPORT XY2DGraphWidget::ColourControls {
public:
    explicit ColourControls(XY2DGraphWidget& plot)
        : m_plot(plot)
    {
    }

    /// What the map is painted with.
    tarnis::ColourScale scale() const;
    /// The visible bins in a plot rectangle.
    tarnis::BinGeometry geometry(const QRect& graph) const;
    /// The values in place of bins that share a pixel, by a tool's choice. Without a value if every bin is painted as
    /// it is.
    std::optional<tarnis::BinRows> reducedBins(const tarnis::BinGeometry& view) const;
    /// Fits an automatic scale to the data.
    void fitScale();
    /// Shows the colours in use in the bar.
    void feedBar();
    /// Sets the five points of all maps, from the lower end of the scale to its upper one, and updates this map.
    void setPoints(const tarnis::ScaleColours& colors);
    void setPoints(tarnis::FivePoints palette);
    /// Requests a new value for one of the colours.
    void choose(QColor& colour, const QString& title);
    void openMenu(const QPoint& globalPosition);

private:
    XY2DGraphWidget& m_plot;
};

/// The 1D cut: its rectangle and the edges of that under the mouse - xy2dgraphwidget_cut.cpp; the range box and the two
/// cut windows - xy2dgraphwidget_cutwindows.cpp.
class TARNIS_NO_EXPORT XY2DGraphWidget::Cut {
public:
    explicit Cut(XY2DGraphWidget& plot)
        : m_plot(plot)
    {
    }

    void setRect(tarnis::AxisRange x, tarnis::AxisRange y);
    void paint(QPainter& painter);

    /// Selects the edge near a point, for a drag or for its editor. False if no edge is near.
    bool takeEdge(Qt::MouseButton button, const QPoint& point);
    void finishDrag(const QPoint& point);
    /// Moves the edge in the editor, unless the value is not visible.
    void enterEdge(double value);

    /// Opens the range box and the windows that are not open.
    void open();
    /// Recomputes the sums.
    void fill();
    /// Places the box and the windows beside the plot.
    void place();
    void close();
    void raise();
    /// The plots of the windows; null while they are closed. @{
    VectorGraphWidget* plotX() const;
    VectorGraphWidget* plotY() const;
    /// @}

private:
    void openEdgeEditor(const QPoint& point);
    void moveEdge(int edge, double value);
    void fillRangeBox();
    void openWindow(ModelessWidgetManager& windows, bool upright);
    tarnis::CutContent content() const;
    void fillX(VectorGraphWidget& plot, const tarnis::CutSpan& x, const tarnis::CutSpan& y);
    void fillY(VectorGraphWidget& plot, const tarnis::CutSpan& x, const tarnis::CutSpan& y);

    XY2DGraphWidget& m_plot;
};

/// Regions of interest: their window and their rectangles over the map - xy2dgraphwidget_roi.cpp.
class TARNIS_NO_EXPORT XY2DGraphWidget::Regions {
public:
    explicit Regions(XY2DGraphWidget& plot)
        : m_plot(plot)
    {
    }

    void add(double x1, double x2, double y1, double y2);
    void paint(QPainter& painter);
    void makeWindow();
    /// Replaces the window after a change of the range, with the old regions.
    void renewWindow();
    void hideWindow();

private:
    XY2DGraphWidget& m_plot;
};

struct TARNIS_NO_EXPORT XY2DGraphWidget::Parts {
    explicit Parts(XY2DGraphWidget& plot)
        : colors(plot)
        , cut(plot)
        , regions(plot)
    {
    }

    ColourControls colors;
    Cut cut;
    Regions regions;
    tarnis::MapPainter painter; // keeps buffers from one painting to the next
};
