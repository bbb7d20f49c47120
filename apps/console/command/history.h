// The commands that were typed, and where the user is while going through them with the arrow keys.
#pragma once

#include <QString>
#include <QStringList>

namespace console {

/// Oldest entry first. The text that was being typed before the first step back is kept and comes back at the end.
class History {
public:
    static constexpr int limit = 500;

    /// Appends `command` unless it is empty or equals the last entry, and leaves the walk. Beyond `limit` the oldest
    /// go.
    void add(const QString& command);

    /// One step back from `current`, what the line shows now. At the oldest entry, or with none: `current` itself.
    QString older(const QString& current);

    /// One step forward; from the latest entry back to the text before the walk. Outside a walk: `current` itself.
    QString newer(const QString& current);

    const QStringList& entries() const { return m_entries; }
    /// Replaces all entries, as a run before left them; too many are cut at the front.
    void setEntries(const QStringList& entries);

private:
    QStringList m_entries;
    qsizetype m_position = 0; ///< index of the entry on show; m_entries.size() outside a walk
    QString m_draft;
};

} // namespace console
