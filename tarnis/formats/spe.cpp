#include "tarnis/formats/spe.h"

#include "tarnis/formats/numbertext_p.h"

#include <QCoreApplication>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Spe)
};

constexpr qsizetype maxChannels = qsizetype { 1 } << 24;
const QString timeFormat = QStringLiteral("MM/dd/yyyy HH:mm:ss");

/// Reads the file line by line and keeps track of the current section.
class SpeReader {
public:
    /// Returns an error, or an empty text.
    QString take(QByteArrayView line)
    {
        if (line.startsWith('$')) {
            m_section = line.trimmed();
            m_linesInSection = 0;
            return {};
        }
        line = line.trimmed();
        if (line.isEmpty())
            return {};
        ++m_linesInSection;
        if (m_section == "$DATA:")
            return m_linesInSection == 1 ? takeRange(line) : takeCounts(line);
        takeDetail(line);
        return {};
    }

    QString finish()
    {
        if (m_channels == 0)
            return Texts::tr("it has no section $DATA: it is not a spectrum in the .spe format, or incomplete");
        if (static_cast<qsizetype>(m_data.values.size()) != m_channels) {
            return Texts::tr("$DATA announces %1 channels and has %2: the file is damaged, copy it again")
                .arg(m_channels)
                .arg(m_data.values.size());
        }
        m_data.rows = 1;
        m_data.columns = m_channels;
        m_data.x.name = QStringLiteral("Channel");
        if (m_first != 0)
            m_data.x.values = uniformEdges(double(m_first), double(m_first + m_channels), m_channels);
        if (m_polynomial.empty() && !m_line.empty())
            m_polynomial = m_line;
        m_data.calibration = std::move(m_polynomial);
        if (!m_data.calibration.empty() && m_data.calibrationUnit.isEmpty())
            m_data.calibrationUnit = QStringLiteral("keV");
        return {};
    }
    Dataset data() && { return std::move(m_data); }

private:
    QString takeRange(QByteArrayView line)
    {
        const std::optional<std::vector<double>> range = numbersOf(line);
        const auto isChannel = [](double number) { return number >= 0.0 && number == std::floor(number); };
        if (m_channels != 0)
            return Texts::tr("a second section $DATA: keep one spectrum in the file");
        if (!range || range->size() != 2 || !isChannel((*range)[0]) || !isChannel((*range)[1])
            || (*range)[1] < (*range)[0]) {
            return Texts::tr("'%1' is not the first and the last channel: the file is damaged").arg(quoted(line));
        }
        if ((*range)[1] >= static_cast<double>(maxChannels))
            return Texts::tr("'%1': more than %2 channels are not read").arg(quoted(line)).arg(maxChannels);
        m_first = static_cast<qsizetype>((*range)[0]);
        m_channels = static_cast<qsizetype>((*range)[1]) - m_first + 1;
        return {};
    }

    QString takeCounts(QByteArrayView line)
    {
        const std::optional<std::vector<double>> counts = numbersOf(line);
        if (!counts
            || !std::all_of(counts->begin(), counts->end(), [](double c) { return std::isfinite(c) && c >= 0.0; })) {
            return Texts::tr("'%1' is not a count: correct it").arg(quoted(line));
        }
        if (static_cast<qsizetype>(m_data.values.size() + counts->size()) > m_channels)
            return Texts::tr("more than the announced %1 channels: the file is damaged, copy it again").arg(m_channels);
        m_data.values.insert(m_data.values.end(), counts->begin(), counts->end());
        return {};
    }

