#include "tarnis/plots/plotaccess_p.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/plotobserver.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"

#include <QAction>
#include <QPushButton>

#include <utility>

namespace tarnis {

bool PlotAccess::isCutOn(const XY2DGraphWidget& map)
{
    return map.m_act1dCut->isChecked() || map.m_1dCutActive;
}

std::optional<PlotAccess::CutAxis> PlotAccess::cutAxis(const XYGraphWidget& plot)
{
    const auto* const cut = qobject_cast<const VectorGraphWidget*>(&plot);
    if (cut == nullptr || cut->m_cutMap.isNull())
        return std::nullopt;
    XY2DGraphWidget& map = *cut->m_cutMap;
    if (map.m_parts->cut.plotX() == cut)
        return CutAxis { map, Qt::Horizontal };
    if (map.m_parts->cut.plotY() == cut)
        return CutAxis { map, Qt::Vertical };
    return std::nullopt; // its window is being closed
}

ColourScale PlotAccess::colourScale(const XY2DGraphWidget& map)
{
    return map.m_parts->colors.scale();
}

void PlotAccess::openColourBarMenu(XY2DGraphWidget& map, const QPoint& globalPosition)
{
    map.m_parts->colors.openMenu(globalPosition);
}

PlotAccess::MapAxis PlotAccess::mapAxisX(const XY2DGraphWidget& map)
{
    // The step's getter does not modify the map, but is not declared const.
    return { const_cast<XY2DGraphWidget&>(map).getStepX(), map.m_resolutionX };
}

PlotAccess::MapAxis PlotAccess::mapAxisY(const XY2DGraphWidget& map)
{
    return { const_cast<XY2DGraphWidget&>(map).getStepY(), map.m_resolutionY };
}

MapColouring& PlotAccess::colouring(XY2DGraphWidget& map)
{
    if (map.m_colouring == nullptr)
        map.m_colouring = std::make_unique<MapColouring>();
    return *map.m_colouring;
}

bool PlotAccess::feedChosenColours(XY2DGraphWidget& map)
{
    constexpr int tableSteps = 32; // steps of the gradient in the bar
    ColorBarWidget& bar = *map.m_colorBar;
    const MapColouring* const chosen = map.m_colouring.get();
    bar.m_squareRoot = chosen != nullptr && chosen->squareRoot;
    const ColourTable* const table = tableInUse(chosen);
    if (table == nullptr && bar.m_positions.size() == tableSteps + 1) {
        bar.m_positions.clear();
        bar.m_colors.clear();
    }
    if (table != nullptr) {
        constexpr std::size_t last = std::tuple_size_v<ColourTable> - 1;
        bar.m_positions.clear();
        bar.m_colors.clear();
        for (std::size_t i = 0; i <= tableSteps; ++i) {
            bar.m_positions.append(static_cast<double>(i) / tableSteps);
            bar.m_colors.append(QColor((*table)[i * last / tableSteps]));
        }
        return true;
    }
    if (chosen == nullptr || !chosen->colors)
        return false;
    for (std::size_t i = 0; i < chosen->colors->size(); ++i)
        bar.updatePos(0.25 * static_cast<double>(i), (*chosen->colors)[i]);
    return true;
}

void PlotAccess::showColours(XY2DGraphWidget& map)
{
    map.m_parts->colors.feedBar();
    map.m_colorBar->refreshPixmap();
}

void PlotAccess::dropColours(XY2DGraphWidget& map)
{
    setSharedColourTable(nullptr);
    if (map.m_colouring == nullptr)
        return;
    map.m_colouring->table = nullptr;
    map.m_colouring->colors.reset();
}

int PlotAccess::reserveBesideBar(XY2DGraphWidget& map, int width)
{
    MapColouring& chosen = colouring(map);
    map.m_margin.setRight(map.m_margin.right() + width - chosen.besideBar);
    return std::exchange(chosen.besideBar, width);
}

void PlotAccess::setBesideBar(XY2DGraphWidget& map, int width)
{
    reserveBesideBar(map, width);
    map.adjustWidgetPosition(map.size());
    map.refreshPixmap();
}

void PlotAccess::setLevels(XY2DGraphWidget& map, AxisRange levels)
{
    map.m_minZ = levels.min;
    map.m_maxZ = levels.max;
    map.m_colorBar->setMin(levels.min);
    map.m_colorBar->setMax(levels.max);
}

void PlotAccess::setReduction(XY2DGraphWidget& map, BinReduction reduction)
{
    colouring(map).reduction = reduction;
    map.refreshPixmap();
    PlotObserver::announceData(map); // other values are shown
}

bool PlotAccess::showsSumsOrMeans(const XY2DGraphWidget& map)
{
    const BinReduction reduction = map.m_colouring != nullptr ? map.m_colouring->reduction : BinReduction::First;
    return reduction == BinReduction::Sum || reduction == BinReduction::Mean;
}

QList<QList<double>> PlotAccess::shownRows(const XY2DGraphWidget& map)
{
    const auto& colors = map.m_parts->colors;
    if (!showsSumsOrMeans(map) || map.m_data.isEmpty() || map.m_graphRect.isEmpty())
        return map.m_data;
    return colors.reducedBins(colors.geometry(map.m_graphRect)).value_or(map.m_data);
}

void PlotAccess::setSquareRoot(XY2DGraphWidget& map, bool on)
{
    colouring(map).squareRoot = on;
    map.refreshPixmap();
    map.m_colorBar->refreshPixmap();
}

void PlotAccess::setSharedColours(const ScaleColours& colors)
{
    XY2DGraphWidget::colMin = colors[0];
    XY2DGraphWidget::colHalfMin = colors[1];
    XY2DGraphWidget::colHalf = colors[2];
    XY2DGraphWidget::colHalfMax = colors[3];
    XY2DGraphWidget::colMax = colors[4];
}

ScaleColours PlotAccess::sharedColours()
{
    return { XY2DGraphWidget::colMin, XY2DGraphWidget::colHalfMin, XY2DGraphWidget::colHalf,
        XY2DGraphWidget::colHalfMax, XY2DGraphWidget::colMax };
}

PlotAccess::Layout PlotAccess::layout(const XYGraphWidget& plot)
{
    return { plot.m_graphRect, plot.m_labelRectMinX, plot.m_labelRectMaxX, plot.m_labelRectMinY, plot.m_labelRectMaxY,
        plot.m_coversPicture };
}

void PlotAccess::setLayout(XYGraphWidget& plot, const Layout& layout)
{
    plot.m_graphRect = layout.graph;
    plot.m_labelRectMinX = layout.minX;
    plot.m_labelRectMaxX = layout.maxX;
    plot.m_labelRectMinY = layout.minY;
    plot.m_labelRectMaxY = layout.maxY;
    plot.m_coversPicture = layout.coversPicture;
}

void PlotAccess::fitX(XYGraphWidget& plot, AxisRange range)
{
    plot.m_minX = range.min;
    plot.m_maxX = range.max;
}

void PlotAccess::fitY(XYGraphWidget& plot, AxisRange range)
{
    plot.m_minY = range.min;
    plot.m_maxY = range.max;
}

void PlotAccess::resetColourBarRoom(XY2DGraphWidget& map)
{
    map.onColorBarSizeChanging(map.m_autoButton->width() + besideAutoButton);
}

PlotAccess::Bar PlotAccess::bar(const ColorBarWidget& bar)
{
    return { { bar.m_min, bar.m_max }, bar.m_logScale, bar.m_squareRoot && !bar.m_logScale, bar.m_ticks,
        bar.m_positions, bar.m_colors };
}

void PlotAccess::openLimitEditor(XY2DGraphWidget& map, bool isUpper)
{
    if (map.m_colorBar->isAutoScale())
        map.onAutoScaleZToggled(false);
    map.m_colorBar->openEditor(isUpper);
}

} // namespace tarnis
