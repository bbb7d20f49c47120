// The strip below the plot, with the comparison.
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/deviceimage_p.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/curves/envelope_p.h"
#include "tarnis/tools/curves/referencecurves_p.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace tarnis {

namespace {

constexpr int gapAbove = 8; // between axis and strip
constexpr int gapBelow = 6;
constexpr int gapBeside = 4; // between labels and strip
constexpr int pointRadius = 1; // pixels around the one in the middle
constexpr double narrowBin = 3.0; // pixels

void paintMarks(QPainter& painter, const StripAxis& axis, double same)
{
    const int height = painter.fontMetrics().height();
    const QRect& strip = axis.strip;
    for (const double mark : { axis.range.min, same, axis.range.max }) {
        if (mark == axis.range.min && axis.rowOf(mark) - axis.rowOf(same) < height)
            continue; // the mark that means no difference matters more
        const int row =
            std::clamp(static_cast<int>(axis.rowOf(mark)), strip.top() + height / 2, strip.bottom() - height / 2);
        painter.drawText(QRect(0, row - height / 2, strip.left() - gapBeside, height),
            Qt::AlignRight | Qt::AlignVCenter, QString::number(mark, 'g', 4));
    }
}

/// The pixels of the centres of visible points: a point outside of the strip may extend into it.
QRect areaOfPoints(const QRect& strip)
{
    return strip.adjusted(-pointRadius, -pointRadius, pointRadius, pointRadius);
}

/// The row of each value, relative to that area. Values outside get the height of the area. A strip has less than 256
/// rows.
QList<quint8> rowsIn(const StripAxis& axis, const QList<double>& values)
{
    const QRect area = areaOfPoints(axis.strip);
    const double scale = axis.pixelsPerUnit();
    // Written without calls, so that the compiler can vectorise the loop.
    const double origin = axis.bottom() + axis.range.min * scale - area.top();
    const double last = area.height() - 1;
    const double beyond = area.height();
    QList<quint8> rows(values.size());
    quint8* const into = rows.data();
    const double* const from = values.constData();
    for (qsizetype i = 0; i < values.size(); ++i) {
        const double row = origin - from[i] * scale;
        const double limited = row <= last ? row : beyond; // a NaN too
        into[i] = static_cast<quint8>(static_cast<int>(limited >= 0.0 ? limited : beyond));
    }
    return rows;
}

/// The pixels of the strip that contain a point of a curve, each once, because many bins share one. Curves are painted
/// one after the other, and finish() shows them.
class PointMarks {
public:
    explicit PointMarks(const QRect& strip)
        : m_strip(areaOfPoints(strip))
        , m_marks(std::size_t(m_strip.width()) * std::size_t(m_strip.height() + 1))
    {
    }

    /// Begins the next curve.
    void clear() { std::fill(m_marks.begin(), m_marks.end(), char(0)); }

    /// The samples of a column, by their rows.
    void add(int column, const quint8* rows, qsizetype count)
    {
        if (column < m_strip.left() || column > m_strip.right())
            return;
        char* const marks = marksOf(column - m_strip.left());
        for (qsizetype i = 0; i < count; ++i)
            marks[rows[i]] = 1;
    }

    void paint(QPainter& painter, const QColor& colour)
    {
        if (deviceScale(painter) == 1.0 && colour.alpha() == opaque) {
            paintPicture(colour);
            return;
        }
        finish(painter);
        paintRects(painter, colour);
    }

    /// Must be called after the last curve, and before anything else is painted over the curves.
    void finish(QPainter& painter)
    {
        if (!m_picture.isNull())
            layOver(painter, m_strip.topLeft() - QPoint(pointRadius, pointRadius), m_picture, 1.0);
        m_picture = QImage();
    }

private:
    static constexpr int opaque = 255;
    static constexpr int size = 2 * pointRadius + 1;

