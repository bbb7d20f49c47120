// Drawing over a plot's picture.
#pragma once

#include <tarnis/tarnis_export.h>

class QPainter;
class XYGraphWidget;

namespace tarnis {

class PlotHooks;
class PlotMapping;

/// A drawing over the picture of one plot. It is drawn straight after the cached picture, so that a change of the
/// overlay never draws the data, and it appears in saved and printed pictures too. Without overlays a plot does nothing
/// for them. GUI thread only.
class TARNIS_EXPORT PlotOverlay {
public:
    /// Attaches to the plot. Overlays with a larger `zOrder` are drawn later; of equal ones the earlier attached first.
    /// Null is reported as a warning, and nothing is drawn.
    explicit PlotOverlay(XYGraphWidget* plot, int zOrder = 0);
    PlotOverlay(const PlotOverlay&) = delete;
    PlotOverlay& operator=(const PlotOverlay&) = delete;
    /// Detaches, and repaints without the drawing.
    virtual ~PlotOverlay();

    int zOrder() const { return m_zOrder; } ///< as given
    /// Repaints the overlays, on the cached picture of the data.
    void updateOverlay();

    /// Draws all overlays of the plot, as they appear in a saved picture. The painter's coordinates are the frame's;
    /// for writers of files that paint the plot themselves.
    static void paintAll(const XYGraphWidget& plot, QPainter& painter);

protected:
    /// Draws. The painter counts in the frame's coordinates, turned with the plot, and is not clipped. Its state is
    /// restored afterwards. The mapping is valid.
    virtual void paintOverlay(QPainter& painter, const PlotMapping& mapping) = 0;
    /// Whether the drawing belongs into saved and printed pictures. True here.
    virtual bool isSaved() const;

private:
    friend class PlotHooks;
    XYGraphWidget* m_plot = nullptr;
    int m_zOrder = 0;
};

} // namespace tarnis
