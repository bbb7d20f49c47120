#include "support/curveoracle.h"

#include "support/devicepixeloracle.h"
#include "support/frameoracle.h"

#include <QPainter>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace tarnis::testing {
namespace {

using Data = MultiVectorGraphWidget::Data;

const QRgb rotation[8] = { qRgb(255, 51, 0), qRgb(255, 255, 0), qRgb(51, 153, 102), qRgb(0, 65, 255),
    qRgb(102, 204, 255), qRgb(255, 153, 153), qRgb(255, 153, 0), qRgb(153, 0, 102) };

bool isZero(double value)
{
    const double larger = std::fabs(value) > 1.0 ? std::fabs(value) : 1.0;
    return std::fabs(value) <= larger * DBL_EPSILON;
}

double logarithm(double x)
{
    return x > 0 ? std::log10(x) : 0.0;
}

/// First and one past the last sample to draw. NaN draws nothing.
void wholeRange(double first, double last, qsizetype count, int& begin, int& end)
{
    begin = 0;
    end = 0;
    if (std::isnan(first) || std::isnan(last))
        return;
    const double from = std::floor(first);
    const double to = std::ceil(last);
    begin = from < 0 ? 0 : from > double(count) ? int(count) : int(from);
    end = to > double(count) ? int(count) : to < 0 ? 0 : int(to);
}

double unitsY(const CurveAxes& s, int height)
{
    const double range = s.maxY - s.minY;
    if (s.logScaleY) {
        if (range > 1.0)
            return height / (logarithm(s.maxY) - logarithm(s.minY));
        return 0.0;
    }
    if (range > 0)
        return height / range;
    return 0.0;
}

void paintGaussian(const CurveAxes& s, QPainter& painter, const PeakSearch::Gaussian& g, double scaleY, int x0, int y0,
    bool mayBeReversed)
{
    const double w = 2.35482 * g.sigma * 1.5;
    const double sx = s.graphRect.width() / (s.maxX - s.minX);
    double dx = 1 / sx;
    double left = s.minX;
    double right = s.maxX;
    if (mayBeReversed) {
        dx = std::fabs(dx);
        left = std::min(s.minX, s.maxX);
        right = std::max(s.minX, s.maxX);
    }
    const double start = std::max(left, g.center - w);
    const double stop = std::min(right, g.center + w);
    bool hasPrevious = false;
    QPoint previous;
    double x = start;
    while (x < stop) {
        const double v = g.N * std::exp(-0.5 * ((x - g.center) * (x - g.center)) / (g.sigma * g.sigma)) + g.offset;
        const QPoint point(cutToPixel((x - s.minX) * sx + x0), cutToPixel(y0 - (v - s.minY) * scaleY));
        if (hasPrevious)
            oracleStroke(painter, QLine(previous, point));
        hasPrevious = true;
        previous = point;
        const double next = x + dx;
        if (!(next > x))
            break; // it would never reach the end
        x = next;
    }
}

double lowestSample(const QList<Data>& data)
{
    double lowest = 1.0;
    for (const Data& record : data) {
        for (const double v : record.values) {
            if (v > 0 && !isZero(v) && v < lowest)
                lowest = v;
        }
    }
    return lowest;
}

void add(QList<double>& to, const QList<double>& from)
{
    for (qsizetype i = 0; i < std::min(to.size(), from.size()); i++)
        to[i] += from[i];
}

void start(Data& entry, const Data& record, const QColor& colour, bool enable)
{
    entry.values = record.values;
    entry.color = colour;
    entry.enable = enable;
}

QList<Data> groupSums(const MultiState& s)
{
    QList<Data> sums((s.data.size() + s.groupSize - 1) / s.groupSize);
    int colour = 0;
    for (qsizetype i = 0; i < s.data.size(); i++) {
        Data& entry = sums[i / s.groupSize];
        if (entry.values.isEmpty())
            start(entry, s.data[i], QColor(rotation[colour++ % 8]), s.data[i].enable);
        else
            add(entry.values, s.data[i].values);
    }
    return sums;
}

QList<Data> positionSums(const MultiState& s)
{
    QList<Data> sums(s.groupSize);
    for (qsizetype i = 0; i < s.data.size(); i++) {
        const qsizetype position = i % s.groupSize;
        Data& entry = sums[position];
        if (entry.values.isEmpty())
            start(entry, s.data[i], s.data[position].color, s.data[position].enable);
        else
            add(entry.values, s.data[i].values);
    }
    return sums;
}

QList<Data> totalSum(const MultiState& s)
{
    Data sum;
    bool first = true;
    for (const Data& record : s.data) {
        if (!record.enable)
            continue;
        if (first)
            start(sum, record, record.color, true);
        else
            add(sum.values, record.values);
        first = false;
    }
    return { sum };
}

QList<Data> noSums(const MultiState& s)
{
    QList<Data> curves = s.data;
    for (qsizetype i = 0; i < curves.size(); i++)
        curves[i].color = s.data[i % s.groupSize].color;
    return curves;
}

void paintPeaks(const MultiState& s, QPainter& painter, const QRect& rect, double first, double sx, double sy)
{
    if (s.peakDialogOpen && !s.peaks.isEmpty()) {
        QPen dashed(Qt::white);
        dashed.setStyle(Qt::DashLine);
        painter.setPen(dashed);
        const int row = cutToPixel(rect.bottom() - (s.peakThreshold - s.minY) * sy);
        oracleStroke(painter, QLine(rect.left(), row, rect.right(), row));
        for (int i = 0; i < s.peaks.size(); i++) {
            const PeakSearch::Gaussian& peak = s.peaks[i];
            QPen pen(Qt::white);
            if (i == s.peakSelected)
                pen.setWidth(2);
            painter.setPen(pen);
            if (!s.peakDisplayPoints) {
                paintGaussian(s, painter, peak, sy, cutToPixel(rect.left() + sx * 0.5), rect.bottom(), false);
                continue;
            }
            for (int j = 0; j < peak.points.size(); j++) {
                const int x = cutToPixel((peak.start + j + 0.5 - first) * sx + rect.left());
                const int y = cutToPixel(rect.bottom() - (peak.points[j] - s.minY) * sy);
                oracleRect(painter, QRect(QPoint(x - 1, y - 1), QPoint(x, y)));
            }
        }
    } else if (!s.peakDialogOpen) {
        for (const PeakSearch::Gaussian& peak : s.peaks) {
            painter.setPen(QColor(0, 65, 255));
            paintGaussian(s, painter, peak, sy, cutToPixel(rect.left() + sx * 0.5), rect.bottom(), false);
        }
    }
}

/// A rectangle of that size, with edges limited so that their distance fits into an int.
QRect column(int left, int top, double width, double height)
{
    width = std::isnan(width) ? 0.0 : std::trunc(width);
    height = std::isnan(height) ? 0.0 : std::trunc(height);
    const auto bounded = [](double edge) { return cutToPixel(std::clamp(edge, -536870912.0, 536870912.0)); };
    return QRect(QPoint(bounded(left), bounded(top)), QPoint(bounded(left + width - 1), bounded(top + height - 1)));
}

} // namespace

