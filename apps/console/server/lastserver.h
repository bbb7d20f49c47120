// The last used server from the settings.
#pragma once

#include "app/commandline.h"

#include <QString>

class QSettings;

namespace console {

struct LastServer {
    ServerChoice choice; ///< the port is 0 if invalid
    QByteArray prompt; ///< empty if none is stored
    QString problem; ///< why it cannot be used, as a sentence; empty if it can
};

/// Reads the settings, which may have been edited manually. Without an entry, the simulator is used.
LastServer readLastServer(const QSettings& store);

void writeLastServer(QSettings& store, const ServerChoice& choice, const QByteArray& prompt);

} // namespace console
