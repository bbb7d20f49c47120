#include "histograms.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace simserver {

namespace {

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "payloads are written as doubles are stored");

QByteArray doubleArray(std::size_t count)
{
    return QByteArray(static_cast<qsizetype>(count * sizeof(double)), Qt::Uninitialized);
}

/// Converts a fraction to a bin number.
std::size_t binOf(double share, int bins)
{
    return static_cast<std::size_t>(std::clamp(static_cast<int>(share * bins), 0, bins - 1));
}

Histogram1D makeRows(const QString& name, const Axis& axis, int rows)
{
    const auto size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(axis.bins);
    return { .name = name, .axis = axis, .rows = rows, .counts = std::vector<double>(size, 0.0) };
}

Histogram2D makeMap(const QString& name, const Axis& x, const Axis& y)
{
    const auto size = static_cast<std::size_t>(x.bins) * static_cast<std::size_t>(y.bins);
    return { .name = name, .x = x, .y = y, .counts = std::vector<double>(size, 0.0) };
}

Axis timeAxis(int bins)
{
    return { .label = QStringLiteral("Time"),
        .unit = QStringLiteral("us"),
        .min = 0.0,
        .max = HistogramSet::periodMicroseconds,
        .bins = bins };
}

Axis positionAxis(const QString& label, int bins)
{
    return {
        .label = label, .unit = QStringLiteral("mm"), .min = 0.0, .max = HistogramSet::sizeMillimetres, .bins = bins
    };
}

Axis moduleAxis(int modules)
{
    return { .label = QStringLiteral("Module"),
        .unit = QStringLiteral("number"),
        .min = 0.0,
        .max = static_cast<double>(modules),
        .bins = modules };
}

Axis channelAxis(const Spectrum& spectrum)
{
    const auto channels = static_cast<double>(spectrum.counts.size());
    return { .label = spectrum.unit == QStringLiteral("keV") ? QStringLiteral("Energy") : QStringLiteral("Channel"),
        .unit = spectrum.unit,
        .min = spectrum.offset,
        .max = spectrum.offset + spectrum.slope * channels,
        .bins = static_cast<int>(spectrum.counts.size()) };
}

} // namespace

std::span<const double> Histogram1D::row(int number) const
{
    const auto bins = static_cast<std::size_t>(axis.bins);
    return std::span(counts).subspan(static_cast<std::size_t>(number) * bins, bins);
}

std::vector<double> rebinned(std::span<const double> row, int bins)
{
    const std::size_t size = static_cast<std::size_t>(bins);
    const std::size_t group = row.size() / size;
    std::vector<double> sums(size, 0.0);
    for (std::size_t i = 0; i < size; ++i) {
        for (std::size_t j = 0; j < group; ++j)
            sums[i] += row[i * group + j];
    }
    return sums;
}

QByteArray rowPayload(const Histogram1D& histogram, int first, int last, int bins)
{
    const std::size_t rows = static_cast<std::size_t>(last) - static_cast<std::size_t>(first) + 1;
    const auto samples = static_cast<std::size_t>(bins);
    QByteArray payload = doubleArray(rows * samples);
    char* const out = payload.data();
    for (std::size_t k = 0; k < rows; ++k) {
        const std::span<const double> native = histogram.row(first + static_cast<int>(k));
        std::vector<double> sums;
        std::span<const double> row = native;
        if (bins != histogram.axis.bins) {
            sums = rebinned(native, bins);
            row = sums;
        }
        for (std::size_t i = 0; i < samples; ++i)
            std::memcpy(out + (i * rows + k) * sizeof(double), &row[i], sizeof(double));
    }
    return payload;
}

QByteArray pairPayload(const Histogram1D& histogram, int row, int bins, bool all)
{
    const std::vector<double> sums = rebinned(histogram.row(row), bins);
    const double range = histogram.axis.max - histogram.axis.min;
    std::vector<double> pairs;
    for (std::size_t i = 0; i < sums.size(); ++i) {
        if (!all && sums[i] == 0.0)
            continue;
        pairs.push_back(histogram.axis.min + static_cast<double>(i) * range / bins);
        pairs.push_back(sums[i]);
    }
    QByteArray payload = doubleArray(pairs.size());
    if (!pairs.empty())
        std::memcpy(payload.data(), pairs.data(), pairs.size() * sizeof(double));
    return payload;
}

