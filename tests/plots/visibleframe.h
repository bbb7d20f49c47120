// A plot frame on the screen.
#pragma once

#include "support/frameprobe.h"

#include <tarnis/plots/xygraphwidget.h>

namespace tarnis::testing {

/// X from 0 to 1000, Y from 0 to 100, 500 x 400 pixels, painted.
class VisibleFrame : public FrameProbe<XYGraphWidget> {
public:
    VisibleFrame()
    {
        m_doubleBuffered = true;
        init(QStringLiteral("x"), QStringLiteral("y"), 1000.0, 100.0, true, true);
        resize(500, 400);
        show();
        paintNow();
    }
};

} // namespace tarnis::testing
