// The address of a server.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QString>

namespace tarnis {

/// What a session needs to connect to a server. A plain value.
struct TARNIS_EXPORT ServerAddress {
    QString host; ///< name or IP address
    quint16 port = 0; ///< of TCP
    /// What ends the server's replies. Not owned: it must outlive the sessions made for the address. Null: the
    /// sessions' default prompt.
    const QByteArray* prompt = nullptr;
};

} // namespace tarnis
