#include "tarnis/foundation/helpers.h"

#include <QDate>
#include <QDir>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

struct NumberFormat {
    char letter;
    int precision;
};

NumberFormat numberFormat { 'g', 6 };

QString& saveDir()
{
    static QString directory;
    return directory;
}

} // namespace

QString capitalize(QString text)
{
    if (!text.isEmpty())
        text[0] = text.at(0).toUpper();
    return text;
}

bool setNumberFormat(char format, int precision)
{
    switch (format) {
    case 'E':
    case 'G':
    case 'e':
    case 'f':
    case 'g':
    case 'n':
        numberFormat = { format, precision };
        return true;
    default:
        return false;
    }
}

QString numStr(double value, char format, int precision)
{
    QString text = format == 'n' ? engineeringNumber(value, precision) : QString::number(value, format, precision);
    if (text.contains(QLatin1Char('e'), Qt::CaseInsensitive) || !text.contains(QLatin1Char('.')))
        return text;
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

QString numStr(double value)
{
    return numStr(value, numberFormat.letter, numberFormat.precision);
}

QString engineeringNumber(double value, int precision)
{
    if (std::isinf(value))
        return QString::number(value, 'g', precision);
    int exponent = 0;
    while (std::abs(value) >= 1000.0) {
        value /= 1000.0;
        exponent += 3;
    }
    // The test for zero ends the loop where denormal numbers are flushed to zero.
    while (value != 0.0 && std::abs(value) < 1.0) {
        value *= 1000.0;
        exponent -= 3;
    }
    const bool whole = std::ceil(value) == std::floor(value);
    const QString mantissa = whole ? QString::number(static_cast<int>(value)) : QString::number(value, 'g', precision);
    return exponent == 0 ? mantissa : QString::asprintf("%se%+d", qPrintable(mantissa), exponent);
}

QList<QString>& trim(QList<QString>& list)
{
    for (QString& text : list)
        text = text.trimmed();
    return list;
}

QList<QString> trimmed(QList<QString> list)
{
    trim(list);
    return list;
}

QString valueOf(const QList<QString>& list, const QString& key, const QString& separator, const QString& defaultValue,
    bool trimResult)
{
    const QString prefix = key + separator;
    const auto found =
        std::find_if(list.cbegin(), list.cend(), [&](const QString& line) { return line.startsWith(prefix); });
    const QString value = found == list.cend() ? defaultValue : found->mid(prefix.size());
    return trimResult ? value.trimmed() : value;
}

QList<QString> startsWith(const QList<QString>& list, const QString& prefix)
{
    const QRegularExpression expression(QStringLiteral("^%1.+").arg(prefix));
    return expression.isValid() ? QStringList(list).filter(expression) : QStringList();
}

QList<QString> split(const QString& text, const QString& separator, int maxParts)
{
    QList<QString> parts;
    const QString whole = text.trimmed();
    qsizetype start = 0;
    int count = maxParts == 0 ? std::numeric_limits<int>::max() : maxParts;
    for (; count > 1; --count) {
        const qsizetype at = whole.indexOf(separator, start);
        if (at - start < 1)
            break;
        parts.append(whole.mid(start, at - start));
        // One character, not the separator's length: the rest of a longer separator stays in the text.
        start = at + 1;
    }
    parts.append(whole.mid(start));
    return parts;
}

QList<QString>& localeAwareSort(QList<QString>& list)
{
    std::sort(list.begin(), list.end(),
        [](const QString& a, const QString& b) { return QString::localeAwareCompare(a, b) < 0; });
    return list;
}

bool getRunDirInfo(const QString& name, QString* prefix, int* run, QDate* date)
{
    static const QRegularExpression expression(
        QRegularExpression::anchoredPattern(QStringLiteral("(.+)(\\d{6})_(\\d{4})(\\d{2})(\\d{2})")));
    const QStringList captured = expression.match(name).capturedTexts();
    if (captured.size() != 6)
        return false;
    if (prefix)
        *prefix = captured.at(1);
    if (run)
        *run = captured.at(2).toInt();
    if (date)
        *date = QDate(captured.at(3).toInt(), captured.at(4).toInt(), captured.at(5).toInt());
    return true;
}

QString getSaveDir()
{
    return saveDir().isEmpty() ? QDir::currentPath() : saveDir();
}

void setSaveFilePath(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash >= 0)
        saveDir() = path.left(slash + 1);
}
