#include "tarnis/plots/math/bingeometry_p.h"

#include "tarnis/plots/math/floatcomparison_p.h"

namespace tarnis {

namespace {

constexpr int farAway = 1 << 24;

double leftEdge(const BinGeometry& view, int column)
{
    return (column - view.x.low) * view.x.pixels + view.rect.left();
}

double topEdge(const BinGeometry& view, int row)
{
    return view.rect.bottom() - (row - view.y.low + 1) * view.y.pixels;
}

double bottomEdge(const BinGeometry& view, int row)
{
    return view.rect.bottom() - (row - view.y.low) * view.y.pixels;
}

} // namespace

int limitedPixel(double position)
{
    return std::clamp(truncateToPixel(position), -farAway, farAway);
}

BinSpan visibleBins(const BinAxis& axis, int pixels, qsizetype bins)
{
    BinSpan span;
    span.pixels = pixels / (axis.max - axis.min);
    if (axis.manual) {
        span.low = (axis.min - axis.initMin) / axis.step;
        span.high = (axis.max - axis.initMin) / axis.step;
        span.pixels *= axis.step;
    } else {
        span.low = axis.min;
        span.high = axis.max;
        span.pixels *= axis.resolution;
    }
    span.first = std::max(0, roundToInt(std::floor(span.low)));
    span.end = std::max(0, static_cast<int>(std::min<qsizetype>(roundToInt(std::ceil(span.high)), bins)));
    return span;
}

int BinGeometry::left(int column) const
{
    return limitedPixel(leftEdge(*this, column));
}

int BinGeometry::lineTop(int row) const
{
    return limitedPixel(topEdge(*this, row));
}

int BinGeometry::lineBottom(int row) const
{
    return limitedPixel(bottomEdge(*this, row));
}

QRect BinGeometry::bar(int row, int column) const
{
    // The sums are exact in double, so that the edges of a bar far larger than any widget keep their order.
    const double left = std::trunc(leftEdge(*this, column));
    const double top = std::trunc(topEdge(*this, row));
    const double width = std::trunc(x.pixels);
    const double height = std::trunc(bottomEdge(*this, row) - topEdge(*this, row));
    return { QPoint(limitedPixel(left), limitedPixel(top)),
        QPoint(limitedPixel(left + width - 1.0), limitedPixel(top + height - 1.0)) };
}

} // namespace tarnis
