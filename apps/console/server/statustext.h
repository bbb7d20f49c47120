// The status of the server as a text for the user.
#pragma once

#include <tarnis/server/tarnis.h>

#include <QString>

namespace console {

/// In the current language; the manager's own names appear in logs and tool tips.
QString statusText(Tarnis::SERVER_STATUS status);

} // namespace console
