#include "tarnis/plots/curvenames.h"

#include "tarnis/plots/curvenames_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"

namespace tarnis {

SeriesTexts seriesTextsOf(const MultiVectorGraphWidget& plot)
{
    const PlotHooks* const hooks = PlotHooks::existing(plot);
    return { plot.m_groupName, plot.m_itemName, plot.m_firstNumber, hooks ? hooks->seriesNames() : QStringList() };
}

void setSeriesName(MultiVectorGraphWidget& plot, int index, const QString& name)
{
    if (index < 0 || seriesName(plot, index) == name)
        return;
    QStringList names = PlotHooks::of(plot).seriesNames();
    names.resize(std::max(names.size(), qsizetype(index) + 1));
    names[index] = name;
    setSeriesNames(plot, names);
}

void setSeriesNames(MultiVectorGraphWidget& plot, const QStringList& names)
{
    PlotHooks::of(plot).setSeriesNames(names);
}

QString seriesName(const MultiVectorGraphWidget& plot, int index)
{
    return seriesTextsOf(plot).names.value(index);
}

QStringList curveNames(const MultiVectorGraphWidget& plot)
{
    const SeriesTexts texts = seriesTextsOf(plot);
    const QList<Series>& series = PlotAccess::series(plot);
    const AddType type = PlotAccess::addType(plot);
    const int groupSize = PlotAccess::groupSize(plot);
    const qsizetype count = curvesOf(series, type, groupSize).size();
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(curveNameOf(texts, type, groupSize, i, series.size()));
    return names;
}

} // namespace tarnis
