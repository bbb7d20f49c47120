// The curves, the found peaks, and the read-out under the mouse.
#include "tarnis/plots/multivectorgraphwidget.h"

#include "tarnis/plots/curvepaint_p.h"
#include "tarnis/plots/math/peakcurve_p.h"
#include "tarnis/plots/math/readout_p.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"

#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <numeric>

namespace {

constexpr int selectedPeakWidth = 2;

} // namespace

void MultiVectorGraphWidget::onPainting()
{
    if (m_autoScaleY)
        setMinMaxY(m_logScaleY ? tarnis::lowestForLogAxis(m_data) : 0.0, tarnis::largestOf(m_maxValues));
}

void MultiVectorGraphWidget::onPaint(QPainter& painter, QRect const& graph)
{
    if (m_data.isEmpty())
        return;
    tarnis::PlotStyling* const styling = tarnis::stylingOf(this);
    if (m_autoScaleY && styling == nullptr)
        m_minY = m_logScaleY ? tarnis::lowestForLogAxis(m_data) : 0.0;
    const tarnis::SampleView view = tarnis::sampleView({ m_minX, m_maxX }, { m_initMinX, m_initMaxX }, m_manualX,
        m_data.constFirst().values.size(), graph.width(), m_resolution);
    const double sy = tarnis::valuePixels({ m_minY, m_maxY }, m_logScaleY, graph.height());
    const tarnis::CurveDrawing drawing =
        drawingOf(view.pixelsPerSample, view.first, view.last, sy, graph.left(), graph.bottom());

    if (styling != nullptr) {
        styling->paintCurves(painter, graph);
        paintFoundPeaks(painter, graph, view.first, m_funcX2Plot != nullptr ? 0.0 : view.pixelsPerSample, sy);
        return;
    }
    const QList<tarnis::SummedCurve> curves = tarnis::curvesOf(m_data, m_addType, groupSize());
    for (const tarnis::SummedCurve& curve : curves) {
        if (!curve.enable) {
            tarnis::traceDifferentLengths(m_data, curve);
            continue;
        }
        painter.setPen(curve.colour);
        const tarnis::SampleRange range = drawing.visited(tarnis::lengthOf(m_data, curve));
        if (curve.records.size() > 1) {
            const auto sums = tarnis::sumsOf(m_data, curve, range);
            tarnis::paintCurve(painter, { sums.get(), range.begin }, range, drawing);
        } else {
            const QList<double> values = tarnis::wholeSums(m_data, curve); // shared, or empty
            tarnis::paintCurve(painter, { values.constData(), 0 }, range, drawing);
        }
    }
    paintFoundPeaks(painter, graph, view.first, m_funcX2Plot != nullptr ? 0.0 : view.pixelsPerSample, sy);
}

double MultiVectorGraphWidget::paintData(
    QPainter& painter, const QList<double>& values, double sx, double first, double last, double sy, int x0, int y0)
{
    const tarnis::CurveDrawing drawing = drawingOf(sx, first, last, sy, x0, y0);
    const tarnis::SampleRange range = drawing.visited(values.size());
    tarnis::paintCurve(painter, { values.constData(), 0 }, range, drawing);
    if (m_columnChart || !m_connectPoints || range.begin >= range.end)
        return 0.0;
    return std::accumulate(values.cbegin() + range.begin, values.cbegin() + range.end, 0.0);
}

tarnis::CurveDrawing MultiVectorGraphWidget::drawingOf(
    double sx, double first, double last, double sy, int x0, int y0) const
{
    using tarnis::ValueScale;
    tarnis::CurveDrawing drawing { m_columnChart, m_connectPoints, first, last, { first, sx, x0 }, {},
        ValueScale(m_logScaleY ? ValueScale::Kind::Log : ValueScale::Kind::Linear, m_minY, sy, y0),
        { sx, m_minY * sy + y0 } };
    if (m_funcX2Plot != nullptr) {
        const double start = m_funcPlot2X != nullptr ? m_funcPlot2X(m_initMinX, nullptr) : 0.0;
        drawing.plotX = { m_funcX2Plot, static_cast<double>(m_resolution), tarnis::basePosition(start, m_resolution),
            { m_minX, m_maxX }, m_graphRect.width(), x0 };
    }
    return drawing;
}

