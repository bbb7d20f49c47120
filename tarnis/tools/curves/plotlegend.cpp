// Entries, layout and drawing of the legend. Events are handled in plotlegend_events.cpp.
#include "tarnis/tools/curves/plotlegend_p.h"

#include "tarnis/plots/curvenames.h"
#include "tarnis/plots/labelcache_p.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/curves/legendplacement_p.h"
#include "tarnis/tools/plotnavigator.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QJsonArray>
#include <QPainter>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int legendZOrder = 80; // over cross and markers, under the navigator's marks
constexpr int margin = 6; // distance to the plot rectangle
constexpr int padding = 5;
constexpr int sampleWidth = 18; // width of the line in the curve's colour
constexpr double widest = 0.45; // maximum width, as a fraction of the plot rectangle
constexpr double tallest = 0.8;
constexpr double largest = 1.0 / 3.0; // maximum fraction of its area
constexpr int fewestRows = 3; // of a longer list
constexpr int restMs = 600; // without a change of the view; longer than between two steps of a wheel
constexpr int maxRecords = 4096; // maximum number of records that a stored view may add
const QColor fill(24, 24, 24, 215);
const QColor border(110, 110, 110, 215);
const QColor classicText(255, 255, 255);
const QColor hiddenColour(140, 140, 140);

const QLatin1String visibleKey("visible");
const QLatin1String placeKey("place"); // [x, y]
const QLatin1String hiddenKey("hidden"); // indices of records

void drawLegend(QPainter& painter, const IconInk& ink)
{
    painter.drawRect(QRectF(1.8, 2.5, 12.4, 11.0));
    painter.drawLine(QPointF(8.0, 6.0), QPointF(12.0, 6.0));
    painter.drawLine(QPointF(8.0, 10.0), QPointF(12.0, 10.0));
    painter.setPen(QPen(ink.accent, 1.8, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(3.8, 6.0), QPointF(6.4, 6.0));
    painter.drawLine(QPointF(3.8, 10.0), QPointF(6.4, 10.0));
}

/// True unless the user or the host has zoomed or moved the view.
bool showsWholeRange(MultiVectorGraphWidget& plot)
{
    double min = 0.0, max = 0.0, first = 0.0, last = 0.0;
    plot.getInitMinMaxX(first, last);
    const bool isWholeX = plot.getMinMaxX(min, max) || (min == first && max == last);
    plot.getInitMinMaxY(first, last);
    return isWholeX && (plot.getMinMaxY(min, max) || (min == first && max == last));
}

/// The first visible row of a list of `count` rows, clamped to the valid range.
qsizetype firstInSight(qsizetype wanted, qsizetype count, qsizetype rows)
{
    return std::clamp<qsizetype>(wanted, 0, std::max<qsizetype>(count - rows, 0));
}

/// Draws a small arrow that indicates hidden rows.
void paintArrow(QPainter& painter, const QPointF& tip, double direction, const QColor& colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(QPolygonF { tip, tip + QPointF(-4.0, -4.0 * direction), tip + QPointF(4.0, -4.0 * direction) });
}

/// Below or above the marks of held axes, which would cover entries.
QRect besideMarks(const XYGraphWidget& plot, QRect rect, const QRect& inside)
{
    const auto* const navigator = plot.findChild<PlotNavigator*>(QString(), Qt::FindDirectChildrenOnly);
    const QList<QRect> marks = navigator != nullptr ? navigator->overlayBoxes() : QList<QRect>();
    for (const QRect& mark : marks) {
        if (!mark.intersects(rect))
            continue;
        const bool isMarkAbove = mark.center().y() < inside.center().y();
        const int shift = isMarkAbove ? mark.bottom() + padding - rect.top() : mark.top() - padding - rect.bottom();
        if (inside.contains(rect.translated(0, shift)))
            rect.translate(0, shift);
    }
    return rect;
}

} // namespace

