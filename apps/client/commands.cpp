#include "commands.h"

namespace cli {

namespace {

constexpr const Command* commandList[] = {
    &sendCommand,
    &histCommand,
    &plotCommand,
    &watchCommand,
    &putCommand,
    &getCommand,
    &statsCommand,
    &fitCommand,
    &peaksCommand,
    &calibrateCommand,
    &completionCommand,
};

} // namespace

std::span<const Command* const> allCommands()
{
    return commandList;
}

} // namespace cli
