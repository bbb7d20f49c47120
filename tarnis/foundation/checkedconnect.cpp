#include "tarnis/foundation/checkedconnect_p.h"

namespace tarnis {

void checkedConnect(
    const QObject* sender, const char* signal, const QObject* receiver, const char* slot, Qt::ConnectionType type)
{
    if (!QObject::connect(sender, signal, receiver, slot, type))
        qFatal("cannot connect %s to %s", signal, slot);
}

} // namespace tarnis