    char* marksOf(int column) { return m_marks.data() + std::size_t(column) * std::size_t(m_strip.height() + 1); }
    const char* marksOf(int column) const
    {
        return m_marks.data() + std::size_t(column) * std::size_t(m_strip.height() + 1);
    }
    /// Calls `use` with the column, the first and the last row of each run of marks, relative to the strip.
    template <typename Use> void forEachRun(const Use& use) const
    {
        for (int column = 0; column < m_strip.width(); ++column) {
            const char* const rows = marksOf(column);
            const char* const end = rows + m_strip.height();
            // Most rows have no mark: memchr() passes over many of them at once.
            const auto find = [end](const char* from, char mark) {
                const void* const found = std::memchr(from, mark, std::size_t(end - from));
                return found != nullptr ? static_cast<const char*>(found) : end;
            };
            for (const char* first = find(rows, 1); first != end;) {
                const char* const last = find(first, 0);
                use(column, static_cast<int>(first - rows), static_cast<int>(last - rows) - 1);
                first = find(last, 1);
            }
        }
    }

    void paintRects(QPainter& painter, const QColor& colour) const
    {
        forEachRun([&](int column, int first, int last) {
            painter.fillRect(m_strip.left() + column - pointRadius, m_strip.top() + first - pointRadius, size,
                last - first + size, colour);
        });
    }

    /// Draws the same pixels into a picture: a call of the painter for each of the many runs takes several times as
    /// long. Opaque curves share one picture, because drawing one for each curve takes longer than all their points.
    void paintPicture(const QColor& colour)
    {
        if (m_picture.isNull()) {
            m_picture = QImage(m_strip.width() + 2 * pointRadius, m_strip.height() + 2 * pointRadius,
                QImage::Format_ARGB32_Premultiplied);
            m_picture.fill(0U);
        }
        if (m_picture.isNull())
            return;
        const QRgb pixel = colour.rgba();
        auto* const bits = reinterpret_cast<QRgb*>(m_picture.bits());
        const qsizetype line = m_picture.bytesPerLine() / qsizetype(sizeof(QRgb));
        forEachRun([&](int column, int first, int last) {
            for (QRgb* at = bits + first * line + column; at <= bits + (last + size - 1) * line + column; at += line)
                std::fill_n(at, size, pixel);
        });
    }

    QRect m_strip;
    std::vector<char> m_marks; // column by column, each with one more for samples beyond the strip
    QImage m_picture; // of the opaque curves so far
};

/// The values that the axis has to hold: all in view, or the extremes of each pixel column.
std::vector<double> valuesInView(XYGraphWidget& plot, const QList<double>& compared, const QList<ColumnRun>& runs)
{
    std::vector<double> values;
    const ShownCurve curve { {}, {}, { compared } };
    const QList<EnvelopeColumn> columns = envelopeOf(runs, curve, EnvelopeOf::Numbers, blocksOf(plot, curve));
    for (const EnvelopeColumn& column : columns) {
        values.push_back(column.lowest);
        if (column.highest != column.lowest)
            values.push_back(column.highest);
    }
    return values;
}

} // namespace

QRect ReferenceCurves::stripRect(const PlotMapping& mapping) const
{
    const int height = PlotHooks::of(*plot()).pictureSize().height();
    const QRect rect = mapping.frameRect();
    return QRect(QPoint(rect.left(), height - m_stripHeight + gapAbove), QPoint(rect.right(), height - gapBelow));
}

QRect ReferenceCurves::stripArea(const PlotMapping& mapping) const
{
    const QRect strip = stripRect(mapping);
    return QRect(QPoint(0, strip.top() - gapAbove), strip.bottomRight() + QPoint(gapBelow, gapBelow));
}

