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
    &completionCommand,
};

} // namespace

std::span<const Command* const> allCommands()
{
    return commandList;
}

} // namespace cli
