// tarnis put and tarnis get: text files to and from the server.
#include "commands.h"
#include "output.h"
#include "server.h"

#include <QJsonObject>

#include <algorithm>

namespace cli {

namespace {

/// A name that fits on the first line of a request.
Outcome checkName(const QString& name)
{
    const bool fits = !name.trimmed().isEmpty()
        && std::none_of(name.begin(), name.end(), [](QChar c) { return c.category() == QChar::Other_Control; });
    if (fits)
        return std::nullopt;
    return Failure { .code = WrongUsage,
        .text = QStringLiteral("'%1' is not the name of a file on the server").arg(name) };
}

Outcome report(const Arguments& arguments, const QString& file, const QString& remote, qsizetype bytes)
{
    if (!arguments.has("json"))
        return std::nullopt;
    return print(QJsonObject { { "file", file }, { "remote", remote }, { "bytes", bytes } });
}

Outcome put(const Arguments& arguments)
{
    const QString& file = arguments.words().at(0);
    const QString& remote = arguments.words().at(1);
    if (const Outcome wrong = checkName(remote))
        return wrong;
    const Result<QByteArray> content = readInput(file);
    if (!content.isOk())
        return content.failure();
    constexpr char endOfUpload = 4;
    const qsizetype place = content.value().indexOf(endOfUpload);
    if (place >= 0) {
        return Failure { .code = FileError,
            .text = QStringLiteral("cannot send '%1': byte %2 is 4, which ends an upload: only text files can be sent")
                        .arg(file)
                        .arg(place) };
    }
    const Result<std::unique_ptr<Server>> server = Server::open(arguments);
    if (!server.isOk())
        return server.failure();
    const Result<tarnis::Reply> reply = server.value()->upload(remote, content.value());
    if (!reply.isOk())
        return reply.failure();
    return report(arguments, file, remote, content.value().size());
}

Outcome get(const Arguments& arguments)
{
    const QString& remote = arguments.words().at(0);
    const QString& file = arguments.words().at(1);
    if (const Outcome wrong = checkName(remote))
        return wrong;
    if (file == u"-" && arguments.has("json"))
        return Failure { .code = WrongUsage, .text = "--json and - both use standard output" };
    const Result<std::unique_ptr<Server>> server = Server::open(arguments);
    if (!server.isOk())
        return server.failure();
    const Result<tarnis::Reply> reply = server.value()->askBinary(QStringLiteral("rxfile ") + remote);
    if (!reply.isOk())
        return reply.failure();
    if (const Outcome outcome = writeOutput(file, reply.value().data))
        return outcome;
    return report(arguments, file, remote, reply.value().data.size());
}

} // namespace

const Command putCommand {
    .name = "put",
    .synopsis = "[--server HOST:PORT | --local PROGRAM] [--prompt TEXT] [--timeout S] FILE REMOTE",
    .summary = "stores a text file on the server",
    .description = "Stores the text file FILE on the server as REMOTE, in place of a file that exists there. FILE may "
                   "be -, which is\n"
                   "standard input.",
    .options = serverOptions(),
    .minWords = 2,
    .maxWords = 2,
    .run = put,
};

const Command getCommand {
    .name = "get",
    .synopsis = "[--server HOST:PORT | --local PROGRAM] [--prompt TEXT] [--timeout S] REMOTE FILE",
    .summary = "saves a file of the server",
    .description = "Saves the file REMOTE of the server as FILE. FILE may be -, which is standard output.",
    .options = serverOptions(),
    .minWords = 2,
    .maxWords = 2,
    .run = get,
};

} // namespace cli
