#include "tarnis/plots/math/colourbar_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

int fittingIntervals(int wanted, int barHeight, int lineHeight)
{
    const int fitting = lineHeight > 0 ? barHeight / lineHeight : wanted;
    return std::min(wanted, std::max(fitting, 1));
}

double colourBarValue(AxisRange range, bool logScale, int mark, int intervals)
{
    if (!logScale)
        return mark * (range.max - range.min) / intervals + range.min;
    const double low = floorLog10(range.min);
    const double high = floorLog10(range.max);
    return std::pow(10.0, mark * (high - low) / intervals + low);
}

double squareRootBarValue(AxisRange range, int mark, int intervals)
{
    const double low = std::sqrt(std::max(range.min, 0.0));
    const double high = std::sqrt(std::max(range.max, 0.0));
    const double root = mark * (high - low) / intervals + low;
    return root * root;
}

} // namespace tarnis
