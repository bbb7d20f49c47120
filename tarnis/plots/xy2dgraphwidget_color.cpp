// The colour scale: its five colours, its limits, and what changes them, the menu of the colour bar among it.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/mapcoloring_p.h"
#include "tarnis/plots/math/binvalues_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/raster/bincolouring_p.h"

#include <QAction>
#include <QColorDialog>
#include <QMenu>
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
    using tarnis::ScaleCurve;
    const bool isRoot = m_coloring != nullptr && m_coloring->squareRoot;
    const ScaleCurve curve = m_logScale ? ScaleCurve::Log : (isRoot ? ScaleCurve::SquareRoot : ScaleCurve::Linear);
    if (const tarnis::ColorTable* table = tarnis::tableInUse(m_coloring.get()))
        return { m_minZ, m_maxZ, curve, *table };
    return { m_minZ, m_maxZ, curve,
        m_coloring != nullptr && m_coloring->colors
            ? *m_coloring->colors
            : tarnis::ScaleColors { colMin, colHalfMin, colHalf, colHalfMax, colMax } };
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
    if (tarnis::PlotAccess::feedChosenColors(*this))
        return;
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
    // The five points were set, which overrides the settings of tools.
    tarnis::PlotAccess::dropColors(*this);
    feedColorBar();
    refreshPixmap();
    Q_EMIT onColorBarChanged(this);
}

void XY2DGraphWidget::setFivePoints(tarnis::FivePoints palette)
{
    const tarnis::ScaleColors colors = tarnis::fivePoints(palette);
    setColors(colors[4], colors[3], colors[2], colors[1], colors[0]);
}

void XY2DGraphWidget::onPatternRainbow1()
{
    setFivePoints(tarnis::FivePoints::Rainbow1);
}

void XY2DGraphWidget::onPatternRainbow2()
{
    setFivePoints(tarnis::FivePoints::Rainbow2);
}

void XY2DGraphWidget::onPatternGrays()
{
    setFivePoints(tarnis::FivePoints::Grays);
}

void XY2DGraphWidget::onPatternBlueRedGreen()
{
    setFivePoints(tarnis::FivePoints::BlueRedGreen);
}

void XY2DGraphWidget::onPatternRedWhiteBlue()
{
    setFivePoints(tarnis::FivePoints::RedWhiteBlue);
}

void XY2DGraphWidget::onPatternCyanMagenta()
{
    setFivePoints(tarnis::FivePoints::CyanMagenta);
}

void XY2DGraphWidget::onPatternYellowHot()
{
    setFivePoints(tarnis::FivePoints::YellowHot);
}

void XY2DGraphWidget::onPatternBlue()
{
    setFivePoints(tarnis::FivePoints::Blue);
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

void XY2DGraphWidget::openColorBarMenu(const QPoint& globalPosition)
{
    using Slot = void (XY2DGraphWidget::*)();
    if (m_colorBarMenu != nullptr)
        m_colorBarMenu->deleteLater();
    m_colorBarMenu = new QMenu(this);
    connect(m_colorBarMenu, &QMenu::aboutToHide, this, &XY2DGraphWidget::onColorBarMenuHide);
    const auto addEntry = [this](const QString& text, Slot slot) { m_colorBarMenu->addAction(text, this, slot); };
    // A colour dialog opens after the menu is gone.
    const auto addColor = [this](const QString& text, const QColor& color, Slot slot) {
        QPixmap icon(15, 15);
        icon.fill(color);
        connect(m_colorBarMenu->addAction(QIcon(icon), text), &QAction::triggered, this, slot, Qt::QueuedConnection);
    };
    addEntry(QStringLiteral("Pattern - Rainbow1"), &XY2DGraphWidget::onPatternRainbow1);
    addEntry(QStringLiteral("Pattern - Rainbow2"), &XY2DGraphWidget::onPatternRainbow2);
    addEntry(QStringLiteral("Pattern - Grayscale"), &XY2DGraphWidget::onPatternGrays);
    addEntry(QStringLiteral("Pattern - BlueRedGreen"), &XY2DGraphWidget::onPatternBlueRedGreen);
    addEntry(QStringLiteral("Pattern - RedWhiteBlue"), &XY2DGraphWidget::onPatternRedWhiteBlue);
    addEntry(QStringLiteral("Pattern - CyanMagenta"), &XY2DGraphWidget::onPatternCyanMagenta);
    addEntry(QStringLiteral("Pattern - YellowHot"), &XY2DGraphWidget::onPatternYellowHot);
    addEntry(QStringLiteral("Pattern - Blue"), &XY2DGraphWidget::onPatternBlue);
    addColor(QStringLiteral(" Edit - Max Color"), colMax, &XY2DGraphWidget::onMaxColor);
    addColor(QStringLiteral(" Edit - Half Max Color"), colHalfMax, &XY2DGraphWidget::onHalfMaxColor);
    addColor(QStringLiteral(" Edit - Half Color"), colHalf, &XY2DGraphWidget::onHalfColor);
    addColor(QStringLiteral(" Edit - Half Min Color"), colHalfMin, &XY2DGraphWidget::onHalfMinColor);
    addColor(QStringLiteral(" Edit - Min Color"), colMin, &XY2DGraphWidget::onMinColor);
    addEntry(QStringLiteral("Edit - Reverse"), &XY2DGraphWidget::onColorReverse);
    addColor(QStringLiteral(" Edit - Back Ground Color"), m_backGroundColor, &XY2DGraphWidget::onBackGroundColor);
    m_colorBarMenu->popup(globalPosition);
}

void XY2DGraphWidget::onColorBarMenuHide()
{
    // A menu that has been replaced hides late; the one in its place stays.
    if (m_colorBarMenu == nullptr || (sender() != nullptr && sender() != m_colorBarMenu))
        return;
    m_colorBarMenu->deleteLater();
    m_colorBarMenu = nullptr;
}