void MultiVectorGraphWidget::paintFoundPeaks(QPainter& painter, const QRect& graph, double first, double sx, double sy)
{
    const int x0 = tarnis::truncateToPixel(graph.left() + sx * 0.5);
    const tarnis::PlotStyling* const styling = tarnis::stylingOf(this);
    const QColor curveColour = styling != nullptr ? styling->accent() : QColor(0, 65, 255);
    const QColor markColour = styling != nullptr ? styling->lineOverData() : QColor(Qt::white);
    if (!m_peakDialogs.map.contains(this)) {
        for (const PeakSearch::Gaussian& peak : std::as_const(m_peaks)) {
            painter.setPen(curveColour);
            paintPeak(painter, peak, sy, x0, graph.bottom());
        }
        return;
    }
    if (m_peaks.isEmpty())
        return;
    const auto rowOf = [&](double value) { return tarnis::truncateToPixel(graph.bottom() - (value - m_minY) * sy); };
    const auto columnOf = [&](double start, int number) {
        return tarnis::truncateToPixel((start + number + 0.5 - first) * sx + graph.left());
    };
    painter.setPen(QPen(markColour, 1, Qt::DashLine));
    const int thresholdRow = rowOf(m_peakThreshold);
    tarnis::drawEvenLine(painter, QLine(graph.left(), thresholdRow, graph.right(), thresholdRow));
    for (int i = 0; i < m_peaks.size(); ++i) {
        const PeakSearch::Gaussian& peak = m_peaks.at(i);
        painter.setPen(QPen(markColour, i == m_peakSelected ? selectedPeakWidth : 1));
        if (!m_peakDisplayPoints) {
            paintPeak(painter, peak, sy, x0, graph.bottom());
            continue;
        }
        for (int j = 0; j < peak.points.size(); ++j) {
            const QPoint pixel(columnOf(peak.start, j), rowOf(peak.points.at(j)));
            tarnis::drawEvenRect(painter, QRect(pixel - QPoint(1, 1), pixel));
        }
    }
}

void MultiVectorGraphWidget::paintPeak(QPainter& painter, const PeakSearch::Gaussian& g, double scaleY, int x0, int y0)
{
    const double pixelsPerX = m_graphRect.width() / (m_maxX - m_minX);
    tarnis::drawEvenLines(painter,
        tarnis::peakLines(g, tarnis::peakExtent(g, { m_minX, m_maxX }), 1 / pixelsPerX,
            { m_minX, pixelsPerX, x0, m_minY, scaleY, y0 }));
}

void MultiVectorGraphWidget::mouseMoveEvent(QMouseEvent* event)
{
    const tarnis::ReadOutAxis axis { { m_minX, m_maxX }, { m_initMinX, m_initMaxX }, m_decimalX != 0,
        static_cast<double>(m_resolution), m_funcX2Plot, m_funcPlot2X,
        tarnis::PlotAccess::namesSecondScale(*this) ? m_funcX2Tick : nullptr, m_funcUserData };
    const bool apart = m_addType == AddNone || m_addType == AddEachGroup || m_addType == AddEachPosition;
    const QString text = isReadOutByTool() ? QString()
                                           : tarnis::readOut(m_data, event->position().toPoint(), m_graphRect, axis,
                                               { m_minY, m_maxY }, !apart, { m_nameX, m_groupName, m_firstNumber });
    if (text.isEmpty())
        QToolTip::showText(event->globalPosition().toPoint(), QString());
    else
        QToolTip::showText(event->globalPosition().toPoint(), text, this, QRect(QPoint(0, 0), QPoint(119, 19)), -1);
    XYGraphWidget::mouseMoveEvent(event);
}
