// Named positions in a plot.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QList>
#include <QPointF>
#include <QString>

#include <vector>

QT_BEGIN_NAMESPACE
class QFont;
QT_END_NAMESPACE

namespace tarnis {

/// A named position in a plot. Two markers are equal if both members are.
struct PlotMarker {
    QString name; ///< unique in its plot
    QPointF position; ///< in units of the axes; curves only use x

    friend bool operator==(const PlotMarker&, const PlotMarker&) = default; ///< exact
};

/// Named markers at values of the axes: vertical lines on curves, crosses on maps. They keep their values when data
/// arrive and when the view changes, and appear in saved pictures. A marker outside of the view is an arrow with its
/// name at the border.
///
/// A left drag moves a marker from bin to bin, while the tool is on. While the plot has the focus, M sets a marker at
/// the pointer. A click selects a marker, and Shift+M the next one: arrows then move it by a bin, with Shift by ten,
/// Delete removes it, F2 or a double click renames it, and Ctrl+C copies the table of all markers. Escape reverts a
/// drag, or clears the selection.
class TARNIS_EXPORT PlotMarkers : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    static constexpr qsizetype maxMarkers = 200; ///< maximum number of markers

    /// Attaches to the plot, which owns the tool. Initially there are no markers, and the tool is on.
    explicit PlotMarkers(XYGraphWidget* plot);
    ~PlotMarkers() override;

    bool isOn() const; ///< whether markers can be edited with mouse and keys; otherwise they are only shown
    QList<PlotMarker> markers() const; ///< in the order of their creation
    int selected() const; ///< index of the selected marker, -1 without one
    /// Header and one line for each marker, separated by tabs, with all digits: name, x, bin and its edges, y on maps,
    /// and the values there. Empty without markers.
    QString table() const;

    /// Adds a marker and returns its name, the next free one of A to Z, AA, AB and so on. A position inside of the data
    /// snaps to the middle of its bin. Returns an empty name and changes nothing for a non-finite position or beyond
    /// maxMarkers.
    QString add(const QPointF& position);
    /// Return false and change nothing if there is no such marker; rename() also if the new name is empty or in use,
    /// move() if the position is not finite. @{
    bool move(const QString& name, const QPointF& position);
    bool rename(const QString& name, const QString& newName);
    bool remove(const QString& name);
    /// @}

    QList<QAction*> actions() const override;
    QList<QRect> overlayBoxes() const override; ///< the names, also those at the border
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    void setOn(bool on); ///< see isOn(); off clears the selection
    void setMarkers(const QList<tarnis::PlotMarker>& markers); ///< replaces all markers; ignores invalid ones
    void select(int index); ///< -1 clears the selection
    void addHere(); ///< adds a marker at the pointer, or in the middle of the view if the pointer is elsewhere
    void removeSelected(); ///< does nothing without a selection
    void clear(); ///< removes all
    void copy() const; ///< copies the table to the clipboard; does nothing without markers

Q_SIGNALS:
    void markersChanged(); ///< names or positions of markers() have changed; also emitted during a drag
    void selectionChanged(int index); ///< see selected()
    void onChanged(bool on); ///< see isOn()

protected:
    bool handlePress(const QMouseEvent& event) override;
    bool handleMove(const QMouseEvent& event) override;
    bool handleRelease(const QMouseEvent& event) override;
    bool handleDoubleClick(const QMouseEvent& event) override;
    bool handleKey(const QKeyEvent& event) override;
    bool claimsKey(const QKeyEvent& event) const override;
    void handleLeave() override;
    void handleHide() override;
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void updateActions();
    TARNIS_NO_EXPORT bool isMap() const;
    TARNIS_NO_EXPORT int markerAt(const PlotMapping& mapping, const QPointF& pixel) const;
    TARNIS_NO_EXPORT int indexOf(const QString& name) const;
    TARNIS_NO_EXPORT QString freeName() const;
    TARNIS_NO_EXPORT void place(int index, const QPointF& position);
    TARNIS_NO_EXPORT bool moveSelected(int key, int bins);
    TARNIS_NO_EXPORT void endDrag(bool cancel);
    TARNIS_NO_EXPORT void openEditor(int index);
    TARNIS_NO_EXPORT void paintMarker(QPainter& painter, const PlotMapping& mapping, int index) const;
    struct Name;
    TARNIS_NO_EXPORT Name nameOf(
        const PlotMapping& mapping, const QFont& font, int index, const QList<QRect>& taken) const;
    TARNIS_NO_EXPORT std::vector<Name> namesOf(const PlotMapping& mapping, const QFont& font) const;
    TARNIS_NO_EXPORT QRegion areaOf(const PlotMapping& mapping, const QRect& nameBox, int index) const;
    TARNIS_NO_EXPORT void renewArea();

    QList<PlotMarker> m_markers;
    bool m_isOn = true;
    int m_selected = -1;
    int m_dragged = -1;
    QPointF m_dragStart; // position of the marker in values
    QPointF m_pointer; // in pixels of the widget
    bool m_isOver = false; // the pointer is in the plot rectangle
    QAction* m_switch = nullptr;
    QAction* m_add = nullptr;
    QAction* m_remove = nullptr;
    QAction* m_copy = nullptr;
};

} // namespace tarnis

Q_DECLARE_METATYPE(tarnis::PlotMarker)
