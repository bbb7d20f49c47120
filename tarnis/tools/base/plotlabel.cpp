#include "tarnis/tools/base/plotlabel_p.h"

#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/deviceimage_p.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QColor>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTextLayout>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int padX = 5;
constexpr int padY = 2;
constexpr double farAway = 1e5; // beyond any screen
constexpr qreal endlessLine = 0x01000000; // width that QPainter::drawText() uses for lines that do not wrap
constexpr double borderWidth = 3.0; // of a line
constexpr int borderReach = 1; // pixels on either side

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

LabelLayout::LabelLayout(const QString& text, const QFont& font)
    : m_layout(std::make_unique<QTextLayout>(QString(text).replace(u'\n', QChar::LineSeparator), font))
{
    // The steps of QPainter::drawText() for text without a width.
    const qreal leading = QFontMetricsF(font).leading();
    m_layout->setCacheEnabled(true);
    m_layout->beginLayout();
    m_height = -leading;
    for (QTextLine line = m_layout->createLine(); line.isValid(); line = m_layout->createLine()) {
        line.setLineWidth(endlessLine);
        m_height = std::ceil(m_height + leading);
        line.setPosition(QPointF(0.0, m_height));
        m_height += line.ascent() + line.descent(); // height() would be rounded up
        m_width = std::max(m_width, line.naturalTextWidth());
    }
    m_layout->endLayout();
}

LabelLayout::LabelLayout(LabelLayout&& other) noexcept = default;
LabelLayout& LabelLayout::operator=(LabelLayout&& other) noexcept = default;
LabelLayout::~LabelLayout() = default;

QSize LabelLayout::size() const
{
    return QRectF(0.0, 0.0, m_width, m_height).toAlignedRect().size() + QSize(2 * padX, 2 * padY);
}

void LabelLayout::paint(QPainter& painter, const QPoint& corner, LabelStyle style) const
{
    const QRect frame(corner, size());
    const Colours colours = coloursOf(style);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours.border, 1.0));
    painter.setBrush(colours.fill);
    paintInBands(
        painter, frame, [&] { painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), 3.0, 3.0); });
    painter.setPen(colours.text);
    const qreal top = frame.top() + (frame.height() - m_height) / 2;
    for (int i = 0; i < m_layout->lineCount(); ++i) {
        const QTextLine line = m_layout->lineAt(i);
        const qreal left = m_layout->lineCount() > 1 ? padX : (frame.width() - line.horizontalAdvance()) / 2;
        line.draw(&painter, QPointF(frame.left() + left, top));
    }
    painter.restore();
}

QRect paintLabel(QPainter& painter, const QString& text, const QPoint& at, Qt::Alignment alignment, LabelStyle style)
{
    const LabelLayout label(text, painter.font());
    const QRect frame = labelFrame(label.size(), at, alignment);
    label.paint(painter, frame.topLeft(), style);
    return frame;
}

bool isForFile(const QPainter& painter, const XYGraphWidget& plot)
{
    return painter.device() != static_cast<const QPaintDevice*>(&plot);
}

QColor colourOverData(const XYGraphWidget& plot, const QColor& onDark)
{
    constexpr int dark = 80; // at least 4.5:1 on white
    const PlotStyling* const styling = stylingOf(&plot);
    if (styling == nullptr || styling->lineOverData().lightness() > 127)
        return onDark;
    return QColor::fromHsl(std::max(onDark.hslHue(), 0), onDark.hslSaturation(), dark);
}

