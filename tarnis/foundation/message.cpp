#include "tarnis/foundation/message.h"

#include "tarnis/foundation/messagelog_p.h"

#include <QMutex>

#include <utility>

namespace tarnis {

namespace {

struct Handlers {
    QMutex mutex;
    MessageHandler host; ///< empty: the default handler is used
    MessageHandler byDefault; ///< empty: the Qt log is used
};

// Never destroyed: the widget part removes its handler while static objects are destroyed.
Handlers& handlers()
{
    static auto* const instance = new Handlers;
    return *instance;
}

} // namespace

MessageHandler setMessageHandler(MessageHandler handler)
{
    const QMutexLocker locker(&handlers().mutex);
    return std::exchange(handlers().host, std::move(handler));
}

MessageHandler defaultMessageHandler()
{
    const QMutexLocker locker(&handlers().mutex);
    return handlers().byDefault ? handlers().byDefault : logMessage;
}

void setDefaultMessageHandler(MessageHandler handler)
{
    const QMutexLocker locker(&handlers().mutex);
    handlers().byDefault = std::move(handler);
}

MessageButton showMessage(const Message& message)
{
    // The lock is not held during the call: a handler may replace itself, or show another message.
    QMutexLocker locker(&handlers().mutex);
    const MessageHandler handler = handlers().host;
    locker.unlock();
    return handler ? handler(message) : defaultMessageHandler()(message);
}

} // namespace tarnis
