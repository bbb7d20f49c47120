#include "tarnis/tools/plotstyle.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/tools/style/stylepainter_p.h"

#include <QMenu>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr double thinnestLine = 0.5;
constexpr double thickestLine = 10.0;
constexpr double smallestText = 0.5;
constexpr double largestText = 3.0;

void refresh(XYGraphWidget& plot)
{
    plot.refreshPixmap();
    if (const auto* const map = qobject_cast<const XY2DGraphWidget*>(&plot))
        PlotAccess::colourBar(*map).refreshPixmap();
}

} // namespace

PlotStyle::PlotStyle(XYGraphWidget* plot, Theme theme)
    : InteractiveTool(plot, Nothing)
{
    if (plot == nullptr)
        return;
    m_painter = std::make_unique<StylePainter>(*plot, theme);
    PlotHooks::of(*plot).add(*m_painter);
    makeActions();
    PlotAccess::viewTouched(*plot);
    refresh(*plot);
}

PlotStyle::~PlotStyle()
{
    XYGraphWidget* const attached = plot();
    if (attached == nullptr)
        return;
    PlotHooks::of(*attached).remove(*m_painter);
    // Restores the ranges that the plot would have had.
    if (PlotAccess::isAutoX(*attached))
        attached->onAutoScaleX(true);
    if (PlotAccess::isAutoY(*attached))
        attached->onAutoScaleY(true);
    if (auto* const map = qobject_cast<XY2DGraphWidget*>(attached))
        PlotAccess::resetColourBarRoom(*map);
    refresh(*attached);
}

bool PlotStyle::isLineWidth(double pixels)
{
    return pixels >= thinnestLine && pixels <= thickestLine;
}

bool PlotStyle::isTextScale(double factor)
{
    return factor >= smallestText && factor <= largestText;
}

void PlotStyle::changed()
{
    if (plot() != nullptr)
        refresh(*plot());
    Q_EMIT styleChanged();
}

const StyleOptions& PlotStyle::options() const
{
    static const StyleOptions none;
    if (m_painter == nullptr)
        return none;
    return m_painter->options;
}

template <typename Value> void PlotStyle::set(Value StyleOptions::*option, const Value& value)
{
    if (m_painter == nullptr || m_painter->options.*option == value)
        return;
    m_painter->options.*option = value;
    changed();
}

PlotStyle::Theme PlotStyle::theme() const
{
    return options().theme;
}

PlotStyle::CurveForm PlotStyle::curveForm() const
{
    return options().form;
}

PlotStyle::NumberForm PlotStyle::numberForm() const
{
    return options().numbers;
}

double PlotStyle::lineWidth() const
{
    return options().lineWidth;
}

double PlotStyle::textScale() const
{
    return options().textScale;
}

bool PlotStyle::isGridShown() const
{
    return options().grid;
}

bool PlotStyle::isLegendShown() const
{
    return options().legend;
}

bool PlotStyle::isTitleShown() const
{
    return options().title;
}

bool PlotStyle::areBinsSquare() const
{
    return options().squareBins;
}

void PlotStyle::setTheme(PlotStyle::Theme theme)
{
    set(&StyleOptions::theme, theme);
}

void PlotStyle::setCurveForm(PlotStyle::CurveForm form)
{
    set(&StyleOptions::form, form);
}

void PlotStyle::setNumberForm(PlotStyle::NumberForm form)
{
    set(&StyleOptions::numbers, form);
}

void PlotStyle::setLineWidth(double pixels)
{
    if (!std::isfinite(pixels))
        return;
    set(&StyleOptions::lineWidth, pixels <= 0.0 ? 0.0 : std::clamp(pixels, thinnestLine, thickestLine));
}

void PlotStyle::setTextScale(double factor)
{
    if (!std::isfinite(factor))
        return;
    set(&StyleOptions::textScale, std::clamp(factor, smallestText, largestText));
}

void PlotStyle::setGridShown(bool shown)
{
    set(&StyleOptions::grid, shown);
}

void PlotStyle::setLegendShown(bool shown)
{
    set(&StyleOptions::legend, shown);
}

void PlotStyle::setTitleShown(bool shown)
{
    set(&StyleOptions::title, shown);
}

void PlotStyle::setBinsSquare(bool square)
{
    set(&StyleOptions::squareBins, square);
}

void PlotStyle::setUnits(const QString& x, const QString& y, const QString& z)
{
    if (m_painter == nullptr || (x == unitX() && y == unitY() && z == unitZ()))
        return;
    m_painter->options.unitX = x;
    m_painter->options.unitY = y;
    m_painter->options.unitZ = z;
    changed();
}

QString PlotStyle::unitX() const
{
    return options().unitX;
}

QString PlotStyle::unitY() const
{
    return options().unitY;
}

QString PlotStyle::unitZ() const
{
    return options().unitZ;
}

QColor PlotStyle::seriesColour(Theme theme, int number)
{
    return styleTheme(theme).series.at(static_cast<std::size_t>(std::max(number, 0) % seriesColourCount()));
}

int PlotStyle::seriesColourCount()
{
    return static_cast<int>(std::tuple_size_v<decltype(StyleTheme::series)>);
}

QColor PlotStyle::backgroundColour(Theme theme)
{
    return styleTheme(theme).background;
}

QColor PlotStyle::textColour(Theme theme)
{
    return styleTheme(theme).text;
}

} // namespace tarnis
