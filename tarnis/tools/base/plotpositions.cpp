#include "tarnis/tools/base/plotpositions_p.h"

#include "tarnis/tools/base/plotcurves_p.h"

#include <QKeyEvent>

#include <cmath>

namespace tarnis {

namespace {

constexpr double stepOutside = 0.01; // fraction of the view
constexpr int binsOfFarStep = 10;

double moved(double value, int bins, AxisRange edges, bool isInside, AxisRange view)
{
    if (bins == 0)
        return value;
    const double step = isInside ? edges.max - edges.min : std::abs(view.max - view.min) * stepOutside;
    return value + bins * step;
}

} // namespace

bool isFinitePlace(const QPointF& place)
{
    return std::isfinite(place.x()) && std::isfinite(place.y());
}

bool isOverPlot(const PlotMapping& mapping, const QPointF& pixel)
{
    return mapping.isValid() && mapping.plotRect().contains(pixel.toPoint());
}

QPointF pixelInPlot(const PlotMapping& mapping, const QPointF& pixel)
{
    const QRect rect = mapping.plotRect();
    return { std::clamp<double>(pixel.x(), rect.left(), std::max(rect.left(), rect.right())),
        std::clamp<double>(pixel.y(), rect.top(), std::max(rect.top(), rect.bottom())) };
}

QJsonArray placesToJson(const PlacePair& places)
{
    return { places.from.x(), places.from.y(), places.to.x(), places.to.y() };
}

std::optional<PlacePair> placesFromJson(const QJsonValue& value)
{
    const QJsonArray numbers = value.toArray();
    const auto numberAt = [&](int i) { return numbers.at(i).toDouble(std::nan("")); };
    const PlacePair places { { numberAt(0), numberAt(1) }, { numberAt(2), numberAt(3) } };
    if (numbers.size() != 4 || !isFinitePlace(places.from) || !isFinitePlace(places.to))
        return std::nullopt;
    return places;
}

QPointF snappedToBins(const PlotMapping& mapping, const QPointF& position)
{
    const qsizetype column = mapping.columnAt(position.x());
    const qsizetype row = mapping.rowAt(position.y());
    return { column >= 0 ? middleOf(mapping.columnEdges(column)) : position.x(),
        row >= 0 ? middleOf(mapping.rowEdges(row)) : position.y() };
}

QPointF movedByBins(const PlotMapping& mapping, const QPointF& position, int columns, int rows)
{
    const qsizetype column = mapping.columnAt(position.x());
    const qsizetype row = mapping.rowAt(position.y());
    const QPointF target { moved(position.x(), columns, column >= 0 ? mapping.columnEdges(column) : AxisRange(),
                               column >= 0, mapping.x()),
        moved(position.y(), rows, row >= 0 ? mapping.rowEdges(row) : AxisRange(), row >= 0, mapping.y()) };
    return snappedToBins(mapping, target);
}

QPoint binsOfKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier; // arrows of some keyboards have it
    const bool isFar = modifiers == (Qt::ControlModifier | Qt::ShiftModifier);
    if (modifiers != Qt::ControlModifier && !isFar)
        return {};
    const int step = isFar ? binsOfFarStep : 1;
    switch (event.key()) {
    case Qt::Key_Left:
        return { -step, 0 };
    case Qt::Key_Right:
        return { step, 0 };
    case Qt::Key_Up:
        return { 0, step };
    case Qt::Key_Down:
        return { 0, -step };
    default:
        return {};
    }
}

bool isHit(const PlotMapping& mapping, const QPointF& place, const QPointF& pixel, bool isLine, double reach)
{
    if (!isOverPlot(mapping, pixel))
        return false;
    const QPointF at = mapping.toFrame(pixel);
    const double dx = std::abs(mapping.columnOf(place.x()) - at.x());
    if (isLine)
        return dx <= reach;
    return std::hypot(dx, mapping.rowOf(place.y()) - at.y()) <= reach;
}

PlaceSide sideOf(const PlotMapping& mapping, const QPointF& place, bool isLine)
{
    const QRect rect = mapping.frameRect();
    const double column = mapping.columnOf(place.x());
    if (column < rect.left())
        return PlaceSide::Left;
    if (!(column <= rect.right()))
        return PlaceSide::Right;
    const double row = mapping.rowOf(place.y());
    if (isLine || (row >= rect.top() && row <= rect.bottom()))
        return PlaceSide::Inside;
    return row < rect.top() ? PlaceSide::Above : PlaceSide::Below;
}

} // namespace tarnis
