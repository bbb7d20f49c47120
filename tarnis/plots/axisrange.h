// The range of an axis, as used by plots, mappings and tools.
#pragma once

namespace tarnis {

/// Visible range of an axis in its own units. `min` is the left or lower end and may be above `max`.
struct AxisRange {
    double min = 0.0; ///< left or lower end
    double max = 0.0; ///< right or upper end

    /// Exact comparison of both ends. @{
    friend bool operator==(const AxisRange& a, const AxisRange& b) { return a.min == b.min && a.max == b.max; }
    friend bool operator!=(const AxisRange& a, const AxisRange& b) { return !(a == b); }
    /// @}
};

} // namespace tarnis
