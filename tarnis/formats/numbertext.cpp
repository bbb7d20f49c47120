#include "tarnis/formats/numbertext_p.h"

#include <QString>

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace tarnis {

void appendNumber(QByteArray& text, double value)
{
    constexpr double exactIntegers = 9007199254740992.0; // 2^53
    std::array<char, 32> digits; // NOLINT(*-member-init): filled by to_chars
    char* const end = digits.data() + digits.size();
    std::to_chars_result result {};
    // to_chars alone writes 100000 as 1e+05, which is shorter but no readable count.
    if (std::fabs(value) < exactIntegers && value == std::trunc(value) && !(value == 0.0 && std::signbit(value)))
        result = std::to_chars(digits.data(), end, static_cast<qint64>(value));
    else
        result = std::to_chars(digits.data(), end, value);
    text.append(digits.data(), result.ptr - digits.data());
}

QByteArray numberList(const std::vector<double>& values)
{
    QByteArray text;
    for (const double value : values) {
        if (!text.isEmpty())
            text += ' ';
        appendNumber(text, value);
    }
    return text;
}

std::optional<double> numberOf(QByteArrayView text)
{
    text = text.trimmed();
    if (text.startsWith('+') && text.size() > 1 && text[1] != '-')
        text = text.sliced(1);
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, value);
    if (text.isEmpty() || result.ec != std::errc {} || result.ptr != end)
        return std::nullopt;
    return value;
}

std::optional<std::vector<double>> numbersOf(QByteArrayView text)
{
    std::vector<double> values;
    text = text.trimmed();
    while (!text.isEmpty()) {
        qsizetype length = 0;
        while (length < text.size() && text[length] != ' ' && text[length] != '\t')
            ++length;
        const std::optional<double> value = numberOf(text.first(length));
        if (!value)
            return std::nullopt;
        values.push_back(*value);
        text = text.sliced(length).trimmed();
    }
    return values;
}

QString quoted(QByteArrayView field)
{
    constexpr qsizetype maxShown = 40;
    QString text = QString::fromUtf8(field.first(std::min(field.size(), maxShown)));
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control || character == QChar::ReplacementCharacter)
            character = u'_';
    }
    return field.size() > maxShown ? text + QStringLiteral("...") : text;
}

std::optional<QByteArrayView> LineReader::next()
{
    if (m_rest.isEmpty())
        return std::nullopt;
    const qsizetype end = m_rest.indexOf('\n');
    QByteArrayView line = end < 0 ? m_rest : m_rest.first(end);
    m_rest = end < 0 ? QByteArrayView() : m_rest.sliced(end + 1);
    ++m_number;
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

} // namespace tarnis