QList<LegendEntry> legendEntries(const MultiVectorGraphWidget& plot)
{
    const QList<Series>& series = PlotAccess::series(plot);
    const QList<SummedCurve> curves = curvesOf(series, PlotAccess::addType(plot), PlotAccess::groupSize(plot));
    const QStringList names = curveNames(plot);
    QList<LegendEntry> entries;
    for (qsizetype i = 0; i < curves.size(); ++i) {
        const SummedCurve& curve = curves.at(i);
        if (!curve.records.isEmpty() && lengthOf(series, curve) > 0)
            entries.append({ curve.records, names.value(i), shownCurveColour(plot, static_cast<int>(i), curve.colour),
                curve.enable });
    }
    return entries;
}

PlotLegend::PlotLegend(XYGraphWidget* plot)
    : InteractiveTool(plot, KeyboardFocus | MouseMoves)
    , PlotOverlay(plot, legendZOrder)
    , m_switch(new ToolAction(
          this, "legend", [] { return PlotLegend::tr("Legend"); }, drawLegend))
    , m_labels(std::make_unique<LabelCache>())
{
    static_cast<ToolAction*>(m_switch)->showKeys({ QKeySequence(Qt::SHIFT | Qt::Key_L) });
    m_switch->setCheckable(true);
    m_switch->setChecked(true);
    setUsable(m_switch, curves() != nullptr, [] { return PlotLegend::tr("The plot has no curves."); });
    connect(m_switch, &QAction::triggered, this, &PlotLegend::setVisible);
    m_rest = new QTimer(this);
    m_rest->setSingleShot(true);
    m_rest->setInterval(restMs);
    connect(m_rest, &QTimer::timeout, this, &PlotLegend::leaveDataAtRest);
}

PlotLegend::~PlotLegend() = default;

MultiVectorGraphWidget* PlotLegend::curves() const
{
    return qobject_cast<MultiVectorGraphWidget*>(plot());
}

bool PlotLegend::isVisible() const
{
    return m_isVisible;
}

QPointF PlotLegend::place() const
{
    return m_zoomedPlace.value_or(m_place);
}

qsizetype PlotLegend::count() const
{
    return curves() != nullptr ? legendEntries(*curves()).size() : 0;
}

bool PlotLegend::isShown(qsizetype entry) const
{
    const QList<LegendEntry> entries = curves() != nullptr ? legendEntries(*curves()) : QList<LegendEntry>();
    return entry >= 0 && entry < entries.size() && entries.at(entry).isShown;
}

QString PlotLegend::name(qsizetype entry) const
{
    const QList<LegendEntry> entries = curves() != nullptr ? legendEntries(*curves()) : QList<LegendEntry>();
    return entries.value(entry).name;
}

void PlotLegend::setVisible(bool visible)
{
    m_switch->setChecked(visible);
    if (visible == m_isVisible)
        return;
    m_isVisible = visible;
    m_isPressed = false;
    m_selected = -1;
    updateOverlay();
    Q_EMIT visibleChanged(visible);
}

void PlotLegend::setPlace(const QPointF& place)
{
    if (!std::isfinite(place.x()) || !std::isfinite(place.y()))
        return;
    m_isPlaceSet = true;
    m_zoomedPlace.reset();
    m_place = { std::clamp(place.x(), 0.0, 1.0), std::clamp(place.y(), 0.0, 1.0) };
    updateOverlay();
}

void PlotLegend::enable(const QList<int>& records, bool on)
{
    for (const int record : records)
        curves()->setEnable(record, on);
}

/// Shows only the curve of one entry, or all of them for -1.
void PlotLegend::applyToEntries(qsizetype alone)
{
    const Layout now = layout();
    if (now.isSum)
        return;
    const QList<LegendEntry> entries = legendEntries(*curves());
    for (qsizetype i = 0; i < entries.size(); ++i)
        enable(entries.at(i).records, alone < 0 || i == alone);
    curves()->refreshPixmap();
    updateOverlay();
}

