// What a ruler between two places of a plot reads. Numbers and texts; no widget.
#pragma once

#include <QList>
#include <QPointF>
#include <QString>

#include <optional>

namespace tarnis {

/// A sum between the ends, of a curve or of a map.
struct RulerSum {
    QString name; ///< of the curve; empty where there is one
    double sum = 0.0; ///< of the finite values
};

/// Two places and what is between them. A value that is not defined has none.
struct RulerReading {
    QPointF from;
    QPointF to;
    double dx = 0.0;
    double dy = 0.0;
    std::optional<double> inverse; ///< 1 / dx
    std::optional<double> ratio; ///< value at `to` by value at `from`
    std::optional<double> decades; ///< between the values, on a logarithmic axis
    qsizetype bins = 0; ///< between the ends, both included
    QList<RulerSum> sums;

    /// One line for people.
    QString text() const;
    /// A header line and a line of numbers with all digits, separated by tabs.
    QString table() const;
};

/// The reading between two places, without sums. `valueFrom` and `valueTo` are the values of the data there, or none.
RulerReading readingBetween(
    const QPointF& from, const QPointF& to, std::optional<double> valueFrom, std::optional<double> valueTo, bool isLog);

} // namespace tarnis
