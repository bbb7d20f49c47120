#include "figurestyle.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

// Distinguishable on black, also for colour-blind readers (after Okabe and Ito, "Color Universal Design").
constexpr QRgb classicColours[] { 0xffffff, 0x56b4e9, 0xe69f00, 0x00b383, 0xf0e442, 0xff7f50, 0xcc79a7, 0x9fa8ff };

// A style enlarges texts up to twice above this size. Figures can be larger than windows.
constexpr double plainWidth = 760.0;
constexpr double plainHeight = 480.0;
constexpr double ownGrowth = 2.0;
constexpr double maxGrowth = 6.0;

constexpr double room = 0.06; // margin beyond the values, as a fraction of the range

double growthOf(QSize size)
{
    return std::clamp(std::min(size.width() / plainWidth, size.height() / plainHeight), 1.0, maxGrowth);
}

} // namespace

void applyTheme(XYGraphWidget& plot, const FigureOptions& options, const QString& unitZ)
{
    if (!options.theme)
        return;
    auto* const style = new tarnis::PlotStyle(&plot, *options.theme); // owned by the plot
    style->setTextScale(std::max(growthOf(options.size) / ownGrowth, 1.0));
    style->setUnits({}, {}, unitZ);
    plot.setTitle(options.title);
}

CurvesStyle curvesStyle(const FigureOptions& options)
{
    CurvesStyle style;
    style.residuals = options.residuals;
    if (!options.theme) {
        for (const QRgb colour : classicColours)
            style.colours.emplace_back(colour);
        style.surround = XYGraphWidget::m_backGroundColor;
        style.text = Qt::white;
        return style;
    }
    using Style = tarnis::PlotStyle;
    for (int i = 0; i < Style::seriesColourCount(); ++i)
        style.colours.push_back(Style::seriesColour(*options.theme, i));
    style.surround = Style::backgroundColour(*options.theme);
    style.text = Style::textColour(*options.theme);
    style.growth = growthOf(options.size);
    style.lineWidth = (*options.theme == Style::Theme::HighContrast ? 2.5 : 1.3) * style.growth;
    return style;
}

Range<double> roomyRange(const CurvesPlot& curves, bool isLog)
{
    if (!isLog) {
        const double span = curves.largest() - curves.smallest();
        if (!(span > 0.0))
            return { .first = 0.0, .last = 1.0 };
        const double below = curves.smallest() < 0.0 ? room * span : 0.0;
        return { .first = curves.smallest() - below, .last = curves.largest() + room * span };
    }
    if (curves.smallestAboveZero() == 0.0)
        return { .first = 0.5, .last = 10.0 };
    const double low = curves.smallestAboveZero() / 2.0; // makes a single count visible
    return { .first = low, .last = curves.largest() * std::pow(curves.largest() / low, room) };
}

} // namespace cli
