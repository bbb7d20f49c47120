// Loops over bins with 256-bit vectors (AVX2). The results are bit-identical to those of the plain loops.
#pragma once

#include "tarnis/foundation/avx2_p.h"

#include <QRgb>

#include <array>

namespace tarnis {

/// Four ranges of a scale, each with colours at both ends; one column per range.
struct ScaleRanges {
    using Column = std::array<double, 4>;

    Column base {}; ///< lower end
    Column width {}; ///< up to the next base
    std::array<Column, 3> lower {}; ///< red, green, blue
    std::array<Column, 3> upper {};
    double low = 0.0; ///< below it: lowPixel
    double high = 0.0; ///< above it: highPixel
    QRgb lowPixel = 0;
    QRgb highPixel = 0;
    static constexpr QRgb undefinedPixel = 0xff000000; ///< for NaN
};

/// Blends `count` values; the bases are finite and ascend.
void blendWide(const ScaleRanges& ranges, const double* values, int count, QRgb* pixels);

/// A table of colours over a range of values.
struct TableRange {
    double low = 0.0;
    double width = 0.0; ///< width of the range; may be negative
    const QRgb* table = nullptr;
    int size = 0; ///< size of the table
};

/// Picks the entry at (value - low) / width * size, truncated and limited to the table; ScaleRanges::undefinedPixel for
/// NaN.
void pickWide(const TableRange& range, const double* values, int count, QRgb* pixels);

/// Sets to 0 the pixels of values that are at most `least` in magnitude, or infinite.
void clearSmallWide(const double* values, int count, double least, QRgb* pixels);

/// Looks up integer counts from 0 to `size` - 1, of values[columns[i]], or of values[i] if `columns` is null. For any
/// other value, table[size] is used. True if one of the pixels is `unknown`.
bool lookUpWide(
    const double* values, const int* columns, int count, const QRgb* table, int size, QRgb unknown, QRgb* pixels);

/// Writes the indices of all occurrences of a pixel, in ascending order, and returns their number. `places` must have
/// space for `count` + 7 entries.
int listWide(const QRgb* pixels, int count, QRgb pixel, int* places);

/// The colour indices of eight adjacent pixels.
struct SpreadBlock {
    static constexpr int width = 8;

    std::array<int, width> place {}; ///< index of each pixel's colour, relative to `first`
    std::array<QRgb, width> shared {}; ///< all bits set if the previous colour is used when the pixel's own is
                                       ///< transparent
    int first = 0;
};

/// Writes eight pixels for each block. colors[-1] and eight entries from each block's first one must be readable.
void spreadWide(const QRgb* colors, const SpreadBlock* blocks, std::size_t count, QRgb* pixels);

/// Copies those of `count` pixels that are not 0.
void copyOverWide(QRgb* line, const QRgb* pixels, int count);

} // namespace tarnis
