#include "tarnis/foundation/systemmessages.h"

#include "tarnis/foundation/sysmsg.h"

#include <QCoreApplication>

namespace tarnis {

namespace {

// In one pass, because an argument may contain "%1".
QString inserted(const QString& pattern, const QStringList& arguments)
{
    switch (arguments.size()) {
    case 0:
        return pattern;
    case 1:
        return pattern.arg(arguments.at(0));
    default:
        return pattern.arg(arguments.at(0), arguments.at(1));
    }
}

} // namespace

QString SystemMessage::text() const
{
    return inserted(QString::fromUtf8(pattern), arguments);
}

QString SystemMessage::translated() const
{
    return inserted(QCoreApplication::translate("tarnis::SystemMessage", pattern), arguments);
}

SystemMessages& SystemMessages::instance()
{
    // Never destroyed: other static objects may post at the end of the program.
    static auto* const messages = new SystemMessages;
    return *messages;
}

void SystemMessages::post(const SystemMessage& message)
{
    _g_sysMsg.postLog("%s", qUtf8Printable(message.text()));
    Q_EMIT posted(message);
}

} // namespace tarnis
