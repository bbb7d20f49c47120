// The commands, one function each, grouped by source file. The argument is the trimmed text after the command's name.
#pragma once

#include "reply.h"

#include <QByteArray>
#include <QString>

namespace simserver {

class Simulation;

using CommandFunction = Reply (*)(Simulation& simulation, const QString& arguments);

// commands_run.cpp
Reply statCommand(Simulation& simulation, const QString& arguments);
Reply settingCommand(Simulation& simulation, const QString& arguments);
Reply saveSettingCommand(Simulation& simulation, const QString& arguments);
Reply startCommand(Simulation& simulation, const QString& arguments);
Reply stopCommand(Simulation& simulation, const QString& arguments);
Reply clearCommand(Simulation& simulation, const QString& arguments);
Reply sleepCommand(Simulation& simulation, const QString& arguments);
Reply faultCommand(Simulation& simulation, const QString& arguments);

// commands_histograms.cpp
Reply histsCommand(Simulation& simulation, const QString& arguments);
Reply hist1dCommand(Simulation& simulation, const QString& arguments);
Reply hist2dCommand(Simulation& simulation, const QString& arguments);

// commands_modules.cpp
Reply broadcastCommand(Simulation& simulation, const QString& arguments);
Reply unicastCommand(Simulation& simulation, const QString& arguments);
Reply multicastCommand(Simulation& simulation, const QString& arguments);

// commands_files.cpp
Reply pwdCommand(Simulation& simulation, const QString& arguments);
Reply listCommand(Simulation& simulation, const QString& arguments);
Reply downloadCommand(Simulation& simulation, const QString& arguments);
Reply uploadRequest(Simulation& simulation, const QByteArray& request);

/// For commands without arguments: a refusal, or empty.
QString unexpected(const QString& arguments);

} // namespace simserver
