#include "plotwidgets.h"

#include "curvesplot.h"
#include "figurestyle.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/colourmaps.h>

#include <QHash>

#include <algorithm>
#include <array>
#include <cmath>

namespace cli {

namespace {

using tarnis::Dataset;

QString nameWithUnit(QString name, const QString& unit)
{
    if (name.isEmpty())
        return unit;
    name[0] = name.at(0).toUpper();
    return unit.isEmpty() ? name : QStringLiteral("%1 [%2]").arg(name, unit);
}

/// The name of an axis; an axis without values counts bins.
QString axisName(const tarnis::DataAxis& axis, const QString& bins)
{
    if (!axis.name.isEmpty() || !axis.unit.isEmpty())
        return nameWithUnit(axis.name, axis.unit);
    return axis.values.empty() ? bins : QString();
}

/// Whether all bins have equal width, within the rounding of written centres.
bool areEven(const std::vector<double>& edges)
{
    const double width = (edges.back() - edges.front()) / static_cast<double>(edges.size() - 1);
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        if (!(std::fabs(edges[i + 1] - edges[i] - width) <= 1e-4 * std::fabs(width)))
            return false;
    }
    return width > 0.0;
}

double largest(const std::vector<double>& values)
{
    double result = 0.0;
    for (const double value : values)
        result = std::isfinite(value) ? std::max(result, value) : result;
    return result;
}

/// Infinite values count as missing, because a line to them would leave the plot.
QList<double> rowOf(const Dataset& data, qsizetype row)
{
    const auto begin = data.values.begin() + row * data.columns;
    QList<double> values { begin, begin + data.columns };
    std::replace_if(
        values.begin(), values.end(), [](double value) { return !std::isfinite(value); }, std::nan(""));
    return values;
}

// The plot's axis function has no argument for its data. The program draws only one plot.
std::vector<double> unevenCentres;

double centreOfPosition(double position, void* /*data*/)
{
    const auto last = static_cast<double>(unevenCentres.size() - 1);
    const double index = std::clamp(std::floor(position), 0.0, last);
    return unevenCentres[static_cast<std::size_t>(index)];
}

double positionOfCentre(double centre, void* /*data*/)
{
    const auto place = std::lower_bound(unevenCentres.begin(), unevenCentres.end(), centre);
    return static_cast<double>(place - unevenCentres.begin());
}

void setRanges(XYGraphWidget& plot, const FigureOptions& options)
{
    if (options.x) {
        plot.onAutoScaleX(false);
        plot.setMinMaxX(options.x->first, options.x->last);
    }
    if (options.y) {
        plot.onAutoScaleY(false);
        plot.setMinMaxY(options.y->first, options.y->last);
    }
}

/// Curves of different quantities have no common axis.
Outcome checkUnits(const std::vector<Dataset>& data)
{
    const Dataset* known = nullptr; // the first with a unit
    for (const Dataset& other : data) {
        if (other.x.unit.isEmpty())
            continue;
        if (known != nullptr && known->x.unit != other.x.unit) {
            return Failure { .code = WrongUsage,
                .text = QStringLiteral("'%1' is over %2 and '%3' over %4: draw them one by one")
                            .arg(known->title, known->x.unit, other.title, other.x.unit) };
        }
        known = &other;
    }
    return std::nullopt;
}

void setAxisX(MultiVectorGraphWidget& plot, const Dataset& data)
{
    if (data.x.values.empty())
        return;
    const std::vector<double> edges = tarnis::edgesOf(data.x, data.columns);
    plot.initManualX(edges.front(), edges.back());
    plot.setDecimalX(3);
    if (areEven(edges))
        return;
    unevenCentres = tarnis::centresOf(data.x, data.columns);
    plot.setFuncX2Plot(centreOfPosition, positionOfCentre);
}

/// Uses the library's plot of curves, which is exact and supports tools.
std::unique_ptr<XYGraphWidget> makeCurve(const Dataset& spectrum, const FigureOptions& options)
{
    auto plot = std::make_unique<MultiVectorGraphWidget>();
    plot->resize(options.size);
    const double top = largest(spectrum.values);
    plot->init(axisName(spectrum.x, "Channel"), nameWithUnit(spectrum.name, spectrum.unit), double(spectrum.columns),
        top, true, true);
    plot->setDecimalY(3);
    setAxisX(*plot, spectrum);
    plot->m_groupSize = 1;
    plot->resizeData(1);
    plot->setData(0, rowOf(spectrum, 0), top);
    plot->setColor(0, Qt::white);
    applyTheme(*plot, options);
    plot->setLogScaleY(options.log);
    plot->onAutoScaleX(true);
    setRanges(*plot, options);
    return plot;
}

std::unique_ptr<XYGraphWidget> makeCurves(const std::vector<Dataset>& data, const FigureOptions& options)
{
    const auto named = std::find_if(data.begin(), data.end(), [](const Dataset& one) { return !one.x.unit.isEmpty(); });
    const Dataset& axis = named == data.end() ? data.front() : *named;
    auto plot = std::make_unique<CurvesPlot>(data, curvesStyle(options));
    plot->resize(options.size);
    plot->init(axisName(axis.x, "Channel"), nameWithUnit(data.front().name, data.front().unit), plot->highest(),
        plot->largest(), true, true);
    plot->initManualX(plot->lowest(), plot->highest());
    plot->setDecimalX(3);
    plot->setDecimalY(3);
    applyTheme(*plot, options);
    plot->setLogScaleY(options.log);
    if (options.theme) {
        const Range<double> y = roomyRange(*plot, options.log);
        plot->onAutoScaleY(false);
        plot->setMinMaxY(y.first, y.last);
    } else {
        plot->adjustAxisY(plot->largest());
    }
    setRanges(*plot, options);
    return plot;
}

using Colours = std::array<const char*, 5>; // from the smallest to the largest value

/// Colour maps of five points, in addition to those of tarnis::ColourMaps.
const QHash<QString, Colours>& colourMaps()
{
    static const QHash<QString, Colours> maps {
        { "rainbow", { "#0000ff", "#00ffff", "#00ff00", "#ffff00", "#ff0000" } },
        { "hot", { "#000000", "#b30000", "#ff6600", "#ffcc00", "#ffffff" } },
    };
    return maps;
}

Outcome setColours(XY2DGraphWidget& plot, const QString& name)
{
    if (name.isNull())
        return std::nullopt;
    const QStringList tables { QStringLiteral("viridis"), QStringLiteral("cividis"), QStringLiteral("magma"),
        QStringLiteral("inferno"), QStringLiteral("turbo"), QStringLiteral("greys"), QStringLiteral("diverging") };
    if (tables.contains(name)) {
        tarnis::ColourMaps::apply(plot, name);
        return std::nullopt;
    }
    const auto map = colourMaps().constFind(name);
    if (map == colourMaps().constEnd()) {
        QStringList known = colourMaps().keys() + tables;
        known.sort();
        return Failure { .code = WrongUsage,
            .text = QStringLiteral("--map '%1' is not one of %2").arg(name, known.join(QStringLiteral(", "))) };
    }
    const Colours& c = *map;
    plot.updateColor(
        QColor(c[4]), QColor(c[3]), QColor(c[2]), QColor(c[1]), QColor(c[0]), XYGraphWidget::m_backGroundColor);
    return std::nullopt;
}

/// The quantile of sorted values, interpolated linearly.
double quantile(const std::vector<double>& sorted, double percent)
{
    const double place = percent / 100.0 * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    const std::size_t above = std::min(below + 1, sorted.size() - 1);
    return sorted[below] + (place - static_cast<double>(below)) * (sorted[above] - sorted[below]);
}

void setLevels(XY2DGraphWidget& plot, const Dataset& data, Range<double> percent)
{
    std::vector<double> filled;
    std::copy_if(data.values.begin(), data.values.end(), std::back_inserter(filled),
        [](double value) { return std::isfinite(value) && value != 0.0; });
    if (filled.empty())
        return;
    std::sort(filled.begin(), filled.end());
    plot.onAutoScaleZToggled(false);
    plot.onMinZChanged(quantile(filled, percent.first));
    plot.onMaxZChanged(quantile(filled, percent.last));
}

Result<std::unique_ptr<XYGraphWidget>> makeMap(const Dataset& data, const FigureOptions& options)
{
    const std::vector<double> x = tarnis::edgesOf(data.x, data.columns);
    const std::vector<double> y = tarnis::edgesOf(data.y, data.rows);
    if (!areEven(x) || !areEven(y)) {
        return Failure { .code = FileError,
            .text =
                QStringLiteral("cannot draw '%1': the bins of a map must be equally wide and rise").arg(data.title) };
    }
    auto plot = std::make_unique<XY2DGraphWidget>();
    plot->resize(options.size);
    plot->init(axisName(data.x, "Column"), axisName(data.y, "Row"), x.back(), y.back(), false, false);
    plot->initManualX(x.front(), x.back());
    plot->initManualY(y.front(), y.back());
    plot->setDecimalX(3);
    plot->setDecimalY(3);
    applyTheme(*plot, options, nameWithUnit(data.name, data.unit));
    if (Outcome wrong = setColours(*plot, options.map))
        return *wrong;
    for (qsizetype row = 0; row < data.rows; ++row) {
        const QList<double> values = rowOf(data, row);
        plot->setData(static_cast<int>(row), values, largest({ values.begin(), values.end() }), false);
    }
    plot->onLogScale(options.log);
    if (options.levels)
        setLevels(*plot, data, *options.levels);
    setRanges(*plot, options);
    return std::unique_ptr<XYGraphWidget>(std::move(plot));
}

} // namespace

Result<std::unique_ptr<XYGraphWidget>> makePlot(const std::vector<Dataset>& data, const FigureOptions& options)
{
    const bool hasMap =
        std::any_of(data.begin(), data.end(), [](const Dataset& one) { return one.kind == Dataset::Kind::Map; });
    if (hasMap && data.size() > 1)
        return Failure { .code = WrongUsage, .text = "a map is drawn alone: give one file" };
    if (hasMap && options.residuals)
        return Failure { .code = WrongUsage, .text = "--residuals is for spectra, and this is a map" };
    if (!hasMap && (!options.map.isNull() || options.levels))
        return Failure { .code = WrongUsage, .text = "--map and --levels are for maps, and these are spectra" };
    if (options.residuals && (data.size() > 1 || data.front().rows < 2))
        return Failure { .code = WrongUsage, .text = "--residuals needs one file with two curves: counts and a model" };
    if (hasMap)
        return makeMap(data.front(), options);
    if (Outcome wrong = checkUnits(data))
        return *wrong;
    return data.size() == 1 && data.front().rows == 1 ? makeCurve(data.front(), options) : makeCurves(data, options);
}

} // namespace cli