void PlotLegend::toggle(qsizetype entry)
{
    if (curves() == nullptr || entry < 0 || entry >= count() || layout().isSum)
        return;
    const LegendEntry chosen = legendEntries(*curves()).at(entry);
    enable(chosen.records, !chosen.isShown);
    curves()->refreshPixmap();
    updateOverlay();
}

void PlotLegend::isolate(qsizetype entry)
{
    if (curves() == nullptr || entry < 0 || entry >= count())
        return;
    const QList<LegendEntry> entries = legendEntries(*curves());
    const auto shown = std::count_if(entries.begin(), entries.end(), [](const LegendEntry& e) { return e.isShown; });
    applyToEntries(shown == 1 && entries.at(entry).isShown ? -1 : entry);
}

void PlotLegend::showAll()
{
    if (curves() != nullptr)
        applyToEntries(-1);
}

void PlotLegend::plotChanged(Changes changes)
{
    if (curves() != nullptr && !m_isPlaceSet)
        leaveData(changes);
    if (changes & (Data | PlotRect))
        updateOverlay();
}

/// Moves a legend that covers data: in the whole view when data arrive, in a zoomed one only after the user has chosen
/// it, so that live data do not move it there.
void PlotLegend::leaveData(Changes changes)
{
    if (!showsWholeRange(*curves())) {
        double min = 0.0, max = 0.0;
        const bool isByHand = changes.testFlag(ScaleType)
            || (changes.testFlag(RangeX) && !curves()->getMinMaxX(min, max))
            || (changes.testFlag(RangeY) && !curves()->getMinMaxY(min, max));
        if (isByHand || (m_waitsForData && changes.testFlag(Data) && !m_rest->isActive()))
            m_rest->start();
        return;
    }
    m_rest->stop();
    if (m_zoomedPlace)
        updateOverlay();
    m_zoomedPlace.reset();
    if (!(changes & (Data | PlotRect | RangeX | RangeY | ScaleType)))
        return;
    const QPointF best = leastCoveringPlace(m_cornersLeft);
    if (best == m_place)
        return;
    m_cornersLeft.append(m_place);
    m_place = best;
    updateOverlay();
}

void PlotLegend::leaveDataAtRest()
{
    if (curves() == nullptr || m_isPlaceSet || m_isPressed || showsWholeRange(*curves()))
        return;
    m_waitsForData = layout().rect.isEmpty(); // as of a stored view that has been restored
    const QPointF best = leastCoveringPlace({});
    if (best == place())
        return;
    m_zoomedPlace = best;
    updateOverlay();
}

/// The corner, other than `excluded` ones, in which the legend covers clearly less than now; else its current place.
QPointF PlotLegend::leastCoveringPlace(const QList<QPointF>& excluded) const
{
    const Layout now = layout();
    if (now.rect.isEmpty())
        return place();
    const PlotMapping mapping = PlotMapping::of(*curves());
    const QList<ShownCurve> shown = shownCurves(*curves());
    const auto coverageAt = [&](const QPointF& corner) { return coverageOf(now.rectAt(corner), shown, mapping); };
    const double current = coverageAt(place());
    if (current <= toleratedCoverage)
        return place();
    double least = 1.0;
    QPointF best = place();
    for (const QPointF& corner : { QPointF(1, 0), QPointF(0, 0), QPointF(1, 1), QPointF(0, 1) }) {
        const double coverage = corner == place() || excluded.contains(corner) ? 1.0 : coverageAt(corner);
        if (coverage < least) {
            least = coverage;
            best = corner;
        }
    }
    return isClearlyBetter(current, least) ? best : place();
}

// Layout and drawing

