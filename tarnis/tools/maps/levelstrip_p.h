// The strip beside a map's colour bar: a histogram of the bin values with two handles for the limits of the colours.
#pragma once

#include "tarnis/tools/maps/levels_p.h"

#include <QWidget>

#include <vector>

class XY2DGraphWidget;

namespace tarnis {

/// A child of the map, which positions itself between the plot rectangle and the colour bar. Its owner sets all values.
class LevelStrip : public QWidget {
    Q_OBJECT

public:
    static constexpr int stripWidth = 64;

    explicit LevelStrip(XY2DGraphWidget& map);

    /// Shows a histogram of values and the levels. During a drag the axis does not change.
    void showValues(const std::vector<double>& values, ScaleCurve curve);
    /// The levels and colours of the map have changed.
    void showLevels();
    bool isDragging() const { return m_handle != LevelHandle::None; }
    void endDrag(bool cancel);
    /// Draws the strip, with the strip's top left corner as the origin.
    void paintStrip(QPainter& painter) const;

Q_SIGNALS:
    void levelsChosen(double lower, double upper); ///< the user has changed the levels; also emitted during a drag
    void automaticChosen(); ///< double click or Home
    void menuWanted(const QPoint& globalPosition);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    AxisRange levels() const;
    QRect scaleRect() const; ///< pixel rows of the axis, in the strip
    double shareAt(double y) const;
    double rowOf(double share) const;
    void place();
    void retranslate();
    void moveBy(LevelHandle handle, double delta);
    void paintSteps(QPainter& painter, const QRect& rect) const;
    void paintHandle(QPainter& painter, double share, bool isCurrent) const;

    XY2DGraphWidget& m_map;
    LevelAxis m_axis { { 0.0, 1.0 }, ScaleCurve::Linear };
    std::vector<qsizetype> m_steps;
    LevelHandle m_handle = LevelHandle::None; // handle of the drag
    LevelHandle m_current = LevelHandle::Upper; // handle moved by the keys
    double m_pressShare = 0.0;
    AxisRange m_pressLevels;
};

} // namespace tarnis
