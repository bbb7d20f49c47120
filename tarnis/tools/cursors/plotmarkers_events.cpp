// Mouse, keys, painting, actions and stored views of the markers.
#include "tarnis/tools/plotmarkers.h"

#include "tarnis/plots/labeleditor_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/base/labelplacement_p.h"
#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/plotpositions_p.h"
#include "tarnis/tools/base/plotreadout_p.h"
#include "tarnis/tools/base/toolaction_p.h"

#include <QJsonArray>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <cmath>
#include <utility>

namespace tarnis {

namespace {

constexpr int binsWithShift = 10;
constexpr double crossArm = 7.0;
constexpr double dotRadius = 3.0;
constexpr int labelRows = 3; // adjacent labels use different rows
const QColor markerColour(255, 176, 0);
const QColor selectedColour(255, 255, 255);

const QLatin1String onKey("on");
const QLatin1String markersKey("markers"); // [name, x, y]

void drawMarker(QPainter& painter, const IconInk& ink)
{
    painter.drawLine(QPointF(8.0, 6.5), QPointF(8.0, 14.5));
    painter.drawLine(QPointF(2.0, 14.5), QPointF(14.0, 14.5));
    painter.setBrush(ink.accent);
    painter.drawPolygon(QPolygonF { { 8.0, 1.5 }, { 14.0, 4.0 }, { 8.0, 6.5 } });
}

void drawAdd(QPainter& painter, const IconInk& ink)
{
    painter.drawLine(QPointF(5.5, 1.8), QPointF(5.5, 14.5));
    painter.setPen(QPen(ink.accent, 1.6));
    painter.drawLine(QPointF(11.0, 3.0), QPointF(11.0, 9.0));
    painter.drawLine(QPointF(8.0, 6.0), QPointF(14.0, 6.0));
}

void drawRemove(QPainter& painter, const IconInk& ink)
{
    painter.drawLine(QPointF(5.5, 1.8), QPointF(5.5, 14.5));
    painter.setPen(QPen(ink.accent, 1.6));
    painter.drawLine(QPointF(8.0, 6.0), QPointF(14.0, 6.0));
}

void drawTable(QPainter& painter, const IconInk& ink)
{
    painter.drawRect(QRectF(2.0, 2.5, 12.0, 11.0));
    painter.drawLine(QPointF(6.0, 2.5), QPointF(6.0, 13.5));
    painter.setPen(QPen(ink.accent, 1.2));
    for (const double row : { 6.0, 9.8 })
        painter.drawLine(QPointF(2.0, row), QPointF(14.0, row));
}

/// Return and Escape return the keyboard to the plot. Unhandled, Escape would end the selection, switch a tool off or
/// close a dialog around the plot.
class NameEditor : public LabelEditor {
public:
    using LabelEditor::LabelEditor;

