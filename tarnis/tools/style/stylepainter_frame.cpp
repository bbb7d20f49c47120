// The frame: layout and drawing of labels, names, title and legend.
#include "tarnis/plots/curvenames.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/plotlegend.h"
#include "tarnis/tools/style/stylepainter_p.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

// Texts are enlarged above this plot size, up to twice.
constexpr double plainWidth = 760.0;
constexpr double plainHeight = 480.0;
constexpr double maxGrowth = 2.0;
constexpr int maxLegendRows = 3;
constexpr double thinnestSide = 0.3; // minimum fraction of the space for square bins

QFont sized(QFont font, double pixels)
{
    font.setPixelSize(std::max(static_cast<int>(std::lround(pixels)), 5));
    return font;
}

/// A PlotLegend replaces the style's legend.
bool hasLegendTool(const XYGraphWidget& plot)
{
    const QList<InteractiveTool*> tools = InteractiveTool::toolsOf(plot);
    return std::any_of(tools.cbegin(), tools.cend(),
        [](const InteractiveTool* tool) { return qobject_cast<const PlotLegend*>(tool) != nullptr; });
}

int heightOf(const QFont& font)
{
    return QFontMetrics(font).height();
}

} // namespace

StylePainter::Scale StylePainter::scaleOf(const QFont& font, QSize size) const
{
    Scale scale;
    scale.growth = std::clamp(std::min(size.width() / plainWidth, size.height() / plainHeight), 1.0, maxGrowth)
        * options.textScale;
    const double pixels = QFontInfo(font).pixelSize() * scale.growth;
    scale.label = sized(font, pixels);
    scale.exponent = sized(font, pixels * 0.72);
    scale.name = sized(font, pixels * 1.08);
    scale.title = sized(font, pixels * 1.25);
    scale.title.setBold(true);
    scale.line = heightOf(scale.label);
    scale.nameLine = heightOf(scale.name);
    scale.titleLine = heightOf(scale.title);
    scale.character = std::max(QFontMetrics(scale.label).averageCharWidth(), 1);
    scale.tick = static_cast<int>(std::lround(5.0 * scale.growth));
    scale.pad = static_cast<int>(std::lround(5.0 * scale.growth));
    scale.thickness = std::max(1, static_cast<int>(std::lround(scale.growth * (theme().isBoxed ? 1.2 : 1.0))));
    return scale;
}

/// For a map, the colour of the smallest values, so that empty bins differ no more than the scale indicates.
QColor StylePainter::background() const
{
    if (const auto* const map = qobject_cast<const XY2DGraphWidget*>(&m_plot)) {
        const PlotAccess::Bar bar = PlotAccess::bar(PlotAccess::colourBar(*map));
        const qsizetype lowest = bar.positions.indexOf(0.0);
        if (lowest >= 0)
            return bar.colors.at(lowest);
    }
    return theme().background;
}

QString StylePainter::nameX() const
{
    return withUnit(PlotAccess::nameX(m_plot), options.unitX);
}

QString StylePainter::nameY() const
{
    return withUnit(PlotAccess::nameY(m_plot), options.unitY);
}

bool StylePainter::hasTitleRow() const
{
    return (options.title && !PlotAccess::title(m_plot).isEmpty()) || !PlotAccess::notes(m_plot).isEmpty();
}

/// Entries in rows; the last one shows the number of entries that do not fit.
StylePainter::Legend StylePainter::legendOf(int width, int maxRows, const Scale& scale) const
{
    const auto* const many = qobject_cast<const MultiVectorGraphWidget*>(&m_plot);
    if (!options.legend || many == nullptr || maxRows < 1 || hasLegendTool(m_plot))
        return {};
    const QList<Series>& series = PlotAccess::series(*many);
    const QList<SummedCurve> curves = curvesOf(series, PlotAccess::addType(*many), PlotAccess::groupSize(*many));
    const QStringList names = curveNames(*many);
    const QFontMetrics metrics(scale.label);
    QList<Entry> entries;
    for (int i = 0; i < curves.size(); ++i) {
        if (!curves.at(i).enable || lengthOf(series, curves.at(i)) == 0)
            continue;
        const QString name = metrics.elidedText(names.value(i), Qt::ElideRight, width / 2);
        entries.append({ curveColour(i, curves.at(i).colour), name,
            metrics.horizontalAdvance(name) + 2 * scale.line + 2 * scale.pad });
    }
    if (entries.size() < 2)
        return {};
    Legend legend;
    int used = width; // begins the first row
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const Entry& entry = entries.at(i);
        const QString rest = QStringLiteral("+%1").arg(entries.size() - i);
        const bool isLastRow = legend.rows.size() == maxRows;
        const int restWidth = i + 1 < entries.size() && isLastRow ? metrics.horizontalAdvance(rest) : 0;
        if (used + entry.width + restWidth > width) {
            if (isLastRow) {
                legend.rows.last().append({ QColor(), rest, 0 });
                break;
            }
            legend.rows.append(QList<Entry>());
            used = 0;
        }
        legend.rows.last().append(entry);
        used += entry.width;
    }
    return legend;
}

