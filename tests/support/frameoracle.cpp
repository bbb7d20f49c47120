#include "support/frameoracle.h"

#include "support/devicepixeloracle.h"

#include "tarnis/foundation/helpers.h"

#include <QFontMetrics>
#include <QPainter>
#include <QWidget>

#include <cfloat>
#include <cmath>

namespace tarnis::testing {
namespace {

bool same(double a, double b)
{
    double larger = std::fabs(a) > std::fabs(b) ? std::fabs(a) : std::fabs(b);
    if (larger <= 1.0)
        larger = 1.0;
    return std::fabs(a - b) <= larger * DBL_EPSILON;
}

double logarithm(double x)
{
    if (x > 0)
        return std::log10(x);
    return 0.0;
}

struct Tick {
    double value = 0.0;
    int position = 0;
    QString label;
    QRect rect;
};

double stepOf(const QList<double>& ticks)
{
    return ticks.size() < 2 ? 0.0 : ticks[1] - ticks[0];
}

void addEnds(QList<double>& ticks, double first, double last)
{
    if (!same(ticks.first(), first))
        ticks.insert(0, first);
    if (!same(ticks.last(), last))
        ticks.append(last);
}

QList<double> ticksX(FrameState& s, double& step)
{
    const auto x2tick = [&](double x) { return s.x2tick != nullptr ? s.x2tick(x, s.userData) : x; };
    const auto tick2x = [&](double t) { return s.tick2x != nullptr ? s.tick2x(t, s.userData) : t; };
    QList<double> ticks = frameTicks(x2tick(s.minX), x2tick(s.maxX), s.tickDecimalX);
    s.tickDecimalX = s.decimalX;
    for (qsizetype i = 0; i < ticks.size(); i++)
        ticks[i] = tick2x(ticks[i]);
    step = stepOf(ticks);
    addEnds(ticks, s.minX, s.maxX);
    return ticks;
}

QList<double> ticksY(FrameState& s, double& step)
{
    s.tickDecimalY = s.decimalY;
    if (!s.logScaleY) {
        QList<double> ticks = frameTicks(s.minY, s.maxY, s.tickDecimalY);
        step = stepOf(ticks);
        addEnds(ticks, s.minY, s.maxY);
        return ticks;
    }
    step = 0.0;
    QList<double> ticks { s.minY };
    double e = 0.0;
    if (!(s.minY <= 0.0))
        e = std::ceil(std::log10(s.minY));
    while (std::pow(10.0, e) < s.maxY) {
        ticks.append(std::pow(10.0, e));
        e++;
    }
    ticks.append(s.maxY);
    return ticks;
}

void keepRect(const FrameState& s, const QRect& frame, const QRect& rect, QRect& kept)
{
    kept = rect;
    if (!same(s.rotation, 90.0))
        return;
    const int frameHeight = frame.bottom() - frame.top() + 1;
    kept.setLeft(frameHeight - rect.bottom());
    kept.setRight(frameHeight - rect.top());
    kept.setTop(rect.left());
    kept.setBottom(rect.right());
}

void labelX(FrameState& s, const QRect& frame, int cw, QList<Tick>& ticks)
{
    for (qsizetype i = 0; i < ticks.size(); i++) {
        Tick& tick = ticks[i];
        tick.position = frameColumn(s, tick.value);
        const int lw = (static_cast<int>(tick.label.length()) + 2) * cw;
        tick.rect.setLeft(tick.position - lw / 2);
        tick.rect.setRight(tick.rect.left() + lw - 1);
        tick.rect.setTop(s.graphRect.bottom() + 5);
        tick.rect.setBottom(s.graphRect.bottom() + 19);
        if (i == 0)
            keepRect(s, frame, tick.rect, s.labelRectMinX);
        else if (i == ticks.size() - 1)
            keepRect(s, frame, tick.rect, s.labelRectMaxX);
    }
}

void labelY(FrameState& s, const QRect& frame, int ch, QList<Tick>& ticks)
{
    for (qsizetype i = 0; i < ticks.size(); i++) {
        Tick& tick = ticks[i];
        tick.position = frameRow(s, tick.value);
        tick.rect.setLeft(frame.left());
        tick.rect.setRight(s.graphRect.left() - 6);
        tick.rect.setTop(tick.position - ch / 2);
        tick.rect.setBottom(tick.rect.top() + ch - 1);
        if (i == 0)
            keepRect(s, frame, tick.rect, s.labelRectMinY);
        else if (i == ticks.size() - 1)
            keepRect(s, frame, tick.rect, s.labelRectMaxY);
    }
}

void drawTicks(QPainter& painter, const QRect& graph, QList<Tick> ticks, bool vertical)
{
    ticks.prepend(ticks.takeLast());
    for (qsizetype i = 0; i < ticks.size(); i++) {
        const int at = ticks[i].position;
        if (vertical)
            oracleLine(painter, QPoint(graph.left() - 3, at), QPoint(graph.left(), at));
        else
            oracleLine(painter, QPoint(at, graph.bottom()), QPoint(at, graph.bottom() + 3));
        if (ticks[i].label == "")
            continue;
        const Qt::Alignment alignment = vertical ? Qt::AlignRight | Qt::AlignVCenter : Qt::AlignHCenter | Qt::AlignTop;
        painter.drawText(ticks[i].rect, static_cast<int>(alignment), ticks[i].label);
        for (qsizetype k = i + 1; k < ticks.size(); k++) {
            if (ticks[i].rect.intersects(ticks[k].rect))
                ticks[k].label = "";
        }
    }
}

void drawGrid(const FrameState& s, QPainter& painter, const QList<double>& xs, double stepX, const QList<double>& ys,
    double stepY)
{
    const QRect g = s.graphRect;
    const auto vertical = [&](double x) {
        if (cutToPixel(x) > g.left() && cutToPixel(x) < g.right())
            oracleLine(painter, QPoint(cutToPixel(x), g.top()), QPoint(cutToPixel(x), g.bottom()));
    };
    const auto horizontal = [&](double y) {
        if (cutToPixel(y) > g.top() && cutToPixel(y) < g.bottom())
            oracleLine(painter, QPoint(g.left(), cutToPixel(y)), QPoint(g.right(), cutToPixel(y)));
    };
    for (qsizetype i = 1; i < xs.size() - 1; i++) {
        painter.setPen(QColor(64, 64, 64));
        const double px = frameColumn(s, xs[i]);
        const double half = g.width() / (s.maxX - s.minX) * stepX * 0.5;
        vertical(px);
        vertical(px + half);
        if (i == 1)
            vertical(px - half);
        painter.setPen(Qt::black);
    }
    for (qsizetype i = 1; i < ys.size() - 1; i++) {
        painter.setPen(QColor(64, 64, 64));
        const double py = frameRow(s, ys[i]);
        double half = 0.0;
        if (!s.logScaleY)
            half = g.height() / (s.maxY - s.minY) * stepY * 0.5;
        horizontal(py);
        horizontal(py - half);
        if (i == 1)
            horizontal(py + half);
        painter.setPen(Qt::black);
    }
}

} // namespace

int cutToPixel(double value)
{
    const double limit = 1073741824.0;
    if (std::isnan(value) || value < -limit)
        return -1073741824;
    if (value > limit)
        return 1073741824;
    return static_cast<int>(std::trunc(value));
}

QList<double> frameTicks(double a, double b, int& decimal)
{
    double lo = a;
    double hi = b;
    bool exchanged = false;
    if (a > b) {
        lo = b;
        hi = a;
        exchanged = true;
    }
    const double q = (hi - lo) * 0.25;
    double m = std::pow(10.0, std::floor(std::log10(q)));
    if (m < 1.0) {
        if (decimal <= 0) {
            m = 1.0;
        } else {
            double k = 1.0;
            int steps = 0;
            for (; steps < 3; steps++) {
                if (!(1.0 / k > q))
                    break;
                k = k * 10.0;
            }
            decimal = steps;
            m = 1.0 / k;
        }
    }
    double step = m;
    if (q > 5.0 * m)
        step = 5.0 * m;
    else if (2.0 * m < q)
        step = 2.0 * m;
    const double top = std::floor(hi / step);
    const double bottom = std::ceil(lo / step);
    const double count = std::fabs(top - bottom);
    QList<double> ticks;
    if (std::isfinite(count) && count >= 1.0) {
        const int n = static_cast<int>(count);
        for (int i = 0; i <= n; i++)
            ticks.append(bottom * step + i * (top * step - bottom * step) / n);
    } else {
        ticks.append(bottom * step);
    }
    if (exchanged) {
        QList<double> reversed;
        for (const double tick : ticks)
            reversed.prepend(tick);
        return reversed;
    }
    return ticks;
}

int frameColumn(const FrameState& s, double x)
{
    const double w = s.graphRect.right() - s.graphRect.left() + 1;
    return cutToPixel(w * (x - s.minX) / (s.maxX - s.minX) + s.graphRect.left());
}

int frameRow(const FrameState& s, double y)
{
    const double h = s.graphRect.bottom() - s.graphRect.top() + 1;
    if (same(s.minY, s.maxY))
        return s.graphRect.bottom();
    if (s.logScaleY)
        return cutToPixel(
            s.graphRect.bottom() - (logarithm(y) - logarithm(s.minY)) * h / (logarithm(s.maxY) - logarithm(s.minY)));
    return cutToPixel(s.graphRect.bottom() - (y - s.minY) * h / (s.maxY - s.minY));
}

void paintFrame(FrameState& s, QPainter& painter, const QRect* rect, const PaintData& paintData)
{
    const QFontMetrics metrics(s.font);
    const int cw = metrics.averageCharWidth();
    const int ch = metrics.height();
    QRect frame = painter.viewport();
    if (rect != nullptr)
        frame = *rect;
    painter.fillRect(frame, QBrush(Qt::lightGray));
    frame.setLeft(frame.left() + s.margin.left());
    frame.setTop(frame.top() + s.margin.top());
    frame.setRight(frame.right() - s.margin.right());
    frame.setBottom(frame.bottom() - s.margin.bottom());

    double stepX = 0.0;
    double stepY = 0.0;
    const QList<double> xs = ticksX(s, stepX);
    const QList<double> ys = ticksY(s, stepY);
    QList<Tick> recordsX;
    for (const double x : xs)
        recordsX.append({ x, 0, numStr(x), QRect() });
    QList<Tick> recordsY;
    int widest = 0;
    for (const double y : ys) {
        recordsY.append({ y, 0, numStr(y), QRect() });
        widest = std::max(widest, cw * static_cast<int>(recordsY.last().label.length()) + 10);
    }

    const int lengthY = static_cast<int>(std::max(numStr(s.maxY).length(), numStr(s.minY).length()));
    const int lengthX = static_cast<int>(numStr(s.maxX).length());
    const QSize topLeft(lengthY * cw + 10, s.nameY.isEmpty() ? ch : 2 * ch);
    const QSize bottomRight((lengthX * cw) / 2 + 5, 2 * ch + 5);
    QRect& graph = s.graphRect;
    graph.setLeft(frame.left() + std::max(widest, topLeft.width()));
    graph.setTop(frame.top() + topLeft.height());
    graph.setRight(frame.right() - bottomRight.width());
    graph.setBottom(frame.bottom() - bottomRight.height());

    QRect nameX;
    nameX.setLeft(graph.left());
    nameX.setTop(graph.bottom());
    nameX.setRight(graph.right());
    nameX.setBottom(frame.bottom() - 1);
    labelX(s, frame, cw, recordsX);
    labelY(s, frame, ch, recordsY);

    painter.setBrush(QBrush(s.backGround));
    oracleFrame(painter, graph);
    painter.setPen(Qt::black);
    painter.drawText(nameX, Qt::AlignHCenter | Qt::AlignBottom, s.nameX);
    const QRect nameY(QPoint(graph.left() - 10, frame.top() + 2), QSize(graph.right(), graph.top()));
    painter.drawText(nameY, Qt::AlignLeft | Qt::AlignTop, s.nameY);
    drawTicks(painter, graph, recordsX, false);
    drawTicks(painter, graph, recordsY, true);

    if (!s.notes.isEmpty()) {
        painter.setPen(Qt::black);
        const QRect notes(QPoint(graph.left(), frame.top()), QPoint(graph.right(), graph.top() - 1));
        painter.setClipRect(notes, Qt::ReplaceClip);
        painter.drawText(notes, Qt::AlignRight | Qt::AlignVCenter, s.notes);
    }
    oracleClip(painter, graph);
    if (!s.paintGridOnGraph && s.showGrid)
        drawGrid(s, painter, xs, stepX, ys, stepY);
    if (paintData)
        paintData(painter, graph);
    if (s.paintGridOnGraph && s.showGrid)
        drawGrid(s, painter, xs, stepX, ys, stepY);
}

void paintFrameOverlay(const FrameState& s, QPainter& painter)
{
    const QRect& g = s.graphRect;
    painter.setClipRect(g);
    if (!same(s.xRangeMin, s.xRangeMax)) {
        painter.setPen(QPen(QBrush(Qt::white), 1.0, Qt::DashLine));
        for (const double bound : { s.xRangeMin, s.xRangeMax }) {
            const double x = g.width() / (s.maxX - s.minX) * (bound - s.minX) + g.left();
            if (std::isfinite(x) && std::fabs(x) < 1e6)
                oracleStroke(painter, QLineF(x, g.top(), x, g.bottom()));
        }
    }
    painter.setClipping(false);
}

QPixmap framePicture(FrameState& s, QWidget& widget, const PaintData& paintData)
{
    const double ratio = widget.devicePixelRatioF();
    QPixmap picture(widget.size() * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(widget.palette().brush(QPalette::Current, QPalette::Window).color());
    QPainter painter(&picture);
    painter.setPen(QPen(widget.palette().brush(widget.foregroundRole()), 1));
    painter.setFont(widget.font());
    const int width = widget.width();
    const int height = widget.height();
    if (ratio != 1.0) {
        painter.setWindow(0, 0, width, height);
        painter.setViewport(0, 0, width, height);
    }
    const QRect turned(QPoint(0, 0), QPoint(height - 1, width - 1));
    if (same(s.rotation, 90.0)) {
        painter.translate(width, 0);
        painter.rotate(s.rotation);
        paintFrame(s, painter, &turned, paintData);
    } else if (same(s.rotation, -90.0)) {
        painter.translate(0, height);
        painter.rotate(s.rotation);
        paintFrame(s, painter, &turned, paintData);
    } else {
        paintFrame(s, painter, nullptr, paintData);
    }
    return picture;
}

} // namespace tarnis::testing
