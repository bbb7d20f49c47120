#include "tarnis/plots/binraster_p.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

constexpr double largestBin = 1 << 13; // pixels; a larger one leaves a handful of drawing calls
constexpr int largestSide = 1 << 14;

bool isOrdinary(const BinSpan& span)
{
    return span.pixels > 0.0 && span.pixels <= largestBin && std::isfinite(span.low);
}

/// Copies pixels; true if none is transparent.
bool copyPixels(QRgb* line, const QRgb* row, int count)
{
    unsigned int gaps = 0;
    for (int i = 0; i < count; ++i) {
        line[i] = row[i];
        gaps |= static_cast<unsigned int>(row[i] == BinPixels::noPixel);
    }
    return gaps == 0;
}

/// Copies pixels to where the line is transparent; true if it is no more.
bool fillGaps(QRgb* line, const QRgb* row, int count)
{
    unsigned int gaps = 0;
    for (int i = 0; i < count; ++i) {
        const QRgb pixel = line[i] == BinPixels::noPixel ? row[i] : line[i];
        line[i] = pixel;
        gaps |= static_cast<unsigned int>(pixel == BinPixels::noPixel);
    }
    return gaps == 0;
}

} // namespace

bool BinRaster::canCompose(const BinView& view)
{
    const QRect& rect = view.rect;
    return isOrdinary(view.x) && isOrdinary(view.y) && rect.left() >= 0 && rect.top() >= 0 && rect.width() > 0
        && rect.height() > 0 && rect.right() < largestSide && rect.bottom() < largestSide;
}

BinRaster::Picture BinRaster::compose(const BinView& view, const BinRows& rows, BinPixels& converter, int deviceX)
{
    m_size = view.rect.size();
    m_lines.assign(static_cast<std::size_t>(m_size.height()), Untouched);
    m_pixels.resize(static_cast<std::size_t>(m_size.width()) * static_cast<std::size_t>(m_size.height()));
    planColumns(view, deviceX);
    if (m_left.empty())
        return {};
    planPixels();
    for (int row = view.y.end - 1; row >= view.y.first; --row) {
        const LineSpan lines = linesOf(view, row);
        if (!isCovered(lines))
            composeRow(valuesOf(rows.at(row), m_firstColumn.back()), lines, converter);
    }
    return picture();
}

void BinRaster::planColumns(const BinView& view, int deviceX)
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
        // Only the first column can begin outside of the plot. The one at pixel -1 is left out: a row begins as if that
        // pixel had been painted.
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
    m_lastPixel = std::min(m_size.width() - 1, m_left.back() + m_extent);
    m_groupPixels.resize(groups);
    m_rowPixels.resize(static_cast<std::size_t>(m_size.width()));
    m_shared.clear();
    m_groupOf.clear();
    m_isSimple = true;
    for (std::size_t group = 1; group < groups; ++group) {
        const int step = m_left[group] - m_left[group - 1];
        m_isSimple = m_isSimple && step > 0 && (step == m_extent || step == m_extent + 1);
        if (step == m_extent)
            m_shared.push_back(static_cast<int>(group));
    }
    if (m_extent == 0 || !m_isSimple)
        return;
    for (std::size_t group = 0; group < groups; ++group) {
        const int end = group + 1 < groups ? m_left[group + 1] : m_lastPixel + 1;
        m_groupOf.resize(static_cast<std::size_t>(end - m_firstPixel), static_cast<int>(group));
    }
}

BinRaster::LineSpan BinRaster::linesOf(const BinView& view, int row) const
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

bool BinRaster::isCovered(const LineSpan& lines) const
{
    for (int y = lines.first; y <= lines.last; ++y) {
        if (m_lines[static_cast<std::size_t>(y)] != Complete)
            return false;
    }
    return true;
}

const double* BinRaster::valuesOf(const QList<double>& row, int end)
{
    if (row.size() >= end)
        return row.constData();
    m_paddedRow.assign(row.begin(), row.end());
    m_paddedRow.resize(static_cast<std::size_t>(end), 0.0);
    return m_paddedRow.data();
}