void paintVector(const VectorState& s, QPainter& painter, const QRect& rect)
{
    double sx = rect.width() / (s.maxX - s.minX);
    const double sy = unitsY(s, rect.height());
    double first = s.minX;
    double last = s.maxX;
    const double n = double(s.data.size());
    if (s.manualX) {
        const double span = s.initMaxX - s.initMinX;
        first = (s.minX - s.initMinX) / span * n;
        last = (s.maxX - s.initMinX) / span * n;
        sx = sx * span / n;
    }
    int i0 = 0;
    int i1 = 0;
    wholeRange(first, last, s.data.size(), i0, i1);
    painter.setPen(Qt::white);
    QPoint previous;
    for (int i = i0; i < i1; i++) {
        const double v = s.data[i];
        const int x = cutToPixel((i + 0.5 - first) * sx + rect.left());
        int y = 0;
        if (!s.logScaleY)
            y = cutToPixel(rect.bottom() - (v - s.minY) * sy);
        else if (v - s.minY > 1.0)
            y = cutToPixel(rect.bottom() - (logarithm(v) - logarithm(s.minY)) * sy);
        else
            y = rect.bottom();
        const QPoint point(x, y);
        if (i > i0 && !(isZero(s.data[i - 1]) && isZero(v)) && point != previous)
            oracleStroke(painter, QLine(previous, point));
        previous = point;
    }
    if (!s.peaks.isEmpty()) {
        painter.setPen(Qt::red);
        paintGaussian(s, painter, s.peaks[0], sy, cutToPixel(rect.left() + sx * 0.5), rect.bottom(), true);
    }
}

