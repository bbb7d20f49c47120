#include "tarnis/tools/plotruler.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/base/blocksums_p.h"
#include "tarnis/tools/base/labelplacement_p.h"
#include "tarnis/tools/base/menutool_p.h"
#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/plotpositions_p.h"
#include "tarnis/tools/base/plotreadout_p.h"
#include "tarnis/tools/base/readoutlabels_p.h"
#include "tarnis/tools/cursors/rulerreading_p.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tarnis {

namespace {

constexpr int rulerZOrder = 55; // its reading is above the lines of the cross
constexpr double reach = 8.0;
constexpr double endTick = 5.0;
constexpr int nameDistance = 8; // of an end's name above it
constexpr int labelPadding = 10; // of a label's box, left and right
const QColor rulerColour(120, 230, 255);

std::optional<double> cellOf(const QList<QList<double>>& rows, qsizetype column, qsizetype row)
{
    if (row < 0 || row >= rows.size() || column < 0 || column >= rows.at(row).size())
        return std::nullopt;
    return rows.at(row).at(column);
}

} // namespace

/// A drag adds up the ends of a part only.
struct PlotRuler::Sums {
    QList<BlockSums> curves;
    RectangleSums map;
};

struct PlotRuler::Label {
    ReadOutLabels full;
    ReadOutLabels brief; // for small plots
};

/// The name of an end, above it or at the border of the view.
struct PlotRuler::Name {
    QString text;
    QRect box;
};

/// In frame coordinates.
struct PlotRuler::Drawing {
    QPointF a;
    QPointF b;
    std::array<Name, 2> names;
    QRect row; // of the text
    const LabelLayout* text = nullptr; // until the next one is made

    QPointF corner() const { return { b.x(), a.y() }; }
    QRegion area(const QRect& rect) const
    {
        constexpr int reachOfTick = static_cast<int>(endTick) + 3;
        QRegion area = areaOfLine(a, corner()) + areaOfLine(corner(), b) + areaOfLine(a, b);
        for (const QPointF& end : { a, b })
            area += QRect(
                end.toPoint() - QPoint(reachOfTick, reachOfTick), QSize(2 * reachOfTick + 1, 2 * reachOfTick + 1));
        area &= rect;
        for (const Name& name : names)
            area += name.box.adjusted(-1, -1, 1, 1);
        return area + row.adjusted(-1, -1, 1, 1);
    }
};

PlotRuler::PlotRuler(XYGraphWidget* plot)
    : InteractiveTool(plot, KeyboardFocus)
    , PlotOverlay(plot, rulerZOrder)
    , m_sums(std::make_unique<Sums>())
    , m_label(std::make_unique<Label>())
    , m_menuTool(std::make_unique<MenuTool>())
{
    makeActions();
}

PlotRuler::~PlotRuler() = default;

bool PlotRuler::isOn() const
{
    return m_isOn;
}

bool PlotRuler::isSet() const
{
    return m_isSet;
}

QPointF PlotRuler::from() const
{
    return m_isSet && plot() != nullptr ? snapped(PlotMapping::of(*plot()), m_from) : QPointF();
}

QPointF PlotRuler::to() const
{
    return m_isSet && plot() != nullptr ? snapped(PlotMapping::of(*plot()), m_to) : QPointF();
}

QString PlotRuler::text() const
{
    return m_isSet && plot() != nullptr ? reading().text() : QString();
}

QString PlotRuler::table() const
{
    return m_isSet && plot() != nullptr ? reading().table() : QString();
}

void PlotRuler::setOn(bool on)
{
    if (on == m_isOn)
        return;
    const QPointer<PlotRuler> self(this);
    endDrag(true); // a slot may delete the ruler
    if (self.isNull())
        return;
    m_isOn = on;
    setNeeds(on ? MouseMoves | KeyboardFocus : Needs(KeyboardFocus));
    if (on) {
        receiveEventsFirst(); // the tool that was switched on last gets the drags
        if (plot() != nullptr)
            m_menuTool->note(*plot());
        showCursor(Qt::CrossCursor);
    } else {
        restoreCursor();
    }
    updateActions();
    Q_EMIT onChanged(on);
}

void PlotRuler::setEnds(const QPointF& from, const QPointF& to)
{
    if (plot() == nullptr || !isFinitePlace(from) || !isFinitePlace(to))
        return;
    m_from = from;
    m_to = to;
    m_isSet = true;
    renew();
}

