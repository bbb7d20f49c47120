// The data of a plot for its observers and overlays. Not allocated for a plot without any.
#pragma once

#include "tarnis/plots/axisrange.h"
#include "tarnis/plots/math/sampleblocks_p.h"
#include "tarnis/plots/plotobserver.h"

#include <QCursor>
#include <QList>
#include <QObject>
#include <QPointF>
#include <QRect>
#include <QRegion>
#include <QStringList>
#include <QtNumeric>

#include <optional>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

class PlotOverlay;
class PlotStyling;

/// The view of an axis that a group of linked axes has set or followed.
struct LinkedView {
    bool isAuto = true;
    AxisRange range; ///< without a meaning if it is automatic
    quint64 serial = 0; ///< later changes of any plot have larger ones; 0: none

    bool isSame(const LinkedView& other) const { return isAuto == other.isAuto && (isAuto || range == other.range); }
};

/// Owned by the plot. Compares the plot's state with the last reported one and calls the observers from the event loop.
/// Also stores the input settings of the widget that tools have changed, and restores them with the last tool.
class PlotHooks : public QObject {
public:
    explicit PlotHooks(XYGraphWidget& plot);
    ~PlotHooks() override;

    /// The hooks of the plot, created if missing.
    static PlotHooks& of(XYGraphWidget& plot);
    static PlotHooks* existing(const XYGraphWidget& plot);

    void add(PlotObserver& observer);
    void remove(PlotObserver& observer);
    void add(PlotOverlay& overlay);
    void remove(PlotOverlay& overlay);

    /// Call it when the state may have changed; it is compared later, from the event loop.
    void touch();
    void touchData();
    void initialized(Qt::Orientation axis, AxisRange previous);
    /// Compares and calls the observers now.
    void deliver();

    /// Names of a plot of many series, by index. @{
    const QStringList& seriesNames() const { return m_seriesNames; }
    void setSeriesNames(const QStringList& names);
    /// @}

    /// The style attached last; null for the classic drawing. @{
    PlotStyling* styling() const { return m_stylings.isEmpty() ? nullptr : m_stylings.constLast(); }
    void add(PlotStyling& styling) { m_stylings.append(&styling); }
    void remove(PlotStyling& styling) { m_stylings.removeOne(&styling); }
    /// @}

    /// The last view that any group of linked axes has set or followed.
    LinkedView& linkedView(Qt::Orientation axis) { return axis == Qt::Horizontal ? m_linkedX : m_linkedY; }

    /// The name of positions on X, while that of X is the one of the second scale of setFuncX2Tick(), which labels and
    /// read-outs then show. @{
    const std::optional<QString>& positionName() const { return m_positionName; }
    void setPositionName(const std::optional<QString>& name) { m_positionName = name; }
    /// @}

    /// The value at the cross of a PlotCrosshair, and the values on the axes at crosses of linked plots; NaN without
    /// one. A change is passed to the observers. @{
    QPointF crosshair() const { return m_crosshair; }
    void moveCrosshair(const QPointF& value);
    double linkedCrosshair(Qt::Orientation axis) const { return along(m_linkedCrosshair, axis); }
    void moveLinkedCrosshair(Qt::Orientation axis, double value);
    /// @}
    static double along(const QPointF& point, Qt::Orientation axis)
    {
        return axis == Qt::Horizontal ? point.x() : point.y();
    }

    /// The size of the picture that overlays paint on, in frame coordinates: that of the widget, or during an export
    /// that of the file, which is set before and reset to an empty one. @{
    QSize pictureSize() const;
    void setPictureSize(QSize size) { m_pictureSize = size; }
    /// @}

    /// Of the samples that tools and styles read.
    SampleBlockCache& blocks() { return m_blocks; }

    bool hasOverlays() const { return !m_overlays.isEmpty(); }
    /// `saved` excludes overlays that are not saved. The painter uses frame coordinates.
    void paintOverlays(QPainter& painter, bool saved) const;
    /// As above, on the widget or on a copy of its cached picture, with the rotation of the plot.
    void paintOverlaysTurned(QPainter& painter, bool saved) const;
    /// Repaints parts of an upright widget at whole pixels: overlays that are known to draw elsewhere are left out.
    void paintOverlaysIn(QPainter& painter, const QRegion& parts);
    /// The parts that are repainted at present; empty for all of the widget. @{
    const QRegion& parts() const { return m_parts; }
    bool isPartial() const { return !m_parts.isEmpty(); }
    /// @}

    // Input settings that tools change; each acquire call needs one release call.
    void acquireTracking();
    void releaseTracking();
    void acquireFocus();
    void releaseFocus();
    void showCursor(const void* owner, const QCursor& cursor);
    void restoreCursor(const void* owner);

    /// A tool shows a read-out at the pointer; the plot's own tool tips are disabled. @{
    void acquireReadOut() { ++m_readOuts; }
    void releaseReadOut() { --m_readOuts; }
    bool hasReadOut() const { return m_readOuts > 0; }
    /// @}

    /// Paints the rubber band of the plot.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct State {
        AxisRange x;
        AxisRange y;
        AxisRange levels; // limits of a map's colours
        bool autoX = false;
        bool autoY = false;
        bool autoLevels = true;
        bool logScale = false;
        QRect rect;
    };
    State state() const;
    void post();
    /// Calls it for each observer. False if one of them has deleted the plot. An observer may add or remove others.
    template <typename Call> bool forEachObserver(const Call& call);

    XYGraphWidget& m_plot;
    QList<PlotObserver*> m_observers;
    QList<PlotOverlay*> m_overlays; // in the order of drawing
    QRegion m_parts;
    State m_reported;
    bool m_dataChanged = false;
    bool m_isPosted = false;

    int m_tracking = 0;
    bool m_hadTracking = false;
    int m_focus = 0;
    Qt::FocusPolicy m_hadFocusPolicy = Qt::NoFocus;
    const void* m_cursorOwner = nullptr;
    QCursor m_hadCursor;
    bool m_hadOwnCursor = false;
    int m_readOuts = 0;
    std::optional<QString> m_positionName;
    QSize m_pictureSize;
    QStringList m_seriesNames;
    QList<PlotStyling*> m_stylings;
    QPointF m_crosshair { qQNaN(), qQNaN() };
    QPointF m_linkedCrosshair { qQNaN(), qQNaN() };
    LinkedView m_linkedX;
    LinkedView m_linkedY;
    SampleBlockCache m_blocks;
};

} // namespace tarnis
