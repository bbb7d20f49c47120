#include "tarnis/plots/raster/mapcompositor_p.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

constexpr double largestBin = 1 << 13; // in pixels; larger bins need only a few drawing calls
constexpr int largestSide = 1 << 14;
constexpr int narrowBlock = 4;
constexpr int barBlock = 16;

bool isOrdinary(const BinSpan& span)
{
    return span.pixels > 0.0 && span.pixels <= largestBin && std::isfinite(span.low);
}

/// Writes a bar of `width` pixels of one colour; may also write up to `block` pixels after it.
template <int block> void paintBar(QRgb* pixels, int width, QRgb colour)
{
    for (int i = 0; i < width; i += block)
        std::fill_n(pixels + i, block, colour);
}

} // namespace

bool BinRaster::canCompose(const BinGeometry& view)
{
    const QRect& rect = view.rect;
    return isOrdinary(view.x) && isOrdinary(view.y) && rect.left() >= 0 && rect.top() >= 0 && rect.width() > 0
        && rect.height() > 0 && rect.right() < largestSide && rect.bottom() < largestSide;
}

void BinRaster::compose(
    const BinGeometry& view, const BinRows& rows, BinColouring& converter, int deviceX, const Sink& sink)
{
    m_size = view.rect.size();
    m_bins = &rows;
    m_converter = &converter;
    for (RowLine& line : m_recent)
        line.row = -1;
    planColumns(view, deviceX);
    if (m_left.empty())
        return;
    planPixels();
    planRows(view);

    m_line.resize(static_cast<std::size_t>(m_width));
    int row = m_firstRow + static_cast<int>(m_rows.size()) - 1;
    bool isStarted = false;
    for (int y = 0; y < m_size.height(); ++y) {
        while (row >= m_firstRow && spanOf(row).last < y)
            --row;
        if (row < m_firstRow)
            return;
        isStarted = isStarted || spanOf(row).first <= y;
        if (isStarted)
            sink(composeLine(y, row));
    }
}

void BinRaster::planColumns(const BinGeometry& view, int deviceX)
{
    m_firstColumn.clear();
    m_left.clear();
    m_extent = view.paintsBars() ? static_cast<int>(view.x.pixels) : 0;
    m_corner = noCorner;
    int column = view.x.first;
    for (; column < view.x.end; ++column) {
        const int pixel = view.left(column);
        const int left = pixel - view.rect.left();
        if (left >= m_size.width())
            break;
        // Only the first column can begin outside of the plot. One at pixel -1 is skipped, as if that pixel had already
        // been painted.
        if (pixel == -1 || left + m_extent < 0 || (!m_left.empty() && m_left.back() == left))
            continue;
        const int onDevice = pixel + deviceX;
        if (onDevice < -1 && onDevice + m_extent >= 0 && left + m_extent < m_size.width()) {
            m_corner = left + m_extent;
            m_cornerGroup = m_left.size();
        }
        m_firstColumn.push_back(column);
        m_left.push_back(left);
    }
    if (!m_left.empty())
        m_firstColumn.push_back(column);
}

void BinRaster::planPixels()
{
    const std::size_t groups = m_left.size();
    m_oneColumnEach = m_firstColumn.back() - m_firstColumn.front() == static_cast<int>(groups);
    m_firstPixel = std::max(0, m_left.front());
    const int lastPixel = std::min(m_size.width() - 1, m_left.back() + m_extent);
    m_width = lastPixel - m_firstPixel + 1;
    m_groupPixels.resize(groups + 1 + SpreadBlock::width);
    m_shared.assign(groups, 0);
    m_isSimple = true;
    for (std::size_t group = 1; group < groups; ++group) {
        const int step = m_left[group] - m_left[group - 1];
        m_isSimple = m_isSimple && step > 0 && (step == m_extent || step == m_extent + 1);
        m_shared[group] = step == m_extent ? ~QRgb(0) : 0;
    }
    m_isPixelEach = m_extent == 0 && m_isSimple && m_left.front() >= 0;
    planSpread();
}

/// Computes the colour index of each pixel of a line, eight pixels at a time.
void BinRaster::planSpread()
{
    m_spread.clear();
    if (!m_isSimple || m_extent == 0 || !hasAvx2())
        return;
    const int last = static_cast<int>(m_left.size()) - 1;
    int group = 0;
    for (int x = 0; x < m_width; x += SpreadBlock::width) {
        SpreadBlock& block = m_spread.emplace_back();
        for (int i = 0; i < SpreadBlock::width; ++i) {
            const int pixel = m_firstPixel + x + i;
            if (group < last && m_left[static_cast<std::size_t>(group) + 1] <= pixel)
                ++group; // by at most one, because groups begin at different pixels
            if (i == 0)
                block.first = group;
            const auto lane = static_cast<std::size_t>(i);
            block.place[lane] = group - block.first;
            block.shared[lane] =
                m_left[static_cast<std::size_t>(group)] == pixel ? m_shared[static_cast<std::size_t>(group)] : 0;
        }
    }
}

