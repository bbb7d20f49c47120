// Drawing over a plot's picture.
#pragma once

#include <tarnis/tarnis_export.h>

class QPainter;
class XYGraphWidget;

namespace tarnis {

class PlotHooks;
class PlotMapping;

/// A drawing over the picture of one plot. It is drawn after the cached picture, so that a change of the overlay does
/// not redraw the data. It also appears in saved and printed pictures. Without overlays there is no overhead. GUI
/// thread only.
class TARNIS_EXPORT PlotOverlay {
public:
    /// Attaches to the plot. Overlays with a larger `zOrder` are drawn later; with equal values, in the order of
    /// attachment. Null causes a warning, and nothing is drawn.
    explicit PlotOverlay(XYGraphWidget* plot, int zOrder = 0);
    PlotOverlay(const PlotOverlay&) = delete;
    PlotOverlay& operator=(const PlotOverlay&) = delete;
    /// Detaches and repaints the plot.
    virtual ~PlotOverlay();

    int zOrder() const { return m_zOrder; } ///< as given
    /// Repaints the overlays over the cached picture of the data.
    void updateOverlay();

    /// Draws all overlays of the plot, as they appear in a saved picture. The painter uses frame coordinates. For file
    /// writers that paint the plot themselves.
    static void paintAll(const XYGraphWidget& plot, QPainter& painter);

protected:
    /// Draws the overlay. The painter uses frame coordinates, rotated with the plot, and is not clipped. Its state is
    /// restored afterwards. The mapping is valid.
    virtual void paintOverlay(QPainter& painter, const PlotMapping& mapping) = 0;
    /// Whether the drawing appears in saved and printed pictures. True by default.
    virtual bool isSaved() const;

private:
    friend class PlotHooks;
    XYGraphWidget* m_plot = nullptr;
    int m_zOrder = 0;
};

} // namespace tarnis