qsizetype PlotLegend::Layout::entryAt(const QPointF& point) const
{
    if (!QRectF(rect).contains(point))
        return -1;
    const qsizetype row = static_cast<qsizetype>(std::floor((point.y() - rect.top() - padding) / rowHeight));
    return row >= 0 && row < rows ? first + row : -1;
}

QRect PlotLegend::Layout::rectAt(const QPointF& place) const
{
    return { corner
            + QPoint(static_cast<int>(std::lround(room.width() * place.x())),
                static_cast<int>(std::lround(room.height() * place.y()))),
        rect.size() };
}

QRect PlotLegend::Layout::rowRect(qsizetype entry) const
{
    const int top = rect.top() + padding + static_cast<int>(entry - first) * rowHeight;
    return { rect.left() + padding, top, rect.width() - 2 * padding, rowHeight };
}

PlotLegend::Layout PlotLegend::layout() const
{
    Layout made;
    if (curves() == nullptr)
        return made;
    const auto type = PlotAccess::addType(*curves());
    made.isSum = type != AddType::AddNone && type != AddType::AddEachGroup && type != AddType::AddEachPosition;
    const PlotMapping mapping = PlotMapping::of(*curves());
    if (!m_isVisible || !mapping.isValid())
        return made;
    made.entries = legendEntries(*curves());
    const QFontMetrics metrics(curves()->font());
    made.rowHeight = metrics.height() + 2;
    const QRect inside = mapping.frameRect().adjusted(margin, margin, -margin, -margin);
    if (made.entries.size() < 2)
        return made; // a single curve needs no legend
    int textWidth = 0;
    for (const LegendEntry& entry : std::as_const(made.entries))
        textWidth = std::max(textWidth, m_labels->advanceOf(entry.name, metrics) + 1); // a rounded width would elide
                                                                                       // the text
    const int wanted = sampleWidth + 3 * padding + textWidth;
    const int width = std::min(wanted, std::max(static_cast<int>(inside.width() * widest), sampleWidth + 3 * padding));
    const double height = std::min(inside.height() * tallest, inside.height() * largest * inside.width() / width);
    made.rows = std::min(made.entries.size(), static_cast<qsizetype>((height - 2 * padding) / made.rowHeight));
    if (made.rows < std::min<qsizetype>(made.entries.size(), fewestRows)) {
        made.rows = 0; // the data need the space of a small plot
        return made;
    }
    made.first = firstInSight(m_first, made.entries.size(), made.rows);
    const QSize size(width, static_cast<int>(made.rows) * made.rowHeight + 2 * padding);
    made.room = QSizeF(std::max(inside.width() - size.width(), 0), std::max(inside.height() - size.height(), 0));
    made.corner = inside.topLeft();
    made.rect.setSize(size);
    made.rect = besideMarks(*curves(), made.rectAt(place()), inside);
    return made;
}

QList<QRect> PlotLegend::cornerBoxes() const
{
    const QRect rect = layout().rect;
    return rect.isEmpty() ? QList<QRect>() : QList<QRect> { rect };
}

