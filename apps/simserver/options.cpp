#include "options.h"

#include <tarnis/version.h>

#include <QCommandLineParser>
#include <QProcess>

#include <array>

namespace simserver {

namespace {

constexpr qsizetype maxPrompt = 64;
constexpr int maxClientsLimit = 10000;
constexpr int maxDelayMs = 600000;

/// Options that set the setting of the same name.
constexpr std::array<const char*, 5> settingOptions { "modules", "rate", "seed", "maxevents", "maxtime" };

void addOptions(QCommandLineParser& parser)
{
    const auto add = [&](const char* name, const char* value, const char* text) {
        parser.addOption({ QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value) });
    };
    const auto addFlag = [&](const char* name, const char* text) {
        parser.addOption({ QString::fromLatin1(name), QString::fromLatin1(text) });
    };
    parser.addOption({ { QStringLiteral("h"), QStringLiteral("help") }, QStringLiteral("Shows this help.") });
    parser.addOption({ { QStringLiteral("v"), QStringLiteral("version") }, QStringLiteral("Shows the version.") });
    add("port", "N", "TCP port on the loopback interface; 0, as without it, takes a free one.");
    add("prompt", "TEXT", "What ends every reply; \"> \" without it.");
    add("root", "DIR",
        "Directory that clients see as /. Without it a directory of samples that is deleted at the end.");
    add("settings", "FILE", "Reads the settings from this file, if it is there; savesetting writes it.");
    add("modules", "N", "Detector modules, 1 to 256; 8 without it.");
    add("rate", "N", "Events per second, up to 1e7; 1000 without it.");
    add("seed", "N", "Seed of the events; 1 without it.");
    add("maxevents", "N", "A run stops by itself after so many events.");
    add("maxtime", "SECONDS", "A run stops by itself after so much live time.");
    addFlag("start", "Begins a run at once.");
    add("spectrum", "FILE",
        "Serves a measured spectrum, and events sampled from it. The file is .spe text or has one number a line.");
    add("fault", "NAME", "Misbehaves in one way; see below.");
    add("fault-every", "N", "The fault strikes each N-th time that it could; 1 without it.");
    add("fault-delay", "MS", "Pause of a fault that has one, in milliseconds.");
    add("max-clients", "N", "Connections at a time, 1 to 10000; 512 without it.");
    add("log", "FILE", "Appends a log to this file.");
    add("log-level", "N", "Least level of the log: 0 all, 10 connections and refusals, 30 errors; 0 without it.");
    addFlag("no-stdin", "Does not read standard input. Without it the server ends on \"exit\" there, or on its end.");
}

/// Reads options one by one and stores the first error.
class Reader {
public:
    explicit Reader(const QCommandLineParser& parser)
        : m_parser(parser)
    {
    }

    void text(const char* name, QString& target)
    {
        if (!isSet(name))
            return;
        target = value(name);
        if (target.isEmpty())
            fail(QStringLiteral("--%1 needs a value").arg(QLatin1String(name)));
    }

    template <typename Number> void number(const char* name, int minimum, int maximum, Number& target)
    {
        if (!isSet(name))
            return;
        bool valid = false;
        const int number = value(name).toInt(&valid);
        if (!valid || number < minimum || number > maximum) {
            fail(QStringLiteral("--%1 must be a whole number from %2 to %3")
                     .arg(QLatin1String(name))
                     .arg(minimum)
                     .arg(maximum));
            return;
        }
        target = static_cast<Number>(number);
    }

    bool isSet(const char* name) const { return m_parser.isSet(QString::fromLatin1(name)); }
    QString value(const char* name) const { return m_parser.value(QString::fromLatin1(name)); }

    void fail(const QString& error)
    {
        if (m_error.isEmpty())
            m_error = error;
    }
    const QString& error() const { return m_error; }

private:
    const QCommandLineParser& m_parser;
    QString m_error;
};

void readFault(Reader& reader, Options& options)
{
    reader.number("fault-every", 1, std::numeric_limits<int>::max(), options.faultEvery);
    reader.number("fault-delay", 0, maxDelayMs, options.faultDelayMs);
    if (!reader.isSet("fault"))
        return;
    const std::optional<Fault> fault = faultByName(reader.value("fault"));
    if (fault)
        options.fault = *fault;
    else
        reader.fail(QStringLiteral("unknown fault '%1'; --help lists them").arg(reader.value("fault")));
}

void readSettings(Reader& reader, Options& options)
{
    for (const char* const name : settingOptions) {
        if (!reader.isSet(name))
            continue;
        const Settings::Pair pair { QString::fromLatin1(name), reader.value(name) };
        const QString error = Settings().change({ pair }, {});
        if (!error.isEmpty())
            reader.fail(QStringLiteral("--%1").arg(error));
        options.settings.append(pair);
    }
}

void readPrompt(Reader& reader, Options& options)
{
    if (!reader.isSet("prompt"))
        return;
    options.prompt = reader.value("prompt").toUtf8();
    if (options.prompt.isEmpty() || options.prompt.size() > maxPrompt)
        reader.fail(QStringLiteral("--prompt must be 1 to %1 bytes long").arg(maxPrompt));
}

Options failure(const QString& error)
{
    Options options;
    options.action = Options::Action::Fail;
    options.message = error;
    return options;
}

Options message(Options::Action action, const QString& text)
{
    Options options;
    options.action = action;
    options.message = text;
    return options;
}

QString helpText(const QCommandLineParser& parser)
{
    return parser.helpText()
        + QStringLiteral(
            "\nFaults (--fault NAME):\n%1"
            "\nOptions in the environment variable %2 are read before those of the command line.\n"
            "Exit codes: 0 ended in order, 1 could not start, 2 wrong command line, 3 a fault that exits.\n")
              .arg(faultHelp(), QLatin1String(environmentName));
}

} // namespace

Options parseOptions(const QStringList& arguments, const QString& environment)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A simulated data-acquisition server. It prints \"UI port: N\" when it listens and accepts commands over TCP;\n"
        "\"help\" there lists them."));
    addOptions(parser);
    const QStringList words = arguments.mid(0, 1) + QProcess::splitCommand(environment) + arguments.mid(1);
    if (!parser.parse(words))
        return failure(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return message(Options::Action::Help, helpText(parser));
    if (parser.isSet(QStringLiteral("version")))
        return message(Options::Action::Version, QStringLiteral("tarnis-simserver " TARNIS_VERSION_STRING "\n"));
    if (!parser.positionalArguments().isEmpty())
        return failure(QStringLiteral("unexpected '%1'").arg(parser.positionalArguments().constFirst()));
    Options options;
    Reader reader(parser);
    reader.number("port", 0, 65535, options.port);
    readPrompt(reader, options);
    reader.text("root", options.root);
    reader.text("settings", options.settingsFile);
    readSettings(reader, options);
    reader.text("spectrum", options.spectrumFile);
    readFault(reader, options);
    reader.number("max-clients", 1, maxClientsLimit, options.maxClients);
    reader.text("log", options.logFile);
    reader.number("log-level", 0, 1000, options.logLevel);
    options.start = reader.isSet("start");
    options.useStandardInput = !reader.isSet("no-stdin");
    return reader.error().isEmpty() ? options : failure(reader.error());
}

} // namespace simserver
