// Sums over any part of a long run of numbers, in a time that hardly grows with its length. Numbers in and out.
#pragma once

#include <QList>

namespace tarnis {

/// Sums of the finite numbers of a list, kept for blocks of it.
class BlockSums {
public:
    BlockSums() = default;
    explicit BlockSums(const QList<double>& numbers);

    /// Of the finite numbers from `first` to `last`, both included; those outside of the list count as 0.
    double between(qsizetype first, qsizetype last) const;
    /// True if these are the numbers. Quick: compares where they are stored, since the class keeps them as they are.
    bool areOf(const QList<double>& numbers) const
    {
        return m_numbers.constData() == numbers.constData() && m_numbers.size() == numbers.size();
    }

private:
    QList<double> m_numbers; // shared with the caller
    QList<double> m_blocks;
};

/// Brings the sums up to date with the lists: those of lists that have changed are calculated again.
void updateSums(QList<BlockSums>& sums, const QList<QList<double>>& lists);

} // namespace tarnis
