// What the caption of a window with several curves says about them.
#pragma once

#include <QList>
#include <QString>

class MultiVectorGraphWidget;

namespace console {

/// The numbers of the rows `first` to `last` whose curves the plot draws. Those without data yet count as drawn.
QList<int> visibleRows(MultiVectorGraphWidget& plot, int first, int last);

/// Checks "Column Chart" in the plot's menu.
void showAsColumns(const MultiVectorGraphWidget& plot);

/// "0-3, 5, 7-8" for ascending numbers; empty for none.
QString rangesText(const QList<int>& numbers);

/// "Module 0-3, 5 of 8": the visible rows by number, and of how many the histogram has if not all are visible.
QString rowCaption(const QString& name, const QList<int>& visible, int rows);

} // namespace console
