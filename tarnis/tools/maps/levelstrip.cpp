#include "tarnis/tools/maps/levelstrip_p.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotstyling_p.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int stepCount = 128;
constexpr double reachPixels = 6.0;
constexpr double minShare = 0.002; // minimum distance of the two levels
constexpr double keyShare = 0.01;
const QColor outsideColour(150, 150, 150);

/// A mix of two colours, with `share` of the second one.
QColor mixed(const QColor& first, const QColor& second, double share)
{
    const auto channel = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
    return { channel(first.red(), second.red()), channel(first.green(), second.green()),
        channel(first.blue(), second.blue()) };
}

} // namespace

LevelStrip::LevelStrip(XY2DGraphWidget& map)
    : QWidget(&map)
    , m_map(map)
    , m_steps(stepCount)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setObjectName(QStringLiteral("colourLevelStrip"));
    PlotAccess::colourBar(map).installEventFilter(this);
    retranslate();
    onLanguageChange(*this, [this] { retranslate(); });
    place();
}

void LevelStrip::retranslate()
{
    setAccessibleName(tr("Colour levels"));
    setToolTip(tr("Histogram of the values of the map. Drag a line to set the limits of the colours, or the space "
                  "between both. Keys: Left and Right choose a line, Up and Down move it, Home follows the data."));
}

bool LevelStrip::event(QEvent* event)
{
    // Escape cancels a drag; otherwise the window handles it.
    if (event->type() == QEvent::ShortcutOverride && isDragging()
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        event->accept();
    return QWidget::event(event);
}

bool LevelStrip::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(object, event);
}

void LevelStrip::place()
{
    const QRect bar = PlotAccess::colourBar(m_map).geometry();
    setGeometry(bar.left() - stripWidth, bar.top(), stripWidth, bar.height());
}

AxisRange LevelStrip::levels() const
{
    return PlotAccess::levels(m_map);
}

void LevelStrip::showValues(const std::vector<double>& values, ScaleCurve curve)
{
    AxisRange shown = levels();
    if (PlotAccess::colourBar(m_map).isAutoScale())
        shown.max = shown.min; // the upper one is that of earlier data until the map is painted
    if (!isDragging())
        m_axis = levelAxis(values, shown, curve);
    m_steps = levelHistogram(values, m_axis, stepCount);
    update();
}

void LevelStrip::showLevels()
{
    update(); // levels beyond the axis are shown at its ends until the values are read again
}

QRect LevelStrip::scaleRect() const
{
    if (stylingOf(&m_map) != nullptr) { // a styled colour bar is as high as the plot rectangle
        const QRect graph = PlotAccess::plotRect(m_map).translated(-pos());
        return QRect(4, graph.top(), width() - 8, graph.height()).intersected(rect());
    }
    const int edge = fontMetrics().height(); // as in the colour bar
    return rect().adjusted(4, edge, -4, -edge);
}

double LevelStrip::shareAt(double y) const
{
    const QRect scale = scaleRect();
    return scale.height() > 1 ? (scale.bottom() - y) / (scale.height() - 1) : 0.0;
}

double LevelStrip::rowOf(double share) const
{
    const QRect scale = scaleRect();
    const double limited = std::isnan(share) ? 0.0 : std::clamp(share, 0.0, 1.0);
    return scale.bottom() - limited * (scale.height() - 1);
}

void LevelStrip::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    paintStrip(painter);
}

void LevelStrip::paintStrip(QPainter& painter) const
{
    const QRect scale = scaleRect();
    const PlotStyling* const styling = stylingOf(&m_map);
    const QColor ground = styling != nullptr ? styling->surround() : QColor(Qt::lightGray); // same background as the
                                                                                            // colour bar
    const QColor ink = styling != nullptr ? styling->foreground() : QColor(Qt::black);
    painter.fillRect(rect(), ground);
    if (scale.width() < 4 || scale.height() < 4)
        return;
    painter.fillRect(scale, styling != nullptr ? mixed(ground, ink, 0.07) : QColor(222, 222, 222));
    paintSteps(painter, scale);
    painter.setPen(styling != nullptr ? mixed(ground, ink, 0.45) : QColor(110, 110, 110));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(scale.adjusted(0, 0, -1, -1));
    const AxisRange shown = levels();
    paintHandle(painter, m_axis.shareOf(shown.min), m_current == LevelHandle::Lower);
    paintHandle(painter, m_axis.shareOf(shown.max), m_current == LevelHandle::Upper);
}