void PlotRuler::clear()
{
    m_grip = Grip::None;
    m_isSet = false;
    *m_sums = {};
    renew();
}

void PlotRuler::copy() const
{
    copyTable(table());
}

/// Repaints where the ruler was and where it will be.
void PlotRuler::renew()
{
    updateActions();
    const std::optional<RulerReading> shown =
        m_isSet && plot() != nullptr ? std::optional<RulerReading>(reading()) : std::nullopt;
    const QString now = shown ? shown->text() : QString();
    const bool isOther = now != m_text;
    m_text = now;
    m_briefText = shown ? shown->briefText() : QString();
    const PlotMapping mapping = m_isSet && plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (mapping.isValid())
        updateOverlayArea(drawing(mapping, plot()->font()).area(mapping.frameRect()));
    else
        updateOverlayArea({});
    if (isOther)
        Q_EMIT textChanged(now);
}

void PlotRuler::plotChanged(Changes /*changes*/)
{
    if (m_isSet)
        renew();
}

QPointF PlotRuler::snapped(const PlotMapping& mapping, const QPointF& position) const
{
    const QPointF inBin = snappedToBins(mapping, position);
    const QList<ShownCurve> curves = shownCurves(*plot());
    const double value = curves.isEmpty() ? std::nan("") : curves.first().valueAt(mapping.columnAt(inBin.x()));
    return { inBin.x(), std::isfinite(value) ? value : inBin.y() };
}

RulerReading PlotRuler::reading() const
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    const QPointF a = snapped(mapping, m_from);
    const QPointF b = snapped(mapping, m_to);
    const auto shown = [this](const QPointF& at) { return QPointF(PlotAccess::namedX(*plot(), at.x()), at.y()); };
    const BinsInView columns = columnsBetween(mapping, { a.x(), b.x() });
    const qsizetype width = columns.last - columns.first + 1;
    if (const auto* map = qobject_cast<const XY2DGraphWidget*>(plot())) {
        const QList<QList<double>>& cells = PlotAccess::rows(*map);
        const auto cellAt = [&](const QPointF& at) {
            return cellOf(cells, mapping.columnAt(at.x()), mapping.rowAt(at.y()));
        };
        RulerReading reading = readingBetween(shown(a), shown(b), cellAt(a), cellAt(b), false);
        reading.isMap = true;
        reading.nameX = PlotAccess::nameX(*plot());
        reading.nameY = PlotAccess::nameY(*plot());
        const BinsInView rows = rowsBetween(mapping, { a.y(), b.y() });
        reading.bins = width * (rows.last - rows.first + 1);
        m_sums->map.update(cells);
        reading.sums = { { {}, m_sums->map.between(columns.first, columns.last, rows.first, rows.last) } };
        return reading;
    }
    const QList<ShownCurve> curves = shownCurves(*plot());
    const auto firstAt = [&](const QPointF& at) {
        return curves.isEmpty() ? std::nullopt : curves.first().at(mapping.columnAt(at.x()));
    };
    const auto onCurve = [&](const QPointF& at) { // also where the value is not a number
        return QPointF(shown(at).x(), firstAt(at).value_or(at.y()));
    };
    RulerReading reading = readingBetween(onCurve(a), onCurve(b), firstAt(a), firstAt(b), mapping.isLogY());
    const QStringList names = fullNames(*plot());
    reading.nameX = PlotAccess::nameX(*plot());
    reading.nameY = names.value(0).isEmpty() ? PlotAccess::nameY(*plot()) : valueHeaders(*plot()).constFirst();
    reading.bins = width;
    QList<QList<double>> parts;
    for (const ShownCurve& curve : curves)
        parts += curve.parts;
    updateSums(m_sums->curves, parts);
    qsizetype next = 0;
    for (const ShownCurve& curve : curves) {
        double sum = 0.0;
        for (qsizetype i = 0; i < curve.parts.size(); ++i)
            sum += m_sums->curves.at(next++).between(columns.first, std::min(columns.last, curve.size() - 1));
        reading.sums.append({ curve.name, sum, names.value(reading.sums.size()) });
    }
    return reading;
}

