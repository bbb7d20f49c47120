// Converts numbers to text and back exactly, in any locale.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

namespace tarnis {

/// Appends the shortest digits from which the same double is read; an integer below 2^53 without point and exponent.
/// Values that are not finite are written as "nan", "inf" and "-inf".
void appendNumber(QByteArray& text, double value);
/// The numbers, separated by single spaces.
QByteArray numberList(const std::vector<double>& values);

/// Parses the whole text as a number, ignoring leading and trailing spaces. Accepts "nan" and "inf" in any case, with
/// either sign. Nothing for any other text, or a number beyond the range of double.
std::optional<double> numberOf(QByteArrayView text);
/// Parses numbers separated by spaces; empty if one of them is not a number.
std::optional<std::vector<double>> numbersOf(QByteArrayView text);

/// The beginning of a bad field for an error message: at most 40 characters, without control characters.
QString quoted(QByteArrayView field);

/// Splits a text into lines: LF, CR LF or the end of the text ends a line.
class LineReader {
public:
    explicit LineReader(QByteArrayView text)
        : m_rest(text)
    {
    }
    /// The next line without its line end; empty after the last one. A final line end does not start another line.
    std::optional<QByteArrayView> next();
    int number() const { return m_number; } ///< number of the line that next() returned last, from 1

private:
    QByteArrayView m_rest;
    int m_number = 0;
};

} // namespace tarnis
