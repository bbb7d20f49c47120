/// @file
/// The place of a plot in a layout.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QSize>
#include <QWidgetItem>

class XYGraphWidget;

namespace tarnis {

/// Gives a plot a usual and a least size in a layout, and the room that is left over. Plots have no size hints of their
/// own: without this, a layout may shrink them to nothing. The plot's own minimum and maximum sizes go first.
///
///     layout->addItem(new tarnis::PlotLayoutItem(plot)); // the plot is a child of the layout's widget
class TARNIS_EXPORT PlotLayoutItem : public QWidgetItem {
public:
    /// The layout owns the item. Sizes in pixels of the widget.
    explicit PlotLayoutItem(XYGraphWidget* plot, const QSize& usual = { 480, 320 }, const QSize& least = { 200, 150 });

    QSize sizeHint() const override; ///< the usual size
    QSize minimumSize() const override; ///< the least size
    QSize maximumSize() const override; ///< that of the plot
    Qt::Orientations expandingDirections() const override; ///< both

private:
    TARNIS_NO_EXPORT QSize bounded(const QSize& size) const;

    QSize m_usual;
    QSize m_least;
};

} // namespace tarnis
