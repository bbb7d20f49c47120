// Colours and widths of the themes.
#pragma once

#include "tarnis/tools/plotstyle.h"

#include <array>

namespace tarnis {

/// The properties of a theme.
struct StyleTheme {
    QColor surround; ///< colour around the plot rectangle
    QColor background; ///< colour of the plot rectangle
    QColor text;
    QColor mutedText; ///< notes
    QColor axis; ///< colour of axis lines and ticks
    QColor grid;
    QColor accent; ///< colour of peaks and marks
    double lineWidth = 1.5; ///< of curves
    bool isBoxed = false; ///< draws a full frame, else the two axes
    std::array<QColor, 8> series;
};

const StyleTheme& styleTheme(PlotStyle::Theme theme);

} // namespace tarnis
