// String-based connections that cannot fail unnoticed.
#pragma once

#include <QObject>

namespace tarnis {

/// QObject::connect with SIGNAL() and SLOT() texts. A pair that does not match is a programming error and aborts the
/// process, so that every test that makes the connection fails.
void checkedConnect(const QObject* sender, const char* signal, const QObject* receiver, const char* slot,
    Qt::ConnectionType type = Qt::AutoConnection);

} // namespace tarnis