/// The plot rectangle without the texts. Labels and rectangle depend on each other; two iterations are enough.
QRect StylePainter::graphIn(const QRect& frame, const Scale& scale, Axis& x, Axis& y, Legend& legend)
{
    const bool isTiny = frame.height() < 7 * scale.line || frame.width() < 14 * scale.character;
    if (isTiny) {
        x = y = Axis();
        legend = Legend();
        return frame.adjusted(scale.pad, scale.pad, -scale.pad, -scale.pad);
    }
    const bool isSmall = frame.height() < 11 * scale.line;
    const int names = isSmall ? 0 : scale.nameLine + scale.pad;
    const int titleRow = !isSmall && hasTitleRow() ? scale.titleLine + scale.pad : 0;
    const int maxRows = isSmall ? 0 : std::clamp(frame.height() / (10 * scale.line), 1, maxLegendRows);
    const int under =
        scale.thickness + scale.tick + scale.pad / 2 + scale.line + scale.pad + (nameX().isEmpty() ? 0 : names);
    const int leftOfLabels = (nameY().isEmpty() ? 0 : names) + scale.pad;
    int right = scale.pad + scale.character;
    QRect graph = frame.adjusted(leftOfLabels + 6 * scale.character, scale.line + titleRow, -right, -under);
    for (int pass = 0; pass < 2; ++pass) {
        legend = legendOf(graph.width(), maxRows, scale);
        const int rows = static_cast<int>(legend.rows.size());
        // Below title and legend; without both, leaves space for a tool's line of text.
        const int top =
            std::max(scale.pad + titleRow + rows * (scale.line + scale.pad / 2), scale.line + 2 * scale.pad);
        graph.setTop(frame.top() + top);
        y = axisY(graph, scale);
        m_labelRoom = calmLength(m_labelRoom, y.widest, 2 * scale.character);
        graph.setLeft(frame.left() + leftOfLabels + m_labelRoom + scale.pad + scale.tick + scale.thickness);
        x = axisX(graph, scale);
        if (!x.marks.isEmpty()) {
            const Mark& end = *std::max_element(
                x.marks.cbegin(), x.marks.cend(), [](const Mark& a, const Mark& b) { return a.position < b.position; });
            if (std::isfinite(end.position)) { // a range about as long as numbers can be
                const int beyond = truncateToPixel(std::ceil(end.position + end.width / 2.0)) - graph.right();
                right = std::max(right, beyond + scale.pad / 2);
            }
        }
        graph.setRight(frame.right() - right);
    }
    return graph;
}

QRect StylePainter::squared(const QRect& graph) const
{
    const QString unitX = unitIn(nameX());
    const AxisRange x = PlotAccess::x(m_plot);
    const AxisRange y = PlotAccess::y(m_plot);
    const double ratio = std::abs((x.max - x.min) / (y.max - y.min));
    if (!options.squareBins || qobject_cast<const XY2DGraphWidget*>(&m_plot) == nullptr || unitX.isEmpty()
        || unitX != unitIn(nameY()) || !std::isfinite(ratio) || !(ratio > 0.0))
        return graph;
    const auto width = static_cast<int>(std::min<double>(graph.width(), graph.height() * ratio));
    const auto height = static_cast<int>(std::min<double>(graph.height(), graph.width() / ratio));
    if (width < graph.width() * thinnestSide || height < graph.height() * thinnestSide)
        return graph;
    return { graph.left() + (graph.width() - width) / 2, graph.top() + (graph.height() - height) / 2, width, height };
}

