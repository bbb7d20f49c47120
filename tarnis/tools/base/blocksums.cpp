#include "tarnis/tools/base/blocksums_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

constexpr qsizetype blockSize = 128; // about as long as both ends of a part take

double sumOf(const double* begin, const double* end)
{
    constexpr double largest = std::numeric_limits<double>::max();
    double sum = 0.0;
    for (const double* number = begin; number < end; ++number)
        sum += std::abs(*number) <= largest ? *number : 0.0;
    return sum;
}

} // namespace

BlockSums::BlockSums(const QList<double>& numbers)
    : m_numbers(numbers)
{
    const double* const begin = m_numbers.constData();
    m_blocks.reserve(m_numbers.size() / blockSize);
    for (qsizetype i = 0; i + blockSize <= m_numbers.size(); i += blockSize)
        m_blocks.append(sumOf(begin + i, begin + i + blockSize));
}

double BlockSums::between(qsizetype first, qsizetype last) const
{
    const qsizetype begin = std::max<qsizetype>(first, 0);
    const qsizetype end = std::min(last, m_numbers.size() - 1) + 1;
    if (begin >= end)
        return 0.0;
    const double* const numbers = m_numbers.constData();
    const qsizetype firstBlock = (begin + blockSize - 1) / blockSize;
    const qsizetype endBlock = end / blockSize;
    if (firstBlock >= endBlock)
        return sumOf(numbers + begin, numbers + end);
    double sum = sumOf(numbers + begin, numbers + firstBlock * blockSize);
    for (qsizetype block = firstBlock; block < endBlock; ++block)
        sum += m_blocks.at(block);
    return sum + sumOf(numbers + endBlock * blockSize, numbers + end);
}

bool updateSums(QList<BlockSums>& sums, const QList<QList<double>>& lists)
{
    bool isOther = sums.size() != lists.size();
    sums.resize(lists.size());
    for (qsizetype i = 0; i < lists.size(); ++i) {
        if (sums.at(i).areOf(lists.at(i)))
            continue;
        sums[i] = BlockSums(lists.at(i));
        isOther = true;
    }
    return isOther;
}

void RectangleSums::update(const QList<QList<double>>& rows)
{
    if (!updateSums(m_rows, rows))
        return;
    m_groups.clear();
    m_uses = 0;
}

const BlockSums* RectangleSums::group(qsizetype index)
{
    m_groups.resize(m_rows.size() / groupSize);
    Group& group = m_groups[index];
    if (group.isMade)
        return group.isUsable ? &group.columns : nullptr;
    constexpr double largest = std::numeric_limits<double>::max();
    QList<double> totals;
    for (qsizetype row = index * groupSize; row < (index + 1) * groupSize; ++row) {
        const QList<double>& numbers = m_rows.at(row).numbers();
        totals.resize(std::max(totals.size(), numbers.size()));
        double* const total = totals.data();
        for (qsizetype i = 0; i < numbers.size(); ++i)
            total[i] += std::abs(numbers.at(i)) <= largest ? numbers.at(i) : 0.0;
    }
    group.isMade = true;
    group.isUsable = std::all_of(totals.cbegin(), totals.cend(), [](double total) { return std::isfinite(total); });
    group.columns = BlockSums(totals);
    return group.isUsable ? &group.columns : nullptr;
}

double RectangleSums::between(qsizetype firstColumn, qsizetype lastColumn, qsizetype firstRow, qsizetype lastRow)
{
    constexpr int usesOfGroups = 2; // from then on
    const bool hasGroups = ++m_uses >= usesOfGroups;
    double sum = 0.0;
    for (qsizetype row = firstRow; row <= lastRow;) {
        const bool isWhole = hasGroups && row % groupSize == 0 && row + groupSize - 1 <= lastRow;
        if (const BlockSums* const rows = isWhole ? group(row / groupSize) : nullptr) {
            sum += rows->between(firstColumn, lastColumn);
            row += groupSize;
        } else {
            sum += m_rows.at(row++).between(firstColumn, lastColumn);
        }
    }
    return sum;
}

} // namespace tarnis
