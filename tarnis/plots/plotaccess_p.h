// Access of the library's observers and tools to a plot's protected state: plain reads, and the few writes that have no
// public function.
#pragma once

#include "tarnis/plots/axisrange.h"
#include "tarnis/plots/multivectorgraphwidget.h"
#include "tarnis/plots/raster/colourscale_p.h"
#include "tarnis/plots/vectorgraphwidget.h"
#include "tarnis/plots/xy2dgraphwidget.h"

#include <memory>
#include <optional>

namespace tarnis {

class PlotHooks;
struct MapColouring;
enum class BinReduction;

/// A friend of the plots.
class PlotAccess {
public:
    static std::unique_ptr<PlotHooks>& hooks(XYGraphWidget& plot) { return plot.m_hooks; }
    static PlotHooks* hooks(const XYGraphWidget& plot) { return plot.m_hooks.get(); }

    static AxisRange x(const XYGraphWidget& plot) { return { plot.m_minX, plot.m_maxX }; }
    static AxisRange y(const XYGraphWidget& plot) { return { plot.m_minY, plot.m_maxY }; }
    static AxisRange initialX(const XYGraphWidget& plot) { return { plot.m_initMinX, plot.m_initMaxX }; }
    static AxisRange initialY(const XYGraphWidget& plot) { return { plot.m_initMinY, plot.m_initMaxY }; }
    static bool isAutoX(const XYGraphWidget& plot) { return plot.m_autoScaleX; }
    static bool isAutoY(const XYGraphWidget& plot) { return plot.m_autoScaleY; }
    static bool isManualX(const XYGraphWidget& plot) { return plot.m_manualX; }
    static bool isManualY(const XYGraphWidget& plot) { return plot.m_manualY; }
    static bool isLogY(const XYGraphWidget& plot) { return plot.m_logScaleY; }
    static QRubberBand& rubberBand(XYGraphWidget& plot) { return plot.m_rubberBand; }
    static QRect plotRect(const XYGraphWidget& plot) { return plot.m_graphRect; }
    static QString nameX(const XYGraphWidget& plot) { return plot.m_nameX; }
    static QString nameY(const XYGraphWidget& plot) { return plot.m_nameY; }
    static QString title(const XYGraphWidget& plot) { return plot.m_title; }
    static QString notes(const XYGraphWidget& plot) { return plot.m_notes; }
    static const QMargins& margin(const XYGraphWidget& plot) { return plot.m_margin; }
    static bool isGridShown(const XYGraphWidget& plot) { return plot.m_showGrid; }
    static QAction* rectangleAction(const XYGraphWidget& plot) { return plot.m_actRectangle; }
    static QAction* moveAction(const XYGraphWidget& plot) { return plot.m_actMove; }
    static QAction* gridAction(const XYGraphWidget& plot) { return plot.m_actShowGrid; }
    static int mode(const XYGraphWidget& plot) { return plot.m_mode; }
    static bool isDragging(const XYGraphWidget& plot) { return plot.m_selecting; }
    static QLineEdit* editor(const XYGraphWidget& plot) { return plot.m_edit; }
    static void openEditor(XYGraphWidget& plot, const QPoint& point) { plot.openEditorAt(point); }
    static void dropEditor(XYGraphWidget& plot) { plot.dropEditor(); }
    static double tickOf(const XYGraphWidget& plot, double x) { return plot.m_funcX2Tick(x, plot.m_funcUserData); }

    using TickFunction = double (*)(double, void*);
    static TickFunction tickFunction(const XYGraphWidget& plot) { return plot.m_funcX2Tick; }
    static bool hasTickFunction(const XYGraphWidget& plot);
    static void* tickData(const XYGraphWidget& plot) { return plot.m_funcUserData; }
    /// Whether the name of X is that of the second scale.
    static bool namesSecondScale(const XYGraphWidget& plot);
    /// The name of positions on X, for numbers that are not converted to that scale.
    static QString positionNameX(const XYGraphWidget& plot);
    /// X on the scale that its name and its labels show: an energy on a calibrated plot, otherwise X itself. @{
    static double namedX(const XYGraphWidget& plot, double x) { return namesSecondScale(plot) ? tickOf(plot, x) : x; }
    static AxisRange namedX(const XYGraphWidget& plot, AxisRange x)
    {
        return { namedX(plot, x.min), namedX(plot, x.max) };
    }
    /// @}

    /// The labels that open an editor: left, right, bottom, top end. @{
    static QRect minXLabel(const XYGraphWidget& plot) { return plot.m_labelRectMinX; }
    static QRect maxXLabel(const XYGraphWidget& plot) { return plot.m_labelRectMaxX; }
    static QRect minYLabel(const XYGraphWidget& plot) { return plot.m_labelRectMinY; }
    static QRect maxYLabel(const XYGraphWidget& plot) { return plot.m_labelRectMaxY; }
    /// @}

