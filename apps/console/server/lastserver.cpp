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
        return isPortKept
            ? LastServerText::tr("\u201c%1\u201d is not a valid port: it must be a number from 1 to 65535.").arg(port)
            : LastServerText::tr("The port is missing.");
    return {};
}

} // namespace

LastServer readLastServer(const QSettings& store)
{
    LastServer last;
    const QString kind = store.value(kindKey).toString();
    if (kind == u"remote") {
        const QString port = store.value(portKey).toString();
        last.choice.kind = ServerChoice::Kind::Remote;
        last.choice.host = store.value(hostKey).toString().trimmed();
        last.choice.port = port.trimmed().toUShort(); // 0 if invalid
        last.problem = problemOf(last.choice, port, store.contains(portKey));
    } else {
        last.choice.program = store.value(programKey).toString();
        if (!kind.isEmpty() && kind != u"local")
            last.problem = LastServerText::tr("\u201c%1\u201d is not a valid kind of server.").arg(kind);
    }
    const QString prompt = store.value(promptKey).toString();
    last.prompt = promptFromText(prompt).value_or(QByteArray());
    if (!prompt.isEmpty() && last.prompt.isEmpty() && last.problem.isEmpty())
        last.problem =
            LastServerText::tr("The prompt \u201c%1\u201d contains an escape other than \\n \\r \\t \\e \\\\ \\xHH.")
                .arg(prompt);
    return last;
}

void writeLastServer(QSettings& store, const ServerChoice& choice, const QByteArray& prompt)
{
    const bool isRemote = choice.kind == ServerChoice::Kind::Remote;
    store.setValue(kindKey, isRemote ? QStringLiteral("remote") : QStringLiteral("local"));
    store.setValue(programKey, choice.program);
    store.setValue(hostKey, choice.host);
    store.setValue(portKey, choice.port);
    store.setValue(promptKey, promptToText(prompt));
}

} // namespace console
