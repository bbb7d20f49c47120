// Draws the frame: ticks, labels, names, notes, grid, the subclass's data, and the overlay of the selected X range.
#include "tarnis/plots/xygraphwidget.h"

#include "tarnis/foundation/helpers.h"
#include "tarnis/plots/labelcache_p.h"
#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/axisticks_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/raster/pixeltarget_p.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

using tarnis::AxisRange;
using tarnis::AxisTicks;

struct CharSize {
    int width = 0;
    int height = 0;
};

/// A tick to draw. The label is cleared if another one overlaps it.
struct TickRecord {
    int position = 0; // column on the X axis, row on the Y axis
    QString label;
    QRect rect;
};

int lengthOf(const QString& text)
{
    return static_cast<int>(text.size());
}

int widestLabel(const AxisTicks& ticks, int charWidth)
{
    int width = 0;
    for (const double value : ticks.values)
        width = qMax(width, charWidth * lengthOf(numStr(value)) + 10);
    return width;
}

QList<TickRecord> recordsX(const AxisTicks& ticks, AxisRange range, const QRect& graph, CharSize size)
{
    QList<TickRecord> records;
    records.reserve(ticks.values.size());
    for (const double value : ticks.values) {
        TickRecord record { tarnis::columnOf(value, range, graph), numStr(value), {} };
        const int labelWidth = (lengthOf(record.label) + 2) * size.width;
        const int left = record.position - labelWidth / 2;
        record.rect.setCoords(left, graph.bottom() + 5, left + labelWidth - 1, graph.bottom() + 19);
        records.append(record);
    }
    return records;
}

QList<TickRecord> recordsY(
    const AxisTicks& ticks, AxisRange range, bool logScale, const QRect& graph, int left, CharSize size)
{
    QList<TickRecord> records;
    records.reserve(ticks.values.size());
    for (const double value : ticks.values) {
        TickRecord record { tarnis::rowOf(value, range, logScale, graph), numStr(value), {} };
        const int top = record.position - size.height / 2;
        record.rect.setCoords(left, top, graph.left() - 6, top + size.height - 1);
        records.append(record);
    }
    return records;
}

/// Stores the rectangles of the first and last label as the widget's click areas, rotated if the picture is upright.
/// `last` is unchanged for a list of one record.
void keepEnds(const QList<TickRecord>& records, bool upright, int frameHeight, QRect& first, QRect& last)
{
    const auto onWidget = [&](const QRect& rect) {
        if (!upright)
            return rect;
        return QRect(QPoint(frameHeight - rect.bottom(), rect.left()), QPoint(frameHeight - rect.top(), rect.right()));
    };
    first = onWidget(records.constFirst().rect);
    if (records.size() > 1)
        last = onWidget(records.constLast().rect);
}

/// Draws marks and labels, the last record first. A drawn label clears later ones that overlap it.
template <typename DrawMark>
void paintTicks(QPainter& painter, tarnis::LabelCache& labels, QList<TickRecord> records, int flags, DrawMark drawMark)
{
    std::rotate(records.begin(), records.end() - 1, records.end());
    for (qsizetype i = 0; i < records.size(); ++i) {
        const TickRecord& record = records.at(i);
        drawMark(record.position);
        if (record.label.isEmpty())
            continue;
        labels.draw(painter, record.rect, flags, record.label);
        for (qsizetype later = i + 1; later < records.size(); ++later) {
            if (records.at(later).rect.intersects(record.rect))
                records[later].label.clear();
        }
    }
}

using ExactPixels = std::optional<tarnis::DevicePixels>;

void paintTicksX(QPainter& painter, tarnis::LabelCache& labels, const QList<TickRecord>& records,
    const ExactPixels& pixels, const QRect& graph)
{
    paintTicks(painter, labels, records, Qt::AlignHCenter | Qt::AlignTop, [&](int column) {
        if (pixels)
            pixels->drawColumn(painter, column, graph.bottom(), graph.bottom() + 3, Qt::black);
        else
            painter.drawLine(column, graph.bottom(), column, graph.bottom() + 3);
    });
}

void paintTicksY(QPainter& painter, tarnis::LabelCache& labels, const QList<TickRecord>& records,
    const ExactPixels& pixels, const QRect& graph)
{
    paintTicks(painter, labels, records, Qt::AlignRight | Qt::AlignVCenter, [&](int row) {
        if (pixels)
            pixels->drawRow(painter, row, graph.left() - 3, graph.left(), Qt::black);
        else
            painter.drawLine(graph.left() - 3, row, graph.left(), row);
    });
}

/// The plot rectangle with its border, in the pen's colour.
void paintBackground(QPainter& painter, const ExactPixels& pixels, const QRect& graph, const QColor& colour)
{
    painter.setBrush(QBrush(colour));
    if (pixels)
        pixels->drawFrame(painter, graph, painter.pen().color(), colour);
    else
        painter.drawRects(&graph, 1);
}

