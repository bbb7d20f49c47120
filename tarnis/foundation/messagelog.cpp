#include "tarnis/foundation/messagelog_p.h"

#include "tarnis/foundation/trace_p.h"

#include <QDebug>

namespace tarnis {

MessageButton logMessage(const Message& message)
{
    qCWarning(TARNIS_TRACE_CATEGORY()).noquote() << message.text;
    return MessageButton::None;
}

} // namespace tarnis
