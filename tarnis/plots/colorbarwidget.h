// The vertical scale beside a 2D plot: a gradient with ticks and labels. While its range is not automatic, a click on
// an end label opens an editor over it. Its owner sets all values. GUI thread only.
#pragma once

#include <tarnis/plots/doublebufferedwidget.h>

#include <QColor>
#include <QList>
#include <QRect>

#include <memory>

QT_BEGIN_NAMESPACE
class QLineEdit;
QT_END_NAMESPACE
namespace tarnis {
class LabelCache;
class PlotAccess;
} // namespace tarnis

/// A colour scale. Numbers count as equal within DBL_EPSILON of the larger magnitude (of 1 for smaller ones).
class TARNIS_EXPORT ColorBarWidget : public DoubleBufferedWidget {
    Q_OBJECT

public:
    /// 0 to 100 in ten intervals, automatic, linear, without a colour.
    explicit ColorBarWidget(QWidget* parent = nullptr);
    ~ColorBarWidget() override;

    /// Requested number of intervals; fewer are drawn if the text does not fit. Less than 1 is ignored. No repaint.
    void setTicks(int ticks);
    /// Places labels at equal distances of the logarithm. No repaint.
    void setLogScale(bool on);
    /// Value at the bottom or at the top. Refreshes on a change; emits nothing. The minimum may be above the maximum.
    /// @{
    void setMin(double min);
    void setMax(double max);
    /// @}
    /// While the range is automatic, the labels cannot be edited. An open editor remains open. @{
    bool isAutoScale() const;
    void setAutoScale(bool on);
    /// @}
    /// True if an editor is open and has the keyboard focus.
    bool isEditing();
    /// Closes an open editor without using its value.
    void deleteEditLine();
    /// Sets the colour of the gradient at `position`, from 0.0 at the bottom to 1.0 at the top. No repaint.
    void updatePos(double position, QColor color);
    /// A new picture of the bar, also if it is not double-buffered. Can emit sizeChanging().
    QPixmap getPixmap();

    /// Draws the bar and sets the click areas. Emits sizeChanging() if a label is wider than the available space.
    void paint(QPainter& painter, QRect* rect) override;

Q_SIGNALS:
    /// Emitted after Return in the editor, even if the value is unchanged. @{
    void onMinChanged(double min);
    void onMaxChanged(double max);
    /// @}
    void sizeChanging(int width); ///< the width that the labels need; emitted from paint()
    void beginEditingText(); ///< an editor is about to open
    void EditLineDeleted(); ///< an editor was closed without a value

public Q_SLOTS:
    /// Return in the editor; a text that is not a number counts as 0. Does nothing without an editor. @{
    void onMaxEntered();
    void onMinEntered();
    /// @}

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

    /// The gradient points: parallel lists in the order of insertion. @{
    QList<double> m_positions;
    QList<QColor> m_colors;
    /// @}

    // Scale
    int m_ticks = 10; ///< requested number of intervals, at least 1
    bool m_logScale = false; ///< logarithmic labels
    bool m_autoScale = true; ///< the labels cannot be edited
    double m_min = 0.0; ///< at the bottom
    double m_max = 100.0; ///< at the top

    // Editing
    /// Click areas of the end labels in the last paint. @{
    QRect m_minRect;
    QRect m_maxRect;
    /// @}
    QLineEdit* m_editLine = nullptr; ///< the open editor, a child

    std::unique_ptr<tarnis::LabelCache> m_labels; ///< layouts of the labels

private:
    friend class tarnis::PlotAccess;
    TARNIS_NO_EXPORT int paintTicks(QPainter& painter, const QRect& rect, const QRect& bar, QSize charSize) const;
    TARNIS_NO_EXPORT void openEditorAt(const QPoint& point);
    TARNIS_NO_EXPORT void openEditor(bool onMax);
    TARNIS_NO_EXPORT double takeNumber();

    bool m_squareRoot = false; // labels at equal distances of the square root, unless the scale is logarithmic
};
