#include "tarnis/tools/plotcrosshair.h"

#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/xy2dgraphwidget.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/base/labelplacement_p.h"
#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/plotpositions_p.h"
#include "tarnis/tools/base/plotreadout_p.h"
#include "tarnis/tools/base/readoutlabels_p.h"
#include "tarnis/tools/cursors/linkedcross_p.h"
#include "tarnis/tools/plotruler.h"

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarnis {

namespace {

constexpr int crosshairZOrder = 50;
constexpr double dotRadius = 3.0;
constexpr int labelPadding = 10; // of a label's box, left and right
constexpr int labelMargin = 2; // to the plot rectangle
constexpr int distanceToCross = 8;
constexpr double smallShare = 0.1; // of the plot that the full text may cover if the brief one covers nothing
constexpr double usualWidth = 0.48; // of lines in the plot, as a fraction of the plot rectangle
const QColor lineColour(235, 235, 235);
const QPointF nowhere(qQNaN(), qQNaN());

QList<QRect> rulerTextOver(const XYGraphWidget& plot)
{
    QList<QRect> boxes;
    for (const InteractiveTool* const tool : InteractiveTool::toolsOf(plot)) {
        if (const auto* const ruler = qobject_cast<const PlotRuler*>(tool))
            boxes += ruler->textBox();
    }
    return boxes;
}

QList<QRect> boxesOver(const XYGraphWidget& plot)
{
    QList<QRect> boxes = rulerTextOver(plot);
    for (const InteractiveTool* const tool : InteractiveTool::toolsOf(plot))
        boxes += tool->overlayBoxes();
    return boxes;
}

/// Where a read-out can be in the plot.
struct Space {
    QRect inside;
    QRect side; // of the cross, with more space
    bool isLeft; // that side
    int maxLines;
};

/// In lines of the usual width on that side, wider ones where something would be elided. A gap that is too narrow for
/// this is returned, too.
PlacedReadOut placedUsually(ReadOutLabels& labels, const Space& space, const QList<QRect>& boxes)
{
    const int usual = static_cast<int>(space.inside.width() * usualWidth) - labelPadding;
    const int height = labels.heightOf(lineCount(*labels.parts, usual, space.maxLines)); // less in wider lines
    const int gap = freeRow(space.side, { space.side.width(), height }, boxes).width(); // the widest one
    const LineWidths widths { usual, gap - labelPadding, std::max(space.inside.width() - labelPadding, 1) };
    const LabelLayout& lines = labels.inLines(widthFor(*labels.parts, widths, space.maxLines), space.maxLines);
    const QRect row = freeRow(space.side, lines.size(), boxes);
    if (row.width() >= lines.size().width())
        return { row, &lines };
    return { freeRow(space.inside, lines.size(), boxes), &lines }; // a legend fills that side
}

int areaOf(const QSize& size)
{
    return size.width() * size.height();
}

bool isReadable(const PlacedReadOut& placed, const ReadOutLabels& labels, const QList<QRect>& boxes)
{
    return placed.row.width() >= placed.layout->size().width()
        && !meetsAny({ placed.row.topLeft(), placed.layout->size() }, boxes)
        && !isElided(*labels.parts, labels.width, labels.count);
}

} // namespace

/// The read-out as it is drawn.
struct PlotCrosshair::Label {
    QRect box;
    const LabelLayout* layout = nullptr; // until the next one is made
};

struct PlotCrosshair::Labels {
    ReadOutLabels full;
    ReadOutLabels brief; // for small plots
};

struct PlotCrosshair::Drawing {
    struct Dot {
        double row = 0.0;
        QColor colour;
    };

    QString text;
    QPointF value; // of the cross
    double column = 0.0;
    double row = 0.0;
    QList<Dot> dots;
    Label label;

    QRegion area(const QRect& rect) const
    {
        constexpr int lineReach = 2; // with the border
        constexpr int dotReach = static_cast<int>(dotRadius) + 2;
        const auto around = [](double x, double y, int reach) {
            return QRect(static_cast<int>(x) - reach, static_cast<int>(y) - reach, 2 * reach + 1, 2 * reach + 1);
        };
        const QRect middle = around(column, row, lineReach);
        QRegion area(middle.left(), rect.top(), middle.width(), rect.height());
        area += QRect(rect.left(), middle.top(), rect.width(), middle.height());
        for (const Dot& dot : dots)
            area += around(column, dot.row, dotReach);
        return (area & rect) + label.box.adjusted(-1, -1, 1, 1);
    }
};

PlotCrosshair::PlotCrosshair(XYGraphWidget* plot)
    : InteractiveTool(plot, MouseMoves | KeyboardFocus | ReadOut)
    , PlotOverlay(plot, crosshairZOrder)
    , m_labels(std::make_unique<Labels>())
{
    makeActions();
    if (plot == nullptr)
        return;
    m_linked = std::make_unique<LinkedCross>(plot);
    m_linked->setOn(m_isOn);
}

PlotCrosshair::~PlotCrosshair()
{
    if (plot() != nullptr)
        PlotHooks::of(*plot()).moveCrosshair(nowhere);
}

bool PlotCrosshair::isOn() const
{
    return m_isOn;
}

bool PlotCrosshair::isPinned() const
{
    return m_isPinned;
}

bool PlotCrosshair::isShown() const
{
    return plot() != nullptr && m_isOn && (m_isPinned || m_isOver);
}

QString PlotCrosshair::text() const
{
    return isShown() ? readOut().text() : QString();
}

QString PlotCrosshair::table() const
{
    return isShown() ? readOut().table(valueHeaders(*plot())) : QString();
}

QPointF PlotCrosshair::value(const PlotMapping& mapping) const
{
    return m_isPinned ? m_pin : mapping.valueAt(m_pointer);
}

PlotReadOut PlotCrosshair::readOut() const
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    const QPointF at = value(mapping);
    return readOutAt(*plot(), mapping, at.x(), at.y());
}

