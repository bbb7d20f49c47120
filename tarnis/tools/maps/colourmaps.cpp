#include "tarnis/tools/colourmaps.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/plotaccess_p.h"

#include <QApplication>
#include <QCoreApplication>

#include <array>
#include <cmath>
#include <optional>

namespace tarnis {

namespace {

constexpr const char* context = "tarnis::ColourMaps";

struct Entry {
    const char* name;
    const char* title;
};

/// In the order of TableName, then of FivePoints.
constexpr std::array<Entry, tableCount + fivePointsCount> entries { {
    { "viridis", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Viridis") },
    { "cividis", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Cividis (safe for colour-blind users)") },
    { "magma", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Magma") },
    { "inferno", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Inferno") },
    { "turbo", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Turbo") },
    { "greys", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Greys") },
    { "diverging", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Diverging, blue to red") },
    { "rainbow1", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Five points: rainbow from black") },
    { "rainbow2", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Five points: rainbow from magenta") },
    { "grayscale", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Five points: greys") },
    { "blueredgreen", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Five points: blue, red, green") },
    { "redwhiteblue", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Five points: red, white, blue") },
    { "cyanmagenta", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Five points: cyan, magenta") },
    { "yellowhot", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Five points: black, red, yellow, white") },
    { "blue", QT_TRANSLATE_NOOP("tarnis::ColourMaps", "Five points: black, blue, white") },
} };

std::optional<std::size_t> indexOf(const QString& name)
{
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (name == QLatin1String(entries[i].name))
            return i;
    }
    return std::nullopt;
}

bool isTable(std::size_t index)
{
    return index < tableCount;
}

const ColourTable& tableAt(std::size_t index)
{
    return colorTable(static_cast<TableName>(index));
}

ScaleColours pointsAt(std::size_t index)
{
    return fivePoints(static_cast<FivePoints>(index - tableCount));
}

ColourScale scaleAt(std::size_t index)
{
    if (isTable(index))
        return { 0.0, 1.0, ScaleCurve::Linear, tableAt(index) };
    return { 0.0, 1.0, ScaleCurve::Linear, pointsAt(index) };
}

void refresh(XY2DGraphWidget& map)
{
    PlotAccess::showColours(map);
    map.refreshPixmap();
}

} // namespace

QStringList ColourMaps::names()
{
    QStringList names;
    for (const Entry& entry : entries)
        names.append(QString::fromLatin1(entry.name));
    return names;
}

QString ColourMaps::title(const QString& name)
{
    const std::optional<std::size_t> index = indexOf(name);
    return index ? QCoreApplication::translate(context, entries[*index].title) : QString();
}

QColor ColourMaps::colour(const QString& name, double share)
{
    const std::optional<std::size_t> index = indexOf(name);
    return index ? scaleAt(*index).colour(share) : QColor();
}

QImage ColourMaps::preview(const QString& name, const QSize& size)
{
    const std::optional<std::size_t> index = indexOf(name);
    if (!index || size.isEmpty())
        return {};
    const ColourScale scale = scaleAt(*index);
    QImage image(size, QImage::Format_RGB32);
    for (int x = 0; x < size.width(); ++x) {
        const QRgb pixel = scale.pixel((x + 0.5) / size.width());
        for (int y = 0; y < size.height(); ++y)
            image.setPixel(x, y, pixel);
    }
    return image;
}

QString ColourMaps::current(const XY2DGraphWidget& map)
{
    const MapColouring* const chosen = PlotAccess::colouring(map);
    const ColourTable* const table = tableInUse(chosen);
    const ScaleColours colors = chosen != nullptr && chosen->colors ? *chosen->colors : PlotAccess::sharedColours();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const bool isSame =
            table != nullptr ? isTable(i) && table == &tableAt(i) : !isTable(i) && colors == pointsAt(i);
        if (isSame)
            return QString::fromLatin1(entries[i].name);
    }
    return {};
}

bool ColourMaps::apply(XY2DGraphWidget& map, const QString& name)
{
    const std::optional<std::size_t> index = indexOf(name);
    if (!index)
        return false;
    MapColouring& chosen = PlotAccess::colouring(map);
    chosen.table = isTable(*index) ? &tableAt(*index) : nullptr;
    chosen.colors = isTable(*index) ? std::nullopt : std::optional<ScaleColours>(pointsAt(*index));
    refresh(map);
    return true;
}

bool ColourMaps::applyToAll(const QString& name)
{
    const std::optional<std::size_t> index = indexOf(name);
    if (!index)
        return false;
    setSharedColourTable(isTable(*index) ? &tableAt(*index) : nullptr);
    if (!isTable(*index))
        PlotAccess::setSharedColours(pointsAt(*index));
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* const widget : widgets) {
        auto* const map = qobject_cast<XY2DGraphWidget*>(widget);
        if (map == nullptr)
            continue;
        if (PlotAccess::colouring(std::as_const(*map)) != nullptr) {
            MapColouring& chosen = PlotAccess::colouring(*map);
            chosen.table = nullptr;
            chosen.colors.reset();
        }
        refresh(*map);
    }
    return true;
}

} // namespace tarnis
