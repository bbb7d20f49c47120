// Drawing over a plot's picture.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QRegion>

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

    /// Repaints `area`, and what the overlay has drawn before; areas are in frame coordinates. A pointer move then
    /// costs the pixels that change. Like updateOverlay() until noteDrawn() has been called.
    void updateOverlayArea(const QRegion& area);
    /// For a paintOverlay() that reports each time where it has drawn, even if nowhere. Unless its place depends on
    /// other overlays, it is then left out of repaints that do not touch this area.
    void noteDrawn(const QPainter& painter, const QRegion& area, bool dependsOnOthers = false);

private:
    friend class PlotHooks;
    TARNIS_NO_EXPORT bool canUpdateArea() const;

    XYGraphWidget* m_plot = nullptr;
    int m_zOrder = 0;
    QRegion m_area; // drawn on the widget, or about to be
    bool m_isAreaKnown = false;
    bool m_dependsOnOthers = false;
};

} // namespace tarnis