void LevelStrip::paintSteps(QPainter& painter, const QRect& rect) const
{
    const qsizetype largest = *std::max_element(m_steps.begin(), m_steps.end());
    if (largest == 0)
        return;
    const ColourScale scale = PlotAccess::colourScale(m_map);
    const AxisRange shown = levels();
    const double low = m_axis.shareOf(std::min(shown.min, shown.max));
    const double high = m_axis.shareOf(std::max(shown.min, shown.max));
    // The length is logarithmic in the number of bins, so that few bins are visible.
    const auto decades = [](qsizetype count) { return std::log10(static_cast<double>(count) + 1.0); };
    const double perDecade = (rect.width() - 2) / decades(largest);
    const auto steps = static_cast<double>(m_steps.size());
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const double share = shareAt(y);
        const auto step = static_cast<std::size_t>(std::clamp(share * steps, 0.0, steps - 1.0));
        const int length = static_cast<int>(std::ceil(perDecade * decades(m_steps[step])));
        if (length == 0)
            continue;
        const bool isInside = share >= low && share <= high;
        painter.setPen(isInside ? QColor(scale.pixel(m_axis.valueAt(share))) : outsideColour);
        painter.drawLine(rect.right() - length, y, rect.right() - 1, y);
    }
}

void LevelStrip::paintHandle(QPainter& painter, double share, bool isCurrent) const
{
    const QRect scale = scaleRect();
    const double y = rowOf(share);
    const PlotStyling* const styling = stylingOf(&m_map);
    const QColor ground = styling != nullptr ? styling->surround() : QColor(Qt::white);
    const QColor ink = styling != nullptr ? styling->foreground() : QColor(Qt::black);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ground, 3.0));
    painter.drawLine(QPointF(scale.left(), y), QPointF(scale.right(), y));
    painter.setPen(QPen(ink, 1.0));
    painter.drawLine(QPointF(scale.left(), y), QPointF(scale.right(), y));
    painter.setBrush(isCurrent && hasFocus() ? QColor(0, 95, 184) : ink);
    painter.drawPolygon(
        QPolygonF { { scale.left() + 8.0, y }, { scale.left() - 1.0, y - 5.0 }, { scale.left() - 1.0, y + 5.0 } });
    painter.restore();
}

void LevelStrip::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || isDragging())
        return;
    const double reach = reachPixels / std::max(scaleRect().height(), 1);
    m_pressLevels = levels();
    m_pressShare = shareAt(event->position().y());
    m_handle = handleAt(m_pressShare, m_axis.shareOf(m_pressLevels.min), m_axis.shareOf(m_pressLevels.max), reach);
    if (m_handle == LevelHandle::Lower || m_handle == LevelHandle::Upper)
        m_current = m_handle;
    update();
}

void LevelStrip::mouseMoveEvent(QMouseEvent* event)
{
    const double share = shareAt(event->position().y());
    if (!isDragging()) {
        const double reach = reachPixels / std::max(scaleRect().height(), 1);
        const AxisRange shown = levels();
        const LevelHandle handle = handleAt(share, m_axis.shareOf(shown.min), m_axis.shareOf(shown.max), reach);
        setCursor(handle == LevelHandle::None ? Qt::ArrowCursor
                : handle == LevelHandle::Both ? Qt::SizeVerCursor
                                              : Qt::SplitVCursor);
        return;
    }
    const AxisRange chosen = draggedLevels(m_pressLevels, m_axis, m_handle, share - m_pressShare, minShare);
    Q_EMIT levelsChosen(chosen.min, chosen.max);
}

void LevelStrip::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        endDrag(false);
}

void LevelStrip::endDrag(bool cancel)
{
    if (!isDragging())
        return;
    m_handle = LevelHandle::None;
    if (cancel)
        Q_EMIT levelsChosen(m_pressLevels.min, m_pressLevels.max);
    update();
}

void LevelStrip::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT automaticChosen();
}

void LevelStrip::contextMenuEvent(QContextMenuEvent* event)
{
    Q_EMIT menuWanted(event->globalPos());
}

void LevelStrip::moveBy(LevelHandle handle, double delta)
{
    const AxisRange chosen = draggedLevels(levels(), m_axis, handle, delta, minShare);
    Q_EMIT levelsChosen(chosen.min, chosen.max);
}

void LevelStrip::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) { // a menu event on Windows only
        Q_EMIT menuWanted(mapToGlobal(rect().center()));
        return;
    }
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier; // Alt+Left is the map's
    switch (isPlain ? event->key() : 0) {
    case Qt::Key_Left:
        m_current = LevelHandle::Lower;
        update();
        return;
    case Qt::Key_Right:
        m_current = LevelHandle::Upper;
        update();
        return;
    case Qt::Key_Up:
        moveBy(m_current, keyShare);
        return;
    case Qt::Key_Down:
        moveBy(m_current, -keyShare);
        return;
    case Qt::Key_Home:
        Q_EMIT automaticChosen();
        return;
    case Qt::Key_Escape:
        if (isDragging()) {
            endDrag(true);
            return;
        }
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

} // namespace tarnis
