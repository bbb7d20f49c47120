#include "arguments.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

Failure wrongUsage(const QString& text)
{
    return { .code = WrongUsage, .text = text };
}

bool isNumber(const QString& word)
{
    bool valid = false;
    word.toDouble(&valid);
    return valid;
}

/// A word that begins with "-" and is neither the file name "-" nor a negative number or range.
bool isOption(const QString& word)
{
    return word.size() > 1 && word.startsWith(u'-') && !isNumber(word.section(u':', 0, 0));
}

/// An option of the command line, split into its name and an attached value.
struct ParsedOption {
    QString name;
    QString value;
    bool hasValue = false;
};

ParsedOption splitOption(const QString& word)
{
    if (word == u"-h")
        return { .name = QStringLiteral("help"), .value = {}, .hasValue = false };
    if (!word.startsWith(QLatin1String("--")))
        return { .name = word.mid(1, 1), .value = word.mid(2), .hasValue = word.size() > 2 };
    const qsizetype equals = word.indexOf(u'=');
    if (equals < 0)
        return { .name = word.mid(2), .value = {}, .hasValue = false };
    return { .name = word.mid(2, equals - 2), .value = word.mid(equals + 1), .hasValue = true };
}

} // namespace

Result<Arguments> Arguments::parse(const QStringList& words, const QList<Option>& options)
{
    Arguments arguments;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words.at(i);
        if (word == u"--") {
            arguments.m_words += words.mid(i + 1);
            break;
        }
        if (!isOption(word)) {
            arguments.m_words += word;
            continue;
        }
        ParsedOption given = splitOption(word);
        const bool isLong = word.startsWith(QLatin1String("--")) || word == u"-h";
        const auto known = std::find_if(options.begin(), options.end(),
            [&](const Option& option) { return option.name == given.name && isLong == (option.name.size() > 1); });
        if (known == options.end())
            return wrongUsage(QStringLiteral("unknown option '%1'").arg(word));
        if (known->value.isEmpty() && given.hasValue)
            return wrongUsage(QStringLiteral("%1 has no value").arg(known->spelling()));
        if (!known->value.isEmpty() && !given.hasValue) {
            if (++i == words.size())
                return wrongUsage(QStringLiteral("%1 needs %2").arg(known->spelling(), known->value));
            given.value = words.at(i);
        }
        // An empty value is different from a missing option.
        arguments.m_options.insert(given.name, given.value.isNull() ? QStringLiteral("") : given.value);
    }
    return arguments;
}

Result<double> numberOption(
    const Arguments& arguments, const QString& option, double minimum, double maximum, double otherwise)
{
    if (!arguments.has(option))
        return otherwise;
    bool valid = false;
    const double number = arguments.value(option).toDouble(&valid);
    if (valid && std::isfinite(number) && number >= minimum && number <= maximum)
        return number;
    return wrongUsage(QStringLiteral("--%1 '%2' is not a number from %3 to %4")
                          .arg(option, arguments.value(option))
                          .arg(minimum)
                          .arg(maximum, 0, 'g', 12));
}

Result<int> wholeNumberOption(
    const Arguments& arguments, const QString& option, int minimum, int maximum, int otherwise)
{
    const Result<double> number = numberOption(arguments, option, minimum, maximum, otherwise);
    if (!number.isOk())
        return number.failure();
    if (number.value() != std::floor(number.value()))
        return wrongUsage(QStringLiteral("--%1 '%2' is not a whole number").arg(option, arguments.value(option)));
    return static_cast<int>(number.value());
}

Result<std::optional<Range<double>>> rangeOption(const Arguments& arguments, const QString& option)
{
    if (!arguments.has(option))
        return std::optional<Range<double>>();
    const QStringList ends = arguments.value(option).split(u':');
    bool firstValid = false;
    bool lastValid = false;
    const double first = ends.value(0).toDouble(&firstValid);
    const double last = ends.value(1).toDouble(&lastValid);
    if (ends.size() != 2 || !firstValid || !lastValid || !std::isfinite(first) || !std::isfinite(last)) {
        return wrongUsage(
            QStringLiteral("--%1 '%2' is not a range: give two numbers with a colon between them, as 100:200")
                .arg(option, arguments.value(option)));
    }
    return std::optional(Range<double> { .first = first, .last = last });
}

} // namespace cli