void PlotCrosshair::setOn(bool on)
{
    if (on == m_isOn)
        return;
    m_isOn = on;
    m_isPinned = m_isPinned && on;
    if (on && plot() != nullptr && plot()->underMouse()) // a pointer at rest sends no move
        notePointer(plot()->mapFromGlobal(QPointF(QCursor::pos())));
    if (m_linked != nullptr && plot() != nullptr)
        m_linked->setOn(on);
    setNeeds(on ? MouseMoves | KeyboardFocus | ReadOut : Needs(KeyboardFocus));
    updateActions();
    const QPointer<PlotCrosshair> self(this); // a slot may delete it
    renew();
    if (!self.isNull())
        Q_EMIT onChanged(on);
}

void PlotCrosshair::pinAt(const QPointF& value)
{
    if (!std::isfinite(value.x()) || !std::isfinite(value.y()))
        return;
    m_pin = value;
    m_isPinned = true;
    if (!m_isOn) {
        setOn(true);
        return;
    }
    updateActions();
    renew();
}

void PlotCrosshair::release()
{
    m_isPinned = false;
    updateActions();
    renew();
}

void PlotCrosshair::copy()
{
    copyTable(table());
}

/// Repaints where the cross was and where it will be.
void PlotCrosshair::renew()
{
    const PlotMapping mapping = isShown() ? PlotMapping::of(*plot()) : PlotMapping();
    QString now;
    QPointF position = nowhere;
    if (mapping.isValid()) {
        const Drawing next = drawing(mapping, plot()->font());
        now = next.text;
        position = next.value;
        updateOverlayArea(next.area(mapping.frameRect()));
    } else {
        now = text();
        updateOverlayArea({});
    }
    const QPointer<PlotCrosshair> self(this); // an observer may delete it
    if (plot() != nullptr)
        PlotHooks::of(*plot()).moveCrosshair(position);
    if (self.isNull() || now == m_text)
        return;
    m_text = now;
    Q_EMIT textChanged(now);
}

void PlotCrosshair::plotChanged(Changes changes)
{
    const bool wasShown = isShown();
    if (m_isOver && changes.testFlag(PlotRect)) // a smaller plot leaves a pointer at rest
        notePointer(m_pointer);
    if (wasShown)
        renew();
}

