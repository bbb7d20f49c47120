// The commands of the program. Each one has a source file with one object of this type; commands.cpp lists them.
#pragma once

#include "arguments.h"
#include "outcome.h"

#include <QList>
#include <QString>

#include <span>

namespace cli {

/// One command: what it accepts, what --help prints, and what it does.
struct Command {
    QString name;
    QString synopsis; ///< arguments and options, without program and command
    QString summary; ///< one line, as in the list of commands
    QString description; ///< paragraphs of --help
    QList<Option> options; ///< in addition to --json and --help, which every command has
    qsizetype minWords = 0;
    qsizetype maxWords = -1; ///< -1: any number
    Outcome (*run)(const Arguments& arguments) = nullptr;
};

/// The options of all commands that use a server.
QList<Option> serverOptions();

/// All options: those of the command, --json and --help.
QList<Option> allOptions(const Command& command);
/// The text of --help of a command.
QString helpOf(const Command& command);

/// Executes a command line without the program's name: finds the command, parses its options, prints help or errors.
/// Returns the exit code.
int runProgram(const QStringList& words, std::span<const Command* const> commands);

} // namespace cli
