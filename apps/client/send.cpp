// tarnis send: sends commands to the server and prints the replies.
#include "commands.h"
#include "output.h"
#include "server.h"

#include <QJsonObject>

namespace cli {

namespace {

/// The commands of the line: one consisting of these words, or several if the first one is quoted and contains a space.
QStringList commandsOf(const QStringList& words)
{
    return words.size() > 1 && words.first().trimmed().contains(u' ') ? words : QStringList { words.join(u' ') };
}

Result<QStringList> commandsOfInput()
{
    const Result<QByteArray> input = readInput("-");
    if (!input.isOk())
        return input.failure();
    QStringList commands;
    for (const QString& line : QString::fromUtf8(input.value()).split(u'\n', Qt::SkipEmptyParts)) {
        if (!line.trimmed().isEmpty())
            commands += line.trimmed();
    }
    if (commands.isEmpty())
        return Failure { .code = WrongUsage, .text = "standard input holds no command" };
    return commands;
}

/// Whether the server answers the command with a length, a payload and a text.
bool hasBinaryReply(const QString& command)
{
    const QString name = command.section(u' ', 0, 0, QString::SectionSkipEmpty);
    return name == u"hist1d" || name == u"hist2d" || name == u"rxfile";
}

Outcome printReply(const QString& command, const tarnis::Reply& reply, bool json)
{
    if (!json) {
        QByteArray text = reply.text().toUtf8();
        if (!text.isEmpty() && !text.endsWith('\n'))
            text += '\n';
        return print(text);
    }
    QJsonObject object { { "command", command }, { "reply", reply.text() },
        { "milliseconds", double(reply.elapsed.count()) / 1e6 } };
    if (!reply.binaryText.isNull())
        object.insert("payloadBytes", reply.data.size());
    return print(object);
}

Outcome send(const Arguments& arguments)
{
    const QStringList& words = arguments.words();
    const Result<QStringList> commands =
        words == QStringList { "-" } ? commandsOfInput() : Result<QStringList>(commandsOf(words));
    if (!commands.isOk())
        return commands.failure();
    for (const QString& command : commands.value()) {
        if (Outcome wrong = checkServerCommand(command))
            return wrong;
    }
    const Result<std::unique_ptr<Server>> server = Server::open(arguments);
    if (!server.isOk())
        return server.failure();
    for (const QString& command : commands.value()) {
        const Result<tarnis::Reply> reply =
            hasBinaryReply(command) ? server.value()->askBinary(command) : server.value()->ask(command);
        if (!reply.isOk())
            return reply.failure();
        if (Outcome outcome = printReply(command, reply.value(), arguments.has("json")))
            return outcome;
    }
    return std::nullopt;
}

} // namespace

const Command sendCommand {
    .name = "send",
    .synopsis = "[--server HOST:PORT | --local PROGRAM] [--prompt TEXT] [--timeout S] COMMAND...",
    .summary = "sends commands to the server and prints its replies",
    .description =
        "The words are one command: 'tarnis send setting rate:100'. If the first one is quoted and contains a space,\n"
        "each word is a command of its own: 'tarnis send \"setting rate:100\" start'. The word - reads commands from\n"
        "standard input, one on each line. The first refusal ends it. Of a reply with binary data the text is\n"
        "printed; 'tarnis hist' and 'tarnis get' save the data.",
    .options = serverOptions(),
    .minWords = 1,
    .maxWords = -1,
    .run = send,
};

} // namespace cli