void paintNames(QPainter& painter, const QRect& frame, const QRect& graph, const QString& nameX, const QString& nameY)
{
    painter.drawText(QRect(QPoint(graph.left(), graph.bottom()), QPoint(graph.right(), frame.bottom() - 1)),
        Qt::AlignHCenter | Qt::AlignBottom, nameX);
    painter.drawText(
        QRect(graph.left() - 10, frame.top() + 2, graph.right(), graph.top()), Qt::AlignLeft | Qt::AlignTop, nameY);
}

void paintNotes(QPainter& painter, const QRect& frame, const QRect& graph, const QString& notes)
{
    const QRect rect(QPoint(graph.left(), frame.top()), QPoint(graph.right(), graph.top() - 1));
    painter.setPen(Qt::black);
    painter.setClipRect(rect);
    painter.drawText(rect, Qt::AlignRight | Qt::AlignVCenter, notes);
}

/// Fills the frame except for the inside of the graph, which is painted over.
void fillAround(QPainter& painter, const QRect& frame, const QRect& graph)
{
    const QRect inside = graph.adjusted(1, 1, -1, -1);
    if (!inside.isValid() || !tarnis::coversWholePixels(painter) || !tarnis::wholePixelOffset(painter)) {
        painter.fillRect(frame, QBrush(Qt::lightGray));
        return;
    }
    for (const QRect& part : QRegion(frame).subtracted(inside))
        painter.fillRect(part, QBrush(Qt::lightGray));
}

/// True if filling the rectangle covers every pixel of the painter's device.
bool coversAll(const QPainter& painter, const QRect& rect)
{
    const QPaintDevice& device = *painter.device();
    const auto offset = tarnis::wholePixelOffset(painter);
    return offset && tarnis::coversWholePixels(painter) && !painter.hasClipping()
        && rect.translated(*offset).contains(QRect(0, 0, device.width(), device.height()));
}

void clipTo(QPainter& painter, const ExactPixels& pixels, const QRect& graph)
{
    if (pixels)
        painter.setClipRect(pixels->aligned(graph), Qt::ReplaceClip);
    else
        painter.setClipRect(graph, Qt::ReplaceClip);
}

void paintGrid(QPainter& painter, const QList<int>& columns, const QList<int>& rows, const QRect& graph)
{
    if (columns.isEmpty() && rows.isEmpty())
        return;
    const QColor colour(64, 64, 64);
    painter.setPen(colour);
    if (const auto pixels = tarnis::DevicePixels::of(painter)) {
        for (const int column : columns)
            pixels->drawColumn(painter, column, graph.top(), graph.bottom(), colour);
        for (const int row : rows)
            pixels->drawRow(painter, row, graph.left(), graph.right(), colour);
    } else if (tarnis::coversWholePixels(painter) && tarnis::wholePixelOffset(painter) && graph.isValid()) {
        // Straight lines one pixel wide, as rectangles.
        for (const int column : columns)
            painter.fillRect(column, graph.top(), 1, graph.height(), colour);
        for (const int row : rows)
            painter.fillRect(graph.left(), row, graph.width(), 1, colour);
    } else {
        QList<QLine> lines;
        lines.reserve(columns.size() + rows.size());
        for (const int column : columns)
            lines.append(QLine(column, graph.top(), column, graph.bottom()));
        for (const int row : rows)
            lines.append(QLine(graph.left(), row, graph.right(), row));
        painter.drawLines(lines);
    }
    painter.setPen(Qt::black);
}

} // namespace

