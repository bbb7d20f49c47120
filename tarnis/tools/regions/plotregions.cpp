#include "tarnis/tools/plotregions.h"

#include "tarnis/tools/regions/plotregions_p.h"

#include "tarnis/plots/xy2dgraphwidget.h"
#include "tarnis/tools/base/toolaction_p.h"

#include <QJsonDocument>
#include <QPainter>

#include <algorithm>

namespace tarnis {

namespace {

constexpr int regionsZOrder = 10;

void drawBand(QPainter& painter, const IconInk& ink)
{
    painter.fillRect(QRectF(5.0, 2.0, 6.0, 12.0), ink.accent);
    painter.drawLine(QPointF(5.0, 1.5), QPointF(5.0, 14.5));
    painter.drawLine(QPointF(11.0, 1.5), QPointF(11.0, 14.5));
}

void drawRowBand(QPainter& painter, const IconInk& ink)
{
    painter.fillRect(QRectF(2.0, 5.0, 12.0, 6.0), ink.accent);
    painter.drawLine(QPointF(1.5, 5.0), QPointF(14.5, 5.0));
    painter.drawLine(QPointF(1.5, 11.0), QPointF(14.5, 11.0));
}

void drawBox(QPainter& painter, const IconInk& ink)
{
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawRect(QRectF(2.5, 4.0, 11.0, 8.0));
}

void drawOval(QPainter& painter, const IconInk& ink)
{
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawEllipse(QRectF(2.0, 4.0, 12.0, 8.0));
}

void drawCorners(QPainter& painter, const IconInk& ink)
{
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawPolygon(QPolygonF { { 3.0, 12.5 }, { 2.0, 5.0 }, { 8.5, 2.0 }, { 13.5, 7.0 }, { 11.0, 13.0 } });
}

void drawRemoval(QPainter& painter, const IconInk& ink)
{
    painter.drawRect(QRectF(2.0, 3.0, 9.0, 10.0));
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawLine(QPointF(8.0, 7.0), QPointF(14.5, 14.0));
    painter.drawLine(QPointF(14.5, 7.0), QPointF(8.0, 14.0));
}

QString noSelection()
{
    return PlotRegions::tr("No region is selected. Click one first.");
}

} // namespace

QString PlotRegions::Internals::freeName() const
{
    for (int number = 1;; ++number) {
        QString name = PlotRegions::tr("Region %1").arg(number);
        if (std::none_of(regions.begin(), regions.end(), [&](const PlotRegion& region) { return region.name == name; }))
            return name;
    }
}

PlotRegions::PlotRegions(XYGraphWidget* plot)
    : InteractiveTool(plot, KeyboardFocus)
    , PlotOverlay(plot, regionsZOrder)
    , m_data(std::make_unique<Internals>())
{
    makeActions();
}

PlotRegions::~PlotRegions() = default;

void PlotRegions::makeActions()
{
    const auto add = [this](const char* name, ActionText text, IconDrawing drawing, PlotRegion::Kind kind) {
        auto* const action = new ToolAction(this, name, text, drawing);
        connect(action, &QAction::triggered, this, [this, kind] { draw(kind); });
        m_data->actions << action;
    };
    using Kind = PlotRegion::Kind;
    add(
        "regionX", [] { return PlotRegions::tr("Draw a Range of X"); }, drawBand, Kind::RangeX);
    if (qobject_cast<XY2DGraphWidget*>(plot()) != nullptr) {
        add(
            "regionY", [] { return PlotRegions::tr("Draw a Range of Y"); }, drawRowBand, Kind::RangeY);
        add(
            "regionRectangle", [] { return PlotRegions::tr("Draw a Rectangle"); }, drawBox, Kind::Rectangle);
        add(
            "regionEllipse", [] { return PlotRegions::tr("Draw an Ellipse"); }, drawOval, Kind::Ellipse);
        add(
            "regionPolygon", [] { return PlotRegions::tr("Draw a Polygon"); }, drawCorners, Kind::Polygon);
    }
    auto* const removal = new ToolAction(
        this, "regionRemove", [] { return PlotRegions::tr("Remove the Region"); }, drawRemoval);
    removal->showKeys({ Qt::Key_Delete });
    removal->setUsable(false, noSelection);
    connect(removal, &QAction::triggered, this, &PlotRegions::removeSelected);
    m_data->actions << removal;
    m_data->removeAction = removal;
}

QList<QAction*> PlotRegions::actions() const
{
    return m_data->actions;
}

const QList<PlotRegion>& PlotRegions::regions() const
{
    return m_data->regions;
}

bool PlotRegions::fits(const PlotRegion& region) const
{
    return region.isValid() && (!region.isForMapsOnly() || qobject_cast<XY2DGraphWidget*>(plot()) != nullptr);
}

void PlotRegions::setRegions(const QList<PlotRegion>& regions)
{
    cancel();
    select(-1);
    m_data->regions.clear();
    for (const PlotRegion& region : regions) {
        if (fits(region))
            m_data->regions << region;
    }
    updateOverlay();
    Q_EMIT regionsChanged();
}

int PlotRegions::add(PlotRegion region)
{
    if (!fits(region))
        return -1;
    if (region.name.isEmpty())
        region.name = m_data->freeName();
    m_data->regions << region;
    updateOverlay();
    Q_EMIT regionsChanged();
    return static_cast<int>(m_data->regions.size()) - 1;
}

void PlotRegions::replace(int index, const PlotRegion& region)
{
    if (index < 0 || index >= m_data->regions.size() || !fits(region) || m_data->regions.at(index) == region)
        return;
    m_data->regions[index] = region;
    updateOverlay();
    Q_EMIT regionsChanged();
}

void PlotRegions::remove(int index)
{
    if (index < 0 || index >= m_data->regions.size())
        return;
    m_data->handle.reset();
    m_data->regions.removeAt(index);
    const int selection = m_data->selected;
    select(selection == index ? -1 : selection > index ? selection - 1 : selection);
    updateOverlay();
    Q_EMIT regionsChanged();
}

int PlotRegions::selected() const
{
    return m_data->selected;
}

void PlotRegions::select(int index)
{
    const int valid = index >= 0 && index < m_data->regions.size() ? index : -1;
    if (valid == m_data->selected)
        return;
    m_data->selected = valid;
    setUsable(m_data->removeAction, valid >= 0, noSelection);
    updateOverlay();
    Q_EMIT selectionChanged(valid);
}

void PlotRegions::removeSelected()
{
    remove(m_data->selected);
}

QJsonObject PlotRegions::saveState() const
{
    return m_data->regions.isEmpty() ? QJsonObject() : QJsonDocument::fromJson(regionsToJson(m_data->regions)).object();
}

void PlotRegions::restoreState(const QJsonObject& state)
{
    const PlotRegionsResult read = regionsFromJson(QJsonDocument(state).toJson());
    if (read.error.isEmpty())
        setRegions(read.regions);
}

} // namespace tarnis
