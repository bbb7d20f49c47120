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
    const QList<double>& numbers() const { return m_numbers; } ///< as given
    /// True if these are the numbers. Compares addresses only, because the class shares the list.
    bool areOf(const QList<double>& numbers) const
    {
        return m_numbers.constData() == numbers.constData() && m_numbers.size() == numbers.size();
    }

private:
    QList<double> m_numbers; // shared with the caller
    QList<double> m_blocks;
};

/// Brings the sums up to date with the lists: those of lists that have changed are calculated again. Returns whether
/// any has.
bool updateSums(QList<BlockSums>& sums, const QList<QList<double>>& lists);

/// Sums of the finite numbers in a rectangle of rows. Groups of rows are added up at the second request for the same
/// rows, as during a drag.
class RectangleSums {
public:
    /// Brings the sums up to date. Quick for rows that have not changed.
    void update(const QList<QList<double>>& rows);
    void clear() { *this = {}; } ///< frees the memory
    /// Both ends are included; numbers outside of a row count as 0, the rows must exist.
    double between(qsizetype firstColumn, qsizetype lastColumn, qsizetype firstRow, qsizetype lastRow);

private:
    static constexpr qsizetype groupSize = 32; // rows; about as many as of groups in a large map
    const BlockSums* group(qsizetype index);

    QList<BlockSums> m_rows;
    struct Group {
        bool isMade = false;
        bool isUsable = false; // sums of huge numbers are not finite, and would be left out
        BlockSums columns; // totals of the columns
    };
    QList<Group> m_groups;
    int m_uses = 0; // since the last change
};

} // namespace tarnis