void XYGraphWidget::paint(QPainter& painter, QRect* rect)
{
    if (m_hooks != nullptr && m_hooks->styling() != nullptr) {
        tarnis::paintStyled(*this, *m_hooks->styling(), painter, rect);
        return;
    }
    CharSize size;
    getCharSize(size.width, size.height);
    QRect frame = rect != nullptr ? *rect : painter.viewport();
    const QRect whole = frame;
    frame = frame.marginsRemoved(m_margin);

    const auto [rangeX, rangeY] = visibleRanges();
    QList<double> inner =
        calcTicks(m_funcX2Tick(m_minX, m_funcUserData), m_funcX2Tick(m_maxX, m_funcUserData), m_tickDecimalX);
    m_tickDecimalX = m_decimalX; // after calcTicks(): new decimals affect the X axis one paint late
    for (double& tick : inner)
        tick = m_funcTick2X(tick, m_funcUserData);
    const AxisTicks ticksX = tarnis::linearTicks(inner, rangeX);
    m_tickDecimalY = m_decimalY;
    const AxisTicks ticksY =
        m_logScaleY ? tarnis::logTicks(rangeY) : tarnis::linearTicks(calcTicks(m_minY, m_maxY, m_tickDecimalY), rangeY);

    QSize topLeft;
    QSize bottomRight;
    getMargin(topLeft, bottomRight);
    const QRect graph = frame.adjusted(qMax(widestLabel(ticksY, size.width), topLeft.width()), topLeft.height(),
        -bottomRight.width(), -bottomRight.height());
    const QList<TickRecord> labelsX = recordsX(ticksX, rangeX, graph, size);
    const QList<TickRecord> labelsY = recordsY(ticksY, rangeY, m_logScaleY, graph, frame.left(), size);
    const bool upright = tarnis::isQuarterTurn(m_rotation);
    keepEnds(labelsX, upright, frame.height(), m_labelRectMinX, m_labelRectMaxX);
    keepEnds(labelsY, upright, frame.height(), m_labelRectMinY, m_labelRectMaxY);

    fillAround(painter, whole, m_backGroundColor.alpha() == 255 ? graph : QRect());
    const ExactPixels pixels = tarnis::DevicePixels::of(painter);
    paintBackground(painter, pixels, graph, m_backGroundColor);
    m_coversPicture = painter.device() == &m_pixmap && coversAll(painter, whole);
    m_graphRect = graph;
    painter.setPen(Qt::black);
    paintNames(painter, frame, graph, m_nameX, m_nameY);
    paintTicksX(painter, *m_labels, labelsX, pixels, graph);
    paintTicksY(painter, *m_labels, labelsY, pixels, graph);
    if (!m_notes.isEmpty())
        paintNotes(painter, frame, graph, m_notes);

    clipTo(painter, pixels, graph);
    const bool gridLast = m_paintGridOnGraph;
    if (gridLast)
        onPaint(painter, graph); // may change an automatic range; the grid uses the new one
    if (m_showGrid) {
        const auto [x, y] = visibleRanges();
        paintGrid(
            painter, tarnis::gridColumns(ticksX, x, graph), tarnis::gridRows(ticksY, y, m_logScaleY, graph), graph);
    }
    if (!gridLast)
        onPaint(painter, graph);
    viewTouched(); // the rectangle, and members that subclasses change
}

QPixmap* XYGraphWidget::toPixmap()
{
    if (m_doubleBuffered)
        return copyWithOverlays().release();
    const QSize pictureSize = tarnis::isTurned(m_rotation) ? size().transposed() : size();
    auto pixmap = std::make_unique<QPixmap>(tarnis::windowPixmap(*this, pictureSize));
    QPainter painter;
    if (!pixmap->isNull() && painter.begin(pixmap.get())) {
        initPainter(&painter);
        tarnis::useWidgetCoordinates(painter, *pixmap, pictureSize);
        paint(painter, nullptr);
        if (m_hooks != nullptr && m_hooks->hasOverlays()) {
            painter.setClipping(false);
            m_hooks->paintOverlays(painter, true);
        }
        painter.end();
    }
    return pixmap.release();
}

std::unique_ptr<QPixmap> XYGraphWidget::copyWithOverlays() const
{
    auto pixmap = std::make_unique<QPixmap>(m_pixmap);
    QPainter painter;
    if (m_hooks == nullptr || !m_hooks->hasOverlays() || pixmap->isNull() || !painter.begin(pixmap.get()))
        return pixmap;
    initPainter(&painter);
    tarnis::useWidgetCoordinates(painter, *pixmap, size());
    m_hooks->paintOverlaysTurned(painter, true);
    return pixmap;
}

void XYGraphWidget::paintEvent(QPaintEvent* event)
{
    refreshPixmapIfRequired();
    QPainter painter(this);
    const bool hasOverlays = m_hooks != nullptr && m_hooks->hasOverlays();
    const bool isPartial = hasOverlays && m_doubleBuffered && !tarnis::isTurned(m_rotation)
        && tarnis::hasWholePixels(*this) && event->region() != QRegion(rect());
    if (isPartial)
        tarnis::copyParts(painter, m_pixmap, event->region());
    else if (m_doubleBuffered)
        painter.drawPixmap(0, 0, m_pixmap);
    else
        paint(painter, nullptr);
    paintSelectedRect(painter);
    if (!hasOverlays)
        return;
    painter.setClipping(false);
    if (isPartial)
        m_hooks->paintOverlaysIn(painter, event->region());
    else
        m_hooks->paintOverlaysTurned(painter, false);
}

void XYGraphWidget::paintSelectedRect(QPainter& painter)
{
    painter.setClipRect(m_graphRect);
    if (!tarnis::plotEqual(m_xRangeMin, m_xRangeMax)) {
        const tarnis::PlotStyling* const styling = tarnis::stylingOf(this);
        painter.setPen(QPen(styling != nullptr ? styling->lineOverData() : QColor(Qt::white), 1, Qt::DashLine));
        for (const double bound : { m_xRangeMin, m_xRangeMax }) {
            const double x = calcWidgetPointF(QPointF(bound, 0.0)).x();
            // NaN if the visible range is empty. Beyond the largest widget it is not visible.
            if (std::fabs(x) <= QWIDGETSIZE_MAX)
                tarnis::drawEvenLine(painter, QLineF(x, m_graphRect.top(), x, m_graphRect.bottom()));
        }
    }
    painter.setClipping(false);
}

void XYGraphWidget::onPaint(QPainter& /*painter*/, QRect const& /*graph*/)
{
}
