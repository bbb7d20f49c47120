// The reading of a ruler between two positions of a plot. Numbers and texts; no widget.
#pragma once

#include <QList>
#include <QPointF>
#include <QString>

#include <optional>

namespace tarnis {

/// The sum between the ends, for a curve or a map.
struct RulerSum {
    QString name; ///< name of the curve; empty if there is only one
    double sum = 0.0; ///< sum of the finite values
    QString header = {}; ///< of its column in the table
};

/// The reading between two positions. Undefined values are empty.
struct RulerReading {
    QPointF from;
    QPointF to;
    QString nameX; ///< header of the positions along X; empty for "x"
    QString nameY; ///< header of those along Y, on curves of the value; empty for "y"
    bool isMap = false; ///< the ratio is that of values beside X and Y
    double dx = 0.0;
    double dy = 0.0;
    std::optional<double> inverse; ///< 1 / dx
    std::optional<double> ratio; ///< value at `to` divided by value at `from`
    std::optional<double> decades; ///< decades between the values, on a logarithmic axis
    qsizetype bins = 0; ///< number of bins between the ends, both inclusive
    QList<RulerSum> sums;

    /// One line for display.
    QString text() const;
    /// The same with distances and sums only, for small plots.
    QString briefText() const;
    /// A header line and a line of numbers with all digits, separated by tabs.
    QString table() const;
};

/// The reading between two positions, without sums. `valueFrom` and `valueTo` are the values of the data there, if any.
RulerReading readingBetween(
    const QPointF& from, const QPointF& to, std::optional<double> valueFrom, std::optional<double> valueTo, bool isLog);

} // namespace tarnis
