// A snapshot of the server's values beside the previous one.
#pragma once

#include <tarnis/dialogs/namevalue.h>

#include <QCoreApplication>
#include <QList>

namespace console {

/// A row per name, in the order of first appearance: the value, the previous value, and the change as a text or a
/// difference. A name that the server has dropped is shown once and removed with the next snapshot.
class SnapshotRecord {
    Q_DECLARE_TR_FUNCTIONS(console::SnapshotRecord)
public:
    /// Adds the next snapshot. If a name occurs twice, the last value is used.
    void take(const QList<NameValue>& values);

    const QList<NameValues>& rows() const { return m_rows; }
    /// Values of the last snapshot.
    qsizetype count() const { return m_values.size(); }
    /// Number of rows that differ from the previous snapshot; 0 for the first one.
    qsizetype changes() const;

protected:
    QList<NameValue> m_values;
    QList<NameValues> m_rows; ///< each with three values
};

/// The change from `before` to `now`: the signed difference of two numbers, a word for texts, empty if they are equal.
QString changeText(const QString& before, const QString& now);

} // namespace console
