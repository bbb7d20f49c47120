// A snapshot of the server's values beside the one before it.
#pragma once

#include <tarnis/dialogs/namevalue.h>

#include <QCoreApplication>
#include <QList>

namespace console {

/// A row per name, in the order in which names first came: the value, the value of the snapshot before, and the change
/// in words or as a difference. A name that the server has dropped is told once and is gone with the snapshot after.
class SnapshotRecord {
    Q_DECLARE_TR_FUNCTIONS(console::SnapshotRecord)
public:
    /// Takes the next snapshot. Of a name that stands twice in it the last value counts.
    void take(const QList<NameValue>& values);

    const QList<NameValues>& rows() const { return m_rows; }
    /// Values of the last snapshot.
    qsizetype count() const { return m_values.size(); }
    /// Rows that differ from the snapshot before; 0 for the first one.
    qsizetype changes() const;

protected:
    QList<NameValue> m_values;
    QList<NameValues> m_rows; ///< each with three values
};

/// How a value got from `before` to `now`: the signed difference of two numbers, a word for texts, empty if they are
/// the same.
QString changeText(const QString& before, const QString& now);

} // namespace console
