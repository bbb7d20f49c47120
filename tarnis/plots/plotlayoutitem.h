/// @file
/// A layout item for plots.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QSize>
#include <QWidgetItem>

class XYGraphWidget;

namespace tarnis {

/// Gives a plot a preferred and a minimum size in a layout, and lets it expand. Plots have no size hints: without this
/// item, a layout may shrink them to nothing. The plot's own minimum and maximum sizes have priority.
///
///     layout->addItem(new tarnis::PlotLayoutItem(plot)); // the plot is a child of the layout's widget
class TARNIS_EXPORT PlotLayoutItem : public QWidgetItem {
public:
    /// The layout owns the item. Sizes in pixels of the widget.
    explicit PlotLayoutItem(
        XYGraphWidget* plot, const QSize& usual = { 480, 320 }, const QSize& minimum = { 200, 150 });

    QSize sizeHint() const override; ///< the preferred size
    QSize minimumSize() const override; ///< the minimum size
    QSize maximumSize() const override; ///< the maximum size of the plot
    Qt::Orientations expandingDirections() const override; ///< both

private:
    TARNIS_NO_EXPORT QSize bounded(const QSize& size) const;

    QSize m_usual;
    QSize m_minimum;
};

} // namespace tarnis
