// Numbers as text and back, exact to the bit and in no locale.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

namespace tarnis {

/// Appends the shortest digits from which the same double is read; an integer below 2^53 without point and exponent.
/// "nan", "inf" and "-inf" for what is not finite.
void appendNumber(QByteArray& text, double value);
/// The numbers with single blanks between them.
QByteArray numberList(const std::vector<double>& values);

/// The number that the whole text is, blanks around it ignored; also "nan" and "inf" in any case, with either sign.
/// Nothing for any other text, or a number beyond the range of double.
std::optional<double> numberOf(QByteArrayView text);
/// All numbers of a text, separated by blanks; nothing if one of them is not a number.
std::optional<std::vector<double>> numbersOf(QByteArrayView text);

/// The beginning of a bad field for an error message: at most 40 characters, without control characters.
QString quoted(QByteArrayView field);

/// Takes lines from a text one by one: LF, CR LF or the end of the text ends a line.
class LineReader {
public:
    explicit LineReader(QByteArrayView text)
        : m_rest(text)
    {
    }
    /// The next line without its end; nothing behind the last one. The end of the last line is not a line.
    std::optional<QByteArrayView> next();
    int number() const { return m_number; } ///< of the line that next() returned last, from 1

private:
    QByteArrayView m_rest;
    int m_number = 0;
};

} // namespace tarnis
