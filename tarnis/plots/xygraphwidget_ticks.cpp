// Ticks, margins and the mapping between pixels and values.
#include "tarnis/plots/xygraphwidget.h"

#include "tarnis/foundation/helpers.h"
#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"

#include <QFontMetrics>

double XYGraphWidget::LOG10(double x)
{
    return tarnis::floorLog10(x);
}

QString XYGraphWidget::getLabelX(double value)
{
    return numStr(value);
}

QString XYGraphWidget::getLabelY(double value)
{
    return numStr(value);
}

void XYGraphWidget::getCharSize(int& width, int& height)
{
    const QFontMetrics metrics(font());
    width = metrics.averageCharWidth();
    height = metrics.height();
}

void XYGraphWidget::getMargin(QSize& topLeft, QSize& bottomRight)
{
    int charWidth = 0;
    int charHeight = 0;
    getCharSize(charWidth, charHeight);
    const auto length = [](double value) { return static_cast<int>(numStr(value).size()); };
    topLeft.setWidth(qMax(length(m_maxY), length(m_minY)) * charWidth + 10);
    topLeft.setHeight(m_nameY.isEmpty() ? charHeight : 2 * charHeight);
    bottomRight.setWidth(length(m_maxX) * charWidth / 2 + 5);
    bottomRight.setHeight(2 * charHeight + 5);
}

QList<double> XYGraphWidget::calcTicks(double a, double b, int& decimal)
{
    return tarnis::calcTicks(a, b, decimal);
}

double XYGraphWidget::adjustAxis(double value, unsigned int& ticks)
{
    return tarnis::adjustAxis(value, ticks);
}

double XYGraphWidget::adjustAxis(double value)
{
    unsigned int ticks = 0;
    return tarnis::adjustAxis(value, ticks);
}

void XYGraphWidget::adjustAxisX(double value)
{
    m_maxX = m_manualX ? m_initMaxX : adjustAxis(value);
    viewTouched();
}

void XYGraphWidget::adjustAxisY(double value)
{
    if (m_manualY)
        m_maxY = m_initMaxY;
    else
        m_maxY = m_logScaleY ? tarnis::adjustLogAxis(value) : adjustAxis(value);
    viewTouched();
}

QPointF XYGraphWidget::calcGraphPointF(const QPointF& point) const
{
    return tarnis::valueAt(point, visibleRanges(), m_graphRect);
}

QPoint XYGraphWidget::calcGraphPoint(const QPoint& point) const
{
    const QPointF value = calcGraphPointF(point);
    return { tarnis::roundToInt(value.x()), tarnis::roundToInt(value.y()) };
}

QPointF XYGraphWidget::calcWidgetPointF(const QPointF& point) const
{
    return tarnis::pixelAt(point, visibleRanges(), m_graphRect);
}

QPoint XYGraphWidget::calcWidgetPoint(const QPoint& point) const
{
    const QPointF pixel = calcWidgetPointF(point);
    return { tarnis::roundToInt(pixel.x()), tarnis::roundToInt(pixel.y()) };
}
