#include "spectrumfile.h"

#include "datafile.h"

#include <cmath>

namespace cli {

namespace {

/// The first channel of an axis with edges or centres of consecutive channels, else 0.
qsizetype firstChannelOf(const tarnis::Dataset& data)
{
    const std::vector<double>& x = data.x.values;
    if (x.empty() || x.front() != std::floor(x.front()) || std::fabs(x.front()) > 1e9)
        return 0;
    for (std::size_t i = 1; i < x.size(); ++i) {
        if (x[i] != x.front() + static_cast<double>(i))
            return 0;
    }
    return static_cast<qsizetype>(x.front());
}

} // namespace

tarnis::BinnedData Spectrum::bins() const
{
    tarnis::BinnedData bins;
    bins.contents = data.values;
    bins.firstCentre = static_cast<double>(firstChannel);
    return bins;
}

Result<Spectrum> readSpectrum(const QString& path)
{
    Result<tarnis::Dataset> file = readDataFile(path);
    if (!file.isOk())
        return file.failure();
    tarnis::Dataset& data = file.value();
    if (data.kind == tarnis::Dataset::Kind::Map || data.rows != 1)
        return Failure { .code = FileError,
            .text = QStringLiteral("'%1' holds %2 rows: give a file of one spectrum").arg(path).arg(data.rows) };
    const qsizetype first = firstChannelOf(data);
    return Spectrum { std::move(data), first };
}

Result<Range<qsizetype>> channelOption(const Arguments& arguments, const QString& option, const Spectrum& spectrum)
{
    const Result<std::optional<Range<double>>> given = rangeOption(arguments, option);
    if (!given.isOk())
        return given.failure();
    if (!given.value())
        return Range<qsizetype> { spectrum.firstChannel, spectrum.lastChannel() };
    const Range<double>& range = *given.value();
    if (range.first != std::floor(range.first) || range.last != std::floor(range.last))
        return Failure { .code = WrongUsage,
            .text = QStringLiteral("--%1 needs whole channels, as in 100:200").arg(option) };
    if (range.first > range.last)
        return Failure { .code = WrongUsage,
            .text = QStringLiteral("--%1 %2 ends before it begins").arg(option, arguments.value(option)) };
    if (range.first < static_cast<double>(spectrum.firstChannel)
        || range.last > static_cast<double>(spectrum.lastChannel()))
        return Failure { .code = WrongUsage,
            .text = QStringLiteral("--%1 %2 is outside of the channels %3:%4")
                        .arg(option, arguments.value(option))
                        .arg(spectrum.firstChannel)
                        .arg(spectrum.lastChannel()) };
    return Range<qsizetype> { static_cast<qsizetype>(range.first), static_cast<qsizetype>(range.last) };
}

Failure wrongUse(QString sentence)
{
    if (sentence.endsWith(u'.'))
        sentence.chop(1);
    return { .code = WrongUsage, .text = sentence };
}

QJsonValue jsonNumber(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QByteArray alignedTable(const QList<QStringList>& rows)
{
    QList<qsizetype> widths;
    for (const QStringList& row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (i == widths.size())
                widths.append(0);
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    QString text;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i)
            line += (i > 0 ? QStringLiteral("  ") : QString()) + row[i].leftJustified(widths[i]);
        while (line.endsWith(u' '))
            line.chop(1);
        text += line + u'\n';
    }
    return text.toUtf8();
}

} // namespace cli
