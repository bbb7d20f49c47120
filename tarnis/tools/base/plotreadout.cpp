#include "tarnis/tools/base/plotreadout_p.h"

#include "tarnis/plots/curvenames.h"
#include "tarnis/plots/multivectorgraphwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/base/plotcurves_p.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr double largestWhole = 9007199254740992.0; // beyond it a double cannot represent every integer
constexpr int digitsOfReals = 7;

struct ReadOut {
    Q_DECLARE_TR_FUNCTIONS(tarnis::PlotCrosshair)
};

bool isWhole(double value)
{
    return std::abs(value) <= largestWhole && std::trunc(value) == value;
}

QString valueText(const ReadOutValue& value)
{
    if (!value.value)
        return QStringLiteral("–");
    if (!std::isfinite(*value.value))
        return ReadOut::tr("no data");
    // The error of a count; it is unknown for other values.
    if (isWhole(*value.value) && *value.value > 0.0)
        return QStringLiteral("%1 ± %2").arg(
            readOutNumber(*value.value), QString::number(std::sqrt(*value.value), 'g', 3));
    return readOutNumber(*value.value);
}

/// The bins of an axis may be in falling order.
AxisRange ascending(AxisRange range)
{
    return { std::min(range.min, range.max), std::max(range.min, range.max) };
}

QString binText(const QString& name, qsizetype bin, AxisRange edges)
{
    return ReadOut::tr("%1 [%2, %3) bin %4")
        .arg(name, readOutNumber(edges.min), readOutNumber(edges.max))
        .arg(bin)
        .trimmed();
}

} // namespace

QString readOutNumber(double value)
{
    return isWhole(value) ? QString::number(value, 'f', 0) : QString::number(value, 'g', digitsOfReals);
}

QString exactNumber(double value)
{
    return isWhole(value) ? QString::number(value, 'f', 0) : QString::number(value, 'g', 17);
}

void copyTable(const QString& table)
{
    if (!table.isEmpty())
        QGuiApplication::clipboard()->setText(table);
}

PlotReadOut readOutAt(const XYGraphWidget& plot, const PlotMapping& mapping, double x, double y)
{
    PlotReadOut readOut;
    readOut.nameX = PlotAccess::nameX(plot);
    readOut.nameY = PlotAccess::nameY(plot);
    readOut.column = mapping.columnAt(x);
    const auto* map = qobject_cast<const XY2DGraphWidget*>(&plot);
    readOut.isMap = map != nullptr;
    if (readOut.column < 0)
        return readOut;
    readOut.edgesX = ascending(mapping.columnEdges(readOut.column));
    readOut.namedX = PlotAccess::namedX(plot, readOut.edgesX);
    if (mapping.hasTickFunction() && !PlotAccess::namesSecondScale(plot))
        readOut.tick = mapping.tickOf(readOut.edgesX.min + (readOut.edgesX.max - readOut.edgesX.min) / 2.0);
    if (map != nullptr) {
        readOut.row = mapping.rowAt(y);
        if (readOut.row < 0)
            return readOut;
        readOut.edgesY = ascending(mapping.rowEdges(readOut.row));
        const QList<double>& row = PlotAccess::rows(*map).at(readOut.row);
        readOut.values.append({ {}, Qt::white,
            readOut.column < row.size() ? std::optional<double>(row.at(readOut.column)) : std::nullopt });
    } else {
        const QList<ShownCurve> curves = shownCurves(plot);
        for (const ShownCurve& curve : curves)
            readOut.values.append({ curve.name, curve.colour, curve.at(readOut.column) });
    }
    return readOut;
}

QString PlotReadOut::text() const
{
    if (!isInside())
        return QStringLiteral("–");
    QStringList parts { binText(nameX, column, namedX) };
    if (tick)
        parts << QStringLiteral("= %1").arg(readOutNumber(*tick));
    if (isMap)
        parts << binText(nameY, row, edgesY);
    for (const ReadOutValue& value : values) {
        const QString number = valueText(value);
        parts << (value.name.isEmpty() ? number : QStringLiteral("%1: %2").arg(value.name, number));
    }
    return parts.join(QStringLiteral("   "));
}

QString PlotReadOut::briefText() const
{
    if (!isInside())
        return QStringLiteral("–");
    const auto edgesText = [](AxisRange edges) {
        return QStringLiteral("[%1, %2)").arg(readOutNumber(edges.min), readOutNumber(edges.max));
    };
    QStringList parts { edgesText(namedX) };
    if (isMap)
        parts << edgesText(edgesY);
    for (const ReadOutValue& value : values) {
        const bool isNumber = value.value && std::isfinite(*value.value);
        const QString number = isNumber ? readOutNumber(*value.value) : valueText(value);
        parts << (value.name.isEmpty() ? number : QStringLiteral("%1: %2").arg(value.name, number));
    }
    return parts.join(QStringLiteral("   "));
}

QStringList fullNames(const XYGraphWidget& plot)
{
    const auto* const series = qobject_cast<const MultiVectorGraphWidget*>(&plot);
    const QStringList names = series != nullptr ? curveNames(*series) : QStringList();
    QStringList found;
    const QList<ShownCurve> curves = shownCurves(plot);
    for (const ShownCurve& curve : curves)
        found << (curve.name.isEmpty() ? QString() : names.value(curve.place, curve.name));
    return found;
}

QStringList valueHeaders(const XYGraphWidget& plot)
{
    QStringList headers;
    const QStringList names = fullNames(plot);
    for (const QString& name : names) {
        bool isNumber = false;
        name.toInt(&isNumber); // of a plot without names and terms
        headers << (name.isEmpty() || isNumber ? QStringLiteral("value %1").arg(name).trimmed() : name);
    }
    return headers.isEmpty() ? QStringList { QStringLiteral("value") } : headers;
}

QStringList binHeaders(const QString& axis, const QString& bin)
{
    const QString name = axis.isEmpty() ? bin : axis;
    return { bin, name + QStringLiteral(" lo"), name + QStringLiteral(" hi") };
}

QString PlotReadOut::table(const QStringList& headers) const
{
    if (!isInside())
        return {};
    QStringList header = binHeaders(nameX, QStringLiteral("bin"));
    QStringList numbers { QString::number(column), exactNumber(namedX.min), exactNumber(namedX.max) };
    if (isMap) {
        header += binHeaders(nameY, QStringLiteral("row"));
        numbers << QString::number(row) << exactNumber(edgesY.min) << exactNumber(edgesY.max);
    }
    header += headers;
    for (const ReadOutValue& value : values)
        numbers << (value.value ? exactNumber(*value.value) : QString());
    return header.join(u'\t') + u'\n' + numbers.join(u'\t') + u'\n';
}

} // namespace tarnis
