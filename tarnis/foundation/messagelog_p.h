// Messages of a process that cannot show them.
#pragma once

#include "tarnis/foundation/message.h"

namespace tarnis {

/// Writes the message as a warning of the category `tarnis.foundation`. Any thread.
MessageButton logMessage(const Message& message);

} // namespace tarnis