QByteArray mapPayload(const Histogram2D& histogram, int xBins, int yBins)
{
    const auto columns = static_cast<std::size_t>(xBins);
    const auto rows = static_cast<std::size_t>(yBins);
    const auto nativeColumns = static_cast<std::size_t>(histogram.x.bins);
    const std::size_t height = static_cast<std::size_t>(histogram.y.bins) / rows;
    QByteArray payload = doubleArray(columns * rows);
    if (xBins == histogram.x.bins && height == 1) {
        std::memcpy(payload.data(), histogram.counts.data(), columns * rows * sizeof(double));
        return payload;
    }
    const std::span<const double> counts(histogram.counts);
    std::vector<double> line(nativeColumns);
    for (std::size_t r = 0; r < rows; ++r) {
        std::fill(line.begin(), line.end(), 0.0);
        for (std::size_t i = 0; i < height; ++i) {
            const std::span<const double> native = counts.subspan((r * height + i) * nativeColumns, nativeColumns);
            std::transform(line.begin(), line.end(), native.begin(), line.begin(), std::plus<> {});
        }
        const std::vector<double> sums = rebinned(line, xBins);
        std::memcpy(payload.data() + r * columns * sizeof(double), sums.data(), columns * sizeof(double));
    }
    return payload;
}

HistogramSet::HistogramSet(int modules)
{
    const Axis horizontal = positionAxis(QStringLiteral("Horizontal"), mapBins);
    const Axis vertical = positionAxis(QStringLiteral("Vertical"), mapBins);
    m_1d.push_back(makeRows(QStringLiteral("time"), timeAxis(timeBins), modules));
    m_1d.push_back(
        makeRows(QStringLiteral("position"), positionAxis(QStringLiteral("Position"), positionBins), modules));
    m_1d.push_back(makeRows(QStringLiteral("total"), timeAxis(timeBins), 1));
    m_1d.push_back(makeRows(QStringLiteral("counts"), moduleAxis(modules), 1));
    m_2d.push_back(makeMap(QStringLiteral("image"), horizontal, vertical));
    m_2d.push_back(makeMap(QStringLiteral("timemap"), timeAxis(mapBins), horizontal));
}

void HistogramSet::addSpectrum(const Spectrum& spectrum)
{
    const Axis axis = channelAxis(spectrum);
    m_1d.resize(Measured);
    m_1d.push_back({ .name = QStringLiteral("spectrum"), .axis = axis, .rows = 1, .counts = spectrum.counts });
    m_1d.push_back(makeRows(QStringLiteral("sampled"), axis, 1));
}

void HistogramSet::setModules(int modules)
{
    m_1d[Time] = makeRows(m_1d[Time].name, m_1d[Time].axis, modules);
    m_1d[Position] = makeRows(m_1d[Position].name, m_1d[Position].axis, modules);
    m_1d[Counts] = makeRows(m_1d[Counts].name, moduleAxis(modules), 1);
    clear();
}

void HistogramSet::fill(const Event& event)
{
    const auto module = static_cast<std::size_t>(event.module);
    const std::size_t time = binOf(event.time, timeBins);
    const std::size_t horizontal = binOf(event.horizontal, mapBins);
    const std::size_t vertical = binOf(event.vertical, mapBins);
    m_1d[Time].counts[module * timeBins + time] += 1.0;
    m_1d[Position].counts[module * positionBins + binOf(event.vertical, positionBins)] += 1.0;
    m_1d[Total].counts[time] += 1.0;
    m_1d[Counts].counts[module] += 1.0;
    m_2d[Image].counts[vertical * mapBins + horizontal] += 1.0;
    m_2d[TimeMap].counts[horizontal * mapBins + binOf(event.time, mapBins)] += 1.0;
}

void HistogramSet::fillSampled(std::size_t channel)
{
    m_1d[Sampled].counts[channel] += 1.0;
}

void HistogramSet::clear()
{
    for (std::size_t i = 0; i < m_1d.size(); ++i) {
        if (i != Measured)
            std::fill(m_1d[i].counts.begin(), m_1d[i].counts.end(), 0.0);
    }
    for (Histogram2D& histogram : m_2d)
        std::fill(histogram.counts.begin(), histogram.counts.end(), 0.0);
}

const Histogram1D* HistogramSet::find1D(const QString& name) const
{
    const auto found = std::find_if(m_1d.begin(), m_1d.end(), [&](const Histogram1D& h) { return h.name == name; });
    return found == m_1d.end() ? nullptr : &*found;
}

const Histogram2D* HistogramSet::find2D(const QString& name) const
{
    const auto found = std::find_if(m_2d.begin(), m_2d.end(), [&](const Histogram2D& h) { return h.name == name; });
    return found == m_2d.end() ? nullptr : &*found;
}

} // namespace simserver
