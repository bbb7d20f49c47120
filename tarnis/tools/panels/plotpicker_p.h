// Selects a range or positions on a plot with the left button.
#pragma once

#include "tarnis/tools/interactivetool.h"

#include <QPointF>

namespace tarnis {

/// While it is on, it handles the left button inside the plot rectangle: a drag selects a range of X, a click a
/// position. Escape switches it off. While it is off, the plot receives all events.
class PlotPicker : public InteractiveTool {
    Q_OBJECT

public:
    enum class Mode { Off, Range, Places };

    explicit PlotPicker(XYGraphWidget* plot);

    Mode mode() const { return m_mode; }
    void setMode(Mode mode);

Q_SIGNALS:
    void modeChanged();
    void rangeChanged(double lower, double upper); ///< while dragging
    void rangePicked(double lower, double upper); ///< at the end of the drag
    void placePicked(double x, double tolerance); ///< tolerance: X of a few pixels
    void dataChanged(); ///< the plot's data have changed
    void viewChanged(); ///< ranges or the plot rectangle have changed

protected:
    bool handleEvent(QEvent* event) override;
    void plotChanged(Changes changes) override;

private:
    double xAt(const QPointF& pixel) const;
    bool press(const QPointF& position);
    void release(const QPointF& position);

    Mode m_mode = Mode::Off;
    bool m_isDragging = false;
    QPointF m_from;
};

} // namespace tarnis
