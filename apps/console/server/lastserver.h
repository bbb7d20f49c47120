// The last server, as it is kept from one run to the next.
#pragma once

#include "app/commandline.h"

#include <QString>

class QSettings;

namespace console {

struct LastServer {
    ServerChoice choice; ///< a port that is none is 0
    QByteArray prompt; ///< empty if none is kept
    QString problem; ///< why it cannot be used, in a sentence; empty if it can
};

/// What is kept may have been edited by hand. Nothing kept means the simulator.
LastServer readLastServer(const QSettings& store);

void writeLastServer(QSettings& store, const ServerChoice& choice, const QByteArray& prompt);

} // namespace console