void fitBeforePaint(MultiState& s)
{
    if (!s.autoScaleY)
        return;
    double largest = s.maxValues.isEmpty() ? 0.0 : s.maxValues[0];
    for (const double value : s.maxValues)
        largest = std::max(largest, value);
    s.minY = s.logScaleY ? lowestSample(s.data) : 0.0;
    s.maxY = largest;
}

void paintMulti(MultiState& s, QPainter& painter, const QRect& rect)
{
    if (s.data.isEmpty())
        return;
    if (s.autoScaleY)
        s.minY = s.logScaleY ? lowestSample(s.data) : 0.0;
    double sx = rect.width() / (s.maxX - s.minX);
    if (!s.manualX)
        sx *= s.resolution;
    const double sy = unitsY(s, rect.height());
    double first = s.minX;
    double last = s.maxX;
    if (s.manualX) {
        const double n = double(s.data[0].values.size());
        const double span = s.initMaxX - s.initMinX;
        first = (s.minX - s.initMinX) / span * n;
        last = (s.maxX - s.initMinX) / span * n;
        sx = sx * span / n;
    }
    const QList<Data> curves = s.addType == 0 ? noSums(s)
        : s.addType == 1                      ? groupSums(s)
        : s.addType == 2                      ? positionSums(s)
                                              : totalSum(s);
    for (const Data& curve : curves) {
        if (!curve.enable)
            continue;
        painter.setPen(curve.color);
        paintMultiData(s, painter, curve.values, sx, first, last, sy, rect.left(), rect.bottom());
    }
    if (s.x2plot != nullptr)
        sx = 0;
    paintPeaks(s, painter, rect, first, sx, sy);
}

double paintMultiData(const MultiState& s, QPainter& painter, const QList<double>& values, double sx, double first,
    double last, double sy, int x0, int y0)
{
    int i0 = 0;
    int i1 = 0;
    double base = 0.0;
    if (s.x2plot == nullptr) {
        wholeRange(first, last, values.size(), i0, i1);
    } else {
        i1 = int(values.size());
        base = std::trunc(s.plot2x(s.initMinX, nullptr));
        base = std::floor(base / s.resolution) * s.resolution;
    }
    if (s.columnChart)
        painter.setBrush(QBrush(painter.pen().color(), Qt::SolidPattern));
    double sum = 0.0;
    QPoint previous;
    for (int i = i0; i < i1; i++) {
        const double v = values[i];
        int x = 0;
        if (s.x2plot == nullptr) {
            x = cutToPixel((i + 0.5 - first) * sx + x0);
        } else {
            const double p = s.x2plot(double(s.resolution) * i + base, nullptr);
            x = cutToPixel((p - s.minX) * s.graphRect.width() / (s.maxX - s.minX) + x0);
        }
        const double d = s.logScaleY ? logarithm(v) - logarithm(s.minY) : v - s.minY;
        const int y = cutToPixel(y0 - d * sy);
        if (s.columnChart) {
            if (v > 0) {
                const QRect rect = column(cutToPixel(x - sx * 0.5), y, sx, s.minY * sy + y0 - y);
                oracleBar(painter, rect);
            }
        } else if (s.connectPoints) {
            const QPoint point(x, y);
            if (i > i0 && !(isZero(values[i - 1]) && isZero(v)) && point != previous)
                oracleStroke(painter, QLine(previous, point));
            previous = point;
            sum += v;
        } else {
            oracleStroke(painter, QLine(x - 2, y - 2, x + 2, y + 2));
            oracleStroke(painter, QLine(x + 2, y - 2, x - 2, y + 2));
        }
    }
    return sum;
}

} // namespace tarnis::testing