void ReferenceCurves::paintStrip(QPainter& painter, const PlotMapping& mapping, const QList<ShownCurve>& live) const
{
    const QRect strip = stripRect(mapping);
    const PlotStyling* const styling = stylingOf(plot());
    painter.fillRect(strip, styling != nullptr ? styling->surround() : XYGraphWidget::m_backGroundColor);
    painter.setPen(styling != nullptr ? styling->foreground() : QColor(Qt::black));
    painter.drawRect(strip);
    const QString problem = this->problem();
    if (!problem.isEmpty()) {
        paintLabel(painter, problem, strip.center(), Qt::AlignHCenter | Qt::AlignVCenter);
        return;
    }
    const BinsInView bins = columnsInView(mapping);
    const QList<ColumnRun> runs = columnRuns(BinPositions(mapping, bins), bins);
    const QList<Pair> compared = comparedPairs(live);
    std::vector<double> values;
    for (const Pair& pair : compared) {
        const std::vector<double> some = valuesInView(*plot(), pair.values, runs);
        values.insert(values.end(), some.begin(), some.end());
    }
    const StripAxis axis { strip, comparisonAxis(comparisonOf(m_view), std::move(values), m_pairs->axis) };
    m_pairs->axis = axis.range;
    const double same = m_view == View::Ratio ? 1.0 : 0.0;
    paintMarks(painter, axis, same);
    painter.save();
    painter.setClipRect(strip.adjusted(1, 1, 0, 0), Qt::IntersectClip);
    painter.setPen(QPen(QColor(128, 128, 128), 1.0, Qt::DashLine));
    painter.drawLine(QLineF(strip.left(), axis.rowOf(same), strip.right(), axis.rowOf(same)));
    const AxisRange bin = mapping.columnEdges(bins.first);
    const bool hasErrors =
        m_view != View::Significance && std::abs(mapping.columnOf(bin.max) - mapping.columnOf(bin.min)) >= narrowBin;
    PointMarks marks(strip);
    for (const Pair& pair : compared) {
        const QColor colour = live.at(pair.live).colour;
        if (hasErrors) {
            marks.finish(painter);
            paintErrors(painter, axis, pair, runs, colour);
        }
        marks.clear();
        const QList<quint8> rows = rowsOf(pair, axis);
        for (const ColumnRun& run : runs) {
            const qsizetype count = std::min(run.last + 1, rows.size()) - run.first;
            marks.add(run.column, rows.constData() + run.first, count);
        }
        marks.paint(painter, colour);
    }
    marks.finish(painter);
    painter.restore();
    paintTitle(painter, strip, compared);
}

QList<quint8> ReferenceCurves::rowsOf(const Pair& pair, const StripAxis& axis) const
{
    QList<StripRows>& known = m_pairs->rows;
    auto entry = std::find_if(known.begin(), known.end(), [&](const StripRows& some) {
        return some.values.constData() == pair.values.constData() && some.values.size() == pair.values.size();
    });
    if (entry == known.end())
        entry = known.insert(known.cend(), StripRows { pair.values, {}, {} });
    if (!entry->axis.isSameAs(axis))
        *entry = { pair.values, axis, rowsIn(axis, pair.values) };
    return entry->rows;
}

void ReferenceCurves::paintErrors(QPainter& painter, const StripAxis& axis, const Pair& pair,
    const QList<ColumnRun>& runs, const QColor& colour) const
{
    painter.setPen(colour);
    for (const ColumnRun& run : runs) { // of a bin each
        if (run.last >= pair.samples.size())
            break;
        const auto [value, error] = comparedBin(comparisonOf(m_view), pair.samples.at(run.first),
            pair.reference.at(run.first), pair.norm, pair.isContained);
        if (std::isfinite(value) && std::isfinite(error))
            painter.drawLine(QLineF(run.column, axis.rowOf(value - error), run.column, axis.rowOf(value + error)));
    }
}

void ReferenceCurves::paintTitle(QPainter& painter, const QRect& strip, const QList<Pair>& shown) const
{
    const bool isContained = std::any_of(shown.begin(), shown.end(), [](const Pair& pair) { return pair.isContained; });
    const bool isScaled = std::all_of(shown.begin(), shown.end(), [](const Pair& pair) { return pair.isScaled; });
    const QString name = m_references.at(m_current).name;
    QString title = m_view == View::Ratio ? tr("data / %1").arg(name)
        : m_view == View::Significance    ? tr("(data − %1) / σ").arg(name)
                                          : tr("data − %1").arg(name);
    if (isContained)
        title += m_norm == Norm::None ? tr(", errors of the counts since") : tr(", part of the data");
    if (!isScaled)
        title += m_norm == Norm::LiveTime ? tr(", not scaled: the live time is unknown")
                                          : tr(", not scaled: there are no counts");
    paintLabel(painter, title, { strip.right() - 3, strip.top() + 3 }, Qt::AlignRight);
}

} // namespace tarnis
