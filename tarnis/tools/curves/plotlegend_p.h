// The layout of a legend.
#pragma once

#include "tarnis/tools/plotlegend.h"

#include <QColor>
#include <QList>

namespace tarnis {

/// An entry: its curve's records, and its appearance.
struct LegendEntry {
    QList<int> records;
    QString name;
    QColor colour;
    bool isShown = true;
};

/// The legend in the frame's coordinates. The rectangle is empty without entries, space or a valid mapping.
struct TARNIS_NO_EXPORT PlotLegend::Layout {
    QList<LegendEntry> entries;
    QRect rect;
    QPoint corner; // upper left end of the places
    QSizeF room; // free space of the plot rectangle
    int rowHeight = 1;
    qsizetype first = 0; // first visible row
    qsizetype rows = 0; // in sight
    bool isSum = false; // one entry for all curves, which cannot be hidden

    /// The entry at a point, -1 outside.
    qsizetype entryAt(const QPointF& point) const;
    /// The rectangle at another place().
    QRect rectAt(const QPointF& place) const;
    QRect rowRect(qsizetype entry) const;
};

/// The entries of a plot's curves that have samples.
QList<LegendEntry> legendEntries(const MultiVectorGraphWidget& plot);

} // namespace tarnis
