#include "tarnis/tools/lineprofile.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/raster/deviceimage_p.h"
#include "tarnis/tools/base/menutool_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/plotpositions_p.h"
#include "tarnis/tools/maps/lineprofile_p.h"
#include "tarnis/tools/plotstyle.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

constexpr int profileZOrder = 42;
constexpr double widestBand = 1e6; // bins
constexpr double shareOfView = 0.1; // distance of a new line from either border, as a fraction of the view
constexpr int sharpBand = 88; // rows; see paintInBands()
const QSize plotSize(520, 260);
constexpr std::chrono::milliseconds frameTime { 16 }; // between repaints of the profile while the line is dragged
const QLatin1String startText("0");

QPoint labelPlace(const QPointF& start)
{
    return (start - QPointF(0.0, 8.0)).toPoint();
}

} // namespace

LineProfile::LineProfile(XY2DGraphWidget* map)
    : InteractiveTool(map, KeyboardFocus)
    , PlotOverlay(map, profileZOrder)
    , m_menuTool(std::make_unique<MenuTool>())
{
    if (map != nullptr)
        makePlot();
    makeActions();
}

LineProfile::~LineProfile()
{
    delete m_plot.data();
}

namespace {

PlotStyle* styleOf(const XYGraphWidget& plot)
{
    return plot.findChild<PlotStyle*>(QString(), Qt::FindDirectChildrenOnly);
}

/// Gives the profile the theme of its map, unless the host has chosen one.
void followStyle(const XYGraphWidget& map, XYGraphWidget& profile)
{
    const PlotStyle* const followed = styleOf(map);
    if (followed == nullptr || styleOf(profile) != nullptr)
        return;
    auto* const style = new PlotStyle(&profile, followed->theme());
    QObject::connect(
        followed, &PlotStyle::styleChanged, style, [followed, style] { style->setTheme(followed->theme()); });
    QObject::connect(followed, &QObject::destroyed, style, &QObject::deleteLater);
}

} // namespace

XY2DGraphWidget* LineProfile::map() const
{
    return static_cast<XY2DGraphWidget*>(plot());
}

void LineProfile::makePlot()
{
    m_plot = new VectorGraphWidget(map());
    m_plot->setWindowFlags(Qt::Tool);
    m_plot->m_doubleBuffered = true;
    m_plot->init(tr("Bin"), tr("Counts"), 1.0, 1.0, true, true);
    m_plot->setWindowTitle(tr("Profile"));
    m_plot->resize(plotSize);
    m_frame = new QTimer(this);
    m_frame->setInterval(frameTime);
    m_frame->setSingleShot(true);
    connect(m_frame, &QTimer::timeout, this, &LineProfile::showPending);
}

bool LineProfile::isOn() const
{
    return m_isOn;
}

bool LineProfile::isSet() const
{
    return m_isSet;
}

QPointF LineProfile::from() const
{
    return m_isSet ? m_from : QPointF();
}

QPointF LineProfile::to() const
{
    return m_isSet ? m_to : QPointF();
}

double LineProfile::bandWidth() const
{
    return m_width;
}

LineProfile::Join LineProfile::join() const
{
    return m_join;
}

QList<double> LineProfile::values() const
{
    return m_values;
}

VectorGraphWidget* LineProfile::profilePlot() const
{
    return m_plot;
}

void LineProfile::setOn(bool on)
{
    if (on == m_isOn || plot() == nullptr)
        return;
    const QPointer<LineProfile> self(this); // slots may delete the tool
    endDrag(true);
    if (self.isNull())
        return;
    m_isOn = on;
    m_switch->setChecked(on);
    setNeeds(on ? MouseMoves | KeyboardFocus : Needs(KeyboardFocus));
    if (on) {
        receiveEventsFirst(); // the tool that was switched on last gets the drags
        m_menuTool->note(*plot());
    } else {
        restoreCursor();
    }
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (on && !m_isSet && mapping.isValid()) {
        const auto [left, right] = mapping.x();
        const double middle = mapping.y().min + (mapping.y().max - mapping.y().min) / 2.0;
        const double edge = (right - left) * shareOfView;
        setLine({ left + edge, middle }, { right - edge, middle });
    } else {
        renew();
    }
    if (self.isNull())
        return;
    if (m_plot != nullptr && on)
        followStyle(*plot(), *m_plot);
    if (m_plot != nullptr && (m_plot->isWindow() || !on))
        m_plot->setVisible(on && plot()->isVisible());
    Q_EMIT onChanged(on);
}

void LineProfile::setLine(const QPointF& from, const QPointF& to)
{
    if (plot() == nullptr || !isFinitePlace(from) || !isFinitePlace(to))
        return;
    const PlotMapping mapping = PlotMapping::of(*plot());
    m_from = snappedToBins(mapping, from);
    m_to = snappedToBins(mapping, to);
    m_isSet = true;
    renew();
}

void LineProfile::setBandWidth(double bins)
{
    if (std::isnan(bins) || plot() == nullptr)
        return;
    const double width = std::clamp(bins, 1.0, widestBand);
    if (width == m_width)
        return;
    m_width = width;
    renew();
}

void LineProfile::setJoin(Join join)
{
    if (join == m_join || plot() == nullptr)
        return;
    m_join = join;
    renew();
}

void LineProfile::plotChanged(Changes changes)
{
    if (changes.testFlag(Data) && m_isSet && m_isOn)
        renew();
}

