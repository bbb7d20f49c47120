// The status of the server in words for a person.
#pragma once

#include <tarnis/server/tarnis.h>

#include <QString>

namespace console {

/// In the language of now; the manager's own names stand in logs and tooltips.
QString statusText(Tarnis::SERVER_STATUS status);

} // namespace console
