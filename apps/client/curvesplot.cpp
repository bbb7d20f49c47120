#include "curvesplot.h"

#include "residualstrip.h"

#include <tarnis/plots/plotmapping.h>

#include <QFontInfo>
#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace cli {

namespace {

constexpr std::array dashes { Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine };
constexpr double legendShare = 0.35; // maximum fraction of the height
constexpr double stripShare = 0.22; // fraction of the height for residuals
constexpr double markRadius = 1.6; // radius of a mark in line widths

double errorOfCount(double count)
{
    return std::sqrt(std::max(count, 0.0));
}

/// The title of the only file is above the plot.
QString nameOf(const tarnis::Dataset& data, qsizetype row, bool isAlone)
{
    if (data.rows == 1)
        return data.title;
    const QString name = row < data.rowNames.size() ? data.rowNames.at(row) : QStringLiteral("curve %1").arg(row + 1);
    return data.title.isEmpty() || isAlone ? name : QStringLiteral("%1, %2").arg(data.title, name);
}

/// On pixels in short pieces: the time for a wide line grows much faster than the number of its vertices, as each piece
/// is filled where it overlaps itself. A vector file has the line as it is.
void drawCurve(QPainter& painter, const QPolygonF& line)
{
    if (line.size() == 1) {
        painter.drawPoint(line.first());
        return;
    }
    const bool isPixels = painter.paintEngine() != nullptr && painter.paintEngine()->type() == QPaintEngine::Raster;
    if (!isPixels || painter.pen().style() != Qt::SolidLine) {
        painter.drawPolyline(line);
        return;
    }
    constexpr qsizetype piece = 32;
    for (qsizetype begin = 0; begin + 1 < line.size(); begin += piece - 1)
        painter.drawPolyline(line.constData() + begin, static_cast<int>(std::min(piece, line.size() - begin)));
}

} // namespace

CurvesPlot::CurvesPlot(const std::vector<tarnis::Dataset>& spectra, CurvesStyle style)
    : m_style(std::move(style))
{
    bool isFirst = true;
    for (const tarnis::Dataset& spectrum : spectra) {
        const std::vector<double> edges = tarnis::edgesOf(spectrum.x, spectrum.columns);
        const auto [low, high] = std::minmax(edges.front(), edges.back());
        m_lowest = isFirst ? low : std::min(m_lowest, low);
        m_highest = isFirst ? high : std::max(m_highest, high);
        isFirst = false;
        const std::vector<double> centres = tarnis::centresOf(spectrum.x, spectrum.columns);
        for (qsizetype row = 0; row < spectrum.rows; ++row)
            addRow(spectrum, row, spectra.size() == 1, centres);
    }
    if (m_style.residuals)
        m_residuals = residualsOf(spectra.front());
}

void CurvesPlot::addRow(
    const tarnis::Dataset& spectrum, qsizetype row, bool isAlone, const std::vector<double>& centres)
{
    Curve curve { nameOf(spectrum, row, isAlone), { {} } };
    for (qsizetype column = 0; column < spectrum.columns; ++column) {
        const double value = spectrum.at(row, column);
        if (std::isfinite(value)) {
            noteValue(value);
            if (m_style.residuals && row == 0)
                noteValue(value + errorOfCount(value)); // its error bar
            curve.parts.back().append(QPointF(centres[static_cast<std::size_t>(column)], value));
        } else if (!curve.parts.back().isEmpty()) {
            curve.parts.emplace_back();
        }
    }
    m_curves.push_back(std::move(curve));
}

void CurvesPlot::noteValue(double value)
{
    m_largest = std::max(m_largest, value);
    m_smallest = std::min(m_smallest, value);
    if (value > 0.0 && (m_smallestAboveZero == 0.0 || value < m_smallestAboveZero))
        m_smallestAboveZero = value;
}

