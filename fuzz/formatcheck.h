// Invariants of the reader and the writer of every file format.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QByteArray>
#include <QByteArrayView>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace tarnis::fuzzing {

inline bool sameValue(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

/// Reads the bytes. An accepted dataset must be consistent, and must have the same values after writing and reading it
/// again.
inline void checkFormat(const std::uint8_t* bytes, std::size_t size, DatasetResult (*decode)(QByteArrayView),
    QByteArray (*encode)(const Dataset&))
{
    const DatasetResult result = decode(QByteArrayView(reinterpret_cast<const char*>(bytes), qsizetype(size)));
    if (!result.error.isEmpty())
        return;
    if (!isConsistent(result.data))
        std::abort();
    const QByteArray written = encode(result.data);
    const DatasetResult back = decode(written);
    if (!back.error.isEmpty() || back.data.values.size() != result.data.values.size())
        std::abort();
    for (std::size_t i = 0; i < back.data.values.size(); ++i) {
        if (!sameValue(back.data.values[i], result.data.values[i]))
            std::abort();
    }
}

} // namespace tarnis::fuzzing
