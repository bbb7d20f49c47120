#include "spectrum.h"

#include <QFile>
#include <QList>

#include <cmath>
#include <numeric>
#include <optional>

namespace simserver {

namespace {

SpectrumResult failure(const QString& reason)
{
    return { .spectrum = {}, .error = reason };
}

std::optional<double> countOf(const QByteArray& word)
{
    bool valid = false;
    const double count = word.toDouble(&valid);
    if (!valid || !std::isfinite(count) || count < 0.0)
        return std::nullopt;
    return count;
}

/// Appends the numbers of one line; returns an error, or an empty text.
QString appendCounts(const QByteArray& line, int lineNumber, std::vector<double>& counts)
{
    for (const QByteArray& word : line.simplified().split(' ')) {
        if (word.isEmpty())
            continue;
        const std::optional<double> count = countOf(word);
        if (!count) {
            return QStringLiteral("line %1: '%2' is not a count")
                .arg(lineNumber)
                .arg(QString::fromLatin1(word.left(40)));
        }
        if (counts.size() == maxChannels)
            return QStringLiteral("line %1: more than %2 channels").arg(lineNumber).arg(maxChannels);
        counts.push_back(*count);
    }
    return {};
}

SpectrumResult parseNumbers(const QList<QByteArray>& lines)
{
    SpectrumResult result;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const qsizetype comment = lines[i].indexOf('#');
        const QByteArray line = comment < 0 ? lines[i] : lines[i].left(comment);
        const QString error = appendCounts(line, static_cast<int>(i + 1), result.spectrum.counts);
        if (!error.isEmpty())
            return failure(error);
    }
    return result;
}

/// The reader of the .spe format: one line at a time, with the current section as state.
class SpeReader {
public:
    QString take(const QByteArray& line, int lineNumber)
    {
        if (line.startsWith('$')) {
            m_section = line;
            m_linesInSection = 0;
            return {};
        }
        if (line.isEmpty())
            return {};
        ++m_linesInSection;
        if (m_section == "$DATA:")
            return m_linesInSection == 1 ? takeRange(line, lineNumber) : appendCounts(line, lineNumber, m_counts);
        if (m_section == "$ENER_FIT:" && m_linesInSection == 1)
            takeCalibration(line);
        return {};
    }

    SpectrumResult result()
    {
        if (m_channels == 0)
            return failure(QStringLiteral("no $DATA section"));
        if (m_counts.size() != m_channels) {
            return failure(
                QStringLiteral("$DATA announces %1 channels and holds %2").arg(m_channels).arg(m_counts.size()));
        }
        m_spectrum.counts = std::move(m_counts);
        return { .spectrum = std::move(m_spectrum), .error = {} };
    }

private:
    QString takeRange(const QByteArray& line, int lineNumber)
    {
        const QList<QByteArray> words = line.simplified().split(' ');
        bool firstValid = false;
        bool lastValid = false;
        const qlonglong first = words.value(0).toLongLong(&firstValid);
        const qlonglong last = words.value(1).toLongLong(&lastValid);
        if (words.size() != 2 || !firstValid || !lastValid || first < 0 || last < first
            || last >= static_cast<qlonglong>(maxChannels) || m_channels != 0) {
            return QStringLiteral("line %1: '%2' is not a range of channels")
                .arg(lineNumber)
                .arg(QString::fromLatin1(line.left(40)));
        }
        m_channels = static_cast<std::size_t>(last - first + 1);
        m_first = static_cast<double>(first);
        m_spectrum.offset += m_first * m_spectrum.slope;
        return {};
    }

    void takeCalibration(const QByteArray& line)
    {
        const QList<QByteArray> words = line.simplified().split(' ');
        const double offset = words.value(0).toDouble();
        const double slope = words.value(1).toDouble();
        if (words.size() < 2 || !std::isfinite(offset) || !std::isfinite(slope) || slope <= 0.0)
            return; // uncalibrated spectra often contain zeros here
        m_spectrum.offset = offset + m_first * slope;
        m_spectrum.slope = slope;
        m_spectrum.unit = QStringLiteral("keV");
    }

    QByteArray m_section;
    int m_linesInSection = 0;
    std::size_t m_channels = 0;
    double m_first = 0.0;
    std::vector<double> m_counts;
    Spectrum m_spectrum;
};

SpectrumResult parseSpe(const QList<QByteArray>& lines)
{
    SpeReader reader;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString error = reader.take(lines[i].trimmed(), static_cast<int>(i + 1));
        if (!error.isEmpty())
            return failure(error);
    }
    return reader.result();
}

} // namespace

SpectrumResult parseSpectrum(const QByteArray& text)
{
    const QList<QByteArray> lines = text.split('\n');
    SpectrumResult result = text.trimmed().startsWith('$') ? parseSpe(lines) : parseNumbers(lines);
    if (result.error.isEmpty() && result.spectrum.counts.empty())
        return failure(QStringLiteral("no channels"));
    const std::vector<double>& counts = result.spectrum.counts;
    if (result.error.isEmpty() && !std::isfinite(std::accumulate(counts.begin(), counts.end(), 0.0)))
        return failure(QStringLiteral("the sum of the counts is not finite"));
    return result;
}

SpectrumResult readSpectrum(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(file.errorString());
    const QByteArray text = file.read(maxSpectrumBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return failure(file.errorString());
    if (text.size() > maxSpectrumBytes)
        return failure(QStringLiteral("larger than %1 bytes").arg(maxSpectrumBytes));
    return parseSpectrum(text);
}

ChannelSampler::ChannelSampler(const std::vector<double>& counts)
{
    const double sum = std::accumulate(counts.begin(), counts.end(), 0.0);
    if (!(sum > 0.0))
        return;
    const std::size_t size = counts.size();
    std::vector<double> share(size);
    std::vector<std::size_t> small;
    std::vector<std::size_t> large;
    for (std::size_t i = 0; i < size; ++i) {
        share[i] = counts[i] / sum * static_cast<double>(size);
        (share[i] < 1.0 ? small : large).push_back(i);
    }
    m_threshold.assign(size, 1.0);
    m_alias.resize(size);
    std::iota(m_alias.begin(), m_alias.end(), std::size_t { 0 });
    while (!small.empty() && !large.empty()) {
        const std::size_t less = small.back();
        const std::size_t more = large.back();
        small.pop_back();
        m_threshold[less] = share[less];
        m_alias[less] = more;
        share[more] -= 1.0 - share[less];
        if (share[more] < 1.0) {
            large.pop_back();
            small.push_back(more);
        }
    }
}

std::size_t ChannelSampler::sample(Random& random) const
{
    const std::size_t channel = static_cast<std::size_t>(random.below(m_threshold.size()));
    return random.uniform() < m_threshold[channel] ? channel : m_alias[channel];
}

} // namespace simserver
