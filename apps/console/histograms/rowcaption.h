// The caption of a window with several curves.
#pragma once

#include <QList>
#include <QString>

class MultiVectorGraphWidget;

namespace console {

/// The numbers of the rows `first` to `last` whose curves are visible. Rows without data count as visible.
QList<int> visibleRows(MultiVectorGraphWidget& plot, int first, int last);

/// Checks "Column Chart" in the plot's menu.
void showAsColumns(const MultiVectorGraphWidget& plot);

/// "0-3, 5, 7-8" for ascending numbers; empty for none.
QString rangesText(const QList<int>& numbers);

/// "Module 0-3, 5 of 8": the visible rows by number, and the total number of rows if not all are visible.
QString rowCaption(const QString& name, const QList<int>& visible, int rows);

} // namespace console
