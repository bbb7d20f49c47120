// The colour scale: its five colours, its limits, and what changes them, the menu of the colour bar among it.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/math/binvalues_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"

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

tarnis::ColourScale XY2DGraphWidget::ColourControls::scale() const
{
    using tarnis::ScaleCurve;
    const tarnis::MapColouring* const chosen = m_plot.m_colouring.get();
    const bool isRoot = chosen != nullptr && chosen->squareRoot;
    const ScaleCurve curve =
        m_plot.m_logScale ? ScaleCurve::Log : (isRoot ? ScaleCurve::SquareRoot : ScaleCurve::Linear);
    if (const tarnis::ColourTable* table = tarnis::tableInUse(chosen))
        return { m_plot.m_minZ, m_plot.m_maxZ, curve, *table };
    return { m_plot.m_minZ, m_plot.m_maxZ, curve,
        chosen != nullptr && chosen->colors ? *chosen->colors : tarnis::PlotAccess::sharedColours() };
}

tarnis::BinGeometry XY2DGraphWidget::ColourControls::geometry(const QRect& graph) const
{
    return { graph, tarnis::visibleBins(m_plot.binAxisX(), graph.width(), m_plot.columnCount()),
        tarnis::visibleBins(m_plot.binAxisY(), graph.height(), m_plot.m_data.size()) };
}

std::optional<tarnis::BinRows> XY2DGraphWidget::ColourControls::reducedBins(const tarnis::BinGeometry& view) const
{
    using tarnis::BinReduction;
    const BinReduction reduction = m_plot.m_colouring != nullptr ? m_plot.m_colouring->reduction : BinReduction::First;
    if (reduction == BinReduction::First || !tarnis::hasSharedPixels(view))
        return std::nullopt;
    return tarnis::reducedBins(m_plot.m_data, view, reduction);
}

QColor XY2DGraphWidget::getColor(double value)
{
    return m_parts->colors.scale().colour(value);
}

bool XY2DGraphWidget::updateColor(
    QColor max, QColor halfMax, QColor half, QColor halfMin, QColor min, QColor background)
{
    for (const QColor& colour : { max, halfMax, half, halfMin, min }) {
        if (!colour.isValid())
            return false;
    }
    if (background.isValid())
        m_backGroundColor = background;
    m_parts->colors.setPoints({ min, halfMin, half, halfMax, max });
    return true;
}

void XY2DGraphWidget::ColourControls::setPoints(const tarnis::ScaleColours& colors)
{
    tarnis::PlotAccess::setSharedColours(colors);
    m_plot.updatePattern();
}

void XY2DGraphWidget::ColourControls::setPoints(tarnis::FivePoints palette)
{
    setPoints(tarnis::fivePoints(palette));
}

void XY2DGraphWidget::ColourControls::feedBar()
{
    if (tarnis::PlotAccess::feedChosenColours(m_plot))
        return;
    const tarnis::ScaleColours colors = tarnis::PlotAccess::sharedColours();
    for (std::size_t i = 0; i < colors.size(); ++i)
        m_plot.m_colorBar->updatePos(0.25 * static_cast<double>(i), colors[i]);
}

void XY2DGraphWidget::ColourControls::fitScale()
{
    ColorBarWidget& bar = *m_plot.m_colorBar;
    if (!bar.isAutoScale())
        return;
    m_plot.m_minZ = m_plot.m_logScale ? tarnis::smallestPositiveBin(m_plot.m_data) : 0.0;
    m_plot.m_maxZ = m_plot.getMaxValue();
    bar.setMin(m_plot.m_minZ);
    bar.setMax(m_plot.m_maxZ);
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
    tarnis::PlotAccess::dropColours(*this);
    m_parts->colors.feedBar();
    refreshPixmap();
    Q_EMIT onColorBarChanged(this);
}

void XY2DGraphWidget::onPatternRainbow1()
{
    m_parts->colors.setPoints(tarnis::FivePoints::Rainbow1);
}

void XY2DGraphWidget::onPatternRainbow2()
{
    m_parts->colors.setPoints(tarnis::FivePoints::Rainbow2);
}

void XY2DGraphWidget::onPatternGrays()
{
    m_parts->colors.setPoints(tarnis::FivePoints::Grays);
}

void XY2DGraphWidget::onPatternBlueRedGreen()
{
    m_parts->colors.setPoints(tarnis::FivePoints::BlueRedGreen);
}

void XY2DGraphWidget::onPatternRedWhiteBlue()
{
    m_parts->colors.setPoints(tarnis::FivePoints::RedWhiteBlue);
}

void XY2DGraphWidget::onPatternCyanMagenta()
{
    m_parts->colors.setPoints(tarnis::FivePoints::CyanMagenta);
}

void XY2DGraphWidget::onPatternYellowHot()
{
    m_parts->colors.setPoints(tarnis::FivePoints::YellowHot);
}

void XY2DGraphWidget::onPatternBlue()
{
    m_parts->colors.setPoints(tarnis::FivePoints::Blue);
}