PlotRuler::Grip PlotRuler::gripAt(const PlotMapping& mapping, const QPointF& pixel) const
{
    if (!m_isSet)
        return Grip::None;
    if (isHit(mapping, snapped(mapping, m_to), pixel, false, reach))
        return Grip::To;
    return isHit(mapping, snapped(mapping, m_from), pixel, false, reach) ? Grip::From : Grip::None;
}

bool PlotRuler::handlePress(const QMouseEvent& event)
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (!m_isOn || m_grip != Grip::None)
        return m_grip != Grip::None;
    if (event.button() != Qt::LeftButton || !isOverPlot(mapping, event.position())
        || m_menuTool->isChosenSince(*plot()))
        return false;
    plot()->setFocus(Qt::MouseFocusReason);
    m_wasSet = m_isSet;
    m_wasFrom = m_from;
    m_wasTo = m_to;
    m_grip = gripAt(mapping, event.position());
    if (m_grip == Grip::None) {
        m_grip = Grip::To;
        const QPointF at = mapping.valueAt(event.position());
        setEnds(at, at);
    }
    return true;
}

bool PlotRuler::handleMove(const QMouseEvent& event)
{
    if (m_grip == Grip::None)
        return false;
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (!mapping.isValid())
        return true;
    const QPointF at = mapping.valueAt(pixelInPlot(mapping, event.position()));
    setEnds(m_grip == Grip::From ? at : m_from, m_grip == Grip::To ? at : m_to);
    return true;
}

bool PlotRuler::handleRelease(const QMouseEvent& event)
{
    if (m_grip == Grip::None)
        return false;
    if (event.button() == Qt::LeftButton)
        endDrag(false);
    return true;
}

void PlotRuler::handleHide()
{
    endDrag(true);
}

void PlotRuler::endDrag(bool cancel)
{
    if (m_grip == Grip::None)
        return;
    m_grip = Grip::None;
    if (!cancel)
        return;
    m_isSet = m_wasSet;
    m_from = m_wasFrom;
    m_to = m_wasTo;
    renew();
}

QPointF PlotRuler::pixelOf(const PlotMapping& mapping, const QPointF& end) const
{
    const QPointF place = snapped(mapping, end);
    return { std::round(limitedCoordinate(mapping.columnOf(place.x()))),
        std::round(limitedCoordinate(mapping.rowOf(place.y()))) };
}

/// Above the legend, the marks of held axes, other names, and each other.
std::array<PlotRuler::Name, 2> PlotRuler::names(const PlotMapping& mapping, const QFont& font) const
{
    const QRect rect = mapping.frameRect();
    QList<QRect> taken = cornerBoxesOf(*plot()) + nameBoxesOf(*plot());
    const auto nameOf = [&](const QString& name, const QPointF& end) -> Name {
        const int column = static_cast<int>(end.x());
        const bool isLeft = column < rect.left();
        const bool isRight = column > rect.right();
        const QString text = isLeft ? QStringLiteral("◂ ") + name : isRight ? name + QStringLiteral(" ▸") : name;
        const int row = isLeft || isRight ? rect.bottom() : static_cast<int>(end.y()) - nameDistance;
        QRect frame =
            labelFrame(labelSize(QFontMetrics(font), text), { column, row }, Qt::AlignHCenter | Qt::AlignBottom);
        frame.moveTop(std::clamp(frame.top(), rect.top(), std::max(rect.bottom() - frame.height() + 1, rect.top())));
        frame.moveLeft(std::clamp(frame.left(), rect.left(), std::max(rect.right() - frame.width() + 1, rect.left())));
        taken.append(movedPast(frame, rect, taken, Qt::TopEdge));
        return { text, taken.constLast() };
    };
    const Name first = nameOf(QStringLiteral("x₁"), pixelOf(mapping, m_from));
    return { first, nameOf(QStringLiteral("x₂"), pixelOf(mapping, m_to)) };
}

QList<QRect> PlotRuler::overlayBoxes() const
{
    const PlotMapping mapping = m_isSet && plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (!mapping.isValid())
        return {};
    const std::array<Name, 2> ends = names(mapping, plot()->font());
    return { ends[0].box, ends[1].box };
}

PlotRuler::Drawing PlotRuler::drawing(const PlotMapping& mapping, const QFont& font) const
{
    const LabelLayout* text = nullptr;
    const QRect row = textRow(mapping, font, text);
    return { pixelOf(mapping, m_from), pixelOf(mapping, m_to), names(mapping, font), row, text };
}

