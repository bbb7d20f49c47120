#include "server/lastserver.h"

#include <QCoreApplication>
#include <QSettings>

namespace console {

namespace {

constexpr QLatin1String kindKey("server/kind");
constexpr QLatin1String programKey("server/program");
constexpr QLatin1String hostKey("server/host");
constexpr QLatin1String portKey("server/port");
constexpr QLatin1String promptKey("server/prompt");

struct LastServerText {
    Q_DECLARE_TR_FUNCTIONS(LastServerText)
};

QString problemOf(const ServerChoice& choice, const QString& port, bool isPortKept)
{
    if (choice.host.isEmpty() || choice.host.contains(u' '))
        return LastServerText::tr("\u201c%1\u201d is not a valid host name.").arg(choice.host);
    if (choice.port == 0)
        return isPortKept ? LastServerText::tr("\u201c%1\u201d is no port: that is a number from 1 to 65535.").arg(port)
                          : LastServerText::tr("The port is missing.");
    return {};
}

} // namespace

LastServer readLastServer(const QSettings& memory)
{
    LastServer last;
    const QString kind = memory.value(kindKey).toString();
    if (kind == u"remote") {
        const QString port = memory.value(portKey).toString();
        last.choice.kind = ServerChoice::Kind::Remote;
        last.choice.host = memory.value(hostKey).toString().trimmed();
        last.choice.port = port.trimmed().toUShort(); // 0 for what is no port
        last.problem = problemOf(last.choice, port, memory.contains(portKey));
    } else {
        last.choice.program = memory.value(programKey).toString();
        if (!kind.isEmpty() && kind != u"local")
            last.problem = LastServerText::tr("\u201c%1\u201d is no kind of server.").arg(kind);
    }
    const QString prompt = memory.value(promptKey).toString();
    last.prompt = promptFromText(prompt).value_or(QByteArray());
    if (!prompt.isEmpty() && last.prompt.isEmpty() && last.problem.isEmpty())
        last.problem =
            LastServerText::tr("The prompt \u201c%1\u201d holds an escape other than \\n \\r \\t \\e \\\\ \\xHH.")
                .arg(prompt);
    return last;
}

void writeLastServer(QSettings& memory, const ServerChoice& choice, const QByteArray& prompt)
{
    const bool isRemote = choice.kind == ServerChoice::Kind::Remote;
    memory.setValue(kindKey, isRemote ? QStringLiteral("remote") : QStringLiteral("local"));
    memory.setValue(programKey, choice.program);
    memory.setValue(hostKey, choice.host);
    memory.setValue(portKey, choice.port);
    memory.setValue(promptKey, promptToText(prompt));
}

} // namespace console
