#include "support/cutoracle.h"

#include "tarnis/foundation/helpers.h"

#include <QLinearGradient>
#include <QPainter>
#include <QWidget>

#include <cmath>

namespace tarnis::testing {

namespace {

int whole(double value)
{
    if (!(value >= -2e9))
        return -2000000000;
    return value > 2e9 ? 2000000000 : static_cast<int>(value);
}

int pixel(double value)
{
    constexpr double far = 1 << 24;
    if (!(value >= -far))
        return static_cast<int>(-far);
    return value > far ? static_cast<int>(far) : static_cast<int>(value);
}

/// Halves away from zero.
int nearest(double value)
{
    return whole(value < 0.0 ? std::ceil(value - 0.5) : std::floor(value + 0.5));
}

int columnsOf(const MapState& map)
{
    return map.data.isEmpty() ? 0 : static_cast<int>(map.data[0].size());
}

int rowsOf(const MapState& map)
{
    return static_cast<int>(map.data.size());
}

double inBinsX(const MapState& map, double value)
{
    return map.manualX ? (value - map.initMinX) / oracleStepX(map) : value;
}

double inBinsY(const MapState& map, double value)
{
    return map.manualY ? (value - map.initMinY) / oracleStepY(map) : value;
}

/// All limits of a cut in bins; ends are exclusive.
struct Limits {
    int c0, c1, r0, r1;
    int cx0, cx1, cy0, cy1;
};

Limits limitsOf(const MapState& map, const CutState& cut)
{
    Limits l {};
    l.c0 = qMax(whole(std::floor(inBinsX(map, map.minX))), 0);
    l.c1 = qMin(whole(std::ceil(inBinsX(map, map.maxX))), columnsOf(map));
    l.r0 = qMax(whole(std::floor(inBinsY(map, map.minY))), 0);
    l.r1 = qMin(whole(std::ceil(inBinsY(map, map.maxY))), rowsOf(map));
    l.cx0 = qMax(nearest(inBinsX(map, cut.minX)), 0);
    l.cx1 = qMin(nearest(inBinsX(map, cut.maxX)), columnsOf(map));
    l.cy0 = qMax(nearest(inBinsY(map, cut.minY)), 0);
    l.cy1 = qMin(nearest(inBinsY(map, cut.maxY)), rowsOf(map));
    return l;
}

QString number(double value)
{
    return QStringLiteral("%1").arg(value, 0, 'g', -1, QLatin1Char(' '));
}

/// Adds the sum of one bin to the totals of an active cut, and returns the value that is shown for the bin.
double count(CutResult& result, const CutState& cut, double sum, bool inside)
{
    result.total += sum;
    if (sum > result.peak)
        result.peak = sum;
    if (inside)
        result.inside += sum;
    return inside || !cut.insideOnly ? sum : 0.0;
}

} // namespace

CutResult oracleCutX(const MapState& map, const CutState& cut, const QString& nameY)
{
    const Limits l = limitsOf(map, cut);
    CutResult result;
    for (int c = l.c0; c < l.c1; c++) {
        result.index.append(c * oracleStepX(map) + map.initMinX);
        double shown = 0.0;
        if (cut.active) {
            double sum = 0.0;
            for (int r = l.cy0; r < l.cy1; r++) {
                if (map.data[r].size() > c)
                    sum += map.data[r][c];
            }
            shown = count(result, cut, sum, c >= l.cx0 && c < l.cx1);
        }
        result.values.append(shown);
    }
    if (cut.active)
        result.label = nameY + " " + number(l.cy0 * oracleStepY(map) + map.initMinY) + "-"
            + number(l.cy1 * oracleStepY(map) + map.initMinY);
    result.notes = "Inside: " + numStr(result.inside) + " / Total-X: " + numStr(result.total);
    return result;
}

CutResult oracleCutY(const MapState& map, const CutState& cut, const QString& nameX)
{
    const Limits l = limitsOf(map, cut);
    CutResult result;
    for (int r = l.r1 - 1; r >= l.r0; r--) {
        result.index.append(r * oracleStepY(map) + map.initMinY);
        double shown = 0.0;
        if (cut.active) {
            double sum = 0.0;
            for (int c = l.cx0; c < l.cx1 && c < map.data[r].size(); c++)
                sum += map.data[r][c];
            shown = count(result, cut, sum, r >= l.cy0 && r < l.cy1);
        }
        result.values.append(shown);
    }
    if (cut.active)
        result.label = nameX + " " + number(l.cx0 * oracleStepX(map) + map.initMinX) + "-"
            + number(l.cx1 * oracleStepX(map) + map.initMinX);
    result.notes = "Inside: " + numStr(result.inside) + " / Total-Y: " + numStr(result.total);
    return result;
}

void oracleVisibleSums(const MapState& map, QList<double>& horizontal, QList<double>& vertical)
{
    const Limits l = limitsOf(map, CutState());
    horizontal.clear();
    vertical.clear();
    for (int c = l.c0; c < l.c1; c++) {
        double sum = 0.0;
        for (int r = l.r0; r < l.r1; r++) {
            if (map.data[r].size() > c)
                sum += map.data[r][c];
        }
        horizontal.append(sum);
    }
    for (int r = l.r0; r < l.r1; r++) {
        double sum = 0.0;
        for (int c = l.c0; c < l.c1 && c < map.data[r].size(); c++)
            sum += map.data[r][c];
        vertical.append(sum);
    }
}

void oracleSnapX(const MapState& map, double& min, double& max)
{
    const double step = oracleStepX(map);
    const int a = qMax(whole(std::floor((min - map.initMinX) / step)), 0);
    const int b = qMin(whole(std::ceil((max - map.initMinX) / step)), columnsOf(map));
    min = a * step + map.initMinX;
    max = b * step + map.initMinX;
}

QRect oraclePaintCut(QPainter& painter, const QRect& graph, const MapState& map, const CutState& cut)
{
    const double spanX = map.maxX - map.minX;
    const double spanY = map.maxY - map.minY;
    const double xs = spanX > 0 ? graph.width() / spanX : 0;
    const double ys = spanY > 0 ? graph.height() / spanY : 0;
    QRect rect;
    rect.setLeft(pixel((cut.minX - map.minX) * xs + graph.left()));
    rect.setTop(pixel((map.maxY - cut.maxY) * ys + graph.top()));
    rect.setRight(rect.left() + pixel((cut.maxX - cut.minX) * xs) - 1);
    rect.setBottom(rect.top() + pixel((cut.maxY - cut.minY) * ys) - 1);
    QPen pen(Qt::red);
    pen.setStyle(Qt::DashLine);
    painter.setPen(pen);
    painter.drawLine(graph.left(), rect.top(), graph.right(), rect.top());
    painter.drawLine(graph.left(), rect.bottom(), graph.right(), rect.bottom());
    painter.drawLine(rect.left(), graph.top(), rect.left(), graph.bottom());
    painter.drawLine(rect.right(), graph.top(), rect.right(), graph.bottom());
    return rect;
}

void oraclePaintRegions(
    QPainter& painter, const QRect& graph, const MapState& map, const QList<QRect>& regions, int selected)
{
    const auto columnOf = [&](double x) {
        return nearest(graph.width() / (map.maxX - map.minX) * (x - map.minX) + graph.left());
    };
    const auto rowOf = [&](double y) {
        return nearest(graph.bottom() - graph.height() / (map.maxY - map.minY) * (y - map.minY));
    };
    painter.setBrush(Qt::NoBrush);
    for (int i = 0; i < regions.size(); i++) {
        QPen pen(Qt::white);
        pen.setWidth(1);
        if (i == selected)
            pen.setDashPattern({ 5, 5 });
        painter.setPen(pen);
        const int y1 = rowOf(regions[i].top());
        const int y2 = rowOf(regions[i].bottom());
        const int x1 = columnOf(regions[i].left());
        const int x2 = columnOf(regions[i].right());
        QRect rect;
        rect.setCoords(pixel(qMin(x1, x2)), pixel(qMin(y1, y2)), pixel(qMax(x1, x2)), pixel(qMax(y1, y2)));
        painter.drawRects(&rect, 1);
    }
}

double oracleBarValue(const BarState& bar, int i, int t)
{
    if (!bar.logScale)
        return (t - i) * (bar.max - bar.min) / t + bar.min;
    const double lmin = bar.min > 0 ? std::log10(bar.min) : 0.0;
    const double lmax = bar.max > 0 ? std::log10(bar.max) : 0.0;
    return std::pow(10.0, (t - i) * (lmax - lmin) / t + lmin);
}

void oraclePaintBar(BarState& bar, QPainter& painter, const QRect* rect, const QWidget& widget)
{
    const QRect r = rect != nullptr ? *rect : painter.viewport();
    const QFontMetrics metrics(widget.font());
    const int cw = metrics.averageCharWidth();
    const int ch = metrics.height();
    painter.fillRect(r, Qt::lightGray);
    QRect scale;
    scale.setLeft(r.left());
    scale.setRight(r.left() + 12);
    scale.setTop(r.top() + ch);
    scale.setBottom(r.bottom() - ch);
    QLinearGradient gradient(QPointF(0, r.height()), QPointF(0, 0));
    for (int i = 0; i < bar.positions.size(); i++)
        gradient.setColorAt(bar.positions[i], bar.colors[i]);
    painter.setBrush(QBrush(gradient));
    painter.drawRects(&scale, 1);
    painter.setPen(Qt::black);
    const int barWidth = scale.right() - scale.left() + 1;
    const int textWidth = (r.width() - 1) - (scale.right() - scale.left());
    bar.minRect.setCoords(
        scale.right() + cw, scale.bottom() - ch, scale.right() + textWidth - 1, scale.bottom() + ch - 1);
    bar.maxRect.setCoords(scale.right() + cw, 0, scale.right() + textWidth - 1, 2 * ch - 1);
    int t = bar.ticks;
    const int barHeight = scale.bottom() - scale.top() + 1;
    while (t >= 2 && barHeight < ch * t)
        t--;
    int widest = 0;
    if (!oracleEqual(bar.min, bar.max)) {
        for (int i = 0; i <= t; i++) {
            const double y = scale.top() + i * (static_cast<double>(barHeight) / t);
            painter.drawLine(QPointF(scale.left() + barWidth, y), QPointF(scale.left() + barWidth + cw / 2, y));
            const QString text = numStr(oracleBarValue(bar, i, t));
            painter.drawText(QRectF(scale.left() + barWidth + cw, y - ch / 2, r.width() - barWidth - cw, ch),
                Qt::AlignLeft | Qt::AlignVCenter, text);
            widest = qMax(widest, metrics.horizontalAdvance(text));
        }
    }
    bar.wantedWidth.reset();
    if (textWidth - cw < widest)
        bar.wantedWidth = cw + barWidth + widest;
}

QString oracleReadOut(const MapState& map, QPoint pixelAt, const QRect& graph, const QString& nameX,
    const QString& nameY, int decimalX, int decimalY)
{
    if (map.data.isEmpty() || pixelAt.x() <= graph.left() || pixelAt.x() >= graph.right() || pixelAt.y() <= graph.top()
        || pixelAt.y() >= graph.bottom())
        return QString();
    const double x = (pixelAt.x() - graph.left()) * (map.maxX - map.minX) / graph.width() + map.minX;
    const double y = map.maxY - (pixelAt.y() - graph.top()) * (map.maxY - map.minY) / graph.height();
    const int column = whole(std::floor((x - map.initMinX) / oracleStepX(map)));
    const int row = whole(std::floor((y - map.initMinY) / oracleStepY(map)));
    if (column < 0 || row < 0 || row >= rowsOf(map) || column >= map.data[row].size() || !(map.data[row][column] > 0.0))
        return QString();
    const double shownX = map.initMinX + (decimalX == 0 ? column : column + 0.5) * oracleStepX(map);
    const double shownY = map.initMinY + (decimalY == 0 ? row : row + 0.5) * oracleStepY(map);
    return nameX + ":" + number(shownX) + " " + nameY + ":" + number(shownY) + " i:" + number(map.data[row][column]);
}

} // namespace tarnis::testing
