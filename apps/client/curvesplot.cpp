#include "curvesplot.h"

#include <tarnis/plots/plotmapping.h>

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace cli {

namespace {

// Told apart on black, also by readers who do not see all colours (after Okabe and Ito, "Color Universal Design").
constexpr std::array colours { 0xffffff, 0x56b4e9, 0xe69f00, 0x00b383, 0xf0e442, 0xff7f50, 0xcc79a7, 0x9fa8ff };
constexpr std::array styles { Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine };
constexpr int sampleWidth = 24; // of a line in the legend
constexpr int space = 6;

QPen penOf(std::size_t curve)
{
    QPen pen(QColor(QRgb(colours[curve % colours.size()])), 1.0);
    pen.setStyle(styles[curve / colours.size() % styles.size()]);
    return pen;
}

QString nameOf(const tarnis::Dataset& data, qsizetype row)
{
    if (data.rows == 1)
        return data.title;
    const QString name = row < data.rowNames.size() ? data.rowNames.at(row) : QString::number(row);
    return data.title.isEmpty() ? name : QStringLiteral("%1, %2").arg(data.title, name);
}

} // namespace

CurvesPlot::CurvesPlot(const std::vector<tarnis::Dataset>& spectra)
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
            addRow(spectrum, row, centres);
    }
}

void CurvesPlot::addRow(const tarnis::Dataset& spectrum, qsizetype row, const std::vector<double>& centres)
{
    Curve curve { nameOf(spectrum, row), { {} } };
    for (qsizetype column = 0; column < spectrum.columns; ++column) {
        const double value = spectrum.at(row, column);
        if (std::isfinite(value)) {
            m_largest = std::max(m_largest, value);
            curve.parts.back().append(QPointF(centres[static_cast<std::size_t>(column)], value));
        } else if (!curve.parts.back().isEmpty()) {
            curve.parts.emplace_back();
        }
    }
    m_curves.push_back(std::move(curve));
}

void CurvesPlot::onPaint(QPainter& painter, QRect const& graph)
{
    const tarnis::PlotMapping mapping = tarnis::PlotMapping::of(*this);
    if (!mapping.isValid())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (std::size_t i = 0; i < m_curves.size(); ++i) {
        painter.setPen(penOf(i));
        for (QPolygonF line : m_curves[i].parts) {
            for (QPointF& point : line)
                point = QPointF(mapping.columnOf(point.x()), mapping.rowOf(point.y()));
            if (line.size() == 1)
                painter.drawPoint(line.first());
            else
                painter.drawPolyline(line);
        }
    }
    paintLegend(painter, graph);
    painter.restore();
}

/// In the right upper corner, with as many entries as fit.
void CurvesPlot::paintLegend(QPainter& painter, const QRect& graph) const
{
    const QFontMetrics metrics = painter.fontMetrics();
    const int lineHeight = metrics.height() + 2;
    const int fitting = std::max(1, (graph.height() - 4 * space) / lineHeight);
    const bool isCut = fitting < static_cast<int>(m_curves.size());
    const int shown = isCut ? fitting : static_cast<int>(m_curves.size());
    const int maxText = std::max(0, graph.width() - sampleWidth - 6 * space);
    QStringList names;
    int textWidth = 0;
    for (int i = 0; i < shown; ++i) {
        const bool isRest = isCut && i == shown - 1;
        const QString name = isRest ? QStringLiteral("and %1 more").arg(m_curves.size() - static_cast<std::size_t>(i))
                                    : m_curves[static_cast<std::size_t>(i)].name;
        names.append(metrics.elidedText(name, Qt::ElideMiddle, maxText));
        textWidth = std::max(textWidth, metrics.horizontalAdvance(names.last()));
    }
    const QSize size(textWidth + sampleWidth + 3 * space, shown * lineHeight + 2 * space);
    const QRect box(QPoint(graph.right() - size.width() - space, graph.top() + space), size);
    painter.setPen(QPen(Qt::darkGray, 1.0));
    painter.setBrush(m_backGroundColor);
    painter.drawRect(box);
    for (int i = 0; i < shown; ++i) {
        const QRect line(box.left() + space, box.top() + space + i * lineHeight, box.width() - 2 * space, lineHeight);
        if (!isCut || i < shown - 1) {
            painter.setPen(penOf(static_cast<std::size_t>(i)));
            painter.drawLine(line.left(), line.center().y(), line.left() + sampleWidth, line.center().y());
        }
        painter.setPen(Qt::white);
        painter.drawText(line.adjusted(sampleWidth + space, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, names.at(i));
    }
}

} // namespace cli
