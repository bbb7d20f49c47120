// Draws the peak, the curve of the starting values, the fitted curve, and the residuals below: drawpeak FILE.png
#include "peak.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace {

constexpr QRectF upper(50, 12, 535, 240);
constexpr QRectF lower(50, 272, 535, 76);
constexpr double highest = 220.0;
constexpr double maxSigmas = 4.0;

double columnOf(double channel)
{
    return upper.left() + (channel + 0.5) * upper.width() / double(counts.size());
}

double rowOf(double y)
{
    return upper.bottom() - y / highest * upper.height();
}

double residualRowOf(double sigmas)
{
    return lower.center().y() - sigmas / maxSigmas * 0.5 * lower.height();
}

void drawCurve(QPainter& painter, const double* p, const QPen& pen)
{
    QPolygonF curve;
    for (double channel = 0.0; channel <= double(counts.size() - 1); channel += 0.1)
        curve << QPointF(columnOf(channel), rowOf(model(p, channel)));
    painter.setPen(pen);
    painter.drawPolyline(curve);
}

void drawAxes(QPainter& painter)
{
    painter.setPen(QPen(Qt::darkGray, 1));
    painter.drawRect(upper);
    painter.drawRect(lower);
    painter.drawLine(QPointF(lower.left(), residualRowOf(0)), QPointF(lower.right(), residualRowOf(0)));
    painter.setPen(Qt::black);
    for (int y = 0; y <= 200; y += 50)
        painter.drawText(QRectF(0, rowOf(y) - 8, 44, 16), Qt::AlignRight | Qt::AlignVCenter, QString::number(y));
    for (int sigmas = -3; sigmas <= 3; sigmas += 3) {
        painter.drawText(
            QRectF(0, residualRowOf(sigmas) - 8, 44, 16), Qt::AlignRight | Qt::AlignVCenter, QString::number(sigmas));
    }
    for (int channel = 0; channel < int(counts.size()); channel += 10) {
        painter.drawText(
            QRectF(columnOf(channel) - 20, lower.bottom() + 3, 40, 16), Qt::AlignCenter, QString::number(channel));
    }
}

// Counts with error bars of one standard deviation, and the residuals below.
void drawPoints(QPainter& painter, const double* p)
{
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(Qt::black);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const double channel = double(i);
        const double sigma = std::sqrt(counts[i]);
        const double x = columnOf(channel);
        painter.drawLine(QPointF(x, rowOf(counts[i] - sigma)), QPointF(x, rowOf(counts[i] + sigma)));
        painter.drawEllipse(QPointF(x, rowOf(counts[i])), 2, 2);
        painter.drawEllipse(QPointF(x, residualRowOf((counts[i] - model(p, channel)) / sigma)), 2, 2);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: drawpeak FILE.png\n");
        return 2;
    }
    const Fit fit;
    QImage image(600, 372, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(QFont(QStringLiteral("DejaVu Sans"), 8));
    drawAxes(painter);
    drawCurve(painter, startingValues.data(), QPen(QColor(150, 150, 220), 1.5, Qt::DashLine));
    drawCurve(painter, fit.p.data(), QPen(QColor(200, 30, 30), 2));
    drawPoints(painter, fit.p.data());
    painter.end();
    return image.save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
