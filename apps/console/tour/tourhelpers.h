// Helpers shared by the tour's steps.
#pragma once

#include "server/servercontroller.h"
#include "tour/tour.h"

namespace console {

void waitForState(UiDriver& driver, MainWindow& window, ServerState state, const QString& what);

/// Types a command, sends it with Enter and waits for the reply.
void ask(UiDriver& driver, MainWindow& window, const QString& command);

/// The record from the last command with this beginning on.
QString lastOf(MainWindow& window, const QString& command);

} // namespace console
