#include "residualstrip.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace cli {

std::vector<QPointF> residualsOf(const tarnis::Dataset& fit)
{
    const std::vector<double> centres = tarnis::centresOf(fit.x, fit.columns);
    std::vector<QPointF> residuals;
    for (qsizetype i = 0; i < fit.columns; ++i) {
        const double model = fit.at(1, i);
        const double residual = (fit.at(0, i) - model) / std::sqrt(model);
        if (model > 0.0 && std::isfinite(residual))
            residuals.emplace_back(centres[static_cast<std::size_t>(i)], residual);
    }
    return residuals;
}

void paintResiduals(QPainter& painter, const QRect& rect, const std::vector<QPointF>& points, const StripStyle& style)
{
    constexpr double minLimit = 3.0;
    double highest = minLimit;
    for (const QPointF& point : points)
        highest = std::max(highest, std::fabs(point.y()));
    const int limit = static_cast<int>(std::min(std::ceil(highest), 1e6));
    const auto rowOf = [&](double residual) {
        return rect.top() + rect.height() * (0.5 - 0.5 * residual / (limit * 1.1));
    };
    const QFontMetrics metrics(painter.font());
    const bool hasRoom = rowOf(0.0) - rowOf(limit) >= metrics.height();
    painter.setClipping(false);
    for (const int tick : { -limit, 0, limit }) {
        const double row = rowOf(tick);
        painter.setPen(QPen(style.grid, style.thickness, tick == 0 ? Qt::SolidLine : Qt::DotLine));
        painter.drawLine(QPointF(rect.left(), row), QPointF(rect.right(), row));
        if (!hasRoom && tick != 0)
            continue;
        painter.setPen(style.text);
        const QRectF label(
            rect.left() - 200 - metrics.averageCharWidth(), row - metrics.height() / 2.0, 200, metrics.height());
        painter.drawText(label, Qt::AlignRight | Qt::AlignVCenter, QString::number(tick));
    }
    painter.setPen(QPen(style.text, style.thickness));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect);
    painter.setClipRect(rect);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.mark);
    const double radius =
        std::clamp(rect.width() / (2.0 * static_cast<double>(points.size() + 1)), 0.5, 2.0) * style.thickness;
    for (const QPointF& point : points)
        painter.drawEllipse(QPointF(point.x(), rowOf(point.y())), radius, radius);
    painter.setClipping(false);
}

} // namespace cli
