// Which tool has the left drags: one that was switched on, or a mouse tool of the plot's menu that was chosen later.
#pragma once

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plottool_p.h"

namespace tarnis {

/// The mouse tool of a plot's menu when another tool was switched on.
class MenuTool {
public:
    void note(const XYGraphWidget& plot) { m_mode = PlotAccess::mode(plot); }
    /// Whether one has been chosen since and has not been left.
    bool isChosenSince(const XYGraphWidget& plot) const
    {
        const int mode = PlotAccess::mode(plot);
        return mode != NoTool && mode != m_mode;
    }

private:
    int m_mode = NoTool;
};

} // namespace tarnis
