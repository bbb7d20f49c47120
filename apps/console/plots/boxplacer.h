// Keeps the boxes that belong to a plot (ranges, cuts, regions) on the screen and off the controls of their window.
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>

class QDialog;
class QWindow;
class XYGraphWidget;

namespace console {

/// For one window with plots. If there is space for all boxes around the window, they stay where the library places
/// them. Otherwise, and always where windows cannot position themselves, they are stacked in a pane at the right edge
/// of the window. GUI thread.
class BoxPlacer : public QObject {
    Q_OBJECT
public:
    /// The placer of this window; the first call creates it. The window owns it.
    static BoxPlacer& of(QWidget& window);
    /// The placer of this window; null if there was no call of of().
    static BoxPlacer* find(const QWidget& window);
    /// True for a box of a plot: a frameless dialog that belongs to it.
    static bool isBox(const QWidget& widget);

    /// The plot of a box, also of one that is a part of the window; null for other widgets.
    static XYGraphWidget* plotOf(const QWidget& box);

    /// Call it before the box is first shown: makes it a part of the window where windows cannot position themselves.
    void adopt(QDialog& box);
    /// Makes the box a part of the window and manages its position.
    void makePart(QDialog& box);
    /// Starts managing the position of the box. Further calls do nothing.
    void keep(QDialog& box);

    bool hasPane() const { return m_isPane; }
    /// The pixels by which the window was widened for its pane; 0 without a pane.
    int grownBy() const { return m_grown; }
    /// For a window that is restored at a size that includes its pane: the pane opens with the first box, without
    /// widening the window. `grown` is the grownBy() of that time. Ignored if the window has another size by then.
    void restorePane(const QSize& size, int grown);
    /// The width of a box in the pane, in pixels.
    int paneWidth() const;

protected:
    explicit BoxPlacer(QWidget& window);

    bool eventFilter(QObject* object, QEvent* event) override;
    QList<QDialog*> visibleBoxes() const;
    QRect area() const;
    bool isRestored() const;
    bool needsPane(const QList<QDialog*>& boxes) const;
    void arrange();
    void setPane(bool isOn);
    void growBy(int width, const QRect& before);
    QRect paneRect() const;
    void placeInPane(const QList<QDialog*>& boxes);
    void sendSizeAgain(QWindow& shown);

    QWidget& m_window;
    QList<QPointer<QDialog>> m_boxes;
    QHash<const QObject*, QRect> m_wanted; ///< where the library has placed each box
    QRect m_decidedFor; ///< frame of the window when it was last decided whether there is a pane
    qsizetype m_decidedBoxes = 0; ///< number of visible boxes then
    bool m_isPane = false;
    int m_grown = 0; ///< pixels by which the window was widened for the pane
    QRect m_withoutPane; ///< the window when the pane opened
    QRect m_withPane; ///< the window just after the pane opened
    QSize m_restoredSize; ///< the size for which the window had a pane when it was stored; empty without one
    int m_restoredGrown = 0;
    bool m_isArranging = false;
    QMargins m_margins; ///< margins of the window's layout without a pane
    QTimer m_timer;
};

} // namespace console