/// The pixels of the line: a slanted one in short parts, since a rectangle around it is most of the plot.
QRegion LineProfile::areaOf(const Shape& line, const QRect& frame) const
{
    constexpr int parts = 16;
    constexpr int reach = 6; // of a handle, and of the border of an edge
    const std::array<QPointF, 4>& corners = line.corners;
    QRegion area;
    for (int i = 0; i < parts; ++i) {
        const auto between = [&](const QPointF& from, const QPointF& to) {
            return QRectF(from + (to - from) * i / parts, from + (to - from) * (i + 1) / parts).normalized();
        };
        const QRectF part = between(corners[0], corners[1]) | between(corners[3], corners[2]);
        area += part.toAlignedRect().adjusted(-reach, -reach, reach, reach);
    }
    for (const QPointF& place : { line.from, line.to, line.handle })
        area += QRect(place.toPoint() - QPoint(reach, reach), QSize(2 * reach + 1, 2 * reach + 1));
    const QRect label = labelFrame(
        labelSize(QFontMetrics(plot()->font()), startText), labelPlace(line.from), Qt::AlignHCenter | Qt::AlignBottom);
    return (area & frame) + label.adjusted(-1, -1, 1, 1);
}

/// Recomputes the profile from the current data, and updates its plot.
void LineProfile::renew()
{
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (m_isOn && m_isSet && mapping.isValid())
        updateOverlayArea(areaOf(shape(mapping), mapping.frameRect()));
    else
        updateOverlay();
    if (!m_isSet || plot() == nullptr)
        return;
    const ProfileBand band { toBins(mapping, m_from), toBins(mapping, m_to), m_width };
    m_values = profileAlong(PlotAccess::rows(*map()), band, static_cast<ProfileJoin>(m_join)).values;
    m_isFramePending = true;
    if (m_grip == Grip::None || !m_frame->isActive())
        showPending();
    Q_EMIT profileChanged();
}

/// Shows the values in the profile's plot. During a drag once in a frame: the plot is drawn as a whole.
void LineProfile::showPending()
{
    if (!std::exchange(m_isFramePending, false) || plot() == nullptr)
        return;
    showValues(PlotMapping::of(*plot()));
    m_frame->start();
}

void LineProfile::showValues(const PlotMapping& mapping)
{
    if (m_plot == nullptr)
        return;
    const ProfileBand band { toBins(mapping, m_from), toBins(mapping, m_to), m_width };
    const double step = stepsOf(band).step;
    const auto count = static_cast<double>(std::max<qsizetype>(m_values.size(), 1));
    // The axis extends half a step beyond both ends, to the edges of the first and the last step.
    double begin = -step / 2.0;
    double end = (count - 0.5) * step;
    QString name = tr("Bins Along the Line");
    if (m_from.y() == m_to.y() || m_from.x() == m_to.x()) {
        const bool isFlat = m_from.y() == m_to.y();
        const QPointF way = stepsOf(band).direction;
        const QPointF first = fromBins(mapping, band.from + way * begin);
        const QPointF last = fromBins(mapping, band.from + way * end);
        begin = isFlat ? first.x() : first.y();
        end = isFlat ? last.x() : last.y();
        name = isFlat ? PlotAccess::positionNameX(*map()) : PlotAccess::nameY(*map());
    }
    const AxisRange initial = PlotAccess::initialX(*m_plot);
    if (begin != end && (initial.min != begin || initial.max != end))
        m_plot->initManualX(begin, end); // only for a new line, so that a zoom is kept when data arrive
    m_plot->setNameX(name);
    const QString join = m_join == Join::Mean ? tr("mean") : m_join == Join::Maximum ? tr("maximum") : tr("sum");
    m_plot->setNotes(tr("%1, width in bins: %2").arg(join).arg(m_width, 0, 'g', 4));
    double largest = 0.0;
    for (const double value : std::as_const(m_values))
        largest = value > largest ? value : largest;
    m_plot->setData(m_values);
    m_plot->setMaxValue(largest > 0.0 ? largest : 1.0);
    m_plot->refreshPixmap();
}

void LineProfile::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    if (!m_isOn || !m_isSet) {
        noteDrawn(painter, {});
        return;
    }
    const QColor colour(255, 90, 200);
    const Shape line = shape(mapping);
    noteDrawn(painter, areaOf(line, mapping.frameRect()));
    painter.save();
    painter.setClipRect(mapping.frameRect());
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 40));
    paintInBands(
        painter, mapping.frameRect(),
        [&] { painter.drawPolygon(line.corners.data(), static_cast<int>(line.corners.size())); }, sharpBand);
    // Lines between whole pixels do not depend on the part that is repainted.
    const bool isPlain = deviceScale(painter) == 1.0;
    const auto placed = [isPlain](const QPointF& place) { return isPlain ? QPointF(place.toPoint()) : place; };
    for (std::size_t i = 0; i < line.corners.size(); ++i)
        paintLine(painter, placed(line.corners[i]), placed(line.corners[(i + 1) % line.corners.size()]), colour, true);
    paintLine(painter, placed(line.from), placed(line.to), colour);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 1.0));
    painter.setBrush(colour);
    for (const QPointF& end : { line.from, line.to })
        painter.drawEllipse(end, 4.0, 4.0);
    if (!isForFile(painter, *plot())) // a handle is for the mouse only
        painter.drawRect(QRectF(line.handle - QPointF(3.5, 3.5), QSizeF(7.0, 7.0)));
    painter.restore();
    paintLabel(painter, startText, labelPlace(line.from), Qt::AlignHCenter | Qt::AlignBottom);
}

} // namespace tarnis
