// Payloads of binary replies.
#pragma once

#include <QByteArray>
#include <QList>
#include <QtEndian>

#include <cstring>
#include <vector>

namespace tarnis::testing {

/// The payload of these values: 64-bit little-endian floating point.
inline QByteArray bytesOf(const QList<double>& values)
{
    QByteArray payload(values.size() * qsizetype(sizeof(double)), Qt::Uninitialized);
    if (!values.isEmpty())
        qToLittleEndian<double>(values.constData(), values.size(), payload.data());
    return payload;
}

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

} // namespace tarnis::testing
