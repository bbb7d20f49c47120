// The command line of `tarnis-console`: options, prompts with escapes, addresses. Needs no application object, so that
// --help and error messages also work without a display.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace console {

/// A server to use: a program to start, or a host and port to connect to.
struct ServerChoice {
    enum class Kind { Local, Remote };
    Kind kind = Kind::Local;
    QString program; ///< local: path of the program; empty: the simulator in the console's folder
    QString host; ///< remote
    quint16 port = 0; ///< remote

    bool operator==(const ServerChoice&) const = default;
};

struct Options {
    std::optional<ServerChoice> server; ///< nothing: the last one used
    std::optional<QByteArray> prompt; ///< nothing: the last one used
    QString logFile;
    QString language; ///< empty: the last chosen one
    QString tourDirectory; ///< not empty: run the tour and exit
};

/// The parsed command line. `text` is the error for Mistake, and the text to print for Help and Version.
struct CommandLine {
    enum class Action { Run, Help, Version, Mistake };
    Action action = Action::Run;
    Options options;
    QString text;
};

/// Parses the arguments, including the program's name. Qt's own options (-platform, -style) are ignored.
CommandLine parseCommandLine(const QStringList& arguments);

/// The bytes of a prompt entered by the user: UTF-8 with the escapes \n \r \t \e \\ and \xHH. Empty for an empty prompt
/// or an unknown escape.
std::optional<QByteArray> promptFromText(const QString& text);

/// The inverse of promptFromText().
QString promptToText(const QByteArray& prompt);

/// Parses "host:port" or "[address]:port", port 1 to 65535; empty for anything else.
std::optional<ServerChoice> remoteFromText(const QString& text);

} // namespace console
