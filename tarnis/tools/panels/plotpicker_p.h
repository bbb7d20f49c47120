// Choosing a range or places on a plot with the left button.
#pragma once

#include "tarnis/tools/interactivetool.h"

#include <QPointF>

namespace tarnis {

/// While it is switched on it keeps the left button inside the plot rectangle from the plot: a drag chooses a range of
/// X, a click a place. Escape switches it off. Switched off, everything belongs to the plot.
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
    void dataChanged(); ///< of the plot
    void viewChanged(); ///< ranges, or the place of the plot rectangle

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
