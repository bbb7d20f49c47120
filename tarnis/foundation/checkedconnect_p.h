// String-based connections that cannot fail unnoticed.
#pragma once

#include <QObject>

namespace tarnis {

/// QObject::connect with SIGNAL() and SLOT() texts. A pair that does not fit is a programming error: it ends the
/// process, so that every test that makes the connection shows it.
void checkedConnect(const QObject* sender, const char* signal, const QObject* receiver, const char* slot,
    Qt::ConnectionType type = Qt::AutoConnection);

} // namespace tarnis
