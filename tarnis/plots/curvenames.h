/// @file
/// Names of the series of a plot, for legends, read-outs, CSV files and tables.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QString>
#include <QStringList>

class MultiVectorGraphWidget;

namespace tarnis {

/// Names a series. An empty name takes the name off; the series is then named by the plot's words for groups and
/// positions (`m_groupName`, `m_itemName`). Observers of the plot receive PlotObserver::Data. A negative index does
/// nothing. The name stays with the index through setData(), resizeData() and clearData(). GUI thread only.
TARNIS_EXPORT void setSeriesName(MultiVectorGraphWidget& plot, int index, const QString& name);

/// Names the series from 0 on and takes the names off all others.
TARNIS_EXPORT void setSeriesNames(MultiVectorGraphWidget& plot, const QStringList& names);

/// The name given to a series; empty without one.
TARNIS_EXPORT QString seriesName(const MultiVectorGraphWidget& plot, int index);

/// A name for each curve of the plot's present type, hidden ones included, in the order of their series: the given name
/// of a curve that is one series, else one made of the plot's words and numbers. No name is empty.
TARNIS_EXPORT QStringList curveNames(const MultiVectorGraphWidget& plot);

} // namespace tarnis
