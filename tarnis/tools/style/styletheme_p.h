// Colours and widths of the themes.
#pragma once

#include "tarnis/tools/plotstyle.h"

#include <array>

namespace tarnis {

/// All that distinguishes a theme.
struct StyleTheme {
    QColor surround; ///< around the plot rectangle
    QColor background; ///< of the plot rectangle
    QColor text;
    QColor mutedText; ///< notes
    QColor axis; ///< lines and ticks
    QColor grid;
    QColor accent; ///< peaks and marks
    double lineWidth = 1.5; ///< of curves
    bool isBoxed = false; ///< a full frame, else the two axes
    std::array<QColor, 8> series;
};

const StyleTheme& styleTheme(PlotStyle::Theme theme);

} // namespace tarnis
