#include "tarnis/tools/navigation/viewfile_p.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonParseError>

#include <cmath>

namespace tarnis {

namespace {

const QLatin1String formatKey("format");
const QLatin1String formatValue("tarnis-view");
const QLatin1String versionKey("version");
constexpr int currentVersion = 1;
constexpr double largestEnd = 1e300; // differences of two ends stay finite

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::PlotView)
};

QJsonObject axisObject(AxisRange range, bool isAuto)
{
    QJsonObject object { { QLatin1String("auto"), isAuto } };
    if (std::isfinite(range.min) && std::isfinite(range.max)) {
        object.insert(QLatin1String("min"), range.min);
        object.insert(QLatin1String("max"), range.max);
    }
    return object;
}

void mergeAxis(const QJsonValue& value, AxisRange& range, bool& isAuto)
{
    const QJsonObject object = value.toObject();
    const QJsonValue min = object.value(QLatin1String("min"));
    const QJsonValue max = object.value(QLatin1String("max"));
    const bool isRange = min.isDouble() && max.isDouble() && min.toDouble() != max.toDouble()
        && std::abs(min.toDouble()) <= largestEnd && std::abs(max.toDouble()) <= largestEnd;
    const bool wantsAuto = object.value(QLatin1String("auto")).toBool(isAuto && !isRange);
    if (!isRange && !wantsAuto)
        return; // "not automatic" is meaningless without a range
    isAuto = wantsAuto;
    if (isRange)
        range = { min.toDouble(), max.toDouble() };
}

} // namespace

QString faultOf(const QJsonObject& state)
{
    if (state.value(formatKey).toString() != formatValue)
        return Texts::tr("it is not a stored view of a plot");
    const QJsonValue version = state.value(versionKey);
    if (!version.isDouble() || version.toDouble() < 1.0)
        return Texts::tr("it has no version");
    if (version.toDouble() > currentVersion)
        return Texts::tr("a later version of this program wrote it");
    return {};
}

ParsedView parseView(const QByteArray& bytes)
{
    if (bytes.size() > maxViewBytes)
        return { {}, Texts::tr("it is too large for a stored view") };
    QJsonParseError fault;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &fault);
    if (fault.error != QJsonParseError::NoError)
        return { {}, Texts::tr("it is damaged at byte %1").arg(fault.offset) };
    const QString error = faultOf(document.object());
    return { error.isEmpty() ? document.object() : QJsonObject(), error };
}

QJsonObject storedView(const ViewState& view)
{
    return { { formatKey, formatValue }, { versionKey, currentVersion },
        { QLatin1String("x"), axisObject(view.x, view.autoX) }, { QLatin1String("y"), axisObject(view.y, view.autoY) },
        { QLatin1String("colours"), axisObject(view.levels, view.autoLevels) },
        { QLatin1String("logScale"), view.logScale } };
}

ViewState mergedView(const ViewState& present, const QJsonObject& state)
{
    ViewState view = present;
    mergeAxis(state.value(QLatin1String("x")), view.x, view.autoX);
    mergeAxis(state.value(QLatin1String("y")), view.y, view.autoY);
    mergeAxis(state.value(QLatin1String("colours")), view.levels, view.autoLevels);
    view.logScale = state.value(QLatin1String("logScale")).toBool(view.logScale);
    return view;
}

QString encodedName(const QString& name)
{
    QByteArray encoded = name.toUtf8().toPercentEncoding(QByteArrayLiteral(" ()+,="));
    if (encoded.startsWith('.'))
        encoded.replace(0, 1, QByteArrayLiteral("%2E")); // avoids hidden files and ".."
    return QString::fromLatin1(encoded);
}

QString decodedName(const QString& fileName)
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(fileName.toLatin1()));
}

} // namespace tarnis
