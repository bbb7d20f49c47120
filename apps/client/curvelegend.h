// The legend of several curves: rows of names below the plot.
#pragma once

#include <QFont>
#include <QPen>
#include <QRect>
#include <QString>

#include <vector>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace cli {

/// The legend entry of a curve.
struct LegendEntry {
    QString name;
    QPen pen;
    bool isPoint = false; ///< the curve consists of points
};

/// Arranges the entries in rows. The last row shows the number of those that do not fit.
class CurveLegend {
public:
    /// Sizes in pixels.
    CurveLegend(const std::vector<LegendEntry>& entries, const QFont& font, int width, int maxHeight);

    int height() const { return m_height; } ///< height of all rows with a margin below; 0 without entries
    void paint(QPainter& painter, QPoint topLeft, const QColor& text) const;

private:
    struct Item {
        LegendEntry entry; ///< no pen: text only
        QRect rect;
    };

    QFont m_font;
    std::vector<Item> m_items;
    int m_sample = 0; ///< length of the line beside a name
    int m_space = 0;
    int m_height = 0;
};

} // namespace cli
