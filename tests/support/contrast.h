// The contrast of text and background.
#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

namespace tarnis::testing {

/// Relative luminance of the Web Content Accessibility Guidelines 2.1.
inline double luminance(const QColor& colour)
{
    const auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(colour.redF()) + 0.7152 * channel(colour.greenF()) + 0.0722 * channel(colour.blueF());
}

/// Contrast ratio of the Web Content Accessibility Guidelines 2.1, 1.4.3.
inline double contrast(const QColor& a, const QColor& b)
{
    const double lighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace tarnis::testing
