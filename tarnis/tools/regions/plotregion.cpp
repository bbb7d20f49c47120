#include "tarnis/tools/plotregion.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace tarnis {

namespace {

constexpr qsizetype maxRegions = 1000;
constexpr qsizetype maxPoints = 1000;

struct Text {
    Q_DECLARE_TR_FUNCTIONS(tarnis::PlotRegion)
};

struct KindName {
    PlotRegion::Kind kind;
    QLatin1StringView name;
};
constexpr std::array kindNames { KindName { PlotRegion::Kind::RangeX, "range-x"_L1 },
    KindName { PlotRegion::Kind::RangeY, "range-y"_L1 }, KindName { PlotRegion::Kind::Rectangle, "rectangle"_L1 },
    KindName { PlotRegion::Kind::Ellipse, "ellipse"_L1 }, KindName { PlotRegion::Kind::Polygon, "polygon"_L1 } };

std::optional<QPointF> pointOf(const QJsonValue& value)
{
    const QJsonArray pair = value.toArray();
    if (pair.size() != 2 || !pair[0].isDouble() || !pair[1].isDouble())
        return std::nullopt;
    return QPointF(pair[0].toDouble(), pair[1].toDouble());
}

std::optional<PlotRegion> regionOf(const QJsonObject& json)
{
    PlotRegion region;
    const QString kind = json.value("kind"_L1).toString();
    const auto* const known =
        std::find_if(kindNames.begin(), kindNames.end(), [&](const KindName& name) { return name.name == kind; });
    if (known == kindNames.end())
        return std::nullopt;
    region.kind = known->kind;
    region.name = json.value("name"_L1).toString();
    const QJsonArray points = json.value("points"_L1).toArray();
    if (points.size() > maxPoints)
        return std::nullopt;
    for (const QJsonValue value : points) {
        const std::optional<QPointF> point = pointOf(value);
        if (!point)
            return std::nullopt;
        region.points << *point;
    }
    return region.isValid() ? std::optional(region) : std::nullopt;
}

} // namespace

PlotRegion PlotRegion::rangeX(double lower, double upper, const QString& name)
{
    return { Kind::RangeX, name, { { lower, 0.0 }, { upper, 0.0 } } };
}

bool PlotRegion::isValid() const
{
    const bool isEnough = kind == Kind::Polygon ? points.size() >= 3 : points.size() == 2;
    return isEnough && std::all_of(points.begin(), points.end(), [](const QPointF& point) {
        return std::isfinite(point.x()) && std::isfinite(point.y());
    });
}

QRectF PlotRegion::bounds() const
{
    if (points.isEmpty())
        return {};
    QPointF low = points.first();
    QPointF high = low;
    for (const QPointF& point : points) {
        low = { std::min(low.x(), point.x()), std::min(low.y(), point.y()) };
        high = { std::max(high.x(), point.x()), std::max(high.y(), point.y()) };
    }
    return { low, high };
}

void PlotRegion::translate(const QPointF& by)
{
    for (QPointF& point : points)
        point += by;
}

QByteArray regionsToJson(const QList<PlotRegion>& regions)
{
    QJsonArray list;
    for (const PlotRegion& region : regions) {
        QJsonArray points;
        for (const QPointF& point : region.points)
            points.append(QJsonArray { point.x(), point.y() });
        const auto kind = static_cast<std::size_t>(region.kind);
        list.append(QJsonObject {
            { "kind"_L1, QString(kindNames.at(kind).name) }, { "name"_L1, region.name }, { "points"_L1, points } });
    }
    return QJsonDocument(QJsonObject { { "regions"_L1, list } }).toJson();
}

PlotRegionsResult regionsFromJson(const QByteArray& text)
{
    QJsonParseError error {};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        return { {},
            Text::tr("The file of regions is damaged at byte %1: %2").arg(error.offset).arg(error.errorString()) };
    const QJsonValue list = document.object().value("regions"_L1);
    if (!list.isArray())
        return { {}, Text::tr("The file contains no list \"regions\".") };
    if (list.toArray().size() > maxRegions)
        return { {}, Text::tr("The file contains more than %1 regions.").arg(maxRegions) };
    PlotRegionsResult result;
    for (const QJsonValue value : list.toArray()) {
        const std::optional<PlotRegion> region = regionOf(value.toObject());
        if (!region)
            return {
                {},
                Text::tr("Region %1 of the file has no known kind or no valid points.").arg(result.regions.size() + 1)
            };
        result.regions << *region;
    }
    return result;
}

} // namespace tarnis
