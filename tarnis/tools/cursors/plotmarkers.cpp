#include "tarnis/tools/plotmarkers.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/xy2dgraphwidget.h"
#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotpositions_p.h"
#include "tarnis/tools/base/plotreadout_p.h"

#include <QAction>
#include <QPainter>
#include <QPointer>

namespace tarnis {

namespace {

constexpr int markersZOrder = 40;
constexpr int letters = 26;

/// A to Z, AA to ZZ and so on.
QString letterName(int number)
{
    QString name;
    for (int rest = number + 1; rest > 0; rest = (rest - 1) / letters)
        name.prepend(QChar('A' + (rest - 1) % letters));
    return name;
}

} // namespace

PlotMarkers::PlotMarkers(XYGraphWidget* plot)
    : InteractiveTool(plot, MouseMoves | KeyboardFocus)
    , PlotOverlay(plot, markersZOrder)
{
    makeActions();
}

PlotMarkers::~PlotMarkers() = default;

bool PlotMarkers::isOn() const
{
    return m_isOn;
}

QList<PlotMarker> PlotMarkers::markers() const
{
    return m_markers;
}

int PlotMarkers::selected() const
{
    return m_selected;
}

bool PlotMarkers::isMap() const
{
    return qobject_cast<const XY2DGraphWidget*>(plot()) != nullptr;
}

int PlotMarkers::indexOf(const QString& name) const
{
    for (int i = 0; i < m_markers.size(); ++i) {
        if (m_markers.at(i).name == name)
            return i;
    }
    return -1;
}

QString PlotMarkers::freeName() const
{
    int number = 0;
    while (indexOf(letterName(number)) >= 0)
        ++number;
    return letterName(number);
}

QString PlotMarkers::add(const QPointF& position)
{
    if (plot() == nullptr || !isFinitePlace(position) || m_markers.size() >= maxMarkers)
        return {};
    const PlotMarker marker { freeName(), snappedToBins(PlotMapping::of(*plot()), position) };
    m_markers.append(marker);
    updateActions();
    updateOverlay();
    Q_EMIT markersChanged();
    return marker.name;
}

bool PlotMarkers::move(const QString& name, const QPointF& position)
{
    const int index = indexOf(name);
    if (plot() == nullptr || index < 0 || !isFinitePlace(position))
        return false;
    place(index, snappedToBins(PlotMapping::of(*plot()), position));
    return true;
}

void PlotMarkers::place(int index, const QPointF& position)
{
    if (m_markers.at(index).position == position)
        return;
    m_markers[index].position = position;
    renewArea();
    Q_EMIT markersChanged();
}

bool PlotMarkers::rename(const QString& name, const QString& newName)
{
    const int index = indexOf(name);
    const QString trimmed = newName.simplified();
    if (index < 0 || trimmed.isEmpty() || (trimmed != name && indexOf(trimmed) >= 0))
        return false;
    m_markers[index].name = trimmed;
    updateOverlay();
    Q_EMIT markersChanged();
    return true;
}

bool PlotMarkers::remove(const QString& name)
{
    const int index = indexOf(name);
    if (index < 0)
        return false;
    m_dragged = -1;
    m_markers.removeAt(index);
    updateOverlay();
    const QPointer<PlotMarkers> self(this);
    select(-1); // slots may delete the tool
    if (!self.isNull()) {
        updateActions();
        Q_EMIT markersChanged();
    }
    return true;
}

void PlotMarkers::setMarkers(const QList<PlotMarker>& markers)
{
    m_dragged = -1;
    const QPointer<PlotMarkers> self(this);
    select(-1);
    if (self.isNull())
        return;
    m_markers.clear();
    for (const PlotMarker& marker : markers) {
        const QString name = marker.name.simplified();
        if (!name.isEmpty() && indexOf(name) < 0 && isFinitePlace(marker.position) && m_markers.size() < maxMarkers)
            m_markers.append({ name, marker.position });
    }
    updateActions();
    updateOverlay();
    Q_EMIT markersChanged();
}

void PlotMarkers::setOn(bool on)
{
    if (on == m_isOn)
        return;
    const QPointer<PlotMarkers> self(this);
    endDrag(true); // slots may delete the tool
    if (!self.isNull())
        select(-1);
    if (self.isNull())
        return;
    m_isOn = on;
    setNeeds(on ? MouseMoves | KeyboardFocus : Needs(Nothing));
    updateActions();
    updateOverlay();
    Q_EMIT onChanged(on);
}

void PlotMarkers::select(int index)
{
    const int valid = index >= 0 && index < m_markers.size() ? index : -1;
    if (valid == m_selected)
        return;
    m_selected = valid;
    updateActions();
    updateOverlay();
    Q_EMIT selectionChanged(valid);
}

void PlotMarkers::addHere()
{
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (!mapping.isValid())
        return;
    add(mapping.valueAt(m_isOver ? m_pointer : QRectF(mapping.plotRect()).center()));
}

void PlotMarkers::removeSelected()
{
    if (m_selected >= 0)
        remove(QString(m_markers.at(m_selected).name));
}

void PlotMarkers::clear()
{
    if (!m_markers.isEmpty())
        setMarkers({});
}

void PlotMarkers::copy() const
{
    copyTable(table());
}

QString PlotMarkers::table() const
{
    if (plot() == nullptr || m_markers.isEmpty())
        return {};
    const PlotMapping mapping = PlotMapping::of(*plot());
    const QString nameX = PlotAccess::nameX(*plot());
    const QString nameY = PlotAccess::nameY(*plot());
    QStringList header { QStringLiteral("marker"), nameX.isEmpty() ? QStringLiteral("x") : nameX };
    header += binHeaders(nameX, QStringLiteral("bin"));
    if (isMap()) {
        header << (nameY.isEmpty() ? QStringLiteral("y") : nameY);
        header += binHeaders(nameY, QStringLiteral("row"));
    }
    header += valueHeaders(*plot());
    QString text = header.join(u'\t') + u'\n';
    const auto appendBin = [](QStringList& line, double at, qsizetype bin, AxisRange edges) {
        line << exactNumber(at);
        if (bin < 0)
            line << QString() << QString() << QString();
        else
            line << QString::number(bin) << exactNumber(edges.min) << exactNumber(edges.max);
    };
    for (const PlotMarker& marker : m_markers) {
        const PlotReadOut read = readOutAt(*plot(), mapping, marker.position.x(), marker.position.y());
        QStringList line { marker.name };
        appendBin(line, PlotAccess::namedX(*plot(), marker.position.x()), read.column, read.namedX);
        if (isMap())
            appendBin(line, marker.position.y(), read.row, read.edgesY);
        for (const ReadOutValue& value : read.values)
            line << (value.value ? exactNumber(*value.value) : QString());
        while (line.size() < header.size())
            line << QString();
        text += line.join(u'\t') + u'\n';
    }
    return text;
}

void PlotMarkers::plotChanged(Changes /*changes*/)
{
    // Positions are values; the next paint computes their pixels.
}

} // namespace tarnis
