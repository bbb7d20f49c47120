#include "tarnis/tools/base/plotlabel_p.h"

#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QColor>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int padX = 5;
constexpr int padY = 2;
constexpr double farAway = 1e5; // beyond any screen

struct Colours {
    QColor fill;
    QColor text;
    QColor border;
};

Colours coloursOf(LabelStyle style)
{
    switch (style) {
    case LabelStyle::Selected:
        return { QColor(255, 255, 255, 235), QColor(20, 20, 20), QColor(20, 20, 20) };
    case LabelStyle::Button:
        return { QColor(32, 56, 96, 225), QColor(255, 255, 255), QColor(170, 200, 255) };
    default:
        return { QColor(24, 24, 24, 205), QColor(255, 255, 255), QColor(110, 110, 110, 205) };
    }
}

} // namespace

QSize labelSize(const QPainter& painter, const QString& text)
{
    return labelSize(QFontMetrics(painter.font()), text);
}

QSize labelSize(const QFontMetrics& metrics, const QString& text)
{
    return metrics.size(0, text) + QSize(2 * padX, 2 * padY);
}

QRect labelFrame(const QSize& size, const QPoint& at, Qt::Alignment alignment)
{
    QRect frame(at, size);
    if (alignment.testFlag(Qt::AlignRight))
        frame.moveRight(at.x());
    else if (alignment.testFlag(Qt::AlignHCenter))
        frame.moveLeft(at.x() - frame.width() / 2);
    if (alignment.testFlag(Qt::AlignBottom))
        frame.moveBottom(at.y());
    else if (alignment.testFlag(Qt::AlignVCenter))
        frame.moveTop(at.y() - frame.height() / 2);
    return frame;
}

QRect paintLabel(QPainter& painter, const QString& text, const QPoint& at, Qt::Alignment alignment, LabelStyle style)
{
    const QRect frame = labelFrame(labelSize(painter, text), at, alignment);
    const Colours colours = coloursOf(style);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours.border, 1.0));
    painter.setBrush(colours.fill);
    painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), 3.0, 3.0);
    painter.setPen(colours.text);
    const bool hasLines = text.contains(u'\n');
    const Qt::Alignment place = hasLines ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter;
    painter.drawText(hasLines ? frame.adjusted(padX, 0, 0, 0) : frame, int(place), text);
    painter.restore();
    return frame;
}

QColor colorOverData(const XYGraphWidget& plot, const QColor& onDark)
{
    constexpr int dark = 80; // at least 4.5:1 on white
    const PlotStyling* const styling = stylingOf(&plot);
    if (styling == nullptr || styling->lineOverData().lightness() > 127)
        return onDark;
    return QColor::fromHsl(std::max(onDark.hslHue(), 0), onDark.hslSaturation(), dark);
}

void paintLine(QPainter& painter, const QPointF& from, const QPointF& to, const QColor& color, bool dashed)
{
    constexpr int lightest = 110; // of the dark colours
    painter.setPen(QPen(color.lightness() > lightest ? QColor(0, 0, 0, 140) : QColor(255, 255, 255, 160), 3.0));
    painter.drawLine(from, to);
    painter.setPen(QPen(color, 1.0, dashed ? Qt::DashLine : Qt::SolidLine));
    painter.drawLine(from, to);
}

double limitedCoordinate(double coordinate)
{
    return std::isnan(coordinate) ? -farAway : std::clamp(coordinate, -farAway, farAway);
}

} // namespace tarnis
