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

void updateSums(QList<BlockSums>& sums, const QList<QList<double>>& lists)
{
    sums.resize(lists.size());
    for (qsizetype i = 0; i < lists.size(); ++i) {
        if (!sums.at(i).areOf(lists.at(i)))
            sums[i] = BlockSums(lists.at(i));
    }
}

} // namespace tarnis