void PlotCrosshair::linkedCrosshairMoved(Qt::Orientation /*axis*/, double /*value*/)
{
    if (m_isOn)
        m_linked->renew();
}

bool PlotCrosshair::handleMove(const QMouseEvent& event)
{
    if (!m_isOn)
        return false;
    notePointer(event.position());
    renew();
    return false;
}

void PlotCrosshair::notePointer(const QPointF& position)
{
    m_pointer = position;
    m_isOver = PlotMapping::of(*plot()).plotRect().contains(position.toPoint());
}

void PlotCrosshair::handleLeave()
{
    m_isOver = false;
    renew();
}

bool PlotCrosshair::claimsKey(const QKeyEvent& event) const
{
    return (isShown() && event.matches(QKeySequence::Copy)) || ((isShown() || m_isOn) && event.key() == Qt::Key_Escape);
}

bool PlotCrosshair::handleKey(const QKeyEvent& event)
{
    const bool isPlain = event.modifiers() == Qt::NoModifier;
    if (event.key() == Qt::Key_C && isPlain) {
        setOn(!m_isOn);
        return true;
    }
    if (m_isOn && moveBy(binsOfKey(event)))
        return true;
    if (event.key() == Qt::Key_Escape && isPlain && (isShown() || m_isOn)) { // also while the pointer is elsewhere
        if (m_isPinned)
            release();
        else
            setOn(false);
        return true;
    }
    if (!isShown())
        return false;
    if (event.matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    if (event.key() == Qt::Key_P && isPlain) {
        togglePin();
        return true;
    }
    return false;
}

/// Pins the cross there. Without a cross under the pointer it begins in the middle of the view. Returns false if there
/// is nothing to move: curves have no bins along Y.
bool PlotCrosshair::moveBy(const QPoint& bins)
{
    const bool isMap = qobject_cast<const XY2DGraphWidget*>(plot()) != nullptr;
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (bins.isNull() || (bins.x() == 0 && !isMap) || !mapping.isValid())
        return false;
    pinAt(isShown() ? movedByBins(mapping, value(mapping), bins.x(), bins.y())
                    : snappedToBins(mapping, mapping.valueAt(QRectF(mapping.plotRect()).center())));
    return true;
}

PlotCrosshair::Drawing PlotCrosshair::drawing(const PlotMapping& mapping, const QFont& font) const
{
    const QPointF at = value(mapping);
    const PlotReadOut shown = readOutAt(*plot(), mapping, at.x(), at.y());
    const double x = shown.column >= 0 ? middleOf(shown.edgesX) : at.x();
    const double y = shown.row >= 0 ? middleOf(shown.edgesY) : at.y();
    const QString text = shown.text();
    Drawing drawing { text, { x, y }, std::round(limitedCoordinate(mapping.columnOf(x))),
        std::round(limitedCoordinate(mapping.rowOf(y))), {}, labelAt(mapping, font, shown) };
    for (const ReadOutValue& value : shown.values) {
        if (!shown.isMap && value.value && std::isfinite(*value.value))
            drawing.dots.append({ limitedCoordinate(mapping.rowOf(*value.value)), value.colour });
    }
    return drawing;
}

void PlotCrosshair::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    if (!isShown()) {
        noteDrawn(painter, {});
        return;
    }
    const bool isFile = isForFile(painter, *plot());
    if (isFile)
        *m_labels = {}; // the same font has other sizes on another device
    const QRect rect = mapping.frameRect();
    const Drawing now = drawing(mapping, painter.font());
    noteDrawn(painter, now.area(rect), true); // of their boxes
    painter.save();
    painter.setClipRect(rect);
    const QColor colour = colourOverData(*plot(), lineColour);
    paintLine(painter, { now.column, double(rect.top()) }, { now.column, double(rect.bottom()) }, colour, !m_isPinned);
    paintLine(painter, { double(rect.left()), now.row }, { double(rect.right()), now.row }, colour, !m_isPinned);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Drawing::Dot& dot : now.dots) {
        painter.setPen(QPen(Qt::white, 1.0));
        painter.setBrush(dot.colour);
        painter.drawEllipse(QPointF(now.column, dot.row), dotRadius, dotRadius);
    }
    painter.restore();
    now.label.layout->paint(painter, now.label.box.topLeft());
    if (isFile)
        *m_labels = {};
}

