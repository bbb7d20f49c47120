// Differences of colours for normal eyes and for those that see fewer colours.
#pragma once

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace tarnis::testing {

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

inline double linear(int channel)
{
    const double share = channel / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

inline Triple times(const Matrix& matrix, const Triple& v)
{
    Triple result {};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = matrix[i][0] * v[0] + matrix[i][1] * v[1] + matrix[i][2] * v[2];
    return result;
}

/// sRGB to XYZ.
inline const Matrix toXyz { { { 0.4124564, 0.3575761, 0.1804375 }, { 0.2126729, 0.7151522, 0.0721750 },
    { 0.0193339, 0.1191920, 0.9503041 } } };

/// G. M. Machado, M. M. Oliveira, L. A. F. Fernandes, A Physiologically-based Model for Simulation of Color Vision
/// Deficiency, IEEE Trans. Vis. Comput. Graph. 15 (2009) 1291, severity 1.0; the identity is the unimpaired eye.
inline const std::array<Matrix, 4> eyes { {
    { { { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0, 1 } } },
    { { { 0.152286, 1.052583, -0.204868 }, { 0.114503, 0.786281, 0.099216 }, { -0.003882, -0.048116, 1.051998 } } },
    { { { 0.367322, 0.860646, -0.227968 }, { 0.280085, 0.672501, 0.047413 }, { -0.011820, 0.042940, 0.968881 } } },
    { { { 1.255528, -0.076749, -0.178779 }, { -0.078411, 0.930809, 0.147602 }, { 0.004733, 0.691367, 0.303900 } } },
} };

inline Triple rgbOf(const QColor& colour)
{
    return { linear(colour.red()), linear(colour.green()), linear(colour.blue()) };
}

/// CIE 1976 L*a*b* for an eye with this colour matrix.
inline Triple labOf(const QColor& colour, const Matrix& eye)
{
    Triple rgb = times(eye, rgbOf(colour));
    for (double& channel : rgb)
        channel = std::clamp(channel, 0.0, 1.0);
    Triple xyz = times(toXyz, rgb);
    constexpr Triple white { 0.95047, 1.0, 1.08883 };
    for (std::size_t i = 0; i < 3; ++i) {
        const double t = xyz[i] / white[i];
        xyz[i] = t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116.0;
    }
    return { 116.0 * xyz[1] - 16.0, 500.0 * (xyz[0] - xyz[1]), 200.0 * (xyz[1] - xyz[2]) };
}

inline double distance(const QColor& a, const QColor& b, const Matrix& eye)
{
    const Triple la = labOf(a, eye);
    const Triple lb = labOf(b, eye);
    return std::hypot(la[0] - lb[0], la[1] - lb[1], la[2] - lb[2]);
}

} // namespace tarnis::testing
