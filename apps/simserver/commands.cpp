#include "commands.h"

#include "commandtable.h"
#include "settings.h"
#include "simulation.h"
#include "text.h"

#include <tarnis/foundation/log.h>
#include <tarnis/version.h>

#include <algorithm>
#include <array>

namespace simserver {

namespace {

struct Command {
    const char* name;
    const char* usage;
    const char* meaning;
    CommandFunction function;
};

Reply helpCommand(Simulation& simulation, const QString& arguments);

/// Normally handled earlier, because its content ends with a special byte.
Reply uploadWithoutContent(Simulation&, const QString&)
{
    return Reply::refusal(QStringLiteral("txfile needs a first line with a name"));
}

const auto commands = std::to_array<Command>({
    { "help", "help [COMMAND]", "the commands, or one of them", helpCommand },
    { "stat", "stat", "numbers of the server, the run, modules and histograms", statCommand },
    { "setting", "setting [key:value ...]", "lists all settings, or changes some", settingCommand },
    { "savesetting", "savesetting", "writes the settings to a file", saveSettingCommand },
    { "start", "start", "begins the next run on cleared histograms", startCommand },
    { "stop", "stop", "ends the run", stopCommand },
    { "clear", "clear", "zeroes histograms, counts and clocks", clearCommand },
    { "hists", "hists", "the histograms with kind, size and axes", histsCommand },
    { "hist1d", "hist1d NAME [FIRST [LAST]] [bins:N], hist1d NAME [ROW] pairs [all] [bins:N]",
        "rows of a histogram, or one row as pairs; binary", hist1dCommand },
    { "hist2d", "hist2d NAME [bins:N|bins:XxY]", "a map; binary", hist2dCommand },
    { "pwd", "pwd", "the current directory, which is the setting basepath", pwdCommand },
    { "ls-F", "ls-F [\"DIRECTORY\"]", "what a directory holds; directories end with /", listCommand },
    { "txfile", "txfile NAME, line feed, content, byte 0x04", "stores a file", uploadWithoutContent },
    { "rxfile", "rxfile NAME", "the bytes of a file; binary", downloadCommand },
    { "broadcast", "broadcast COMMAND", "a module command to all modules", broadcastCommand },
    { "unicast", "unicast MODULE COMMAND", "a module command to one module", unicastCommand },
    { "mc", "mc orsino COMMAND", "a module command to the modules with even numbers", multicastCommand },
    { "sleep", "sleep MILLISECONDS [STEPS]", "answers after a while, with a line at each step", sleepCommand },
    { "fault", "fault [NAME [every:N] [delay:MILLISECONDS]]", "lists the faults, or misbehaves in one way",
        faultCommand },
    { "close", "close", "ends the connection", nullptr },
});

const Command* findCommand(const QString& name)
{
    const auto found = std::find_if(
        commands.begin(), commands.end(), [&](const Command& command) { return name == QLatin1String(command.name); });
    return found == commands.end() ? nullptr : &*found;
}

Reply unknownCommand(const QString& name)
{
    return Reply::refusal(QStringLiteral("unknown command '%1'; help lists the commands").arg(shown(name)));
}

/// Details of one command beyond its summary line.
QString details(const QString& name)
{
    if (name == QStringLiteral("setting"))
        return QStringLiteral("Settings:\n") + Settings::help();
    if (name == QStringLiteral("fault"))
        return QStringLiteral("Faults:\n") + faultHelp();
    if (name == QStringLiteral("broadcast") || name == QStringLiteral("unicast") || name == QStringLiteral("mc")) {
        return QStringLiteral("Module commands:\n"
                              "  stat                     numbers of a module\n"
                              "  setting [key:value ...]  enabled (on, off) and threshold (0..1023)\n"
                              "  reset                    puts both back\n");
    }
    return {};
}

Reply helpCommand(Simulation&, const QString& arguments)
{
    if (!arguments.isEmpty()) {
        const Command* const command = findCommand(arguments);
        if (command == nullptr)
            return unknownCommand(arguments);
        const QString text = QLatin1String(command->usage) + QLatin1Char('\n') + QStringLiteral("  ")
            + QLatin1String(command->meaning) + QLatin1Char('\n') + details(arguments);
        return Reply::ok(text.toUtf8());
    }
    QString text;
    for (const Command& command : commands)
        text += strprintf("  %-12s %s\n", command.name, command.meaning);
    return Reply::ok(text.toUtf8());
}

bool isControl(QChar character)
{
    return character < QLatin1Char(' ') && character != QLatin1Char('\t');
}

/// The reply of a command refused by a fault, in the form that the client expects.
Reply refusedOnDemand(const Command* command)
{
    const bool binary =
        command != nullptr && (command->function == hist1dCommand || command->function == hist2dCommand);
    const QString reason = QStringLiteral("refused on demand");
    return binary ? Reply::binaryRefusal(reason) : Reply::refusal(reason);
}

Reply answerLine(Simulation& simulation, const QByteArray& bytes)
{
    const QString line = QString::fromLatin1(bytes).trimmed();
    if (line.isEmpty())
        return Reply(); // an empty line is answered by a prompt
    if (std::any_of(line.begin(), line.end(), isControl))
        return Reply::refusal(QStringLiteral("the command contains a control character"));
    const qsizetype space = line.indexOf(QLatin1Char(' '));
    const QString name = space < 0 ? line : line.left(space);
    const Command* const command = findCommand(name);
    if ((command == nullptr || command->function != faultCommand) && simulation.fault().refuses())
        return refusedOnDemand(command);
    if (command == nullptr || command->function == nullptr)
        return unknownCommand(name);
    return command->function(simulation, space < 0 ? QString() : line.mid(space + 1).trimmed());
}

} // namespace

Reply answer(Simulation& simulation, const Request& request)
{
    switch (request.kind) {
    case Request::Kind::Line:
        return answerLine(simulation, request.bytes);
    case Request::Kind::Upload:
        return simulation.fault().refuses() ? refusedOnDemand(nullptr) : uploadRequest(simulation, request.bytes);
    case Request::Kind::TooLong:
        return Reply::refusal(QStringLiteral("longer than %1 bytes, or %2 for txfile")
                                  .arg(RequestReader::maxLine)
                                  .arg(RequestReader::maxUpload));
    case Request::Kind::Farewell:
        break;
    }
    return Reply();
}

QByteArray greetingText()
{
    return "tarnis-simserver " TARNIS_VERSION_STRING ", a simulated data-acquisition server; help lists the commands\n";
}

QString unexpected(const QString& arguments)
{
    return QStringLiteral("unexpected '%1': the command has no arguments").arg(shown(arguments));
}

} // namespace simserver