void XY2DGraphWidget::onColorReverse()
{
    m_parts->colors.setPoints({ colMax, colHalfMax, colHalf, colHalfMin, colMin });
}

void XY2DGraphWidget::ColourControls::choose(QColor& colour, const QString& title)
{
    auto* const dialog = new QColorDialog(colour, &m_plot);
    dialog->setWindowTitle(title);
    if (!tarnis::isAccepted(dialog))
        return;
    const QColor chosen = dialog->selectedColor();
    delete dialog;
    if (!chosen.isValid())
        return;
    colour = chosen;
    m_plot.updatePattern();
}

void XY2DGraphWidget::onMinColor()
{
    m_parts->colors.choose(colMin, tr("Min Color"));
}

void XY2DGraphWidget::onHalfMinColor()
{
    m_parts->colors.choose(colHalfMin, tr("Half Min Color"));
}

void XY2DGraphWidget::onHalfColor()
{
    m_parts->colors.choose(colHalf, tr("Half Color"));
}

void XY2DGraphWidget::onHalfMaxColor()
{
    m_parts->colors.choose(colHalfMax, tr("Half Max Color"));
}

void XY2DGraphWidget::onMaxColor()
{
    m_parts->colors.choose(colMax, tr("Max Color"));
}

void XY2DGraphWidget::onBackGroundColor()
{
    m_parts->colors.choose(m_backGroundColor, tr("Background Color"));
}

void XY2DGraphWidget::onEditingColorBar()
{
    m_editingColorBar = true;
}

void XY2DGraphWidget::onFinishEditingColorBar()
{
    m_finishedEditingColorBar = true;
}

void XY2DGraphWidget::ColourControls::openMenu(const QPoint& globalPosition)
{
    using Slot = void (XY2DGraphWidget::*)();
    XY2DGraphWidget* const plot = &m_plot;
    if (plot->m_colorBarMenu != nullptr)
        plot->m_colorBarMenu->deleteLater();
    auto* const menu = new QMenu(plot);
    plot->m_colorBarMenu = menu;
    QObject::connect(menu, &QMenu::aboutToHide, plot, &XY2DGraphWidget::onColorBarMenuHide);
    const auto addEntry = [=](const QString& text, Slot slot) { menu->addAction(text, plot, slot); };
    // A colour dialog opens after the menu was closed.
    const auto addColour = [=](const QString& text, const QColor& colour, Slot slot) {
        QPixmap icon(15, 15);
        icon.fill(colour);
        QObject::connect(menu->addAction(QIcon(icon), text), &QAction::triggered, plot, slot, Qt::QueuedConnection);
    };
    addEntry(QStringLiteral("Pattern - Rainbow1"), &XY2DGraphWidget::onPatternRainbow1);
    addEntry(QStringLiteral("Pattern - Rainbow2"), &XY2DGraphWidget::onPatternRainbow2);
    addEntry(QStringLiteral("Pattern - Grayscale"), &XY2DGraphWidget::onPatternGrays);
    addEntry(QStringLiteral("Pattern - BlueRedGreen"), &XY2DGraphWidget::onPatternBlueRedGreen);
    addEntry(QStringLiteral("Pattern - RedWhiteBlue"), &XY2DGraphWidget::onPatternRedWhiteBlue);
    addEntry(QStringLiteral("Pattern - CyanMagenta"), &XY2DGraphWidget::onPatternCyanMagenta);
    addEntry(QStringLiteral("Pattern - YellowHot"), &XY2DGraphWidget::onPatternYellowHot);
    addEntry(QStringLiteral("Pattern - Blue"), &XY2DGraphWidget::onPatternBlue);
    addColour(QStringLiteral(" Edit - Max Color"), colMax, &XY2DGraphWidget::onMaxColor);
    addColour(QStringLiteral(" Edit - Half Max Color"), colHalfMax, &XY2DGraphWidget::onHalfMaxColor);
    addColour(QStringLiteral(" Edit - Half Color"), colHalf, &XY2DGraphWidget::onHalfColor);
    addColour(QStringLiteral(" Edit - Half Min Color"), colHalfMin, &XY2DGraphWidget::onHalfMinColor);
    addColour(QStringLiteral(" Edit - Min Color"), colMin, &XY2DGraphWidget::onMinColor);
    addEntry(QStringLiteral("Edit - Reverse"), &XY2DGraphWidget::onColorReverse);
    addColour(QStringLiteral(" Edit - Back Ground Color"), m_backGroundColor, &XY2DGraphWidget::onBackGroundColor);
    menu->popup(globalPosition);
}

void XY2DGraphWidget::onColorBarMenuHide()
{
    // A replaced menu may be hidden late; its replacement is kept.
    if (m_colorBarMenu == nullptr || (sender() != nullptr && sender() != m_colorBarMenu))
        return;
    m_colorBarMenu->deleteLater();
    m_colorBarMenu = nullptr;
}