namespace {

/// The border of an upright line as a picture of its pixels; false where the painter has to draw it. A painter fills
/// translucent columns row by row, with the help of threads, which takes longer than all of the other pixels.
bool paintColumn(QPainter& painter, const QPointF& from, const QPointF& to, const QColor& colour)
{
    const int column = static_cast<int>(from.x());
    if (from.x() != to.x() || from.x() != column || deviceScale(painter) != 1.0 || !painter.hasClipping()
        || painter.transform().type() > QTransform::TxTranslate)
        return false;
    const double ends = borderWidth / 2.0; // beyond either end, by the cap of the pen
    const int top = static_cast<int>(std::floor(std::min(from.y(), to.y()) - ends + 0.5));
    const int bottom = static_cast<int>(std::ceil(std::max(from.y(), to.y()) + ends - 0.5));
    const QRect area(column - borderReach, top, 2 * borderReach + 1, bottom - top + 1);
    const QRect shown = area & painter.clipBoundingRect().toAlignedRect();
    if (shown.isEmpty())
        return true;
    QImage image(shown.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    painter.save();
    painter.setClipRect(shown, Qt::IntersectClip);
    painter.drawImage(shown.topLeft(), image);
    painter.restore();
    return true;
}

/// A line between pixels with its border, by steps along its longer side.
class SlantedLine {
public:
    SlantedLine(QPoint from, QPoint to, bool dashed)
        : m_isDashed(dashed)
        , m_isSteep(std::abs(to.y() - from.y()) >= std::abs(to.x() - from.x()))
        , m_from(turned(from))
        , m_to(turned(to))
    {
        if (m_from.y() > m_to.y())
            std::swap(m_from, m_to);
    }

    /// Paints inside of `shown`, part by part: a picture of all of the line would be as large as the plot.
    void paint(QPainter& painter, const QRect& shown, const QColor& colour, const QColor& border) const
    {
        constexpr int partLength = 48;
        const QRect area = m_isSteep ? shown : QRect(turned(shown.topLeft()), shown.size().transposed());
        const int first = std::max(m_from.y() - borderReach, area.top());
        const int last = std::min(m_to.y() + borderReach, area.bottom());
        for (int begin = first; begin <= last; begin += partLength) {
            const int end = std::min(begin + partLength - 1, last);
            const auto [low, high] = std::minmax({ place(begin - borderReach), place(end + borderReach) });
            const int left = std::max(low - borderReach, area.left());
            const int right = std::min(high + borderReach, area.right());
            if (left <= right)
                paintPart(painter, QRect(QPoint(left, begin), QPoint(right, end)), colour, border);
        }
    }

private:
    QPoint turned(const QPoint& point) const { return m_isSteep ? point : point.transposed(); }

    /// Across, for a step along the line.
    int place(int step) const
    {
        const int way = std::clamp(step, m_from.y(), m_to.y()) - m_from.y();
        const int length = std::max(m_to.y() - m_from.y(), 1);
        return m_from.x() + static_cast<int>(std::lround(double(way) * (m_to.x() - m_from.x()) / length));
    }

    void paintPart(QPainter& painter, const QRect& part, const QColor& colour, const QColor& border) const
    {
        const QSize size = m_isSteep ? part.size() : part.size().transposed();
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        if (image.isNull())
            return;
        image.fill(0U);
        auto* const bits = reinterpret_cast<QRgb*>(image.bits());
        const qsizetype line = image.bytesPerLine() / qsizetype(sizeof(QRgb));
        const auto set = [&](int across, int step, QRgb pixel) {
            if (across < part.left() || across > part.right())
                return;
            const QPoint at = turned(QPoint(across - part.left(), step - part.top()));
            bits[at.y() * line + at.x()] = pixel;
        };
        for (int step = part.top(); step <= part.bottom(); ++step) {
            const auto [low, high] = std::minmax({ place(step - 1), place(step), place(step + 1) });
            for (int across = low - borderReach; across <= high + borderReach; ++across)
                set(across, step, qPremultiply(border.rgba()));
            const bool isGap = m_isDashed && (step - m_from.y()) % dashPeriod >= dashLength;
            if (step >= m_from.y() && step <= m_to.y() && !isGap)
                set(place(step), step, qPremultiply(colour.rgba()));
        }
        painter.drawImage(turned(part.topLeft()), image);
    }

    static constexpr int dashLength = 4; // those of Qt::DashLine
    static constexpr int dashPeriod = 6;

    bool m_isDashed;
    bool m_isSteep;
    QPoint m_from; // the steps are rows here
    QPoint m_to;
};

/// Paints it pixel by pixel, so that the pixels do not depend on the part of the plot that is repainted: the painter
/// rounds a line differently with each clip. False where the painter has to draw it.
bool paintSlanted(
    QPainter& painter, const QPointF& from, const QPointF& to, const QColor& colour, const QColor& border, bool dashed)
{
    if (from != from.toPoint() || to != to.toPoint() || deviceScale(painter) != 1.0 || !painter.hasClipping()
        || painter.transform().type() > QTransform::TxTranslate)
        return false;
    SlantedLine(from.toPoint(), to.toPoint(), dashed)
        .paint(painter, painter.clipBoundingRect().toAlignedRect(), colour, border);
    return true;
}

} // namespace

QRegion areaOfLine(const QPointF& from, const QPointF& to)
{
    constexpr int maxParts = 24;
    constexpr double shortest = 8.0; // pixels of a part
    const QPointF way = to - from;
    const double narrow = std::min(std::abs(way.x()), std::abs(way.y()));
    const int parts = std::clamp(static_cast<int>(narrow / shortest), 1, maxParts);
    QRegion area;
    for (int i = 0; i < parts; ++i) {
        const QRectF part(from + way * i / parts, from + way * (i + 1) / parts);
        area += part.normalized().toAlignedRect().adjusted(-3, -3, 3, 3);
    }
    return area;
}

void paintLine(QPainter& painter, const QPointF& from, const QPointF& to, const QColor& colour, bool dashed)
{
    constexpr int lightest = 110; // of the dark colours
    const QColor border = colour.lightness() > lightest ? QColor(0, 0, 0, 140) : QColor(255, 255, 255, 160);
    const bool isSlanted = from.x() != to.x() && from.y() != to.y();
    if (isSlanted && paintSlanted(painter, from, to, colour, border, dashed))
        return;
    if (!paintColumn(painter, from, to, border)) {
        constexpr int sharpBand = 88; // rows; see paintInBands()
        const QRect area = QRectF(from, to).normalized().toAlignedRect().adjusted(-3, -3, 3, 3);
        painter.setPen(QPen(border, borderWidth));
        paintInBands(
            painter, area, [&] { painter.drawLine(from, to); }, sharpBand);
    }
    painter.setPen(QPen(colour, 1.0, dashed ? Qt::DashLine : Qt::SolidLine));
    painter.drawLine(from, to);
}

double limitedCoordinate(double coordinate)
{
    return std::isnan(coordinate) ? -farAway : std::clamp(coordinate, -farAway, farAway);
}

} // namespace tarnis
