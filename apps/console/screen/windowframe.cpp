#include "screen/windowframe.h"

#include <QWidget>
#include <QWindow>

namespace console {

bool canPlaceWindows(const QString& platform)
{
    return !platform.startsWith(u"wayland");
}

QMargins frameOf(const QWidget& window)
{
    return window.windowHandle() ? window.windowHandle()->frameMargins() : QMargins();
}

} // namespace console
