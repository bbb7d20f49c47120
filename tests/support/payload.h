// Reads payloads of binary replies.
#pragma once

#include <QByteArray>

#include <cstring>
#include <vector>

namespace simtest {

/// The doubles of a payload; bytes after the last complete one are ignored.
inline std::vector<double> doublesOf(const QByteArray& payload)
{
    constexpr auto width = static_cast<qsizetype>(sizeof(double));
    std::vector<double> values;
    for (qsizetype at = 0; at + width <= payload.size(); at += width) {
        double value = 0.0;
        std::memcpy(&value, payload.constData() + at, sizeof(value));
        values.push_back(value);
    }
    return values;
}

} // namespace simtest
