// A small plot of points with errors below another one: residuals, trends.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QColor>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <vector>

class XYGraphWidget;

namespace tarnis {

/// A point of a strip.
struct StripPoint {
    double x = 0.0;
    double y = 0.0;
    double error = 0.0; ///< 0 or NaN: none
    bool isWeak = false; ///< drawn in the colour of disabled text
};

/// The range that includes all finite points with their errors, with a margin above and below; 0 to 1 without points.
AxisRange heightOf(const std::vector<StripPoint>& points);

/// Points on a separate axis, or on the X axis of another plot. In the second case it shows that plot's visible range,
/// and its columns are aligned if both have the same width.
class StripPlot : public QWidget {
    Q_OBJECT

public:
    explicit StripPlot(QWidget* parent = nullptr);

    /// The plot whose X axis is shown; null: shows all points.
    void tieTo(XYGraphWidget* plot);
    void setPoints(std::vector<StripPoint> points);
    const std::vector<StripPoint>& points() const { return m_points; }
    void setName(const QString& nameY); ///< name beside the axis
    /// Bands at 1 and 2 around 0, and a range that includes them.
    void setBands(bool on);
    void setTimeAxis(bool on); ///< X is in seconds since 1970; the ends are labelled with times

    AxisRange rangeX() const; ///< as shown
    QRect plotRect() const; ///< the area of the points

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AxisRange rangeY() const;
    void paintBands(QPainter& painter, const QRect& rect, AxisRange y) const;
    void paintPoints(QPainter& painter, const QRect& rect, AxisRange x, AxisRange y) const;
    void paintTexts(QPainter& painter, const QRect& rect, AxisRange x, AxisRange y) const;

    QPointer<QWidget> m_tied; // an XYGraphWidget
    std::vector<StripPoint> m_points;
    QString m_name;
    bool m_hasBands = false;
    bool m_isTimeAxis = false;
};

} // namespace tarnis
