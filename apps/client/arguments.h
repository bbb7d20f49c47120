// The command line: the options of a command, and the given arguments.
#pragma once

#include "outcome.h"

#include <QList>
#include <QMultiHash>
#include <QString>
#include <QStringList>

namespace cli {

/// An option of a command.
struct Option {
    QString name; ///< without "--"; "o" for a one-letter option
    QString value; ///< name of its value, for example "HOST:PORT"; empty for a switch
    QString help; ///< one line

    /// "--name" or "-o".
    QString spelling() const { return (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name; }
};

/// The arguments of a command.
class Arguments {
public:
    /// Parses the words after the command's name. Options may be anywhere; "--" ends them; "--name=value" and "-ovalue"
    /// are accepted, and "-h" for "--help". A word that begins with "-" is an option unless it is "-" or a number.
    static Result<Arguments> parse(const QStringList& words, const QList<Option>& options);

    bool has(const QString& option) const { return m_options.contains(option); }
    /// The last value of the option; a null text if the option is missing.
    QString value(const QString& option) const { return m_options.value(option); }
    /// All values of an option that may be repeated.
    QStringList values(const QString& option) const { return m_options.values(option); }
    const QStringList& words() const { return m_words; }

private:
    QMultiHash<QString, QString> m_options; ///< the last value of an option first
    QStringList m_words;
};

/// A pair of values, as in "100:200".
template <typename Number> struct Range {
    Number first;
    Number last;
};

// Values of options. A failure contains the name of the option.

/// A finite number from `minimum` to `maximum`, or `otherwise` if the option is missing.
Result<double> numberOption(
    const Arguments& arguments, const QString& option, double minimum, double maximum, double otherwise);
/// As above for an integer.
Result<int> wholeNumberOption(
    const Arguments& arguments, const QString& option, int minimum, int maximum, int otherwise);
/// Two finite numbers separated by a colon; empty if the option is missing.
Result<std::optional<Range<double>>> rangeOption(const Arguments& arguments, const QString& option);

} // namespace cli
