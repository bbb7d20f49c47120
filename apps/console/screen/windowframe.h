// What the window system does with windows: their frames, and whether they can position themselves.
#pragma once

#include <QMargins>
#include <QString>

class QWidget;

namespace console {

/// False if windows cannot position themselves, as on Wayland. `platform` is QGuiApplication::platformName().
bool canPlaceWindows(const QString& platform);

/// The frame margins that the window manager has added; empty before the window is on the screen.
QMargins frameOf(const QWidget& window);

} // namespace console
