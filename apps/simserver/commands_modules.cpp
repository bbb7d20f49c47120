// Commands that are routed to the readout modules. The reply has a section for each addressed module.
#include "commandtable.h"
#include "simulation.h"
#include "text.h"

#include <QStringList>

#include <vector>

namespace simserver {

namespace {

bool isOrsino(int number)
{
    return number % 2 == 0;
}

QByteArray moduleStat(const Acquisition& run, int number)
{
    const Module& module = run.modules()[static_cast<std::size_t>(number)];
    const double rate = run.liveTime() > 0.0 ? static_cast<double>(module.counts) / run.liveTime() : 0.0;
    return QStringLiteral("family: %1\nstate: %2\ncounts: %3\nrate: %4\n")
        .arg(isOrsino(number) ? QStringLiteral("orsino") : QStringLiteral("plain"),
            !module.enabled       ? QStringLiteral("OFF")
                : run.isRunning() ? QStringLiteral("RUNNING")
                                  : QStringLiteral("STOPPED"))
        .arg(module.counts)
        .arg(rate, 0, 'g', 10)
        .toUtf8();
}

QByteArray moduleSetting(const Module& module)
{
    return QStringLiteral("enabled: %1\nthreshold: %2\n")
        .arg(module.enabled ? QStringLiteral("on") : QStringLiteral("off"))
        .arg(module.threshold)
        .toUtf8();
}

QString changeModule(Module& module, const Settings::Pair& pair)
{
    if (pair.key == QStringLiteral("enabled")) {
        if (pair.value != QStringLiteral("on") && pair.value != QStringLiteral("off"))
            return QStringLiteral("enabled must be on or off");
        module.enabled = pair.value == QStringLiteral("on");
        return {};
    }
    if (pair.key == QStringLiteral("threshold")) {
        bool valid = false;
        const int threshold = pair.value.toInt(&valid);
        if (!valid || threshold < 0 || threshold > Module::maxThreshold)
            return QStringLiteral("threshold must be a whole number from 0 to %1").arg(Module::maxThreshold);
        module.threshold = threshold;
        return {};
    }
    return QStringLiteral("unknown module setting '%1': enabled and threshold are known").arg(shown(pair.key));
}

/// Changes a copy, so that a refused pair changes nothing.
QString changeModules(std::vector<Module>& modules, const std::vector<int>& numbers, const QString& arguments)
{
    QList<Settings::Pair> pairs;
    QString error = Settings::parsePairs(arguments, pairs);
    std::vector<Module> changed = modules;
    for (const int number : numbers) {
        for (const Settings::Pair& pair : std::as_const(pairs)) {
            if (error.isEmpty())
                error = changeModule(changed[static_cast<std::size_t>(number)], pair);
        }
    }
    if (error.isEmpty())
        modules = std::move(changed);
    return error;
}

Reply sections(const Simulation& simulation, const std::vector<int>& numbers, bool stat)
{
    const Acquisition& run = simulation.acquisition();
    QByteArray text;
    for (const int number : numbers) {
        text += "--module " + QByteArray::number(number) + '\n';
        text += stat ? moduleStat(run, number) : moduleSetting(run.modules()[static_cast<std::size_t>(number)]);
    }
    return Reply::ok(text);
}

Reply moduleCommand(Simulation& simulation, const std::vector<int>& numbers, const QString& command)
{
    const QString name = command.section(QLatin1Char(' '), 0, 0);
    const QString arguments = command.mid(name.size()).trimmed();
    if (name == QStringLiteral("setting")) {
        const QString error = changeModules(simulation.modules(), numbers, arguments);
        return error.isEmpty() ? sections(simulation, numbers, false) : Reply::refusal(error);
    }
    if (name.isEmpty())
        return Reply::refusal(QStringLiteral("a module command is missing: stat, setting or reset"));
    if (name != QStringLiteral("stat") && name != QStringLiteral("reset")) {
        return Reply::refusal(
            QStringLiteral("unknown module command '%1': stat, setting and reset are known").arg(shown(name)));
    }
    if (!arguments.isEmpty())
        return Reply::refusal(unexpected(arguments));
    if (name == QStringLiteral("stat"))
        return sections(simulation, numbers, true);
    for (const int number : numbers) {
        Module& module = simulation.modules()[static_cast<std::size_t>(number)];
        module = Module { .enabled = true, .threshold = 0, .counts = module.counts };
    }
    return sections(simulation, numbers, false);
}

std::vector<int> moduleNumbers(Simulation& simulation, bool orsinoOnly)
{
    std::vector<int> numbers;
    for (int number = 0; number < static_cast<int>(simulation.modules().size()); ++number) {
        if (!orsinoOnly || isOrsino(number))
            numbers.push_back(number);
    }
    return numbers;
}

} // namespace

Reply broadcastCommand(Simulation& simulation, const QString& arguments)
{
    return moduleCommand(simulation, moduleNumbers(simulation, false), arguments);
}

Reply unicastCommand(Simulation& simulation, const QString& arguments)
{
    const QString id = arguments.section(QLatin1Char(' '), 0, 0);
    bool valid = false;
    const int number = id.toInt(&valid);
    const auto modules = static_cast<int>(simulation.modules().size());
    if (!valid || number < 0 || number >= modules)
        return Reply::refusal(
            QStringLiteral("no module '%1': there are 0 to %2").arg(shown(id), QString::number(modules - 1)));
    return moduleCommand(simulation, { number }, arguments.mid(id.size()).trimmed());
}

Reply multicastCommand(Simulation& simulation, const QString& arguments)
{
    const QString family = arguments.section(QLatin1Char(' '), 0, 0);
    if (family != QStringLiteral("orsino"))
        return Reply::refusal(QStringLiteral("unknown family '%1': orsino is known").arg(shown(family)));
    return moduleCommand(simulation, moduleNumbers(simulation, true), arguments.mid(family.size()).trimmed());
}

} // namespace simserver
