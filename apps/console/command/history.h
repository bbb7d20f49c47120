// The history of typed commands, and the current position while the user steps through it.
#pragma once

#include <QString>
#include <QStringList>

namespace console {

/// Oldest entry first. The text typed before the first step back is stored and restored at the end.
class History {
public:
    static constexpr int limit = 500;

    /// Appends `command` unless it is empty or equals the last entry, and ends stepping. Beyond `limit` the oldest
    /// entries are removed.
    void add(const QString& command);

    /// One step back from `current`, the text of the line. Returns `current` at the oldest entry, or without entries.
    QString older(const QString& current);

    /// One step forward; from the last entry back to the text before the first step. Otherwise returns `current`.
    QString newer(const QString& current);

    const QStringList& entries() const { return m_entries; }
    /// Replaces all entries with those of a previous run; surplus entries at the front are dropped.
    void setEntries(const QStringList& entries);

private:
    QStringList m_entries;
    qsizetype m_position = 0; ///< index of the shown entry; m_entries.size() if not stepping
    QString m_draft;
};

} // namespace console
