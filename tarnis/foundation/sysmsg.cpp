#include "tarnis/foundation/sysmsg.h"

#include <QMutex>

#include <cstdarg>
#include <cstdio>

namespace {

QMutex& postLogMutex()
{
    static auto* const mutex = new QMutex;
    return *mutex;
}

} // namespace

SysMsg _g_sysMsg;

SysMsg::SysMsg(QObject* parent)
    : QObject(parent)
{
}

SysMsg& SysMsg::operator<<(const QString& text)
{
    Q_EMIT onSysMsg(text);
    return *this;
}

SysMsg& SysMsg::operator<<(int value)
{
    Q_EMIT onSysMsg(QString::number(value));
    return *this;
}

int SysMsg::postLog(const char* format, ...)
{
    char buffer[2046];
    va_list arguments;
    va_start(arguments, format);
    QMutexLocker locker(&postLogMutex());
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    locker.unlock();
    va_end(arguments);
    // Emitted without the lock, so that a slot may post again.
    if (length >= 0)
        Q_EMIT onSysMsg(QString::fromUtf8(buffer));
    return length;
}
