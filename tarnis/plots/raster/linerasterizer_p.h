// Collects a set of pixels and writes them in one colour. A line covers exactly the pixels that Qt's raster engine sets
// for a one-pixel line between integer coordinates.
#pragma once

#include <QPoint>
#include <QRect>
#include <QRgb>
#include <QtGlobal>

#include <vector>

namespace tarnis {

/// The lines of an image with 32 bits per pixel. Not owned.
struct PixelRows {
    uchar* bits = nullptr;
    qsizetype bytesPerLine = 0;

    QRgb* at(int x, int y) const { return reinterpret_cast<QRgb*>(bits + y * bytesPerLine) + x; }
};

/// Pixels within `area`; pixels outside of it are ignored. Ends of runs and lines are inclusive.
class LineRasterizer {
public:
    explicit LineRasterizer(const QRect& area);

    void addColumn(int x, int top, int bottom);
    void addRow(int left, int right, int y);
    /// Coordinates within 2^15.
    void addLine(QPoint from, QPoint to);

    /// Writes the pixels in one colour and clears the set. The rows must contain `area`.
    void writeTo(const PixelRows& rows, QRgb colour);

private:
    /// Rows that may hold pixels, or none.
    struct Rows {
        int top = 0;
        int bottom = -1;
        qint64 pixels = 0; ///< number of added pixels; pixels added twice count twice
        void include(int first, int last, int count);
        bool areSparse() const;
    };

    quint16* band(int number) { return m_bits.data() + static_cast<std::size_t>(number) * m_height; }

    QRect m_area;
    std::size_t m_height; ///< height of the area
    std::vector<quint16> m_bits; ///< one word per row for each band of 16 columns, with the leftmost column in the
                                 ///< lowest bit
    std::vector<Rows> m_rows; ///< rows of each band, from the top of the area
};

} // namespace tarnis
