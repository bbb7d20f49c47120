#include "tarnis/tools/colourlevels.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/colourmaps.h"
#include "tarnis/tools/maps/levelstrip_p.h"
#include "tarnis/tools/navigation/viewcontrol_p.h"

#include <QEvent>
#include <QMenu>
#include <QPainter>

#include <cmath>
#include <utility>

namespace tarnis {

namespace {

constexpr int readMs = 1000;
constexpr int stripZOrder = -1;
constexpr int minMapWidth = 6 * LevelStrip::stripWidth; // else it would leave too little of the map

ScaleCurve curveOf(ColourLevels::Scale scale)
{
    switch (scale) {
    case ColourLevels::Scale::Logarithmic:
        return ScaleCurve::Log;
    case ColourLevels::Scale::SquareRoot:
        return ScaleCurve::SquareRoot;
    default:
        return ScaleCurve::Linear;
    }
}

} // namespace

ColourLevels::ColourLevels(XY2DGraphWidget* map)
    : InteractiveTool(map, Nothing)
    , PlotOverlay(map, stripZOrder)
{
    makeActions();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ColourLevels::update);
    if (map != nullptr)
        setStripVisible(true);
}

ColourLevels::~ColourLevels()
{
    if (plot() == nullptr)
        return; // the plot deletes its children
    delete m_strip;
    PlotAccess::setBesideBar(*map(), 0);
}

XY2DGraphWidget* ColourLevels::map() const
{
    return static_cast<XY2DGraphWidget*>(plot());
}

ColourLevels::Mode ColourLevels::mode() const
{
    if (plot() == nullptr || PlotAccess::colourBar(*map()).isAutoScale())
        return Mode::Automatic;
    const AxisRange levels = PlotAccess::levels(*map());
    const bool isByPercentiles = m_percentiles && levels.min == m_applied.first && levels.max == m_applied.second;
    return isByPercentiles ? Mode::Percentiles : Mode::Held;
}

ColourLevels::Scale ColourLevels::scale() const
{
    if (plot() == nullptr)
        return Scale::Linear;
    if (PlotAccess::isLogZ(*map()))
        return Scale::Logarithmic;
    const MapColouring* const chosen = PlotAccess::colouring(std::as_const(*map()));
    return chosen != nullptr && chosen->squareRoot ? Scale::SquareRoot : Scale::Linear;
}

double ColourLevels::lower() const
{
    return plot() != nullptr ? PlotAccess::levels(*map()).min : 0.0;
}

double ColourLevels::upper() const
{
    return plot() != nullptr ? PlotAccess::levels(*map()).max : 0.0;
}

QPair<double, double> ColourLevels::percentiles() const
{
    return mode() == Mode::Percentiles ? *m_percentiles : QPair<double, double>(0.0, 100.0);
}

bool ColourLevels::isStripVisible() const
{
    return m_strip != nullptr;
}

void ColourLevels::applyLevels(double lower, double upper)
{
    ViewControl(*map()).showLevels({ lower, upper });
    if (m_strip != nullptr && !m_strip->isDragging())
        read(); // the axis includes both levels
    Q_EMIT levelsChanged();
}

void ColourLevels::setLevels(double lower, double upper)
{
    if (plot() == nullptr || !std::isfinite(lower) || !std::isfinite(upper))
        return;
    m_percentiles.reset();
    applyLevels(lower, upper);
}

void ColourLevels::setPercentiles(double lower, double upper)
{
    if (plot() == nullptr || std::isnan(lower) || std::isnan(upper))
        return;
    m_percentiles = { std::clamp(std::min(lower, upper), 0.0, 100.0), std::clamp(std::max(lower, upper), 0.0, 100.0) };
    m_applied = { this->lower(), this->upper() };
    if (PlotAccess::colourBar(*map()).isAutoScale())
        map()->onAutoScaleZToggled(false);
    update();
}

/// As read(), and reports new limits. A slot may delete the tool, so nothing follows.
void ColourLevels::update()
{
    if (read())
        Q_EMIT levelsChanged();
}

void ColourLevels::setAutomatic()
{
    if (plot() == nullptr)
        return;
    m_percentiles.reset();
    ViewControl(*map()).fitLevels();
    Q_EMIT levelsChanged();
}

void ColourLevels::setScale(Scale scale)
{
    if (plot() == nullptr || scale == this->scale())
        return;
    PlotAccess::setSquareRoot(*map(), scale == Scale::SquareRoot);
    ViewControl(*map()).setLogScale(scale == Scale::Logarithmic);
    read();
    Q_EMIT levelsChanged();
}

