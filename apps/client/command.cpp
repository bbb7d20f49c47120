#include "command.h"

#include "output.h"

#include <tarnis/version.h>

#include <QJsonObject>

#include <algorithm>

namespace cli {

QList<Option> serverOptions()
{
    return {
        { "server", "HOST:PORT", "the server; without it the environment variable TARNIS_SERVER names one" },
        { "local", "PROGRAM", "starts this server, uses it, and ends it" },
        { "prompt", "TEXT", "what ends each reply of the server; without it \"> \"" },
        { "timeout", "S", "seconds for the connection and for each reply; without it 10" },
    };
}

QList<Option> allOptions(const Command& command)
{
    QList<Option> options = command.options;
    options += { "json", {}, "machine-readable output" };
    options += { "help", {}, "prints this text, as -h does" };
    return options;
}

QString helpOf(const Command& command)
{
    QString text =
        QStringLiteral("usage: tarnis %1 %2\n\n%3\n\n").arg(command.name, command.synopsis, command.description);
    for (const Option& option : allOptions(command)) {
        const QString spelling = option.value.isEmpty() ? option.spelling() : option.spelling() + u' ' + option.value;
        text += QStringLiteral("  %1  %2\n").arg(spelling, -20).arg(option.help);
    }
    return text;
}

namespace {

QString helpOfProgram(std::span<const Command* const> commands)
{
    QString text = QStringLiteral("usage: tarnis COMMAND [OPTION...] [WORD...]\n\n"
                                  "A data-acquisition server and its histograms from the command line.\n\n");
    for (const Command* const command : commands)
        text += QStringLiteral("  %1  %2\n").arg(command->name, -12).arg(command->summary);
    text +=
        QStringLiteral("\n'tarnis COMMAND --help' lists the options of a command, --version prints the version.\n"
                       "Exit codes: 0 done, 1 the server refused, 2 wrong usage, 3 no connection or no usable reply,\n"
                       "4 a file, or standard output, could not be read or written.\n");
    return text;
}

/// One line on standard error; with --json an object on standard output as well.
int fail(const Failure& failure, const QString& command, bool json)
{
    QString text = failure.text;
    if (failure.code == WrongUsage) {
        text += command.isEmpty() ? QStringLiteral("; 'tarnis --help' lists the commands")
                                  : QStringLiteral("; 'tarnis %1 --help' lists the options").arg(command);
    }
    if (json) {
        const QJsonObject object { { "error", failure.text }, { "exitCode", int(failure.code) } };
        // A second error from the output would hide the first one.
        [[maybe_unused]] const Outcome printed = print(object);
    }
    printError(text);
    return failure.code;
}

Outcome checkWords(const Command& command, const QStringList& words)
{
    if (words.size() < command.minWords)
        return Failure { .code = WrongUsage,
            .text = QStringLiteral("usage: tarnis %1 %2").arg(command.name, command.synopsis.simplified()) };
    if (command.maxWords >= 0 && words.size() > command.maxWords)
        return Failure { .code = WrongUsage,
            .text = QStringLiteral("unexpected '%1'").arg(words.at(command.maxWords)) };
    return std::nullopt;
}

int runCommand(const Command& command, const QStringList& words)
{
    const bool jsonMayBeMeant = words.contains(QStringLiteral("--json"));
    const Result<Arguments> arguments = Arguments::parse(words, allOptions(command));
    if (!arguments.isOk())
        return fail(arguments.failure(), command.name, jsonMayBeMeant);
    const bool json = arguments.value().has(QStringLiteral("json"));
    Outcome outcome;
    if (arguments.value().has(QStringLiteral("help")))
        outcome = print(helpOf(command).toUtf8());
    else if (outcome = checkWords(command, arguments.value().words()); !outcome)
        outcome = command.run(arguments.value());
    return outcome ? fail(*outcome, command.name, json) : Done;
}

} // namespace

int runProgram(const QStringList& words, std::span<const Command* const> commands)
{
    Outcome outcome;
    const QString first = words.value(0);
    if (first == u"--help" || first == u"-h" || (first == u"help" && words.size() == 1)) {
        outcome = print(helpOfProgram(commands).toUtf8());
    } else if (first == u"--version") {
        outcome = print("tarnis " TARNIS_VERSION_STRING "\n");
    } else {
        const bool help = first == u"help";
        if (help && words.size() > 2)
            return fail({ .code = WrongUsage, .text = QStringLiteral("unexpected '%1'").arg(words.at(2)) }, {}, false);
        const QString name = help ? words.at(1) : first;
        const auto known = std::find_if(
            commands.begin(), commands.end(), [&](const Command* command) { return command->name == name; });
        if (known != commands.end())
            return runCommand(**known, help ? QStringList { QStringLiteral("--help") } : words.mid(1));
        const QString text =
            name.isEmpty() ? QStringLiteral("no command") : QStringLiteral("unknown command '%1'").arg(name);
        outcome = Failure { .code = WrongUsage, .text = text };
    }
    return outcome ? fail(*outcome, {}, words.contains(QStringLiteral("--json"))) : Done;
}

} // namespace cli
