// What a plot shows at a place: its bin, the bin's edges, and the value of every visible curve. Numbers and texts; no
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
    QString name; ///< of the curve; empty where there is one
    QColor color;
    std::optional<double> value; ///< nothing where the curve has no such bin
};

/// A place in a plot.
struct PlotReadOut {
    QString nameX;
    QString nameY; ///< of a map's second axis
    qsizetype column = -1; ///< -1 outside of the data
    qsizetype row = -1; ///< of a map
    bool isMap = false;
    AxisRange edgesX;
    AxisRange edgesY;
    std::optional<double> tick; ///< the middle of the bin on the second scale
    QList<ReadOutValue> values;

    bool isInside() const { return column >= 0 && (!isMap || row >= 0); }
    /// One line for people; a dash outside of the data.
    QString text() const;
    /// A header line and a line of numbers, separated by tabs; empty outside of the data.
    QString table() const;
};

/// The read-out at a value of both axes. Hidden curves are left out.
PlotReadOut readOutAt(const XYGraphWidget& plot, const PlotMapping& mapping, double x, double y);

/// A number as a read-out has it: all digits of whole numbers, seven of others.
QString readOutNumber(double value);

/// A number as a table has it: all digits of whole numbers, seventeen of others, which bring a double back as it was.
QString exactNumber(double value);

} // namespace tarnis
