#include "tarnis/foundation/trace_p.h"

#include "tarnis/foundation/threadid_p.h"

#include <QDebug>

namespace tarnis {

void trace(const QLoggingCategory& category, const char* file, int line, const QString& text)
{
    qCDebug(category).noquote() << file << ":" << line << QString::number(currentThreadNumber(), 16) << "|" << text;
}

} // namespace tarnis
