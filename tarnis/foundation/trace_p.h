// Developer traces: what a developer wants to see on the Qt message handler, beside the log and independent of it.
#pragma once

#include "tarnis/foundation/log.h"

#include <QString>

namespace tarnis {

/// Writes source name, ":", line, thread number as in the log, "|" and the text to qDebug.
void trace(const char* file, int line, const QString& text);

} // namespace tarnis

#define TARNIS_TRACE(text) tarnis::trace(tarnis::sourceName(__FILE__), __LINE__, text)