std::vector<QPointF> CurvesPlot::Curve::points() const
{
    std::vector<QPointF> all;
    for (const QPolygonF& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

QPen CurvesPlot::penOf(std::size_t curve) const
{
    const std::size_t count = m_style.colours.size();
    QPen pen(m_style.colours[curve % count], m_style.lineWidth);
    pen.setStyle(dashes[curve / count % dashes.size()]);
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setCapStyle(Qt::RoundCap);
    return pen;
}

QFont CurvesPlot::textFont(const QPainter& painter) const
{
    QFont font = painter.font();
    font.setPixelSize(static_cast<int>(std::lround(QFontInfo(font).pixelSize() * m_style.growth)));
    return font;
}

/// The plot gets the space without legend and residuals.
void CurvesPlot::paint(QPainter& painter, QRect* rect)
{
    const QRect whole = rect != nullptr ? *rect : painter.viewport();
    const QFont font = textFont(painter);
    std::vector<LegendEntry> entries;
    for (std::size_t i = 0; i < m_curves.size(); ++i)
        entries.push_back({ m_curves[i].name, penOf(i), m_style.residuals && i == 0 });
    const CurveLegend legend(entries, font, whole.width(), static_cast<int>(whole.height() * legendShare));
    const int strip = m_style.residuals ? static_cast<int>(whole.height() * stripShare) : 0;
    QRect above = whole.adjusted(0, 0, 0, -legend.height() - strip);
    XYGraphWidget::paint(painter, &above);
    const QRect below(QPoint(whole.left(), above.bottom() + 1), whole.bottomRight());
    painter.save();
    painter.setClipping(false);
    painter.fillRect(below, m_style.surround);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font);
    if (strip > 0)
        paintStrip(painter, QRect(below.topLeft(), QSize(below.width(), strip)));
    legend.paint(painter, QPoint(whole.left(), whole.bottom() + 1 - legend.height()), m_style.text);
    painter.restore();
}

void CurvesPlot::onPaint(QPainter& painter, QRect const& /*graph*/)
{
    const tarnis::PlotMapping mapping = tarnis::PlotMapping::of(*this);
    if (!mapping.isValid())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (std::size_t i = 0; i < m_curves.size(); ++i) {
        painter.setPen(penOf(i));
        if (m_style.residuals && i == 0) {
            paintCounts(painter, m_curves[i]);
            continue;
        }
        for (const QPolygonF& part : m_curves[i].parts) {
            QPolygonF line;
            line.reserve(part.size());
            for (const QPointF& point : part)
                line.append(QPointF(mapping.columnOf(point.x()), mapping.rowOf(point.y())));
            drawCurve(painter, line);
        }
    }
    painter.restore();
}

/// Draws points with their standard deviations.
void CurvesPlot::paintCounts(QPainter& painter, const Curve& curve) const
{
    const tarnis::PlotMapping mapping = tarnis::PlotMapping::of(*this);
    const double radius = markRadius * m_style.lineWidth;
    for (const QPointF& point : curve.points()) {
        const double column = mapping.columnOf(point.x());
        const double error = errorOfCount(point.y());
        painter.drawLine(
            QPointF(column, mapping.rowOf(point.y() - error)), QPointF(column, mapping.rowOf(point.y() + error)));
        painter.setBrush(painter.pen().color());
        painter.drawEllipse(QPointF(column, mapping.rowOf(point.y())), radius, radius);
        painter.setBrush(Qt::NoBrush);
    }
}

void CurvesPlot::paintStrip(QPainter& painter, const QRect& room) const
{
    const tarnis::PlotMapping mapping = tarnis::PlotMapping::of(*this);
    if (!mapping.isValid())
        return;
    std::vector<QPointF> points = m_residuals;
    for (QPointF& point : points)
        point.setX(mapping.columnOf(point.x()));
    const QFontMetrics metrics(painter.font());
    const QRect plot = mapping.frameRect();
    const QRect strip(plot.left(), room.top() + metrics.height() + 2, plot.width(),
        room.height() - metrics.height() - metrics.height() / 2);
    painter.setPen(m_style.text);
    painter.drawText(QRect(plot.left(), room.top(), plot.width(), metrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
        metrics.elidedText(QStringLiteral("Residuals in standard deviations"), Qt::ElideRight, plot.width()));
    QColor grid = m_style.text;
    grid.setAlpha(110);
    paintResiduals(painter, strip, points, { m_style.text, grid, m_style.colours.front(), m_style.lineWidth });
}

} // namespace cli
