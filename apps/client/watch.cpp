// tarnis watch: prints state, run, counts and rate of the server, one line per period.
#include "commands.h"
#include "interruption.h"
#include "output.h"
#include "server.h"

#include <QDateTime>
#include <QEventLoop>
#include <QHash>
#include <QJsonObject>
#include <QTimer>

namespace cli {

namespace {

/// The content of a reply to stat: lines "name: value", in sections that begin with "--".
struct Statistics {
    QHash<QString, QString> run; ///< those of the section "--run", or of a reply without sections
    bool hasValues = false; ///< whether any line contains a value
};

Statistics readStatistics(const QString& stat)
{
    Statistics statistics;
    QString section = QStringLiteral("run");
    for (const QString& line : stat.split(u'\n')) {
        if (line.startsWith(QLatin1String("--"))) {
            section = line.mid(2).trimmed();
            continue;
        }
        const qsizetype colon = line.indexOf(u':');
        const QString value = line.mid(colon + 1).trimmed();
        if (colon < 1 || value.isEmpty())
            continue;
        statistics.hasValues = true;
        if (section == u"run")
            statistics.run.insert(line.left(colon).trimmed(), value);
    }
    return statistics;
}

/// A number if possible, else the text; null if the server does not report it.
QJsonValue valueOf(const QHash<QString, QString>& values, const QString& name)
{
    const QString text = values.value(name);
    bool valid = false;
    const double number = text.toDouble(&valid);
    return valid ? QJsonValue(number) : text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

Outcome printState(const QHash<QString, QString>& values, bool json)
{
    const QString time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    if (json) {
        return print(
            QJsonObject { { "time", time }, { "state", valueOf(values, "state") }, { "run", valueOf(values, "run") },
                { "counts", valueOf(values, "events") }, { "rate", valueOf(values, "rate") } });
    }
    const auto text = [&](const char* name) { return values.value(QLatin1String(name), "unknown"); };
    return print(QStringLiteral("%1 state=%2 run=%3 counts=%4 rate=%5\n")
                     .arg(time, text("state"), text("run"), text("events"), text("rate"))
                     .toUtf8());
}

/// Waits for the next period, or less if the connection is lost or the program is interrupted.
void pause(Server& server, Interruption& interruption, double seconds)
{
    QEventLoop loop;
    QTimer::singleShot(
        std::chrono::milliseconds(static_cast<qint64>(seconds * 1000.0)), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    QObject::connect(&server.client(), &tarnis::Client::connectionLost, &loop, &QEventLoop::quit);
    QObject::connect(&interruption, &Interruption::requested, &loop, &QEventLoop::quit);
    if (!interruption.isRequested())
        loop.exec();
}

Outcome watch(const Arguments& arguments)
{
    const Result<double> every = numberOption(arguments, "every", 0.01, 86400.0, 1.0);
    const Result<int> count = wholeNumberOption(arguments, "count", 1, 1000000000, 0);
    if (!every.isOk() || !count.isOk())
        return every.isOk() ? count.failure() : every.failure();
    Interruption interruption;
    const Result<std::unique_ptr<Server>> server = Server::open(arguments, &interruption);
    if (!server.isOk())
        return interruption.isRequested() ? std::nullopt : Outcome(server.failure());
    // Ends a request under way at once.
    QObject::connect(&interruption, &Interruption::requested, &server.value()->client(), &tarnis::Client::abort);
    for (int line = 1; !interruption.isRequested(); ++line) {
        const Result<tarnis::Reply> reply = server.value()->ask("stat");
        if (interruption.isRequested())
            break;
        if (!reply.isOk())
            return reply.failure();
        const Statistics statistics = readStatistics(reply.value().text());
        if (!statistics.hasValues)
            return server.value()->brokenReply("stat", "it has no line of the form 'name: value'");
        if (Outcome outcome = printState(statistics.run, arguments.has("json")))
            return outcome;
        if (line == count.value())
            break;
        pause(*server.value(), interruption, every.value());
    }
    return std::nullopt;
}

} // namespace

const Command watchCommand {
    .name = "watch",
    .synopsis = "[--server HOST:PORT | --local PROGRAM] [--prompt TEXT] [--timeout S] [--every S] [--count N]",
    .summary = "prints state, run, counts and rate until it is interrupted",
    .description =
        "Prints a line each period: time, state, run number, counts and rate (counts per second). An interrupt\n"
        "(Ctrl+C) ends it with exit code 0, a lost connection with 3.",
    .options = serverOptions()
        + QList<Option> { { "every", "S", "seconds between two lines; without it 1" },
            { "count", "N", "ends after so many lines" } },
    .minWords = 0,
    .maxWords = 0,
    .run = watch,
};

} // namespace cli
