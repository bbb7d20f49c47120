// tarnis put and tarnis get: transfer text files to and from the server.
#include "commands.h"
#include "output.h"
#include "server.h"

#include <QJsonObject>
#include <QRegularExpression>

namespace cli {

namespace {

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
    if (Outcome wrong = checkRemoteName(remote, "file"))
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

/// The error in the reply to rxfile; empty if it is a file. An empty file and an erroneous length of 0 differ in the
/// text after it: "OK: NAME, N bytes", or the intended content.
QString faultOfFile(const tarnis::Reply& reply)
{
    const QString text = reply.text().trimmed();
    if (!text.startsWith(QLatin1String("OK")) && !(text.isEmpty() && !reply.data.isEmpty()))
        return QStringLiteral("the text after the file does not begin with OK");
    static const QRegularExpression size(QStringLiteral(", ([0-9]+) bytes$"));
    const QRegularExpressionMatch stated = size.match(text);
    if (stated.hasMatch() && stated.captured(1).toLongLong() != reply.data.size())
        return QStringLiteral("it holds %1 bytes of %2").arg(reply.data.size()).arg(stated.captured(1));
    return {};
}

Outcome get(const Arguments& arguments)
{
    const QString& remote = arguments.words().at(0);
    const QString& file = arguments.words().at(1);
    if (Outcome wrong = checkRemoteName(remote, "file"))
        return wrong;
    if (file.isEmpty())
        return Failure { .code = WrongUsage, .text = "the name of the local file is empty" };
    if (file == u"-" && arguments.has("json"))
        return Failure { .code = WrongUsage, .text = "--json and - both use standard output" };
    const Result<std::unique_ptr<Server>> server = Server::open(arguments);
    if (!server.isOk())
        return server.failure();
    const QString command = QStringLiteral("rxfile ") + remote;
    const Result<tarnis::Reply> reply = server.value()->askBinary(command);
    if (!reply.isOk())
        return reply.failure();
    if (const QString fault = faultOfFile(reply.value()); !fault.isEmpty())
        return server.value()->brokenReply(command, fault);
    if (Outcome outcome = writeOutput(file, reply.value().data))
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