void ColourLevels::setStripVisible(bool visible)
{
    if (plot() == nullptr || visible == isStripVisible())
        return;
    m_switch->setChecked(visible);
    if (!visible) {
        m_strip->deleteLater(); // because this may be called from its menu
        m_strip->hide();
        m_strip = nullptr;
        reserveSpace();
        return;
    }
    m_strip = new LevelStrip(*map());
    reserveSpace();
    connect(m_strip, &LevelStrip::levelsChosen, this, &ColourLevels::setLevels);
    connect(m_strip, &LevelStrip::automaticChosen, this, &ColourLevels::setAutomatic);
    connect(m_strip, &LevelStrip::menuWanted, this, [this](const QPoint& position) {
        fillMenu();
        m_menu->popup(position);
    });
    // Colours and automatic levels are determined when the map is painted.
    connect(map(), &DoubleBufferedWidget::painted, m_strip, &LevelStrip::showLevels);
    update();
}

/// Shows the strip unless the map is too narrow for it.
void ColourLevels::reserveSpace()
{
    const bool isWide = map()->width() >= minMapWidth;
    if (isWide != m_switch->isEnabled())
        setUsable(m_switch, isWide, [] { return ColourLevels::tr("The map is too narrow for the histogram."); });
    const bool hasSpace = m_strip != nullptr && isWide;
    const int width = hasSpace ? LevelStrip::stripWidth : 0;
    const MapColouring* const chosen = PlotAccess::colouring(std::as_const(*map()));
    if (width != (chosen != nullptr ? chosen->besideBar : 0))
        PlotAccess::setBesideBar(*map(), width);
    if (m_strip == nullptr)
        return;
    if (!hasSpace)
        m_strip->endDrag(true);
    m_strip->setVisible(hasSpace);
}

bool ColourLevels::handleEvent(QEvent* event)
{
    if (event->type() == QEvent::Resize)
        reserveSpace();
    return InteractiveTool::handleEvent(event);
}

void ColourLevels::handleHide()
{
    if (m_strip != nullptr)
        m_strip->endDrag(true);
}

void ColourLevels::plotChanged(Changes changes)
{
    bool isChanged = changes & (ScaleType | Levels | AutoScale);
    const bool isByView = plot() != nullptr && PlotAccess::showsSumsOrMeans(*map());
    const Changes ofValues = isByView ? Data | RangeX | RangeY | PlotRect : Changes(Data);
    if ((changes & ofValues) && (m_strip != nullptr || m_percentiles)) {
        const qint64 since = m_lastRead.isValid() ? m_lastRead.elapsed() : readMs;
        if (since >= readMs)
            isChanged |= read();
        else if (!m_timer.isActive())
            m_timer.start(static_cast<int>(readMs - since));
    }
    if (changes.testFlag(ScaleType))
        isChanged |= read();
    if (isChanged)
        Q_EMIT levelsChanged();
}

/// Reads all bins, or the sums or means that are shown, for the histogram and for the limits by percentiles. Returns
/// true if these have been set.
bool ColourLevels::read()
{
    if (plot() == nullptr)
        return false;
    m_timer.stop();
    m_lastRead.start();
    std::vector<double> values = paintedBins(PlotAccess::shownRows(*map()));
    if (values.empty())
        m_lastRead.invalidate(); // the first data are evaluated at once
    const bool isFollowing =
        mode() == Mode::Percentiles && !values.empty() && (m_strip == nullptr || !m_strip->isDragging());
    if (isFollowing) {
        const AxisRange levels = percentileLevels(values, m_percentiles->first, m_percentiles->second);
        ViewControl(*map()).showLevels(distinctLevels(levels));
        m_applied = { lower(), upper() };
    }
    if (m_strip != nullptr)
        m_strip->showValues(values, curveOf(scale()));
    return isFollowing;
}

/// On the screen the strip is a widget; in pictures of the widget it is drawn, in those of an exporter it has no space.
void ColourLevels::paintOverlay(QPainter& painter, const PlotMapping& /*mapping*/)
{
    if (m_strip == nullptr || painter.device() == static_cast<const QPaintDevice*>(plot())
        || PlotAccess::colouring(std::as_const(*map()))->besideBar == 0)
        return;
    painter.translate(m_strip->pos());
    m_strip->paintStrip(painter);
}

} // namespace tarnis
