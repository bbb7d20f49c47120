// Rounding works on the decimal digits of the shortest text that reads back as the same number. So the binary
// representation does not affect ties.
#include "tarnis/analysis/figures.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnis {

namespace {

constexpr QChar dash(0x2013);
constexpr QChar minus(0x2212);

// sign * 0.d1 d2 d3 ... * 10^exponent; no digits: 0.
struct Decimal {
    bool negative = false;
    QString digits;
    int exponent = 0;

    explicit Decimal(double value)
    {
        const QString text = QString::number(std::fabs(value), 'e', QLocale::FloatingPointShortest);
        const qsizetype e = text.indexOf(u'e');
        negative = std::signbit(value);
        digits = text.left(e).remove(u'.');
        exponent = QStringView(text).sliced(e + 1).toInt() + 1;
        while (digits.endsWith(u'0'))
            digits.chop(1);
        if (digits.isEmpty())
            negative = false;
    }

    // Decimal place of the last of n leading digits: 10^result.
    int placeOf(int n) const { return exponent - n; }

    // Rounded to a multiple of 10^place, half to even.
    void round(int place)
    {
        const qsizetype keep = exponent - place;
        if (keep >= digits.size())
            return;
        if (keep < 0) {
            *this = Decimal(0.0);
            return;
        }
        const QString rest = digits.mid(keep);
        digits.truncate(keep);
        const bool half = rest == u"5";
        const bool odd = keep > 0 && (digits.back().unicode() - u'0') % 2 == 1;
        if (rest.front() > u'5' || (rest.front() == u'5' && !half) || (half && odd))
            increment(place);
        while (digits.endsWith(u'0'))
            digits.chop(1);
        if (digits.isEmpty())
            negative = false;
    }

    // Increments the last kept digit.
    void increment(int place)
    {
        for (qsizetype i = digits.size(); i-- > 0;) {
            if (digits[i] != u'9') {
                digits[i] = QChar(digits[i].unicode() + 1);
                return;
            }
            digits[i] = u'0';
        }
        digits.prepend(u'1');
        if (digits.size() == 1)
            exponent = place;
        ++exponent;
    }

    // Plain text down to 10^place, padded with zeros.
    QString text(int place) const
    {
        QString result;
        for (int i = std::max(0, exponent - 1); i >= std::min(place, 0); --i) {
            if (i == -1)
                result += u'.';
            const qsizetype index = exponent - 1 - i;
            result += index >= 0 && index < digits.size() ? digits[index] : QChar(u'0');
        }
        return negative ? u'-' + result : result;
    }
};

// Decimal place of the last shown digit of an uncertainty.
int lastPlace(double uncertainty, FigureRule rule)
{
    Decimal u(uncertainty);
    if (rule == FigureRule::TwoDigits) {
        u.round(u.placeOf(2));
        return u.placeOf(2);
    }
    u.round(u.placeOf(3));
    const QString padded = u.digits.leftJustified(3, u'0');
    const int leading = QStringView(padded).first(3).toInt();
    return leading <= 354 ? u.placeOf(2) : u.placeOf(1); // from 950 on it becomes 1000, with two digits
}

bool needsPower(double value, double uncertainty)
{
    const double largest = std::max(std::fabs(value), uncertainty);
    return largest >= 1e6 || largest < 1e-4;
}

// The common power of ten, that of the larger of the two.
int powerOf(double value, double uncertainty)
{
    return Decimal(std::max(std::fabs(value), uncertainty)).exponent - 1;
}

QString powerText(int power)
{
    return u"e%1%2"_s.arg(QChar(power < 0 ? u'-' : u'+')).arg(std::abs(power), 2, 10, QChar(u'0'));
}

QString withoutError(double value)
{
    return std::isfinite(value) ? QString::number(value == 0.0 ? 0.0 : value, 'g', 6) + u' ' + dash : QString(dash);
}

bool isError(double uncertainty)
{
    return uncertainty > 0.0 && std::isfinite(uncertainty);
}

// Digits in brackets, in units of the last place; with a decimal point if the uncertainty is 1 or more and the number
// has decimals.
QString bracket(Decimal uncertainty, int place)
{
    if (place >= 0 || uncertainty.exponent > 0)
        return uncertainty.text(place);
    uncertainty.exponent -= place;
    return uncertainty.text(0);
}

} // namespace

QString figureText(double value, double uncertainty, FigureRule rule)
{
    if (!std::isfinite(value) || !isError(uncertainty))
        return withoutError(value);
    Decimal v(value);
    Decimal u(uncertainty);
    int place = lastPlace(uncertainty, rule);
    u.round(place);
    v.round(place);
    int power = 0;
    if (needsPower(value, uncertainty)) {
        power = powerOf(value, uncertainty);
        v.exponent -= power;
        u.exponent -= power;
        place -= power;
    }
    const QString text = v.text(place) + u'(' + bracket(u, place) + u')';
    return power ? text + powerText(power) : text;
}

QString figureText(double value, double upper, double lower, FigureRule rule)
{
    if (!std::isfinite(value) || !isError(upper) || !isError(lower))
        return withoutError(value);
    int place = lastPlace(std::min(upper, lower), rule);
    Decimal v(value);
    Decimal up(upper);
    Decimal low(lower);
    v.round(place);
    up.round(place);
    low.round(place);
    int power = 0;
    const double largest = std::max(upper, lower);
    if (needsPower(value, largest)) {
        power = powerOf(value, largest);
        v.exponent -= power;
        up.exponent -= power;
        low.exponent -= power;
        place -= power;
    }
    const QString text = v.text(place) + u" +"_s + up.text(place) + u' ' + minus + low.text(place);
    return power ? u'(' + text + u')' + powerText(power) : text;
}

QString fullDigits(double value)
{
    return std::isnan(value) ? u"nan"_s : QString::number(value, 'g', 10);
}

} // namespace tarnis
