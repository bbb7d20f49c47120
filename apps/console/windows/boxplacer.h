// Keeps the boxes that belong to a plot (ranges, cuts, regions) on the screen and off the controls of their window.
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>

class QDialog;
class XYGraphWidget;

namespace console {

/// For one window with plots. While all boxes have room around the window they stay where the library puts them. Else,
/// and always where windows cannot place themselves, the window's content makes room for a pane at its right edge, and
/// the boxes are stacked there. GUI thread.
class BoxPlacer : public QObject {
    Q_OBJECT
public:
    /// The placer of this window; the first call creates it. The window owns it.
    static BoxPlacer& of(QWidget& window);
    /// True for a box of a plot: a frameless dialog that belongs to it.
    static bool isBox(const QWidget& widget);

    /// The visible boxes of a plot, wherever they are.
    static QList<QDialog*> boxesOf(const XYGraphWidget& plot);

    /// Before the box is first shown: makes it a part of the window where windows cannot place themselves.
    void adopt(QDialog& box);
    /// From now on the box is kept in place. Again does nothing.
    void keep(QDialog& box);

    bool hasPane() const { return m_isPane; }
    /// The width of a box in the pane, in pixels.
    int paneWidth() const;

protected:
    explicit BoxPlacer(QWidget& window);

    bool eventFilter(QObject* object, QEvent* event) override;
    QList<QDialog*> visibleBoxes() const;
    QRect area() const;
    bool needsPane(const QList<QDialog*>& boxes) const;
    void arrange();
    void setPane(bool isOn);
    void growBy(int width, const QRect& before);
    QRect paneRect() const;
    void placeInPane(const QList<QDialog*>& boxes);

    QWidget& m_window;
    QList<QPointer<QDialog>> m_boxes;
    QHash<const QObject*, QRect> m_wanted; ///< where the library has put each
    QRect m_decidedFor; ///< frame of the window when it was last decided whether there is a pane
    qsizetype m_decidedBoxes = 0; ///< visible ones then
    bool m_isPane = false;
    int m_grown = 0; ///< pixels that the window has become wider by for the pane
    QRect m_withoutPane; ///< the window when the pane opened
    QRect m_withPane; ///< and just after
    bool m_isArranging = false;
    QMargins m_margins; ///< of the window's layout without a pane
    QTimer m_timer;
};

} // namespace console