void PlotRuler::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    if (!m_isSet) {
        noteDrawn(painter, {});
        return;
    }
    const bool isFile = isForFile(painter, *plot());
    if (isFile)
        *m_label = {}; // the same font has other sizes on another device
    const QRect rect = mapping.frameRect();
    const Drawing now = drawing(mapping, painter.font());
    noteDrawn(painter, now.area(rect), true); // of their boxes
    painter.save();
    painter.setClipRect(rect);
    const QColor colour = colourOverData(*plot(), rulerColour);
    paintLine(painter, now.a, now.corner(), colour, true);
    paintLine(painter, now.corner(), now.b, colour, true);
    paintLine(painter, now.a, now.b, colour);
    for (const QPointF& end : { now.a, now.b }) {
        paintLine(painter, end - QPointF(endTick, 0.0), end + QPointF(endTick, 0.0), colour);
        paintLine(painter, end - QPointF(0.0, endTick), end + QPointF(0.0, endTick), colour);
    }
    painter.restore();
    for (const Name& name : now.names)
        paintLabel(painter, name.text, name.box.topLeft(), Qt::AlignLeft | Qt::AlignTop);
    now.text->paint(painter, now.row.topLeft());
    if (isFile)
        *m_label = {};
}

/// The space of the text at the top of the plot, beside or below what other tools have there: in one line, otherwise in
/// as few as have room. In a small plot the text becomes brief, then covers names of markers, then is elided. Returns
/// its layout in `layout`.
QRect PlotRuler::textRow(const PlotMapping& mapping, const QFont& font, const LabelLayout*& layout) const
{
    QList<QRect> taken;
    for (const InteractiveTool* const tool : toolsOf(*plot()))
        taken += tool->overlayBoxes();
    const QRect inside = mapping.frameRect().adjusted(2, 2, -2, -2);
    const int maxLines = std::max(inside.height() / 2 / std::max(QFontMetrics(font).lineSpacing(), 1), 1);
    m_label->full.use(m_text, font);
    m_label->brief.use(m_briefText, font);
    if (const QRect usual = usualRow(inside, taken, layout); !usual.isNull())
        return usual;
    QList<QRect> corners = cornerBoxesOf(*plot());
    for (const auto& [labels, boxes] : { std::pair(&m_label->full, &taken), std::pair(&m_label->brief, &taken),
             std::pair(&m_label->brief, &corners) }) {
        const PlacedReadOut placed = placedBeside(*labels, inside, *boxes, maxLines);
        layout = placed.layout;
        if (layout != nullptr)
            return labelFrame(layout->size(), placed.row.topRight(), Qt::AlignRight);
    }
    const QRect gap = freeRow(inside, { inside.width(), m_label->brief.heightOf(maxLines) }, corners); // the widest one
    const QRect row = gap.width() >= inside.width() / 2 ? gap : QRect(inside.topLeft(), QSize(inside.width(), 1));
    layout = &m_label->brief.inLines(std::max(row.width() - labelPadding - 2, 1), maxLines);
    return labelFrame(layout->size(), row.topRight(), Qt::AlignRight);
}

/// A line, or a block of half the plot's width that is not high; null if there is no such space.
QRect PlotRuler::usualRow(const QRect& inside, const QList<QRect>& taken, const LabelLayout*& layout) const
{
    constexpr double usualWidth = 0.48; // as the values of the cross
    ReadOutLabels& full = m_label->full;
    const int half = static_cast<int>(inside.width() * usualWidth) - labelPadding;
    for (const int width : { full.parts->width() + 1, half }) {
        const auto count = static_cast<int>(full.parts->texts.size());
        const auto lines = static_cast<int>(lineCount(*full.parts, width, count));
        if (isElided(*full.parts, width, lines) || full.heightOf(lines) > inside.height() / 3)
            continue;
        layout = &full.inLines(width, lines);
        const QRect row = freeRow(inside, layout->size(), taken);
        if (row.width() >= layout->size().width())
            return labelFrame(layout->size(), row.topRight(), Qt::AlignRight);
    }
    return {};
}

QRect PlotRuler::textBox() const
{
    if (!m_isSet || plot() == nullptr)
        return {};
    const PlotMapping mapping = PlotMapping::of(*plot());
    const LabelLayout* layout = nullptr;
    return mapping.isValid() ? textRow(mapping, plot()->font(), layout) : QRect();
}

} // namespace tarnis