void BinRaster::planRows(const BinGeometry& view)
{
    m_firstRow = view.y.first;
    m_rows.resize(static_cast<std::size_t>(std::max(view.y.end - view.y.first, 0)));
    int covered = -1; // lowest line of the rows above
    for (int row = view.y.end - 1; row >= m_firstRow; --row) {
        LineSpan& span = m_rows[static_cast<std::size_t>(row - m_firstRow)];
        span = linesOf(view, row);
        span.isTopSomewhere = span.last > covered;
        covered = std::max(covered, span.last);
    }
}

BinRaster::LineSpan BinRaster::linesOf(const BinGeometry& view, int row) const
{
    LineSpan lines;
    if (view.paintsBars()) {
        const QRect bar = view.bar(row, view.x.first);
        lines.first = bar.top();
        lines.last = bar.bottom() + 1;
    } else {
        lines.first = view.lineTop(row);
        lines.last = view.lineBottom(row);
    }
    lines.showsCorner = lines.last > lines.first && lines.last <= view.rect.bottom();
    lines.first = std::max(lines.first - view.rect.top(), 0);
    lines.last = std::min(lines.last - view.rect.top(), m_size.height() - 1);
    return lines;
}

const double* BinRaster::valuesOf(const QList<double>& row)
{
    const int end = m_firstColumn.back();
    if (row.size() >= end)
        return row.constData();
    m_paddedRow.assign(row.begin(), row.end());
    m_paddedRow.resize(static_cast<std::size_t>(end), 0.0);
    return m_paddedRow.data();
}

/// Prefetches a row. Rows are separate allocations, which the hardware prefetcher cannot follow.
void BinRaster::fetchRow(int row) const
{
#ifdef __GNUC__
    constexpr qsizetype valuesPerCacheLine = 8;
    const QList<double>& values = m_bins->at(row);
    const qsizetype end = std::min<qsizetype>(m_firstColumn.back(), values.size());
    for (qsizetype column = m_firstColumn.front(); column < end; column += valuesPerCacheLine)
        __builtin_prefetch(values.constData() + column);
#endif
}

BinRaster::RowLine& BinRaster::lineOf(int row)
{
    for (RowLine& line : m_recent) {
        if (line.row == row)
            return line;
    }
    RowLine& line = m_recent[m_nextRecent];
    m_nextRecent = (m_nextRecent + 1) % m_recent.size();
    composeRow(row, line);
    return line;
}

void BinRaster::composeRow(int row, RowLine& line)
{
    const double* values = valuesOf(m_bins->at(row));
    const int groups = static_cast<int>(m_left.size());
    if (row > m_firstRow && spanOf(row - 1).isTopSomewhere)
        fetchRow(row - 1);
    line.row = row;
    line.pixels.resize(static_cast<std::size_t>(m_width) + barBlock);
    QRgb* found = m_isPixelEach ? line.pixels.data() : groupPixels();
    if (m_oneColumnEach)
        m_converter->convert(values + m_firstColumn.front(), groups, found);
    else
        m_converter->convertGroups(values, m_firstColumn.data(), nullptr, groups, found);
    if (!m_isPixelEach)
        spreadGroups(line.pixels.data());
    line.losesCorner = m_corner != noCorner && cornerIsLost();
    line.gaps.resize(static_cast<std::size_t>(m_width) + placesBeyond);
    line.gapCount = listPixels(line.pixels.data(), m_width, BinColouring::noPixel, line.gaps.data());
    // The next row is read sparsely.
    if (row > m_firstRow && !spanOf(row - 1).isTopSomewhere && line.gapCount > m_width / 8)
        fetchRow(row - 1);
}

/// A later bar covers the last pixel of the previous one if they share it, unless it is transparent.
template <int block> void BinRaster::spreadTouching(QRgb* row) const
{
    const QRgb* colors = groupPixels();
    const QRgb* shared = m_shared.data();
    const int* left = m_left.data();
    const auto groups = static_cast<std::ptrdiff_t>(m_left.size());
    const int first = m_firstPixel;
    const int width = m_width;
    const int extent = m_extent;
    paintBar<block>(row, std::min(left[0] + extent + 1 - first, width), colors[0]);
    for (std::ptrdiff_t group = 1; group < groups; ++group) {
        QRgb* bar = row + (left[group] - first);
        const QRgb colour = colors[group];
        const int inside = block > narrowBlock ? std::min(extent + 1, width - (left[group] - first)) : block;
        paintBar<block>(bar, inside, colour);
        // Without a branch, because empty bins are random.
        const QRgb isEmpty = 0U - static_cast<QRgb>(colour == BinColouring::noPixel);
        bar[0] = colour | (colors[group - 1] & shared[group] & isEmpty);
    }
}