void PlotLegend::paintOverlay(QPainter& painter, const PlotMapping& /*mapping*/)
{
    const Layout now = layout();
    noteDrawn(painter, now.rect.adjusted(-1, -1, 1, 1));
    if (now.rect.isEmpty())
        return;
    const bool isOnScreen = painter.device() == static_cast<const QPaintDevice*>(curves());
    QFont font = curves()->font();
    if (painter.device()->logicalDpiY() != curves()->logicalDpiY()) // would be larger than the layout
        font.setPixelSize(QFontInfo(font).pixelSize());
    painter.setFont(font);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(border, 1.0));
    const PlotStyling* const styling = stylingOf(curves());
    const QColor textColour = styling != nullptr ? styling->foreground() : classicText;
    QColor ground = styling != nullptr ? styling->surround() : fill;
    ground.setAlpha(fill.alpha()); // the colours of the curves are made for this background
    painter.setBrush(ground);
    paintInBands(
        painter, now.rect, [&] { painter.drawRoundedRect(QRectF(now.rect).adjusted(0.5, 0.5, -0.5, -0.5), 3.0, 3.0); });
    const QFontMetrics metrics(font);
    for (qsizetype i = now.first; i < now.first + now.rows; ++i) {
        const LegendEntry& entry = now.entries.at(i);
        const QRect row = now.rowRect(i);
        if (i == m_selected && curves()->hasFocus() && !isForFile(painter, *curves())) {
            painter.setPen(QPen(textColour, 1.0, Qt::DotLine));
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(QRectF(row).adjusted(-1.5, 0.5, 1.5, -0.5));
        }
        const double middle = row.center().y() + 0.5;
        painter.setPen(
            QPen(entry.isShown ? entry.colour : hiddenColour, entry.isShown ? 2.5 : 1.0, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(row.left(), middle), QPointF(row.left() + sampleWidth, middle));
        painter.setPen(entry.isShown ? textColour : hiddenColour);
        const QRect text = row.adjusted(sampleWidth + padding, 0, 0, 0);
        const int flags = Qt::AlignLeft | Qt::AlignVCenter;
        const QString name = m_labels->advanceOf(entry.name, metrics) < text.width()
            ? entry.name
            : metrics.elidedText(entry.name, Qt::ElideRight, text.width());
        if (isOnScreen)
            m_labels->draw(painter, text, flags, name);
        else // the cached layouts have the sizes of the screen
            painter.drawText(text, flags, name);
        if (!entry.isShown) // not only by the colour
            painter.drawLine(QPointF(text.left(), middle),
                QPointF(text.left() + std::min(text.width(), metrics.horizontalAdvance(entry.name)), middle));
    }
    const double right = now.rect.right() - 6.0;
    if (now.first > 0)
        paintArrow(painter, { right, now.rect.top() + 2.0 }, -1.0, textColour);
    if (now.first + now.rows < now.entries.size())
        paintArrow(painter, { right, now.rect.bottom() - 2.0 }, 1.0, textColour);
}

// Actions and state

QList<QAction*> PlotLegend::actions() const
{
    return { m_switch };
}

QString PlotLegend::stateName() const
{
    return QStringLiteral("legend");
}

QJsonObject PlotLegend::saveState() const
{
    QJsonObject state { { visibleKey, m_isVisible } };
    if (m_isPlaceSet)
        state.insert(placeKey, QJsonArray { m_place.x(), m_place.y() });
    if (curves() == nullptr)
        return state;
    QJsonArray hidden;
    const QList<Series>& series = PlotAccess::series(*curves());
    for (qsizetype i = 0; i < series.size(); ++i) {
        if (!series.at(i).enable)
            hidden.append(i);
    }
    state.insert(hiddenKey, hidden);
    return state;
}

void PlotLegend::restoreState(const QJsonObject& state)
{
    const QPointer<PlotLegend> self(this); // a slot may delete it
    const QJsonArray place = state.value(placeKey).toArray();
    if (place.size() == 2 && place.at(0).isDouble() && place.at(1).isDouble())
        setPlace({ place.at(0).toDouble(), place.at(1).toDouble() });
    if (!self.isNull())
        setVisible(state.value(visibleKey).toBool(m_isVisible));
    if (self.isNull() || curves() == nullptr || !state.value(hiddenKey).isArray())
        return;
    const QJsonArray hidden = state.value(hiddenKey).toArray();
    const qsizetype records = PlotAccess::series(*curves()).size();
    for (int i = 0; i < records; ++i)
        curves()->setEnable(i, !hidden.contains(i));
    for (const auto& value : hidden) { // records whose data have not arrived yet
        const int record = value.toInt(-1);
        if (record >= records && record < maxRecords)
            curves()->setEnable(record, false);
    }
    curves()->refreshPixmap();
}

} // namespace tarnis