    bool event(QEvent* event) override
    {
        const bool isOverride = event->type() == QEvent::ShortcutOverride;
        if (isOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
            event->accept();
        return LabelEditor::event(event);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        const int key = event->key();
        const QPointer<NameEditor> self(this); // a slot may delete the plot
        if (key == Qt::Key_Escape)
            event->accept();
        else
            LabelEditor::keyPressEvent(event);
        if (!self.isNull() && (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter))
            parentWidget()->setFocus(Qt::OtherFocusReason); // closes the editor
    }

    /// QLineEdit reports no end of editing while the text is unchanged.
    void focusOutEvent(QFocusEvent* event) override
    {
        const QPointer<NameEditor> self(this); // a slot may delete the plot
        const bool isPopup = event->reason() == Qt::PopupFocusReason; // its own menu
        LabelEditor::focusOutEvent(event);
        if (!self.isNull() && !isPopup)
            deleteLater();
    }
};

} // namespace

int PlotMarkers::markerAt(const PlotMapping& mapping, const QPointF& pixel) const
{
    for (int i = static_cast<int>(m_markers.size()) - 1; i >= 0; --i) { // the last drawn is on top
        if (isHit(mapping, m_markers.at(i).position, pixel, !isMap()))
            return i;
    }
    return -1;
}

bool PlotMarkers::handlePress(const QMouseEvent& event)
{
    if (!m_isOn || m_dragged >= 0)
        return m_dragged >= 0;
    if (event.button() != Qt::LeftButton)
        return false;
    const int hit = markerAt(PlotMapping::of(*plot()), event.position());
    const QPointer<PlotMarkers> self(this);
    select(hit); // a slot may remove markers, or delete the tool
    if (self.isNull() || hit < 0 || hit >= m_markers.size())
        return hit >= 0;
    plot()->setFocus(Qt::MouseFocusReason);
    m_dragged = hit;
    m_dragStart = m_markers.at(hit).position;
    return true;
}

bool PlotMarkers::handleMove(const QMouseEvent& event)
{
    if (!m_isOn)
        return false;
    const PlotMapping mapping = PlotMapping::of(*plot());
    m_pointer = event.position();
    m_isOver = isOverPlot(mapping, m_pointer);
    if (m_dragged >= 0) {
        if (mapping.isValid())
            place(m_dragged, snappedToBins(mapping, mapping.valueAt(pixelInPlot(mapping, m_pointer))));
        return true;
    }
    if (event.buttons() == Qt::NoButton && markerAt(mapping, m_pointer) >= 0)
        showCursor(isMap() ? Qt::SizeAllCursor : Qt::SplitHCursor);
    else
        restoreCursor();
    return false;
}

bool PlotMarkers::handleRelease(const QMouseEvent& event)
{
    if (m_dragged < 0)
        return false;
    if (event.button() == Qt::LeftButton)
        endDrag(false);
    return true;
}

bool PlotMarkers::handleDoubleClick(const QMouseEvent& event)
{
    if (!m_isOn || m_dragged >= 0)
        return m_dragged >= 0;
    const int hit = event.button() == Qt::LeftButton ? markerAt(PlotMapping::of(*plot()), event.position()) : -1;
    if (hit < 0)
        return false;
    openEditor(hit);
    return true;
}

void PlotMarkers::handleLeave()
{
    m_isOver = false;
    if (m_dragged < 0)
        restoreCursor();
}

void PlotMarkers::handleHide()
{
    endDrag(true);
}

bool PlotMarkers::claimsKey(const QKeyEvent& event) const
{
    return m_isOn && m_selected >= 0
        && (event.key() == Qt::Key_Escape || event.key() == Qt::Key_Delete || event.key() == Qt::Key_F2
            || event.matches(QKeySequence::Copy));
}

void PlotMarkers::endDrag(bool cancel)
{
    if (m_dragged < 0)
        return;
    const int dragged = std::exchange(m_dragged, -1);
    restoreCursor();
    if (cancel)
        place(dragged, m_dragStart);
}

bool PlotMarkers::moveSelected(int key, int bins)
{
    const bool isUpright = key == Qt::Key_Up || key == Qt::Key_Down;
    if (m_selected < 0 || m_dragged >= 0 || (isUpright && !isMap()))
        return false;
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (!mapping.isValid())
        return false;
    const int step = key == Qt::Key_Right || key == Qt::Key_Up ? bins : -bins;
    const QPointF target =
        movedByBins(mapping, m_markers.at(m_selected).position, isUpright ? 0 : step, isUpright ? step : 0);
    if (isFinitePlace(target))
        place(m_selected, target);
    return true;
}

bool PlotMarkers::handleKey(const QKeyEvent& event)
{
    if (!m_isOn)
        return false;
    const int key = event.key();
    const Qt::KeyboardModifiers pressed = event.modifiers() & ~Qt::KeypadModifier;
    if (key == Qt::Key_M && pressed == Qt::NoModifier) {
        addHere();
        return true;
    }
    if (key == Qt::Key_M && pressed == Qt::ShiftModifier && !m_markers.isEmpty()) {
        select((m_selected + 1) % static_cast<int>(m_markers.size()));
        return true;
    }
    if (m_selected < 0)
        return false;
    if (event.matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    const bool isArrow = key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
    if (isArrow && (pressed == Qt::NoModifier || pressed == Qt::ShiftModifier))
        return moveSelected(key, pressed == Qt::ShiftModifier ? binsWithShift : 1);
    if (pressed != Qt::NoModifier)
        return false;
    switch (key) {
    case Qt::Key_Delete:
        removeSelected();
        return true;
    case Qt::Key_F2:
        openEditor(m_selected);
        return true;
    case Qt::Key_Escape:
        if (m_dragged >= 0)
            endDrag(true);
        else
            select(-1);
        return true;
    default:
        return false;
    }
}

/// A name beside its marker, or at the border of the view.
struct PlotMarkers::Name {
    LabelLayout label;
    QRect box;
    LabelStyle style;
};

/// Repaints where the markers were and where they are.
void PlotMarkers::renewArea()
{
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    QRegion area;
    const std::vector<Name> names = mapping.isValid() ? namesOf(mapping, plot()->font()) : std::vector<Name>();
    for (std::size_t i = 0; i < names.size(); ++i)
        area += areaOf(mapping, names[i].box, static_cast<int>(i));
    updateOverlayArea(area);
}

/// What paintMarker() and paintOverlay() draw.
QRegion PlotMarkers::areaOf(const PlotMapping& mapping, const QRect& nameBox, int index) const
{
    constexpr int dotReach = static_cast<int>(dotRadius) + 2; // more than that of a line
    const QRect rect = mapping.frameRect();
    const QPointF position = m_markers.at(index).position;
    QRegion area = nameBox.adjusted(-1, -1, 1, 1);
    if (sideOf(mapping, position, !isMap()) != PlaceSide::Inside)
        return area;
    const int column = static_cast<int>(std::round(mapping.columnOf(position.x())));
    if (!isMap())
        return area + (QRect(column - dotReach, rect.top(), 2 * dotReach + 1, rect.height()) & rect);
    const int arm = static_cast<int>(crossArm) + 3; // with the border
    const QPoint middle(column, static_cast<int>(std::round(mapping.rowOf(position.y()))));
    return area + (QRect(middle - QPoint(arm, arm), QSize(2 * arm + 1, 2 * arm + 1)) & rect);
}

void PlotMarkers::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    QRegion area;
    for (int i = 0; i < m_markers.size(); ++i)
        paintMarker(painter, mapping, i);
    const std::vector<Name> names = namesOf(mapping, painter.font());
    for (std::size_t i = 0; i < names.size(); ++i) { // labels are drawn over all lines
        const Name& name = names[i];
        area += areaOf(mapping, name.box, static_cast<int>(i));
        name.label.paint(painter, name.box.topLeft(), isForFile(painter, *plot()) ? LabelStyle::Plain : name.style);
    }
    noteDrawn(painter, area);
}

void PlotMarkers::paintMarker(QPainter& painter, const PlotMapping& mapping, int index) const
{
    const QPointF position = m_markers.at(index).position;
    if (sideOf(mapping, position, !isMap()) != PlaceSide::Inside)
        return;
    const QRect rect = mapping.frameRect();
    const double column = std::round(mapping.columnOf(position.x()));
    const bool isHighlighted = index == m_selected && !isForFile(painter, *plot());
    const QColor colour = colourOverData(*plot(), isHighlighted ? selectedColour : markerColour);
    painter.save();
    painter.setClipRect(rect);
    if (isMap()) {
        const double row = std::round(mapping.rowOf(position.y()));
        paintLine(painter, { column - crossArm, row }, { column + crossArm, row }, colour);
        paintLine(painter, { column, row - crossArm }, { column, row + crossArm }, colour);
    } else {
        paintLine(painter, { column, double(rect.top()) }, { column, double(rect.bottom()) }, colour);
        const PlotReadOut read = readOutAt(*plot(), mapping, position.x(), position.y());
        painter.setRenderHint(QPainter::Antialiasing);
        for (const ReadOutValue& value : read.values) {
            if (!value.value || !std::isfinite(*value.value))
                continue;
            painter.setPen(QPen(Qt::white, 1.0));
            painter.setBrush(value.colour);
            painter.drawEllipse(QPointF(column, limitedCoordinate(mapping.rowOf(*value.value))), dotRadius, dotRadius);
        }
    }
    painter.restore();
}

PlotMarkers::Name PlotMarkers::nameOf(
    const PlotMapping& mapping, const QFont& font, int index, const QList<QRect>& taken) const
{
    const PlotMarker& marker = m_markers.at(index);
    const QRect rect = mapping.frameRect();
    const int lineHeight = labelSize(QFontMetrics(font), marker.name).height() + 1;
    const int top = rect.top() + 2 + (index % labelRows) * lineHeight;
    const int column = static_cast<int>(limitedCoordinate(mapping.columnOf(marker.position.x())));
    const int row = static_cast<int>(limitedCoordinate(mapping.rowOf(marker.position.y())));
    const int inRow = isMap() ? std::clamp(row, rect.top() + lineHeight, rect.bottom() - lineHeight) : top;
    const auto labelled = [&](const QString& text, const QPoint& at, Qt::Alignment alignment) {
        LabelLayout label(text, font);
        const QRect frame = labelFrame(label.size(), at, alignment);
        const bool isAbove = alignment.testFlag(Qt::AlignBottom);
        const QRect box = movedPast(frame, rect, taken, isAbove ? Qt::TopEdge : Qt::BottomEdge);
        return Name { std::move(label), box, index == m_selected ? LabelStyle::Selected : LabelStyle::Plain };
    };
    switch (sideOf(mapping, marker.position, !isMap())) {
    case PlaceSide::Left:
        return labelled(QStringLiteral("◂ ") + marker.name, { rect.left() + 2, inRow }, Qt::AlignLeft);
    case PlaceSide::Right:
        return labelled(marker.name + QStringLiteral(" ▸"), { rect.right() - 2, inRow }, Qt::AlignRight);
    case PlaceSide::Above:
        return labelled(QStringLiteral("▴ ") + marker.name, { column, rect.top() + 2 }, Qt::AlignHCenter);
    case PlaceSide::Below:
        return labelled(
            QStringLiteral("▾ ") + marker.name, { column, rect.bottom() - 2 }, Qt::AlignHCenter | Qt::AlignBottom);
    default:
        break;
    }
    if (isMap())
        return labelled(marker.name, { column + 6, row - 4 }, Qt::AlignLeft | Qt::AlignBottom);
    const auto beside = [&](const QString& text) {
        const bool isNearRight = column + 4 + labelSize(QFontMetrics(font), text).width() > rect.right();
        return labelled(
            text, { isNearRight ? column - 4 : column + 4, top }, isNearRight ? Qt::AlignRight : Qt::AlignLeft);
    };
    Name name = beside(
        QStringLiteral("%1  %2").arg(marker.name, readOutNumber(PlotAccess::namedX(*plot(), marker.position.x()))));
    const bool isFree = rect.contains(name.box) && !meetsAny(name.box, taken);
    return isFree ? std::move(name) : beside(marker.name); // the number gives way where names are dense
}

/// Each name is beside the boxes in the corners, the names of regions and those of earlier markers.
std::vector<PlotMarkers::Name> PlotMarkers::namesOf(const PlotMapping& mapping, const QFont& font) const
{
    QList<QRect> taken = cornerBoxesOf(*plot()) + nameBoxesOf(*plot());
    std::vector<Name> names;
    names.reserve(static_cast<std::size_t>(m_markers.size()));
    for (int i = 0; i < m_markers.size(); ++i) {
        names.push_back(nameOf(mapping, font, i, taken));
        taken.append(names.back().box);
    }
    return names;
}

void PlotMarkers::openEditor(int index)
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (!mapping.isValid())
        return;
    const QString name = m_markers.at(index).name;
    auto* const editor = new NameEditor(name, plot());
    const QRectF box = namesOf(mapping, plot()->font())[static_cast<std::size_t>(index)].box;
    const QPointF middle = (mapping.fromFrame(box.topLeft()) + mapping.fromFrame(box.bottomRight())) / 2.0;
    QRect label(QPoint(), QSize(static_cast<int>(box.width()), editor->sizeHint().height()));
    label.moveCenter(middle.toPoint());
    editor->setGeometry(editorRect(label, false, plot()->rect()));
    editor->setAccessibleName(tr("Name of the marker"));
    editor->selectAll();
    connect(editor, &QLineEdit::returnPressed, this, [this, editor, name] { rename(name, editor->text()); });
    editor->show();
    editor->setFocus();
}

QList<QRect> PlotMarkers::overlayBoxes() const
{
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    QList<QRect> boxes;
    const std::vector<Name> names = mapping.isValid() ? namesOf(mapping, plot()->font()) : std::vector<Name>();
    for (const Name& name : names)
        boxes.append(name.box);
    return boxes;
}

void PlotMarkers::makeActions()
{
    auto* const onAction = new ToolAction(
        this, "markers", [] { return PlotMarkers::tr("Move Markers"); }, drawMarker);
    onAction->setCheckable(true);
    connect(onAction, &QAction::triggered, this, &PlotMarkers::setOn);
    auto* const addAction = new ToolAction(
        this, "addMarker", [] { return PlotMarkers::tr("Set a Marker"); }, drawAdd);
    addAction->showKeys({ Qt::Key_M });
    connect(addAction, &QAction::triggered, this, &PlotMarkers::addHere);
    auto* const removeAction = new ToolAction(
        this, "removeMarker", [] { return PlotMarkers::tr("Remove the Selected Marker"); }, drawRemove);
    removeAction->showKeys({ Qt::Key_Delete });
    connect(removeAction, &QAction::triggered, this, &PlotMarkers::removeSelected);
    auto* const copyAction = new ToolAction(
        this, "copyMarkers", [] { return PlotMarkers::tr("Copy the Table of Markers"); }, drawTable);
    connect(copyAction, &QAction::triggered, this, &PlotMarkers::copy);
    m_switch = onAction;
    m_add = addAction;
    m_remove = removeAction;
    m_copy = copyAction;
    updateActions();
}

void PlotMarkers::updateActions()
{
    m_switch->setChecked(m_isOn);
    setUsable(m_remove, m_selected >= 0, [] { return PlotMarkers::tr("No marker is selected. Click one first."); });
    setUsable(m_copy, !m_markers.isEmpty(), [] { return PlotMarkers::tr("There are no markers."); });
}

QList<QAction*> PlotMarkers::actions() const
{
    return { m_switch, m_add, m_remove, m_copy };
}

QString PlotMarkers::stateName() const
{
    return QStringLiteral("markers");
}

QJsonObject PlotMarkers::saveState() const
{
    QJsonArray list;
    for (const PlotMarker& marker : m_markers)
        list.append(QJsonArray { marker.name, marker.position.x(), marker.position.y() });
    return { { onKey, m_isOn }, { markersKey, list } };
}

void PlotMarkers::restoreState(const QJsonObject& state)
{
    const QPointer<PlotMarkers> self(this); // a slot may delete it
    setOn(state.value(onKey).toBool(m_isOn));
    if (self.isNull() || !state.value(markersKey).isArray())
        return;
    QList<PlotMarker> restored;
    const QJsonArray list = state.value(markersKey).toArray();
    for (const auto& entry : list) {
        const QJsonArray marker = entry.toArray();
        if (marker.size() == 3 && marker.at(1).isDouble() && marker.at(2).isDouble())
            restored.append({ marker.at(0).toString(), { marker.at(1).toDouble(), marker.at(2).toDouble() } });
    }
    setMarkers(restored);
}

} // namespace tarnis
