// Loops over bins in lanes of 256 bits, for processors that have them. They give bit for bit what the plain loops give.
#pragma once

#include <QRgb>

#include <array>

#if defined(__x86_64__) && defined(__GNUC__)
/// Marks a function that is compiled for lanes of 256 bits. It may be called where hasAvx2().
#define TARNIS_AVX2 __attribute__((target("avx2")))
#endif

namespace tarnis {

/// True if the functions below may be called: the processor has AVX2, and nothing has switched them off.
bool hasAvx2();

/// Off lets all go through the plain loops. Not while anything is painted.
void setAvx2(bool on);

/// Four ranges of a scale, each with a colour at both of its ends, one column per range.
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
    double width = 0.0; ///< of the range; may be negative
    const QRgb* table = nullptr;
    int size = 0; ///< of the table
};

/// Picks the entry at (value - low) / width * size, truncated and limited to the table; ScaleRanges::undefinedPixel
/// where that is not a number.
void pickWide(const TableRange& range, const double* values, int count, QRgb* pixels);

/// Sets to 0 the pixels of values that are at most `least` in magnitude, or infinite.
void clearSmallWide(const double* values, int count, double least, QRgb* pixels);

/// Looks up integer counts from 0 to `size` - 1, of values[columns[i]], or of values[i] if `columns` is null. For any
/// other value table[size] is taken. True if one of the pixels is `unknown`.
bool lookUpWide(
    const double* values, const int* columns, int count, const QRgb* table, int size, QRgb unknown, QRgb* pixels);

/// Writes the places at which a pixel stands, in ascending order, and gives their number. `places` has room for
/// `count` + 7 entries.
int listWide(const QRgb* pixels, int count, QRgb pixel, int* places);

/// Where eight neighbouring pixels take their colours from.
struct SpreadBlock {
    static constexpr int width = 8;

    std::array<int, width> place {}; ///< of each pixel's colour, counted from `first`
    std::array<QRgb, width> shared {}; ///< all bits set where the colour before shows if the pixel's own is transparent
    int first = 0;
};

/// Writes eight pixels for each block. Readable are colors[-1] and eight entries from each block's first one on.
void spreadWide(const QRgb* colors, const SpreadBlock* blocks, std::size_t count, QRgb* pixels);

/// Copies those of `count` pixels that are not 0.
void copyOverWide(QRgb* line, const QRgb* pixels, int count);

} // namespace tarnis
