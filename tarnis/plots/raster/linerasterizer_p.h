// A set of pixels that is collected and then written in one colour at once. A line covers exactly the pixels that Qt's
// raster engine gives to a line of one pixel's width between whole coordinates.
#pragma once

#include <QPoint>
#include <QRect>
#include <QRgb>
#include <QtGlobal>

#include <vector>

namespace tarnis {

/// The lines of an image with 32 bits a pixel. Not owned.
struct PixelRows {
    uchar* bits = nullptr;
    qsizetype bytesPerLine = 0;

    QRgb* at(int x, int y) const { return reinterpret_cast<QRgb*>(bits + y * bytesPerLine) + x; }
};

/// Pixels within `area`; what is added outside of it is left out. Ends of runs and of lines are included.
class LineRasterizer {
public:
    explicit LineRasterizer(const QRect& area);

    void addColumn(int x, int top, int bottom);
    void addRow(int left, int right, int y);
    /// Coordinates within 2^15.
    void addLine(QPoint from, QPoint to);

    /// Gives the pixels their colour and empties the set. The rows hold `area`.
    void writeTo(const PixelRows& rows, QRgb color);

private:
    /// Rows that may hold pixels, or none.
    struct Rows {
        int top = 0;
        int bottom = -1;
        qint64 pixels = 0; ///< added so far; those added twice count twice
        void include(int first, int last, int count);
        bool areSparse() const;
    };

    quint16* band(int number) { return m_bits.data() + static_cast<std::size_t>(number) * m_height; }

    QRect m_area;
    std::size_t m_height; ///< of the area
    std::vector<quint16> m_bits; ///< for each band of 16 columns a word a row, the leftmost column in the lowest bit
    std::vector<Rows> m_rows; ///< of each band, from the top of the area
};

} // namespace tarnis