void BinRaster::composeRow(const double* values, const LineSpan& lines, BinPixels& converter)
{
    const int groups = static_cast<int>(m_left.size());
    const bool isPixelEach = m_extent == 0 && m_isSimple && m_left.front() >= 0;
    QRgb* groupPixels = isPixelEach ? m_rowPixels.data() : m_groupPixels.data();
    if (m_oneColumnEach)
        converter.convert(values + m_firstColumn.front(), groups, groupPixels);
    else
        converter.convertGroups(values, m_firstColumn.data(), groups, groupPixels);
    if (!isPixelEach)
        spreadGroups();

    for (int y = lines.first; y <= lines.last; ++y)
        paintLine(y, lines.showsCorner && y == lines.last && cornerIsLost());
}

void BinRaster::spreadGroups()
{
    QRgb* row = m_rowPixels.data();
    const QRgb* pixels = m_groupPixels.data();
    if (m_isSimple && m_extent > 0) {
        const int count = m_lastPixel - m_firstPixel + 1;
        for (int i = 0; i < count; ++i)
            row[i] = pixels[m_groupOf[i]];
        for (const int group : m_shared) {
            QRgb& first = row[m_left[group] - m_firstPixel];
            first = first == BinPixels::noPixel ? pixels[group - 1] : first;
        }
        return;
    }
    std::fill_n(row, m_lastPixel - m_firstPixel + 1, BinPixels::noPixel);
    for (std::size_t group = 0; group < m_left.size(); ++group) {
        const int first = std::max(m_left[group], m_firstPixel);
        const int last = std::min(m_left[group] + m_extent, m_lastPixel);
        if (m_groupPixels[group] != BinPixels::noPixel)
            std::fill_n(row + (first - m_firstPixel), last - first + 1, m_groupPixels[group]);
    }
}

bool BinRaster::cornerIsLost() const
{
    if (m_corner == noCorner || m_groupPixels[m_cornerGroup] == BinPixels::noPixel)
        return false;
    // A later bin may lie over it.
    for (std::size_t group = m_cornerGroup + 1; group < m_left.size() && m_left[group] <= m_corner; ++group) {
        if (m_groupPixels[group] != BinPixels::noPixel)
            return false;
    }
    return true;
}

void BinRaster::paintLine(int y, bool losesCorner)
{
    QRgb* line = lineAt(y) + m_firstPixel;
    LineState& state = m_lines[static_cast<std::size_t>(y)];
    const std::size_t corner = losesCorner ? static_cast<std::size_t>(m_corner - m_firstPixel) : 0;
    const QRgb below = losesCorner ? std::exchange(m_rowPixels[corner], BinPixels::noPixel) : 0;
    const int count = m_lastPixel - m_firstPixel + 1;
    bool isComplete = true;
    if (state == Untouched)
        isComplete = copyPixels(line, m_rowPixels.data(), count);
    else if (state == HasGaps)
        isComplete = fillGaps(line, m_rowPixels.data(), count);
    state = isComplete ? Complete : HasGaps;
    if (losesCorner)
        m_rowPixels[corner] = below;
}

BinRaster::Picture BinRaster::picture()
{
    const auto isTouched = [](LineState state) { return state != Untouched; };
    const auto first = std::find_if(m_lines.begin(), m_lines.end(), isTouched);
    const auto end = std::find_if(m_lines.rbegin(), m_lines.rend(), isTouched).base();
    if (first >= end)
        return {};
    for (auto line = first; line != end; ++line) {
        if (*line == Untouched)
            std::fill_n(lineAt(static_cast<int>(line - m_lines.begin())), m_size.width(), BinPixels::noPixel);
    }
    Picture picture;
    picture.area = QRect(QPoint(m_firstPixel, static_cast<int>(first - m_lines.begin())),
        QPoint(m_lastPixel, static_cast<int>(end - m_lines.begin()) - 1));
    picture.pixels = lineAt(picture.area.top()) + m_firstPixel;
    picture.stride = m_size.width();
    picture.isOpaque = std::all_of(first, end, [](LineState state) { return state == Complete; });
    return picture;
}

} // namespace tarnis
