#include "log/logentry.h"

#include "log/logwindow.h"

namespace console {

WindowEntry logEntry()
{
    return {
        .id = QStringLiteral("log"),
        .menuText = Windows::tr("Lo&g File"),
        .title = Windows::tr("Log File"),
        .help = Windows::tr("Follow a log file as it grows"),
        .open = [](const WindowContext& context) -> QWidget* { return new LogWindow(context.store, context.parent); },
        .needsServer = false,
        .shortcut = QStringLiteral("Ctrl+J"),
    };
}

} // namespace console
