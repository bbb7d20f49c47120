// The commands, each in a separate file.
#pragma once

#include "command.h"

namespace cli {

extern const Command sendCommand;
extern const Command histCommand;
extern const Command plotCommand;
extern const Command watchCommand;
extern const Command putCommand;
extern const Command getCommand;
extern const Command statsCommand;
extern const Command fitCommand;
extern const Command peaksCommand;
extern const Command calibrateCommand;
extern const Command completionCommand;

/// All commands in the order of --help.
std::span<const Command* const> allCommands();

} // namespace cli
