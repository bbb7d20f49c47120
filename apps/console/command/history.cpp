#include "command/history.h"

namespace console {

void History::add(const QString& command)
{
    if (!command.isEmpty() && (m_entries.isEmpty() || m_entries.last() != command))
        m_entries.append(command);
    setEntries(m_entries);
}

QString History::older(const QString& current)
{
    if (m_position == 0)
        return current;
    if (m_position == m_entries.size())
        m_draft = current;
    return m_entries.at(--m_position);
}

QString History::newer(const QString& current)
{
    if (m_position == m_entries.size())
        return current;
    ++m_position;
    return m_position == m_entries.size() ? m_draft : m_entries.at(m_position);
}

void History::setEntries(const QStringList& entries)
{
    m_entries = entries.mid(qMax<qsizetype>(0, entries.size() - limit));
    m_position = m_entries.size();
    m_draft.clear();
}

} // namespace console
