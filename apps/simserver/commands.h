// The command language: from a request to a reply. Each command is a function of the simulation and its arguments.
#pragma once

#include "reply.h"
#include "requests.h"

#include <QString>

namespace simserver {

class Simulation;

/// The simulation's reply. A refused command changes nothing.
Reply answer(Simulation& simulation, const Request& request);

/// The text that a connection begins with, without the prompt.
QByteArray greetingText();

} // namespace simserver