PlotStyling::Layout StylePainter::paintFrame(QPainter& painter, const QRect& whole, const QRect& frame)
{
    const Scale scale = scaleOf(painter.font(), frame.size());
    Axis x;
    Axis y;
    Legend legend;
    const QRect room = graphIn(frame, scale, x, y, legend);
    const QRect graph = squared(room);
    if (graph != room) {
        x = axisX(graph, scale);
        y = axisY(graph, scale);
    }
    m_growth = scale.growth;
    m_frame = frame;
    m_graph = graph;
    m_freeAbove = legend.rows.isEmpty()
        ? QRect(QPoint(graph.left(), frame.top()), QPoint(graph.right(), graph.top() - 1))
        : QRect();
    painter.setClipping(false);
    painter.fillRect(whole, theme().surround);
    if (background() != theme().surround)
        painter.fillRect(graph, background());
    const auto inside = [](const QList<Mark>& marks, int from, int to) {
        QList<int> pixels;
        for (const Mark& mark : marks) {
            const int pixel = truncateToPixel(std::floor(mark.position));
            if (pixel > from && pixel < to)
                pixels.append(pixel);
        }
        return pixels;
    };
    m_columns = inside(x.marks, graph.left(), graph.right());
    m_rows = inside(y.marks, graph.top(), graph.bottom());
    if (!x.marks.isEmpty() || !y.marks.isEmpty() || graph.height() >= 3 * scale.line)
        paintAxes(painter, graph, scale, x, y);
    if (frame.height() >= 11 * scale.line && frame.width() >= 14 * scale.character)
        paintTexts(painter, frame, graph, scale, m_labelRoom);
    paintLegend(painter, graph, scale, legend);

    // The ends of an axis need not be labelled: the strip beside them opens the editor.
    const int wide = 5 * scale.character;
    const int below = graph.bottom() + scale.thickness + 1;
    const int beside = graph.left() - scale.thickness - wide - scale.pad;
    return { graph, QRect(graph.left() - wide / 2, below, wide, scale.line + scale.tick + scale.pad),
        QRect(graph.right() - wide / 2, below, wide, scale.line + scale.tick + scale.pad),
        QRect(beside, graph.bottom() - scale.line, wide, scale.line), QRect(beside, graph.top(), wide, scale.line) };
}

void StylePainter::paintTexts(
    QPainter& painter, const QRect& frame, const QRect& graph, const Scale& scale, int labelWidth)
{
    const auto elided = [&](const QFont& font, const QString& text, int width) {
        return QFontMetrics(font).elidedText(text, Qt::ElideRight, width);
    };
    painter.setPen(theme().text);
    painter.setFont(scale.name);
    const int underLabels =
        graph.bottom() + 1 + scale.thickness + scale.tick + scale.pad / 2 + scale.line + scale.pad / 2;
    painter.drawText(QRect(graph.left(), underLabels, graph.width(), scale.nameLine + scale.pad / 2),
        Qt::AlignHCenter | Qt::AlignTop, elided(scale.name, nameX(), graph.width()));
    const int right = graph.left() - scale.thickness - scale.tick - scale.pad - labelWidth - scale.pad;
    painter.save();
    painter.translate(right, graph.top() + graph.height());
    painter.rotate(-90.0);
    painter.drawText(QRect(0, -scale.nameLine, graph.height(), scale.nameLine), Qt::AlignHCenter | Qt::AlignBottom,
        elided(scale.name, nameY(), graph.height()));
    painter.restore();
    if (!hasTitleRow())
        return;
    const QRect row(graph.left(), frame.top() + scale.pad, graph.width(), scale.titleLine);
    const QString notes = elided(scale.label, PlotAccess::notes(m_plot), graph.width() * 2 / 3);
    const int notesWidth =
        notes.isEmpty() ? 0 : QFontMetrics(scale.label).horizontalAdvance(notes) + 2 * scale.character;
    int titleWidth = 0;
    if (options.title) {
        const QString title = elided(scale.title, PlotAccess::title(m_plot), graph.width() - notesWidth);
        painter.setFont(scale.title);
        painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, title);
        titleWidth = title.isEmpty() ? 0 : QFontMetrics(scale.title).horizontalAdvance(title) + 2 * scale.character;
    }
    const int below = m_freeAbove.isNull() ? row.bottom() : m_freeAbove.bottom(); // rows of the legend
    m_freeAbove = QRect(QPoint(row.left() + titleWidth, row.top()), QPoint(row.right() - notesWidth, below));
    painter.setFont(scale.label);
    painter.setPen(theme().mutedText);
    painter.drawText(row, Qt::AlignRight | Qt::AlignVCenter, notes);
}

void StylePainter::paintLegend(QPainter& painter, const QRect& graph, const Scale& scale, const Legend& legend) const
{
    painter.setFont(scale.label);
    const int rowHeight = scale.line + scale.pad / 2;
    int top = graph.top() - static_cast<int>(legend.rows.size()) * rowHeight - scale.pad / 2;
    const int thick = std::max(2, static_cast<int>(std::lround(curveWidth() * 1.5)));
    for (const QList<Entry>& row : legend.rows) {
        int left = graph.left();
        for (const Entry& entry : row) {
            const bool isCurve = entry.colour.isValid();
            if (isCurve)
                painter.fillRect(left, top + (scale.line - thick) / 2, 3 * scale.line / 2, thick, entry.colour);
            painter.setPen(theme().text);
            const int indent = isCurve ? 3 * scale.line / 2 + scale.pad : 0;
            painter.drawText(QRect(left + indent, top, graph.right() - left - indent + scale.line, scale.line),
                Qt::AlignLeft | Qt::AlignVCenter, entry.name);
            left += entry.width;
        }
        top += rowHeight;
    }
}

} // namespace tarnis
