// Commands about the server's files.
#include "commandtable.h"
#include "simulation.h"
#include "text.h"

#include <tarnis/foundation/log.h>

#include <algorithm>

namespace simserver {

namespace {

constexpr qint64 maxDownload = qint64 { 16 } * 1024 * 1024;

} // namespace

Reply pwdCommand(Simulation& simulation, const QString& arguments)
{
    if (!arguments.isEmpty())
        return Reply::refusal(unexpected(arguments));
    return Reply::ok(simulation.settings().values().basePath.toUtf8() + '\n');
}

Reply listCommand(Simulation& simulation, const QString& arguments)
{
    const QString directory = cleanServerPath(unquoted(arguments), simulation.settings().values().basePath);
    const ServerFiles::Listing listing = simulation.files().list(directory);
    if (!listing.error.isEmpty())
        return Reply::refusal(QStringLiteral("cannot list '%1': %2").arg(shown(directory), listing.error));
    return Reply::ok(listing.entries);
}

Reply downloadCommand(Simulation& simulation, const QString& arguments)
{
    const QString name = unquoted(arguments);
    if (name.isEmpty())
        return Reply::binaryRefusal(QStringLiteral("rxfile needs the name of a file"));
    const QString path = cleanServerPath(name, simulation.settings().values().basePath);
    const ServerFiles::Content content = simulation.files().read(path, maxDownload);
    if (!content.error.isEmpty())
        return Reply::binaryRefusal(QStringLiteral("cannot read '%1': %2").arg(shown(path), content.error));
    Reply reply;
    reply.kind = Reply::Kind::File;
    reply.payload = content.bytes;
    reply.text = "OK: " + path.toUtf8() + ", " + QByteArray::number(content.bytes.size()) + " bytes\n";
    return reply;
}

Reply uploadRequest(Simulation& simulation, const QByteArray& request)
{
    const qsizetype feed = request.indexOf('\n');
    const QString header = QString::fromLatin1(feed < 0 ? request : request.first(feed)).trimmed();
    const QString command = header.section(QLatin1Char(' '), 0, 0);
    const QString name = unquoted(header.mid(command.size()).trimmed());
    if (command != QStringLiteral("txfile"))
        return Reply::refusal(QStringLiteral("unknown command '%1'; help lists the commands").arg(shown(command)));
    if (feed < 0)
        return Reply::refusal(QStringLiteral("txfile needs a line feed between the name and the content"));
    if (name.isEmpty() || name.endsWith(QLatin1Char('/')))
        return Reply::refusal(QStringLiteral("txfile needs the name of a file"));
    if (std::any_of(name.begin(), name.end(), [](QChar c) { return c < QLatin1Char(' '); }))
        return Reply::refusal(QStringLiteral("the name contains a control character"));
    const QString path = cleanServerPath(name, simulation.settings().values().basePath);
    const QByteArray content = request.sliced(feed + 1);
    const QString error = simulation.files().write(path, content);
    if (!error.isEmpty())
        return Reply::refusal(QStringLiteral("cannot write '%1': %2").arg(shown(path), error));
    LOG_INFO("%lld bytes into %s", static_cast<long long>(content.size()), path.toUtf8().constData());
    return Reply::ok("file: " + path.toUtf8() + "\nbytes: " + QByteArray::number(content.size()) + '\n');
}

} // namespace simserver
