// Debug traces for developers, sent to the Qt message handler. Independent of the log. The folder of a source names the
// logging category of its traces, for example `tarnis.server`, so that a host can disable them separately.
#pragma once

#include "tarnis/foundation/log.h"

#include <QLoggingCategory>
#include <QString>

#include <algorithm>
#include <string_view>

namespace tarnis {

/// The name of a logging category as a template argument.
struct TraceCategoryName {
    char text[32] = "tarnis"; ///< zero-terminated
};

/// `tarnis.` and the folder after the last "tarnis/" of a source's path; `tarnis` for a path without a folder there.
consteval TraceCategoryName traceCategoryName(std::string_view path)
{
    constexpr std::string_view root = "tarnis/";
    TraceCategoryName name;
    const std::size_t at = path.rfind(root);
    if (at == std::string_view::npos)
        return name;
    const std::string_view rest = path.substr(at + root.size());
    const std::size_t end = rest.find('/');
    if (end == std::string_view::npos)
        return name;
    name.text[root.size() - 1] = '.';
    std::ranges::copy(rest.substr(0, end), name.text + root.size());
    return name;
}

/// The category of that name. Any thread.
template <TraceCategoryName name> const QLoggingCategory& traceCategory()
{
    static const QLoggingCategory category(name.text);
    return category;
}

/// Writes source name, ":", line, thread number as in the log, "|" and the text to the category as a debug message.
void trace(const QLoggingCategory& category, const char* file, int line, const QString& text);

} // namespace tarnis

/// The category of the source file that uses the macro.
#define TARNIS_TRACE_CATEGORY() tarnis::traceCategory<tarnis::traceCategoryName(__FILE__)>()

/// Writes a trace for the source file that uses the macro. The text is not evaluated while the category is off.
#define TARNIS_TRACE(text)                                                                                             \
    (TARNIS_TRACE_CATEGORY().isDebugEnabled()                                                                          \
            ? tarnis::trace(TARNIS_TRACE_CATEGORY(), tarnis::sourceName(__FILE__), __LINE__, text)                     \
            : void())
