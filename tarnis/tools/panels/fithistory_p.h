// The history of a fit panel's results. No widgets.
#pragma once

#include "tarnis/analysis/spectrumfit.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

namespace tarnis {

/// One fit, without the curve of its model.
struct FitRecord {
    QDateTime time; ///< when the data were read
    FitResult result;
};

/// A parameter of one record.
struct TrendPoint {
    QDateTime time;
    double value = 0.0;
    double error = 0.0; ///< NaN: none
    bool acceptable = false;
};

/// Names of the parameters and derived quantities of a result.
QStringList namesOf(const FitResult& result);

/// Records up to a limit; the oldest ones are dropped. Rejected fits are not stored.
class FitHistory {
public:
    static constexpr qsizetype maxRecords = 2000;

    void add(const QDateTime& time, const FitResult& result);
    void clear() { m_records.clear(); }
    const QList<FitRecord>& records() const { return m_records; }

    /// The records that have the parameter or derived quantity.
    QList<TrendPoint> trendOf(const QString& name) const;
    /// A line for each record with all parameters of the last one, columns separated by tabs, full digits.
    QString table() const;

private:
    QList<FitRecord> m_records;
};

} // namespace tarnis
