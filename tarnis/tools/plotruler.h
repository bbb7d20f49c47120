// Measures between two positions of a plot.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QPointF>
#include <QRect>

#include <array>
#include <memory>

QT_BEGIN_NAMESPACE
class QFont;
QT_END_NAMESPACE

namespace tarnis {

class LabelLayout;
class MenuTool;
struct RulerReading;

/// A ruler between two positions x₁ and x₂. A text in the plot shows the distances along both axes, the inverse of the
/// X distance, the ratio of the values at x₂ and x₁, the decades on a logarithmic axis, and the sum of the bins between
/// the ends, both inclusive: for each visible curve, or for the rectangle of a map.
///
/// While the tool is on, a left drag in the plot draws the ruler, and a drag of an end moves that end. The ends snap to
/// the middles of bins; on curves they are attached to the first visible curve and follow it when data arrive. While
/// the plot has the focus, R switches the tool, Ctrl with an arrow moves x₂ by a bin, with Shift too by ten, and
/// Space swaps both. Ctrl+C copies the reading as a table, and Escape first reverts a drag, then removes the ruler,
/// then switches the tool off. The ruler remains visible while the tool is off, and appears in saved pictures.
class TARNIS_EXPORT PlotRuler : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns the tool. Initially it is off, and there is no ruler.
    explicit PlotRuler(XYGraphWidget* plot);
    ~PlotRuler() override;

    bool isOn() const; ///< whether a left drag draws a ruler
    bool isSet() const; ///< whether there is a ruler
    /// The ends in units of the axes; on curves y is the value of the first visible curve there. (0, 0) without a
    /// ruler.
    /// @{
    QPointF from() const;
    QPointF to() const;
    /// @}
    QString text() const; ///< the shown text; empty without a ruler
    QString table() const; ///< header and numbers, separated by tabs; empty without a ruler
    QRect textBox() const; ///< where text() is drawn, in the frame's coordinates of PlotMapping; null without a ruler

    QList<QAction*> actions() const override;
    QList<QRect> overlayBoxes() const override; ///< the names of the ends
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    void setOn(bool on); ///< see isOn(); reverts a drag under way
    void setEnds(const QPointF& from, const QPointF& to); ///< sets the ruler; ends that are not finite are ignored
    void clear(); ///< removes the ruler
    void copy() const; ///< copies the table to the clipboard; does nothing without a ruler

Q_SIGNALS:
    void textChanged(const QString& text); ///< see text()
    void onChanged(bool on); ///< see isOn()

protected:
    bool handlePress(const QMouseEvent& event) override;
    bool handleMove(const QMouseEvent& event) override;
    bool handleRelease(const QMouseEvent& event) override;
    bool handleKey(const QKeyEvent& event) override;
    bool claimsKey(const QKeyEvent& event) const override;
    void handleHide() override;
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    enum class Grip { None, From, To };
    struct Sums;
    struct Label;
    struct Name;
    struct Drawing;

    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void updateActions();
    TARNIS_NO_EXPORT QPointF snapped(const PlotMapping& mapping, const QPointF& position) const;
    TARNIS_NO_EXPORT RulerReading reading() const;
    TARNIS_NO_EXPORT Grip gripAt(const PlotMapping& mapping, const QPointF& pixel) const;
    TARNIS_NO_EXPORT void endDrag(bool cancel);
    TARNIS_NO_EXPORT bool moveEndBy(const QPoint& bins);
    TARNIS_NO_EXPORT void renew();
    TARNIS_NO_EXPORT QPointF pixelOf(const PlotMapping& mapping, const QPointF& end) const;
    TARNIS_NO_EXPORT std::array<Name, 2> names(const PlotMapping& mapping, const QFont& font) const;
    TARNIS_NO_EXPORT Drawing drawing(const PlotMapping& mapping, const QFont& font) const;
    TARNIS_NO_EXPORT QRect usualRow(const QRect& inside, const QList<QRect>& taken, const LabelLayout*& layout) const;
    TARNIS_NO_EXPORT QRect textRow(const PlotMapping& mapping, const QFont& font, const LabelLayout*& layout) const;

    bool m_isOn = false;
    bool m_isSet = false;
    QPointF m_from;
    QPointF m_to;
    Grip m_grip = Grip::None; // handle of the drag
    bool m_wasSet = false; // state before the drag
    QPointF m_wasFrom;
    QPointF m_wasTo;
    QString m_text;
    QString m_briefText; // for small plots
    std::unique_ptr<Sums> m_sums;
    std::unique_ptr<Label> m_label;
    std::unique_ptr<MenuTool> m_menuTool;
    QAction* m_switch = nullptr;
    QAction* m_copy = nullptr;
};

} // namespace tarnis