/// In the margin above the plot it covers no data. Where the title leaves too little space, or the values of many
/// curves are too long for a line, the text is at the top of the plot, on the side of the cross with more space. In a
/// small plot it becomes brief, then covers names of markers.
PlotCrosshair::Label PlotCrosshair::labelAt(
    const PlotMapping& mapping, const QFont& font, const PlotReadOut& shown) const
{
    ReadOutLabels& full = m_labels->full;
    full.use(shown.text(), font);
    if (const Label label = labelAbove(mapping, full); label.layout != nullptr)
        return label;
    const QRect rect = mapping.frameRect();
    const QRect inside = rect.adjusted(labelMargin, labelMargin, -labelMargin, -labelMargin);
    const double cross = limitedCoordinate(mapping.columnOf(value(mapping).x()));
    Space space { inside, inside, cross > rect.center().x(),
        std::max(inside.height() / 2 / std::max(QFontMetrics(font).lineSpacing(), 1), 1) };
    if (space.isLeft)
        space.side.setRight(std::min(inside.right(), static_cast<int>(cross) - distanceToCross));
    else
        space.side.setLeft(std::max(inside.left(), static_cast<int>(cross) + distanceToCross));
    const auto aligned = [&](const PlacedReadOut& placed) -> Label {
        const QSize size = placed.layout->size();
        const int wanted = space.isLeft ? placed.row.left() : placed.row.left() + placed.row.width() - size.width();
        const int last = std::max(inside.left(), inside.left() + inside.width() - size.width());
        return { QRect({ std::clamp(wanted, inside.left(), last), placed.row.top() }, size), placed.layout };
    };
    const QList<QRect> taken = boxesOver(*plot());
    const PlacedReadOut usual = placedUsually(full, space, taken);
    const bool isFree = isReadable(usual, full, taken);
    const bool isUsual = isFree && space.side.contains(aligned(usual).box); // beside the cross
    if (isUsual && areaOf(usual.layout->size()) <= areaOf(inside.size()) * smallShare)
        return aligned(usual);
    ReadOutLabels& brief = m_labels->brief;
    brief.use(shown.briefText(), font);
    if (const Label label = labelAbove(mapping, brief); label.layout != nullptr)
        return label;
    if (isUsual)
        return aligned(usual);
    if (const PlacedReadOut placed = placedBeside(full, space.side, taken, space.maxLines); placed.layout != nullptr)
        return aligned(placed);
    const QList<QRect> last = cornerBoxesOf(*plot()) + rulerTextOver(*plot()); // names give way to these
    for (const QList<QRect>& boxes : { taken, last }) {
        if (const PlacedReadOut placed = placedBeside(brief, space.side, boxes, space.maxLines);
            placed.layout != nullptr)
            return aligned(placed);
    }
    return aligned(isFree ? placedUsually(full, space, taken) : placedUsually(brief, space, last));
}

PlotCrosshair::Label PlotCrosshair::labelAbove(const PlotMapping& mapping, ReadOutLabels& labels) const
{
    const QRect rect = mapping.frameRect();
    const PlotStyling* const styling = stylingOf(plot());
    const QRect above = styling != nullptr ? styling->freeAbove() : QRect(rect.left(), 0, rect.width(), rect.top());
    if (labels.parts->width() > above.width() || QFontMetrics(labels.font).height() > above.height())
        return {};
    const LabelLayout& line = labels.inOneLine();
    if (line.size().width() > above.width())
        return {};
    const QPoint corner(above.right(), above.bottom() + 1 - labelMargin);
    return { labelFrame(line.size(), corner, Qt::AlignRight | Qt::AlignBottom), &line };
}

QRect PlotCrosshair::textBox() const
{
    const PlotMapping mapping = isShown() ? PlotMapping::of(*plot()) : PlotMapping();
    return mapping.isValid() ? labelAt(mapping, plot()->font(), readOut()).box : QRect();
}

bool PlotCrosshair::isSaved() const
{
    return m_isPinned;
}

} // namespace tarnis
