#include "app/colours.h"

#include <QPainter>
#include <QPixmap>

namespace console {

namespace {

QColor mixed(const QColor& ground, const QColor& tint, double share)
{
    const auto channel = [share](int a, int b) { return int(a * (1.0 - share) + b * share); };
    return { channel(ground.red(), tint.red()), channel(ground.green(), tint.green()),
        channel(ground.blue(), tint.blue()) };
}

} // namespace

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

QColor badText(const QPalette& palette)
{
    return isDark(palette) ? QColor(0xff9a8f) : QColor(0xb3261e);
}

QColor quietText(const QPalette& palette)
{
    return isDark(palette) ? QColor(0xb0b0b0) : QColor(0x5c5c5c);
}

QColor tintedWindow(const QPalette& palette, const QColor& tint, double share)
{
    return mixed(palette.color(QPalette::Window), tint, share);
}

QPixmap indicatorPicture(StatusIndicator indicator, int size, qreal devicePixelRatio)
{
    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(0, 0, size, size).adjusted(2, 2, -2, -2);
    painter.setPen(QPen(QColor(0x808080), 1.5));
    switch (indicator) {
    case StatusIndicator::Off:
        painter.drawEllipse(area);
        break;
    case StatusIndicator::Waiting:
        painter.setBrush(QColor(0xf9ab00));
        painter.drawPie(area, 90 * 16, -180 * 16);
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(area);
        break;
    case StatusIndicator::Good:
        painter.setBrush(QColor(0x34a853));
        painter.drawEllipse(area);
        break;
    case StatusIndicator::Busy:
        painter.setBrush(QColor(0x1a73e8));
        painter.drawPolygon(QPolygonF { area.topLeft(), QPointF(area.right(), area.center().y()), area.bottomLeft() });
        break;
    case StatusIndicator::Bad:
        painter.setBrush(QColor(0xd93025));
        painter.drawRect(area);
        break;
    }
    return pixmap;
}

QPalette darkPalette()
{
    QPalette palette(QColor(0x4a4a4a), QColor(0x3c3c3c));
    const QColor text(0xe6e6e6);
    const QColor faint(0x9a9a9a);
    palette.setColor(QPalette::Window, QColor(0x3c3c3c));
    palette.setColor(QPalette::Base, QColor(0x202020));
    palette.setColor(QPalette::AlternateBase, QColor(0x292929));
    palette.setColor(QPalette::ToolTipBase, QColor(0x4a4a4a));
    palette.setColor(QPalette::Highlight, QColor(0x2f65ca));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x8ab4f8));
    palette.setColor(QPalette::PlaceholderText, faint);
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText }) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    return palette;
}

} // namespace console