void BinRaster::spreadGroups(QRgb* row)
{
    if (!m_spread.empty()) {
        spreadWide(groupPixels(), m_spread.data(), m_spread.size(), row);
        return;
    }
    if (m_isSimple && m_extent > 0) {
        if (m_extent < narrowBlock)
            spreadTouching<narrowBlock>(row);
        else
            spreadTouching<barBlock>(row);
        return;
    }
    std::fill_n(row, m_width, BinColouring::noPixel);
    for (std::size_t group = 0; group < m_left.size(); ++group) {
        const int first = std::max(m_left[group], m_firstPixel);
        const int last = std::min(m_left[group] + m_extent, m_firstPixel + m_width - 1);
        if (groupPixels()[group] != BinColouring::noPixel)
            std::fill_n(row + (first - m_firstPixel), last - first + 1, groupPixels()[group]);
    }
}

bool BinRaster::cornerIsLost() const
{
    if (groupPixels()[m_cornerGroup] == BinColouring::noPixel)
        return false;
    // A later bin may cover it.
    for (std::size_t group = m_cornerGroup + 1; group < m_left.size() && m_left[group] <= m_corner; ++group) {
        if (groupPixels()[group] != BinColouring::noPixel)
            return false;
    }
    return true;
}

bool BinRaster::showsLoss(const RowLine& line, int y) const
{
    return line.losesCorner && spanOf(line.row).showsCorner && spanOf(line.row).last == y;
}

/// Rows above `topRow` do not reach the line.
BinRaster::Line BinRaster::composeLine(int y, int topRow)
{
    Line line { y, m_firstPixel, m_width, m_line.data(), false };
    if (isAlone(y, topRow)) {
        const RowLine& row = lineOf(topRow);
        line.pixels = row.pixels.data();
        line.isOpaque = row.gapCount == 0;
        return line;
    }
    bool isStarted = false;
    for (int row = topRow; row >= m_firstRow && spanOf(row).first <= y; --row) {
        if (spanOf(row).last < y)
            continue;
        if (!isStarted)
            startLine(y, row);
        else
            fillGaps(y, row);
        isStarted = true;
        if (m_gaps.empty())
            break;
    }
    if (!isStarted)
        m_line.assign(m_line.size(), BinColouring::noPixel);
    line.isOpaque = isStarted && m_gaps.empty();
    return line;
}

/// True if the line shows only this row.
bool BinRaster::isAlone(int y, int row) const
{
    const auto covers = [&](int other) { return spanOf(other).first <= y && spanOf(other).last >= y; };
    if (!covers(row) || (m_corner != noCorner && spanOf(row).last == y))
        return false;
    return row == m_firstRow || spanOf(row - 1).first > y;
}

void BinRaster::startLine(int y, int row)
{
    const RowLine& line = lineOf(row);
    std::copy_n(line.pixels.begin(), m_width, m_line.begin());
    m_gaps.assign(line.gaps.begin(), line.gaps.begin() + line.gapCount);
    if (!showsLoss(line, y))
        return;
    m_line[static_cast<std::size_t>(m_corner - m_firstPixel)] = BinColouring::noPixel;
    m_gaps.push_back(m_corner - m_firstPixel);
}

void BinRaster::fillGaps(int y, int row)
{
    const int count = static_cast<int>(m_gaps.size());
    m_gapPixels.resize(m_gaps.size());
    QRgb* found = m_gapPixels.data();
    int* gaps = m_gaps.data();
    if (m_isPixelEach && !spanOf(row).isTopSomewhere) {
        // No other line shows this row.
        if (row > m_firstRow && spanOf(row - 1).isTopSomewhere)
            fetchRow(row - 1);
        m_converter->convertGroups(valuesOf(m_bins->at(row)), m_firstColumn.data(), gaps, count, found);
    } else {
        const RowLine& line = lineOf(row);
        for (int k = 0; k < count; ++k)
            found[k] = line.pixels[static_cast<std::size_t>(gaps[k])];
        if (showsLoss(line, y)) {
            const auto corner = std::find(m_gaps.begin(), m_gaps.end(), m_corner - m_firstPixel);
            if (corner != m_gaps.end())
                found[corner - m_gaps.begin()] = BinColouring::noPixel;
        }
    }
    QRgb* target = m_line.data();
    int left = 0;
    for (int k = 0; k < count; ++k) {
        const int place = gaps[k];
        target[place] = found[k];
        gaps[left] = place;
        left += static_cast<int>(found[k] == BinColouring::noPixel);
    }
    m_gaps.resize(static_cast<std::size_t>(left));
}

} // namespace tarnis
