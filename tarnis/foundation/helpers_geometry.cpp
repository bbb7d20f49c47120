// The helpers on rectangles. Sizes are right - left + 1, in 64 bit, so that no edge overflows.
#include "tarnis/foundation/helpers.h"

#include <cmath>
#include <limits>

namespace {

long long widthOf(const QRect& rect)
{
    return static_cast<long long>(rect.right()) - rect.left() + 1;
}

long long heightOf(const QRect& rect)
{
    return static_cast<long long>(rect.bottom()) - rect.top() + 1;
}

int clampedToInt(long long value)
{
    constexpr long long low = std::numeric_limits<int>::min();
    constexpr long long high = std::numeric_limits<int>::max();
    return static_cast<int>(value < low ? low : value > high ? high : value);
}

// Rounds halves away from zero.
long long scaled(long long size, double factor)
{
    const double product = static_cast<double>(size) * factor;
    if (std::isnan(product))
        return 0;
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    return std::llround(product < low ? low : product > high ? high : product);
}

void setEdges(QRect& rect, long long left, long long top, long long width, long long height)
{
    rect.setCoords(
        clampedToInt(left), clampedToInt(top), clampedToInt(left + width - 1), clampedToInt(top + height - 1));
}

} // namespace

QPoint center(const QRect& rect)
{
    return { clampedToInt(rect.left() + widthOf(rect) / 2), clampedToInt(rect.top() + heightOf(rect) / 2) };
}

QRect& setCenter(QRect& rect, const QPoint& point)
{
    const long long width = widthOf(rect);
    const long long height = heightOf(rect);
    setEdges(rect, point.x() - width / 2, point.y() - height / 2, width, height);
    return rect;
}

void stretchRect(QRect& rect, double xFactor, double yFactor)
{
    const long long width = widthOf(rect);
    const long long height = heightOf(rect);
    const long long newWidth = scaled(width, xFactor);
    const long long newHeight = scaled(height, yFactor);
    setEdges(
        rect, rect.left() + width / 2 - newWidth / 2, rect.top() + height / 2 - newHeight / 2, newWidth, newHeight);
}

QRect& moveIn(QRect& rect, const QRect& bounds)
{
    const long long width = widthOf(rect);
    const long long height = heightOf(rect);
    long long left = rect.left();
    long long top = rect.top();
    if (rect.right() > bounds.right())
        left = bounds.right() - width + 1;
    if (rect.bottom() > bounds.bottom())
        top = bounds.bottom() - height + 1;
    if (left < bounds.left())
        left = bounds.left();
    if (top < bounds.top())
        top = bounds.top();
    setEdges(rect, left, top, width, height);
    return rect;
}
