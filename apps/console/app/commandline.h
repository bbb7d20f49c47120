// What the user types behind `tarnis-console`: options, prompts written with escapes, addresses. Plain values, no
// application object needed, so that --help and mistakes are answered on a machine without a display too.
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
    QString program; ///< local: path of the program; empty means the simulator beside the console
    QString host; ///< remote
    quint16 port = 0; ///< remote

    bool operator==(const ServerChoice&) const = default;
};

struct Options {
    std::optional<ServerChoice> server; ///< nothing: the last one used
    std::optional<QByteArray> prompt; ///< nothing: the last one used
    QString logFile;
    QString language; ///< empty: the last one chosen
    QString tourDirectory; ///< not empty: run the tour and exit
};

/// What the command line asks for. For Mistake `text` says what is wrong, for Help and Version it is what to print.
struct CommandLine {
    enum class Action { Run, Help, Version, Mistake };
    Action action = Action::Run;
    Options options;
    QString text;
};

/// Reads the arguments, the program's name at the front included. Options that Qt itself takes (-platform, -style) are
/// passed over.
CommandLine parseCommandLine(const QStringList& arguments);

/// The bytes of a prompt as the user writes it: UTF-8 with the escapes \n \r \t \e \\ and \xHH. Nothing for an empty
/// prompt or an escape that does not exist.
std::optional<QByteArray> promptFromText(const QString& text);

/// The inverse of promptFromText().
QString promptToText(const QByteArray& prompt);

/// Reads "host:port" or "[address]:port", port 1 to 65535; nothing for anything else.
std::optional<ServerChoice> remoteFromText(const QString& text);

} // namespace console
