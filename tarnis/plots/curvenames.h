/// @file
/// Names of a plot's series, for legends, read-outs, CSV files and tables.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QString>
#include <QStringList>

class MultiVectorGraphWidget;

namespace tarnis {

/// Names a series. An empty name removes the name; the series is then named by the plot's terms for groups and
/// positions (`m_groupName`, `m_itemName`). Observers of the plot receive PlotObserver::Data. A negative index is
/// ignored. setData(), resizeData() and clearData() do not change the name of an index. GUI thread only.
TARNIS_EXPORT void setSeriesName(MultiVectorGraphWidget& plot, int index, const QString& name);

/// Names the series from index 0 on and removes the names of all others.
TARNIS_EXPORT void setSeriesNames(MultiVectorGraphWidget& plot, const QStringList& names);

/// The name of a series; empty if it has none.
TARNIS_EXPORT QString seriesName(const MultiVectorGraphWidget& plot, int index);

/// A non-empty name for each curve of the plot's current type, including hidden ones, in the order of their series. A
/// curve of one series has the name of the series, if set. Other names consist of the plot's terms and numbers.
TARNIS_EXPORT QStringList curveNames(const MultiVectorGraphWidget& plot);

} // namespace tarnis
