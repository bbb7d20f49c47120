#include "tarnis/tools/cursors/rulerreading_p.h"

#include "tarnis/tools/base/plotreadout_p.h"

#include <QStringList>

#include <cmath>

namespace tarnis {

namespace {

constexpr int digits = 7;
const QString separator = QStringLiteral("   ");
constexpr qsizetype sumsInText = 16; // more would cover the plot; the table has them all

std::optional<double> finite(double value)
{
    return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

QString shown(std::optional<double> value)
{
    return value ? QString::number(*value, 'g', digits) : QStringLiteral("–");
}

QString exact(std::optional<double> value)
{
    return value ? exactNumber(*value) : QString();
}

QStringList distances(const RulerReading& reading)
{
    return { QStringLiteral("Δx %1").arg(shown(finite(reading.dx))),
        QStringLiteral("Δy %1").arg(shown(finite(reading.dy))) };
}

QStringList sumTexts(const QList<RulerSum>& sums)
{
    QStringList texts;
    for (const RulerSum& sum : sums.first(std::min(sums.size(), sumsInText))) {
        const QString number = std::isfinite(sum.sum) ? readOutNumber(sum.sum) : QStringLiteral("–");
        texts << (sum.name.isEmpty() ? QStringLiteral("Σ %1").arg(number)
                                     : QStringLiteral("Σ %1: %2").arg(sum.name, number));
    }
    if (sums.size() > sumsInText)
        texts << QStringLiteral("…");
    return texts;
}

} // namespace

RulerReading readingBetween(
    const QPointF& from, const QPointF& to, std::optional<double> valueFrom, std::optional<double> valueTo, bool isLog)
{
    RulerReading reading;
    reading.from = from;
    reading.to = to;
    reading.dx = to.x() - from.x();
    reading.dy = to.y() - from.y();
    if (reading.dx != 0.0)
        reading.inverse = finite(1.0 / reading.dx);
    if (valueFrom && valueTo && *valueFrom != 0.0)
        reading.ratio = finite(*valueTo / *valueFrom);
    if (isLog && from.y() > 0.0 && to.y() > 0.0)
        reading.decades = finite(std::log10(to.y()) - std::log10(from.y()));
    return reading;
}

QString RulerReading::text() const
{
    QStringList parts { QStringLiteral("1/Δx %1").arg(shown(inverse)),
        QStringLiteral("%1 %2").arg(isMap ? QStringLiteral("z₂/z₁") : QStringLiteral("y₂/y₁"), shown(ratio)) };
    if (decades)
        parts << QStringLiteral("%1 dec").arg(QString::number(*decades, 'f', 3));
    return (distances(*this) + parts + sumTexts(sums)).join(separator);
}

QString RulerReading::briefText() const
{
    return (distances(*this) + sumTexts(sums)).join(separator);
}

QString RulerReading::table() const
{
    const QString x = nameX.isEmpty() ? QStringLiteral("x") : nameX;
    const QString y = nameY.isEmpty() ? QStringLiteral("y") : nameY;
    QStringList header;
    for (const QString& end : { QStringLiteral("1"), QStringLiteral("2") })
        header << QStringLiteral("%1 at %2").arg(x, end) << QStringLiteral("%1 at %2").arg(y, end);
    header << QStringLiteral("dx") << QStringLiteral("dy") << QStringLiteral("1/dx")
           << (isMap ? QStringLiteral("z2/z1") : QStringLiteral("y2/y1")) << QStringLiteral("bins");
    QStringList numbers { exactNumber(from.x()), exactNumber(from.y()), exactNumber(to.x()), exactNumber(to.y()),
        exact(finite(dx)), exact(finite(dy)), exact(inverse), exact(ratio), QString::number(bins) };
    for (const RulerSum& sum : sums) {
        header << QStringLiteral("sum %1").arg(sum.header).trimmed();
        numbers << exact(finite(sum.sum));
    }
    return header.join(u'\t') + u'\n' + numbers.join(u'\t') + u'\n';
}

} // namespace tarnis
