// Commands about the run, the settings, and the server itself.
#include "commandtable.h"
#include "settings.h"
#include "simulation.h"
#include "text.h"

#include <tarnis/foundation/log.h>
#include <tarnis/version.h>

namespace simserver {

namespace {

constexpr int maxSleepMs = 600000;
constexpr int maxSleepSteps = 10000;

/// Lines of the form name: value.
class StatusLines {
public:
    void section(const char* name) { m_text += "--" + QByteArray(name) + '\n'; }
    void add(const QString& name, const QString& value)
    {
        m_text += (name + QStringLiteral(": ") + value + u'\n').toUtf8();
    }
    void add(const char* name, const QString& value) { add(QString::fromLatin1(name), value); }
    template <std::integral Number> void add(const char* name, Number value) { add(name, QString::number(value)); }
    void add(const char* name, double value) { add(name, QString::number(value, 'g', 10)); }
    const QByteArray& text() const { return m_text; }

private:
    QByteArray m_text;
};

void addServer(StatusLines& lines, Simulation& simulation)
{
    const ServerFacts facts = simulation.facts();
    lines.section("server");
    lines.add("version", QStringLiteral(TARNIS_VERSION_STRING));
    lines.add("port", facts.port);
    lines.add("up time", facts.upSeconds);
    lines.add("clients", facts.clients);
    lines.add("requests", facts.requests);
    lines.add("base path", simulation.settings().values().basePath);
    lines.add("fault", QString::fromLatin1(infoOf(simulation.fault().fault()).name));
}

void addRun(StatusLines& lines, const Simulation& simulation)
{
    const Acquisition& run = simulation.acquisition();
    lines.section("run");
    lines.add("state", run.isRunning() ? QStringLiteral("RUNNING") : QStringLiteral("STOPPED"));
    lines.add("run", run.run() < 0 ? QStringLiteral("none") : QString::number(run.run()));
    lines.add("next run", simulation.settings().values().run);
    lines.add(
        "run directory", simulation.runDirectory().isEmpty() ? QStringLiteral("none") : simulation.runDirectory());
    lines.add("real time", run.realTime());
    lines.add("live time", run.liveTime());
    const double dead = run.realTime() > 0.0 ? 1.0 - run.liveTime() / run.realTime() : 0.0;
    lines.add("dead time percent", QString::number(qMax(0.0, dead) * 100.0, 'f', 2));
    lines.add("events", run.events());
    lines.add("rejected", run.rejected());
    lines.add("rate", run.recentRate());
    lines.add("mean rate", run.meanRate());
    lines.add("wanted rate", simulation.settings().values().rate);
}

void addModules(StatusLines& lines, const Acquisition& run)
{
    lines.section("modules");
    lines.add("modules", run.modules().size());
    int number = 0;
    for (const Module& module : run.modules()) {
        const QByteArray prefix = "module " + QByteArray::number(number++) + ' ';
        lines.add((prefix + "enabled").constData(), module.enabled ? QStringLiteral("on") : QStringLiteral("off"));
        lines.add((prefix + "counts").constData(), module.counts);
        lines.add((prefix + "rate").constData(),
            run.liveTime() > 0.0 ? static_cast<double>(module.counts) / run.liveTime() : 0.0);
    }
}

void addHistograms(StatusLines& lines, const HistogramSet& histograms)
{
    lines.section("histograms");
    for (const Histogram1D& histogram : histograms.all1D()) {
        lines.add(QStringLiteral("histogram ") + histogram.name,
            QStringLiteral("%1 x %2").arg(histogram.rows).arg(histogram.axis.bins));
    }
    for (const Histogram2D& map : histograms.all2D()) {
        lines.add(
            QStringLiteral("histogram ") + map.name, QStringLiteral("map %1 x %2").arg(map.x.bins).arg(map.y.bins));
    }
}

Reply settingsReply(const Simulation& simulation)
{
    StatusLines lines;
    for (const Settings::Pair& pair : simulation.settings().all())
        lines.add(pair.key, pair.value);
    return Reply::ok(lines.text());
}

Reply faultsReply(Simulation& simulation)
{
    const FaultSwitch& fault = simulation.fault();
    StatusLines lines;
    lines.add("fault", QString::fromLatin1(infoOf(fault.fault()).name));
    lines.add("every", fault.every());
    lines.add("delay", fault.delayMs());
    Reply reply = Reply::ok(lines.text() + "--faults\n" + faultHelp().toUtf8());
    reply.exempt = true;
    return reply;
}

/// Reads `every:N` and `delay:MS`; returns the error, if any.
QString readFaultOption(const QString& word, int& every, int& delayMs)
{
    bool valid = false;
    const int number = QStringView(word).mid(word.indexOf(QLatin1Char(':')) + 1).toInt(&valid);
    if (word.startsWith(QStringLiteral("every:")) && valid && number >= 1)
        every = number;
    else if (word.startsWith(QStringLiteral("delay:")) && valid && number >= 0 && number <= maxSleepMs)
        delayMs = number;
    else
        return QStringLiteral("'%1' is neither every:N (from 1) nor delay:MILLISECONDS (0 to %2)")
            .arg(shown(word), QString::number(maxSleepMs));
    return {};
}

QString changeFault(Simulation& simulation, const QStringList& words)
{
    const std::optional<Fault> fault = faultByName(words.first());
    if (!fault)
        return QStringLiteral("unknown fault '%1'; fault lists them").arg(shown(words.first()));
    if (infoOf(*fault).where == FaultInfo::Where::Process)
        return QStringLiteral("'%1' acts when the server starts: use --fault").arg(words.first());
    int every = 1;
    int delayMs = -1;
    for (qsizetype i = 1; i < words.size(); ++i) {
        QString error = readFaultOption(words[i], every, delayMs);
        if (!error.isEmpty())
            return error;
    }
    simulation.fault().set(*fault, every, delayMs);
    LOG_INFO("fault %s, every %d", infoOf(*fault).name, every);
    return {};
}

Reply okOrRefusal(const QString& error)
{
    return error.isEmpty() ? Reply::ok() : Reply::refusal(error);
}

} // namespace

Reply statCommand(Simulation& simulation, const QString& arguments)
{
    if (!arguments.isEmpty())
        return Reply::refusal(unexpected(arguments));
    StatusLines lines;
    addServer(lines, simulation);
    addRun(lines, simulation);
    addModules(lines, simulation.acquisition());
    addHistograms(lines, simulation.acquisition().histograms());
    return Reply::ok(lines.text());
}

Reply settingCommand(Simulation& simulation, const QString& arguments)
{
    if (arguments.isEmpty())
        return settingsReply(simulation);
    QList<Settings::Pair> pairs;
    QString error = Settings::parsePairs(arguments, pairs);
    if (error.isEmpty())
        error = simulation.changeSettings(pairs);
    return okOrRefusal(error);
}

Reply saveSettingCommand(Simulation& simulation, const QString& arguments)
{
    if (!arguments.isEmpty())
        return Reply::refusal(unexpected(arguments));
    const QString error = simulation.saveSettings();
    if (!error.isEmpty())
        return Reply::refusal(QStringLiteral("cannot write '%1': %2").arg(simulation.saveName(), error));
    return Reply::ok("file: " + simulation.saveName().toUtf8() + '\n');
}

Reply startCommand(Simulation& simulation, const QString& arguments)
{
    if (!arguments.isEmpty())
        return Reply::refusal(unexpected(arguments));
    const QString error = simulation.start();
    if (!error.isEmpty())
        return Reply::refusal(error);
    LOG_INFO("run %d starts", simulation.acquisition().run());
    return Reply::ok("run: " + QByteArray::number(simulation.acquisition().run()) + '\n');
}

Reply stopCommand(Simulation& simulation, const QString& arguments)
{
    if (!arguments.isEmpty())
        return Reply::refusal(unexpected(arguments));
    const QString error = simulation.stop();
    if (!error.isEmpty())
        return Reply::refusal(error);
    const Acquisition& run = simulation.acquisition();
    LOG_INFO("run %d stops: %llu events", run.run(), static_cast<unsigned long long>(run.events()));
    return Reply::ok("run: " + QByteArray::number(run.run()) + "\nevents: " + QByteArray::number(run.events()) + '\n');
}

Reply clearCommand(Simulation& simulation, const QString& arguments)
{
    if (!arguments.isEmpty())
        return Reply::refusal(unexpected(arguments));
    simulation.clear();
    return Reply::ok();
}

Reply sleepCommand(Simulation&, const QString& arguments)
{
    const QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    bool valid = false;
    const int milliseconds = words.value(0).toInt(&valid);
    if (!valid || words.size() > 2 || milliseconds < 0 || milliseconds > maxSleepMs)
        return Reply::refusal(QStringLiteral("sleep needs a time of 0 to %1 milliseconds").arg(maxSleepMs));
    const int steps = words.size() == 2 ? words[1].toInt(&valid) : 0;
    if (!valid || (words.size() == 2 && (steps < 1 || steps > maxSleepSteps)))
        return Reply::refusal(QStringLiteral("the steps must be from 1 to %1").arg(maxSleepSteps));
    Reply reply = Reply::ok();
    if (steps == 0) {
        reply.delayedTexts.push_back({ .pauseMs = milliseconds, .text = {} });
        return reply;
    }
    // The steps are lines of one reply, which starts with "OK:" and ends with the prompt.
    reply.delayedTexts.push_back({ .pauseMs = 0, .text = reply.text });
    for (int step = 1; step <= steps; ++step) {
        const auto until = [&](int s) { return static_cast<int>(qint64 { milliseconds } * s / steps); };
        const QByteArray line = "step " + QByteArray::number(step) + " of " + QByteArray::number(steps) + '\n';
        reply.delayedTexts.push_back({ .pauseMs = until(step) - until(step - 1), .text = line });
    }
    reply.text.clear();
    return reply;
}

Reply faultCommand(Simulation& simulation, const QString& arguments)
{
    const QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return faultsReply(simulation);
    Reply reply = okOrRefusal(changeFault(simulation, words));
    reply.exempt = true;
    return reply;
}

} // namespace simserver
