// Where the parts of a legend are.
#pragma once

#include "tarnis/tools/plotlegend.h"

#include <QColor>
#include <QList>

namespace tarnis {

/// An entry: its curve's records, and how it looks.
struct LegendEntry {
    QList<int> records;
    QString name;
    QColor color;
    bool isShown = true;
};

/// The legend in the frame's coordinates. Without entries, room or a mapping the rectangle is empty.
struct TARNIS_NO_EXPORT PlotLegend::Layout {
    QList<LegendEntry> entries;
    QRect rect;
    QSizeF room; // that the legend leaves in the plot rectangle
    int rowHeight = 1;
    qsizetype first = 0; // of the rows in sight
    qsizetype rows = 0; // in sight
    bool isSum = false; // one entry for all: nothing to hide

    /// The entry at a point, -1 outside.
    qsizetype entryAt(const QPointF& point) const;
    QRect rowRect(qsizetype entry) const;
};

/// The entries of a plot's curves that have samples.
QList<LegendEntry> legendEntries(const MultiVectorGraphWidget& plot);

} // namespace tarnis