    /// Optional sections: values there that cannot be parsed are ignored.
    void takeDetail(QByteArrayView line)
    {
        if (m_section == "$SPEC_ID:" && m_linesInSection == 1)
            m_data.title = QString::fromUtf8(line);
        else if (m_section == "$DATE_MEA:" && m_linesInSection == 1)
            takeTime(line);
        else if (m_section == "$MEAS_TIM:" && m_linesInSection == 1)
            takeDurations(line);
        else if (m_section == "$ENER_FIT:" && m_linesInSection == 1)
            m_line = coefficients(line);
        else if (m_section == "$MCA_CAL:" && m_linesInSection == 2)
            takePolynomial(line);
    }
    void takeTime(QByteArrayView line)
    {
        m_data.time = QDateTime::fromString(QString::fromLatin1(line), timeFormat);
        m_data.time.setTimeZone(QTimeZone::utc());
    }
    void takeDurations(QByteArrayView line)
    {
        const std::optional<std::vector<double>> seconds = numbersOf(line);
        if (!seconds || seconds->size() != 2 || !((*seconds)[0] >= 0.0) || !((*seconds)[1] >= 0.0))
            return;
        m_data.liveTime = (*seconds)[0];
        m_data.realTime = (*seconds)[1];
    }
    /// Empty without a positive slope: uncalibrated spectra often carry zeros.
    static std::vector<double> coefficients(QByteArrayView line)
    {
        const std::optional<std::vector<double>> numbers = numbersOf(line);
        if (!numbers || numbers->size() < 2 || !((*numbers)[1] > 0.0)
            || !std::all_of(numbers->begin(), numbers->end(), [](double c) { return std::isfinite(c); }))
            return {};
        return *numbers;
    }
    /// Coefficients, followed by a unit in some files.
    void takePolynomial(QByteArrayView line)
    {
        const qsizetype blank = line.lastIndexOf(' ');
        const QByteArrayView last = line.sliced(blank + 1);
        if (blank >= 0 && !numberOf(last)) {
            m_data.calibrationUnit = QString::fromUtf8(last);
            line = line.first(blank);
        }
        m_polynomial = coefficients(line);
    }

    QByteArrayView m_section;
    int m_linesInSection = 0;
    qsizetype m_first = 0;
    qsizetype m_channels = 0;
    std::vector<double> m_line;
    std::vector<double> m_polynomial;
    Dataset m_data;
};

/// The first channel if the axis consists of consecutive channel numbers from 0 or more.
std::optional<qsizetype> firstChannel(const DataAxis& axis, qsizetype bins)
{
    if (axis.values.empty())
        return 0;
    const double first = axis.values.front();
    if (!(first >= 0.0) || first != std::floor(first) || first >= static_cast<double>(maxChannels)
        || axis.values != uniformEdges(first, first + static_cast<double>(bins), bins))
        return std::nullopt;
    return static_cast<qsizetype>(first);
}

QByteArray oneLine(const QString& text)
{
    return text.simplified().toUtf8();
}

} // namespace

QByteArray encodeSpe(const Dataset& data)
{
    if (!isConsistent(data) || data.kind != Dataset::Kind::Curves || data.rows != 1)
        return {};
    const std::optional<qsizetype> first = firstChannel(data.x, data.columns);
    const auto isCount = [](double value) { return std::isfinite(value) && value >= 0.0; };
    if (!first || *first + data.columns > maxChannels || !std::all_of(data.values.begin(), data.values.end(), isCount))
        return {};
    QByteArray text = "$SPEC_ID:\r\n" + oneLine(data.title) + "\r\n";
    if (data.time.isValid())
        text += "$DATE_MEA:\r\n" + data.time.toUTC().toString(timeFormat).toLatin1() + "\r\n";
    if (data.liveTime > 0.0 || data.realTime > 0.0)
        text += "$MEAS_TIM:\r\n" + numberList({ data.liveTime, data.realTime }) + "\r\n";
    text += "$DATA:\r\n" + QByteArray::number(*first) + ' ' + QByteArray::number(*first + data.columns - 1) + "\r\n";
    for (const double count : data.values) {
        appendNumber(text, count);
        text += "\r\n";
    }
    if (data.calibration.size() >= 2) {
        text += "$ENER_FIT:\r\n" + numberList({ data.calibration[0], data.calibration[1] }) + "\r\n";
        text += "$MCA_CAL:\r\n" + QByteArray::number(static_cast<qsizetype>(data.calibration.size())) + "\r\n"
            + numberList(data.calibration) + ' ' + oneLine(data.calibrationUnit) + "\r\n";
    }
    return text;
}

DatasetResult decodeSpe(QByteArrayView text)
{
    LineReader lines(text);
    SpeReader reader;
    QString error;
    while (const std::optional<QByteArrayView> line = lines.next()) {
        error = reader.take(*line);
        if (!error.isEmpty())
            return { .data = {}, .error = Texts::tr("line %1: %2").arg(lines.number()).arg(error) };
    }
    error = reader.finish();
    if (!error.isEmpty())
        return { .data = {}, .error = error };
    return { .data = std::move(reader).data(), .error = {} };
}

} // namespace tarnis