    // What painting sets: the plot's own, or a style in its place
    struct Layout {
        QRect graph;
        QRect minX, maxX, minY, maxY;
        bool coversPicture = false;
    };
    static Layout layout(const XYGraphWidget& plot);
    static void setLayout(XYGraphWidget& plot, const Layout& layout);
    static void viewTouched(XYGraphWidget& plot) { plot.viewTouched(); }
    /// Sets the range of an automatic axis without notification. @{
    static void fitX(XYGraphWidget& plot, AxisRange range);
    static void fitY(XYGraphWidget& plot, AxisRange range);
    /// @}
    static bool isInitialAutoX(const XYGraphWidget& plot) { return plot.m_initAutoScaleX; }
    static int decimalsX(const XYGraphWidget& plot) { return plot.m_decimalX; }
    static int decimalsY(const XYGraphWidget& plot) { return plot.m_decimalY; }
    static double fromTick(const XYGraphWidget& plot, double tick)
    {
        return plot.m_funcTick2X(tick, plot.m_funcUserData);
    }
    static void resetColourBarRoom(XY2DGraphWidget& map);

    static const QList<double>& samples(const VectorGraphWidget& plot) { return plot.m_data; }
    static double largest(const VectorGraphWidget& plot) { return plot.m_maxValue; }
    static void setCutMap(VectorGraphWidget& plot, XY2DGraphWidget& map) { plot.m_cutMap = &map; }
    /// The axis of a map that a plot of its 1D cut shows as X.
    struct CutAxis {
        XY2DGraphWidget& map;
        Qt::Orientation axis;
    };
    static std::optional<CutAxis> cutAxis(const XYGraphWidget& plot); ///< without a value for any other plot

    static const QList<MultiVectorGraphWidget::Data>& series(const MultiVectorGraphWidget& plot) { return plot.m_data; }
    static MultiVectorGraphWidget::AddType addType(const MultiVectorGraphWidget& plot) { return plot.m_addType; }
    static int groupSize(const MultiVectorGraphWidget& plot) { return plot.groupSize(); }
    static unsigned int resolution(const MultiVectorGraphWidget& plot) { return plot.m_resolution; }
    static bool drawsColumns(const MultiVectorGraphWidget& plot) { return plot.m_columnChart; }
    static bool joinsPoints(const MultiVectorGraphWidget& plot) { return plot.m_connectPoints; }
    static TickFunction positionToX(const MultiVectorGraphWidget& plot) { return plot.m_funcX2Plot; }
    static TickFunction xToPosition(const MultiVectorGraphWidget& plot) { return plot.m_funcPlot2X; }

    static const QList<QList<double>>& rows(const XY2DGraphWidget& map) { return map.m_data; }
    static AxisRange levels(const XY2DGraphWidget& map) { return { map.m_minZ, map.m_maxZ }; }
    /// Sets the limits of the colours, also in the bar. The map is not repainted.
    static void setLevels(XY2DGraphWidget& map, AxisRange levels);
    static bool isLogZ(const XY2DGraphWidget& map) { return map.m_logScale; }
    static bool isCutOn(const XY2DGraphWidget& map);
    static bool offersRegions(const XY2DGraphWidget& map) { return map.m_actRoi != nullptr; }
    // The scale of a colour bar
    struct Bar {
        AxisRange range;
        bool isLog = false;
        bool isSquareRoot = false;
        int ticks = 10;
        QList<double> positions;
        QList<QColor> colors;
    };
    static Bar bar(const ColorBarWidget& bar);

    static ColorBarWidget& colourBar(const XY2DGraphWidget& map) { return *map.m_colorBar; }
    static void openColourBarMenu(XY2DGraphWidget& map, const QPoint& globalPosition);
    /// Widens the room below the plot; the plot is not repainted.
    static void addBottomMargin(XYGraphWidget& plot, int pixels)
    {
        plot.m_margin.setBottom(plot.m_margin.bottom() + pixels);
    }
    /// The tools' settings for a map's colours, created if missing. The map is not repainted.
    static MapColouring& colouring(XY2DGraphWidget& map);
    /// Null if there are none.
    static const MapColouring* colouring(const XY2DGraphWidget& map) { return map.m_colouring.get(); }
    /// Shows the tools' colours in the bar. If there are none, returns false, and the bar is as without tools.
    static bool feedChosenColours(XY2DGraphWidget& map);
    /// Shows the colours in use in the bar and repaints it.
    static void showColours(XY2DGraphWidget& map);
    /// The scale that the map is painted with.
    static ColourScale colourScale(const XY2DGraphWidget& map);
    /// Restores the five points, for this map and for all maps without their own settings.
    static void dropColours(XY2DGraphWidget& map);
    /// Reserves space for a tool between plot rectangle and colour bar.
    static void setBesideBar(XY2DGraphWidget& map, int width);
    /// As above without a new layout of the widget, for a picture. Returns the previous width.
    static int reserveBesideBar(XY2DGraphWidget& map, int width);
    static void setReduction(XY2DGraphWidget& map, BinReduction reduction);
    /// Whether sums or means of bins may be shown in place of the bins. They depend on the view and have other colours.
    static bool showsSumsOrMeans(const XY2DGraphWidget& map);
    /// The values that the colours show: the bins, or the sums or means in their place, and 0 elsewhere.
    static QList<QList<double>> shownRows(const XY2DGraphWidget& map);
    static void setSquareRoot(XY2DGraphWidget& map, bool on);
    /// Replaces the five points of all maps; nothing is repainted.
    static void setSharedColours(const ScaleColours& colors);
    static ScaleColours sharedColours();
    struct MapAxis {
        double step = 0.0;
        unsigned int resolution = 1;
    };
    static MapAxis mapAxisX(const XY2DGraphWidget& map);
    static MapAxis mapAxisY(const XY2DGraphWidget& map);
    static void openLimitEditor(XY2DGraphWidget& map, bool isUpper);
};

} // namespace tarnis
