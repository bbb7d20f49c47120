// The colour scale: its five colours, its limits, and what changes them.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/math/binvalues_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/raster/bincolouring_p.h"

#include <QAction>
#include <QColorDialog>
#include <QPushButton>

QColor XY2DGraphWidget::colMin = QColor(0x00, 0x00, 0x00);
QColor XY2DGraphWidget::colHalfMin = QColor(0x00, 0x00, 0xff);
QColor XY2DGraphWidget::colHalf = QColor(0x00, 0xff, 0x00);
QColor XY2DGraphWidget::colHalfMax = QColor(0xff, 0xff, 0x00);
QColor XY2DGraphWidget::colMax = QColor(0xff, 0x00, 0x00);

bool XY2DGraphWidget::getMaxZ(double& maxZ)
{
    maxZ = m_maxZ;
    return m_colorBar->isAutoScale();
}

void XY2DGraphWidget::setColorBarTicks(int ticks)
{
    m_colorBar->setTicks(ticks);
}

tarnis::ColorScale XY2DGraphWidget::colorScale() const
{
    return { m_minZ, m_maxZ, m_logScale, { colMin, colHalfMin, colHalf, colHalfMax, colMax } };
}

QColor XY2DGraphWidget::getColor(double value)
{
    return colorScale().color(value);
}

bool XY2DGraphWidget::updateColor(
    QColor max, QColor halfMax, QColor half, QColor halfMin, QColor min, QColor background)
{
    for (const QColor& color : { max, halfMax, half, halfMin, min }) {
        if (!color.isValid())
            return false;
    }
    if (background.isValid())
        m_backGroundColor = background;
    setColors(max, halfMax, half, halfMin, min);
    return true;
}

void XY2DGraphWidget::setColors(QColor max, QColor halfMax, QColor half, QColor halfMin, QColor min)
{
    colMax = max;
    colHalfMax = halfMax;
    colHalf = half;
    colHalfMin = halfMin;
    colMin = min;
    updatePattern();
}

void XY2DGraphWidget::feedColorBar()
{
    m_colorBar->updatePos(0.0, colMin);
    m_colorBar->updatePos(0.25, colHalfMin);
    m_colorBar->updatePos(0.5, colHalf);
    m_colorBar->updatePos(0.75, colHalfMax);
    m_colorBar->updatePos(1.0, colMax);
}

void XY2DGraphWidget::fitColorScale()
{
    if (!m_colorBar->isAutoScale())
        return;
    m_minZ = m_logScale ? tarnis::smallestPositiveBin(m_data) : 0.0;
    m_maxZ = getMaxValue();
    m_colorBar->setMin(m_minZ);
    m_colorBar->setMax(m_maxZ);
}

void XY2DGraphWidget::onAutoScaleZToggled(bool checked)
{
    m_colorBar->setAutoScale(checked);
    m_autoButton->setChecked(checked);
    viewTouched();
    m_autoButton->setText(checked ? tr("Auto") : tr("Manual"));
    refreshPixmap();
}

void XY2DGraphWidget::onMaxZChanged(double max)
{
    if (tarnis::plotEqual(max, m_maxZ))
        return;
    m_maxZ = max;
    viewTouched();
    m_colorBar->setMax(max);
    refreshPixmap();
}

void XY2DGraphWidget::onMinZChanged(double min)
{
    if (tarnis::plotEqual(min, m_minZ))
        return;
    m_minZ = min;
    viewTouched();
    m_colorBar->setMin(min);
    refreshPixmap();
}

void XY2DGraphWidget::onLogScale(bool on)
{
    m_logScale = on;
    viewTouched();
    m_colorBar->setLogScale(on);
    refreshPixmap();
    if (m_1dCutActive)
        refresh1dCut(false);
}

void XY2DGraphWidget::updatePattern()
{
    feedColorBar();
    refreshPixmap();
    Q_EMIT onColorBarChanged(this);
}

void XY2DGraphWidget::onPatternRainbow1()
{
    setColors(0xff0000U, 0xffff00U, 0x00ff00U, 0x0000ffU, 0x000000U);
}

void XY2DGraphWidget::onPatternRainbow2()
{
    setColors(0xff0000U, 0xffff00U, 0x00ff00U, 0x0000ffU, 0xff00ffU);
}

void XY2DGraphWidget::onPatternGrays()
{
    setColors(0xffffffU, 0xc0c0c0U, 0x808080U, 0x404040U, 0x000000U);
}

void XY2DGraphWidget::onPatternBlueRedGreen()
{
    setColors(0x00ff00U, 0x808000U, 0xff0000U, 0x800080U, 0x0000ffU);
}

void XY2DGraphWidget::onPatternRedWhiteBlue()
{
    setColors(0x0000ffU, 0x8080ffU, 0xffffffU, 0xff8080U, 0xff0000U);
}

void XY2DGraphWidget::onPatternCyanMagenta()
{
    setColors(0xff00ffU, 0xc040ffU, 0x8080ffU, 0x40c0ffU, 0x00ffffU);
}

void XY2DGraphWidget::onPatternYellowHot()
{
    setColors(0xffffffU, 0xffff00U, 0xff0000U, 0x800000U, 0x000000U);
}

void XY2DGraphWidget::onPatternBlue()
{
    setColors(0xffffffU, 0xc0c0ffU, 0x0000ffU, 0x000080U, 0x000000U);
}

void XY2DGraphWidget::onColorReverse()
{
    setColors(colMin, colHalfMin, colHalf, colHalfMax, colMax);
}

void XY2DGraphWidget::askColor(QColor& color, const QString& title)
{
    auto* const dialog = new QColorDialog(color, this);
    dialog->setWindowTitle(title);
    if (!tarnis::isAccepted(dialog))
        return;
    const QColor chosen = dialog->selectedColor();
    delete dialog;
    if (!chosen.isValid())
        return;
    color = chosen;
    updatePattern();
}

void XY2DGraphWidget::onMinColor()
{
    askColor(colMin, tr("Min Color"));
}

void XY2DGraphWidget::onHalfMinColor()
{
    askColor(colHalfMin, tr("Half Min Color"));
}

void XY2DGraphWidget::onHalfColor()
{
    askColor(colHalf, tr("Half Color"));
}

void XY2DGraphWidget::onHalfMaxColor()
{
    askColor(colHalfMax, tr("Half Max Color"));
}

void XY2DGraphWidget::onMaxColor()
{
    askColor(colMax, tr("Max Color"));
}

void XY2DGraphWidget::onBackGroundColor()
{
    askColor(m_backGroundColor, tr("Background Color"));
}

void XY2DGraphWidget::onEditingColorBar()
{
    m_editingColorBar = true;
}

void XY2DGraphWidget::onFinishEditingColorBar()
{
    m_finishedEditingColorBar = true;
}
