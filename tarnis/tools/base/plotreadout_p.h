// The data of a plot at a position: the bin, its edges, and the value of every visible curve. Numbers and texts; no
// painter.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QColor>
#include <QList>
#include <QString>

#include <optional>

class XYGraphWidget;

namespace tarnis {

class PlotMapping;

/// The value of one curve, or of a map's bin.
struct ReadOutValue {
    QString name; ///< name of the curve; empty if there is only one
    QColor colour;
    std::optional<double> value; ///< empty if the curve has no such bin
};

/// The data at a position in a plot.
struct PlotReadOut {
    QString nameX;
    QString nameY; ///< name of a map's second axis
    qsizetype column = -1; ///< -1 outside of the data
    qsizetype row = -1; ///< row of a map
    bool isMap = false;
    AxisRange edgesX;
    AxisRange namedX; ///< the same edges on the scale that the name of X belongs to
    AxisRange edgesY;
    std::optional<double> tick; ///< the middle of the bin on the second scale
    QList<ReadOutValue> values;

    bool isInside() const { return column >= 0 && (!isMap || row >= 0); }
    /// One line for display; a dash outside of the data.
    QString text() const;
    /// The same without names of axes, numbers of bins and errors, for small plots.
    QString briefText() const;
    /// A header line and a line of numbers, separated by tabs; empty outside of the data. `headers` are those of
    /// values.
    QString table(const QStringList& headers) const;
};

/// The read-out at a value of both axes. Hidden curves are omitted.
PlotReadOut readOutAt(const XYGraphWidget& plot, const PlotMapping& mapping, double x, double y);

/// The full names of the visible curves, or their numbers if they have none; empty if there is only one.
QStringList fullNames(const XYGraphWidget& plot);

/// The headers of the values in tables, with the full names of curves.
QStringList valueHeaders(const XYGraphWidget& plot);

/// The headers of a bin and its edges in tables, with the name and unit of the axis.
QStringList binHeaders(const QString& axis, const QString& bin);

/// Formats a number for a read-out: all digits of integers, seven of others.
QString readOutNumber(double value);

/// Formats a number for a table: all digits of integers, seventeen of others, which restore a double exactly.
QString exactNumber(double value);

/// Copies a table to the clipboard; an empty one does not change it.
void copyTable(const QString& table);

} // namespace tarnis
