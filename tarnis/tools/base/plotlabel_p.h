// Short texts over a plot's picture, readable on any data.
#pragma once

#include <QFont>
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QString>
#include <Qt>

#include <memory>

QT_BEGIN_NAMESPACE
class QColor;
class QFontMetrics;
class QPainter;
class QTextLayout;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

enum class LabelStyle {
    Plain, ///< dark, with light text
    Selected, ///< inverted
    Button ///< with a border: it can be clicked
};

/// Draws the text in a box, several lines aligned to the left. `alignment` names the corner or edge of the box that is
/// at `at`. Returns the box.
QRect paintLabel(QPainter& painter, const QString& text, const QPoint& at, Qt::Alignment alignment,
    LabelStyle style = LabelStyle::Plain);

/// A text that is laid out once, for its size and for its drawing: shaping it takes longer than the rest of a pointer
/// move.
class LabelLayout {
public:
    LabelLayout(const QString& text, const QFont& font);
    LabelLayout(LabelLayout&& other) noexcept;
    LabelLayout& operator=(LabelLayout&& other) noexcept;
    ~LabelLayout();

    QSize size() const; ///< that of labelSize()
    /// Draws the pixels of paintLabel(). `corner` is the box's left upper one.
    void paint(QPainter& painter, const QPoint& corner, LabelStyle style = LabelStyle::Plain) const;

private:
    std::unique_ptr<QTextLayout> m_layout;
    qreal m_width = 0.0;
    qreal m_height = 0.0;
};

/// The size of that box. @{
QSize labelSize(const QPainter& painter, const QString& text);
QSize labelSize(const QFontMetrics& metrics, const QString& text);
/// @}

/// That box: `alignment` names the corner or edge that is at `at`.
QRect labelFrame(const QSize& size, const QPoint& at, Qt::Alignment alignment);

/// The colour of a tool's line over the data, given its colour on dark ones: a dark shade of it over the light
/// background of a style.
QColor colourOverData(const XYGraphWidget& plot, const QColor& onDark);

/// Whether the picture is for a file or a page, which has no highlights that are for mouse and keys only.
bool isForFile(const QPainter& painter, const XYGraphWidget& plot);

/// The pixels of such a line, with its border; a slanted one in short parts.
QRegion areaOfLine(const QPointF& from, const QPointF& to);

/// Draws a line that is visible on light and on dark pixels: a light one has a dark border, a dark one a light border.
void paintLine(QPainter& painter, const QPointF& from, const QPointF& to, const QColor& colour, bool dashed = false);

/// Clamps a coordinate to the range of a painter.
double limitedCoordinate(double coordinate);

} // namespace tarnis
