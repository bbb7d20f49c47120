#include "tarnis/tools/panels/plotspectra_p.h"

#include "tarnis/plots/curvenames.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotstyling_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

/// Whether bins with such edges are in falling order, as in a map's cut along Y.
bool isFalling(AxisRange edges)
{
    return edges.max < edges.min;
}

/// Bins of the plot's X axis, in ascending order. With a plot function they are unequal.
void setAxis(PlotSpectrum& spectrum, const PlotMapping& mapping, bool isUnequal)
{
    const qsizetype last = spectrum.contents.size() - 1;
    const bool isReversed = isFalling(mapping.columnEdges(0));
    if (isReversed)
        std::reverse(spectrum.contents.begin(), spectrum.contents.end());
    const AxisRange lowest = mapping.columnEdges(isReversed ? last : 0);
    spectrum.width = std::abs(lowest.max - lowest.min);
    spectrum.firstCentre = lowest.min + (lowest.max - lowest.min) / 2.0;
    if (!isUnequal)
        return;
    auto edges = std::make_shared<std::vector<double>>();
    edges->reserve(static_cast<std::size_t>(spectrum.contents.size()) + 1);
    for (qsizetype i = 0; i <= last; ++i)
        edges->push_back(mapping.columnEdges(i).min);
    edges->push_back(mapping.columnEdges(last).max);
    if (isReversed)
        std::reverse(edges->begin(), edges->end());
    spectrum.edges = std::move(edges);
}

struct NamedCurve {
    QString name;
    SummedCurve curve;
    QColor colour; ///< as drawn
};

QList<NamedCurve> visibleCurves(const MultiVectorGraphWidget& plot)
{
    QList<NamedCurve> visible;
    const QList<Series>& series = PlotAccess::series(plot);
    const QList<SummedCurve> curves = curvesOf(series, PlotAccess::addType(plot), PlotAccess::groupSize(plot));
    const QStringList names = curveNames(plot);
    for (qsizetype i = 0; i < curves.size(); ++i) {
        const SummedCurve& curve = curves.at(i);
        if (curve.enable && !curve.records.isEmpty() && lengthOf(series, curve) > 0)
            visible.append({ names.value(i), curve, shownCurveColour(plot, static_cast<int>(i), curve.colour) });
    }
    if (visible.size() == 1)
        visible.first().name.clear();
    return visible;
}

QList<PlotSpectrum> spectraOfCurves(const MultiVectorGraphWidget& plot, const PlotMapping& mapping)
{
    QList<PlotSpectrum> spectra;
    for (const NamedCurve& visible : visibleCurves(plot)) {
        const SummedCurve& curve = visible.curve;
        PlotSpectrum spectrum { visible.name, visible.colour, wholeSums(PlotAccess::series(plot), curve), {} };
        setAxis(spectrum, mapping, PlotAccess::positionToX(plot) != nullptr);
        spectra.append(std::move(spectrum));
    }
    return spectra;
}

} // namespace

BinnedData PlotSpectrum::data() const
{
    BinnedData data;
    data.contents = { contents.constData(), static_cast<std::size_t>(contents.size()) };
    if (edges)
        data.edges = *edges;
    data.firstCentre = firstCentre;
    data.width = width;
    return data;
}

QList<PlotSpectrum> spectraOf(const XYGraphWidget& plot)
{
    const PlotMapping mapping = PlotMapping::of(plot);
    if (const auto* const curves = qobject_cast<const MultiVectorGraphWidget*>(&plot))
        return spectraOfCurves(*curves, mapping);
    const auto* const curve = qobject_cast<const VectorGraphWidget*>(&plot);
    if (curve == nullptr || PlotAccess::samples(*curve).isEmpty())
        return {};
    PlotSpectrum spectrum { {}, Qt::white, PlotAccess::samples(*curve), {} };
    setAxis(spectrum, mapping, false);
    return { spectrum };
}

QStringList spectrumNames(const XYGraphWidget& plot)
{
    QStringList names;
    if (const auto* const curves = qobject_cast<const MultiVectorGraphWidget*>(&plot)) {
        for (const NamedCurve& visible : visibleCurves(*curves))
            names << visible.name;
    } else if (const auto* const curve = qobject_cast<const VectorGraphWidget*>(&plot)) {
        if (!PlotAccess::samples(*curve).isEmpty())
            names << QString();
    }
    return names;
}

MapContents mapOf(const XYGraphWidget& plot)
{
    MapContents result;
    const auto* const map = qobject_cast<const XY2DGraphWidget*>(&plot);
    const PlotMapping mapping = PlotMapping::of(plot);
    const auto columns = static_cast<std::size_t>(mapping.columns());
    if (map == nullptr || columns == 0 || mapping.rows() == 0)
        return result;
    const QList<QList<double>>& rows = PlotAccess::rows(*map);
    result.contents.resize(columns * static_cast<std::size_t>(rows.size()));
    const bool isFallingX = isFalling(mapping.columnEdges(0));
    const bool isFallingY = isFalling(mapping.rowEdges(0));
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const QList<double>& row = rows.at(isFallingY ? rows.size() - 1 - i : i);
        const auto target = result.contents.begin() + i * mapping.columns();
        std::copy_n(row.begin(), std::min(row.size(), mapping.columns()), target);
        if (isFallingX)
            std::reverse(target, target + mapping.columns());
    }
    const AxisRange x = mapping.columnEdges(isFallingX ? mapping.columns() - 1 : 0);
    const AxisRange y = mapping.rowEdges(isFallingY ? mapping.rows() - 1 : 0);
    result.data = { result.contents, static_cast<int>(columns), static_cast<int>(rows.size()),
        x.min + (x.max - x.min) / 2.0, y.min + (y.max - y.min) / 2.0, std::abs(x.max - x.min), std::abs(y.max - y.min),
        faultOfCounts(result.contents).isEmpty() };
    return result;
}

BinRange binsBetween(const BinnedData& data, double lower, double upper)
{
    if (lower > upper)
        std::swap(lower, upper);
    if (std::isnan(lower) || std::isnan(upper) || data.size() == 0)
        return {};
    const auto firstFrom = [&](double limit) { // the first bin whose centre is not below the limit
        std::size_t low = 0;
        std::size_t high = data.size();
        while (low < high) {
            const std::size_t middle = (low + high) / 2;
            if (data.centre(middle) < limit)
                low = middle + 1;
            else
                high = middle;
        }
        return static_cast<std::ptrdiff_t>(low);
    };
    return { firstFrom(lower), firstFrom(upper) - 1 };
}

} // namespace tarnis
