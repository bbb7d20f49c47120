// The range box and the two cut windows, which are docked to the plot's window.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/vectorgraphwidget.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"
#include "tarnis/plots/xyrangeinputdialog.h"

#include <QAction>
#include <QDialog>
#include <QGridLayout>

#include <algorithm>

namespace {

/// Compares in the current language, because the plot was just created.
bool isSaving(const QAction& action)
{
    const QString text = action.text();
    return text.startsWith(QLatin1String("Save")) || text == XYGraphWidget::tr("Save PNG...")
        || text == VectorGraphWidget::tr("Save CSV...");
}

QAction* addEntry(VectorGraphWidget* plot, const char* text)
{
    auto* action = new QAction(plot);
    tarnis::setTranslatedText(*action, *plot, [text] { return XY2DGraphWidget::tr(text); });
    plot->addAction(action);
    return action;
}

/// Reduces the menu of a cut plot to saving and the Y range, and adds two entries to enter that range.
void keepCutActions(VectorGraphWidget* plot)
{
    const QString autoScaleY = XYGraphWidget::tr("Auto Scale Y");
    const QList<QAction*> actions = plot->actions();
    for (QAction* action : actions) {
        if (isSaving(*action))
            continue;
        plot->removeAction(action);
        if (action->text() != autoScaleY)
            continue;
        plot->addAction(action);
        QAction* editMin = addEntry(plot, QT_TRANSLATE_NOOP("XY2DGraphWidget", "Edit Min Y ..."));
        QObject::connect(editMin, &QAction::triggered, plot, &XYGraphWidget::onEditMinY);
        QAction* editMax = addEntry(plot, QT_TRANSLATE_NOOP("XY2DGraphWidget", "Edit Max Y ..."));
        QObject::connect(editMax, &QAction::triggered, plot, &XYGraphWidget::onEditMaxY);
    }
}

/// Shows a cut in its plot. A manually set Y range is kept.
void fillCutPlot(VectorGraphWidget& plot, const QString& name, const QString& label, qsizetype bins,
    tarnis::AxisRange initial, tarnis::AxisRange visible, const tarnis::CutSums& sums)
{
    double minY = 0.0;
    double maxY = 0.0;
    const bool autoY = plot.getMinMaxY(minY, maxY);
    plot.init(name, label, static_cast<double>(bins), 0.0, false, autoY);
    plot.initManualX(initial.min, initial.max);
    plot.setMinMaxX(visible.min, visible.max);
    if (!autoY)
        plot.setMinMaxY(minY, maxY);
    plot.setData(sums.values);
    plot.setMaxValue(sums.peak);
}

void closeCutWindow(ModelessWidgetManager& windows)
{
    QWidget* window = windows.map.take(nullptr);
    if (window == nullptr)
        return;
    // The window is deleted in the event loop. By then a new one may have replaced it in the map.
    QObject::disconnect(window, nullptr, &windows, nullptr);
    QObject::connect(window, &QObject::destroyed, &windows, [&windows] { Q_EMIT windows.onClosed(nullptr); });
    window->close();
}

/// A window manager positions a window without an explicit position, possibly after the window was moved to the right
/// one.
void moveOnTo(QWidget* window, const QWidget& plot)
{
    window->move(plot.mapToGlobal(QPoint(0, 0)));
}

VectorGraphWidget* plotIn(const ModelessWidgetManager& windows)
{
    const QWidget* window = windows.map.value(nullptr);
    return window != nullptr ? window->findChild<VectorGraphWidget*>() : nullptr;
}

void raiseIfOpen(QWidget* window)
{
    if (window != nullptr)
        window->raise();
}

} // namespace

void XY2DGraphWidget::refresh1dCut(bool refreshData)
{
    Cut& cut = m_parts->cut;
    cut.open();
    if (refreshData)
        cut.fill();
    cut.place();
    update();
}

void XY2DGraphWidget::Cut::open()
{
    if (m_plot.m_cutRangeDialog == nullptr) {
        auto* const box = new XYRangeInputDialog(&m_plot, 'g', 6);
        m_plot.m_cutRangeDialog = box;
        QObject::connect(box, &XYRangeInputDialog::edited, &m_plot, &XY2DGraphWidget::on1dCutEdited);
        fillRangeBox();
        moveOnTo(box, m_plot);
        box->show();
        box->raise();
    }
    if (!m_plot.m_cutXWindows.map.contains(nullptr))
        openWindow(m_plot.m_cutXWindows, false);
    if (!m_plot.m_cutYWindows.map.contains(nullptr))
        openWindow(m_plot.m_cutYWindows, true);
}

void XY2DGraphWidget::Cut::fillRangeBox()
{
    XYRangeInputDialog* const box = m_plot.m_cutRangeDialog;
    if (box == nullptr)
        return;
    box->setXMin(m_plot.m_cutMinX);
    box->setXMax(m_plot.m_cutMaxX);
    box->setYMin(m_plot.m_cutMinY);
    box->setYMax(m_plot.m_cutMaxY);
}

void XY2DGraphWidget::Cut::openWindow(ModelessWidgetManager& windows, bool upright)
{
    auto* window = new QDialog(&m_plot, Qt::FramelessWindowHint);
    auto* layout = new QGridLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* plot = new VectorGraphWidget(window);
    tarnis::PlotAccess::setCutMap(*plot, m_plot);
    plot->m_doubleBuffered = m_plot.m_doubleBuffered;
    keepCutActions(plot);
    if (upright) {
        plot->m_doubleBuffered = true;
        plot->m_rotation = 90.0;
    }
    layout->addWidget(plot, 0, 0);
    windows.map.insert(nullptr, window);
    QObject::connect(window, &QObject::destroyed, &windows, &ModelessWidgetManager::onDestroyed);
    window->setAttribute(Qt::WA_DeleteOnClose);
    moveOnTo(window, m_plot);
    window->show();
}

VectorGraphWidget* XY2DGraphWidget::Cut::plotX() const
{
    return plotIn(m_plot.m_cutXWindows);
}

VectorGraphWidget* XY2DGraphWidget::Cut::plotY() const
{
    return plotIn(m_plot.m_cutYWindows);
}

void XY2DGraphWidget::Cut::fill()
{
    const tarnis::CutSpan x =
        tarnis::cutSpan(m_plot.binAxisX(), { m_plot.m_cutMinX, m_plot.m_cutMaxX }, m_plot.columnCount());
    const tarnis::CutSpan y =
        tarnis::cutSpan(m_plot.binAxisY(), { m_plot.m_cutMinY, m_plot.m_cutMaxY }, m_plot.m_data.size());
    if (VectorGraphWidget* const plot = plotX())
        fillX(*plot, x, y);
    if (VectorGraphWidget* const plot = plotY())
        fillY(*plot, x, y);
}

void XY2DGraphWidget::Cut::fillX(VectorGraphWidget& plot, const tarnis::CutSpan& x, const tarnis::CutSpan& y)
{
    const tarnis::CutSums sums = tarnis::sumsByColumn(m_plot.m_data, x, y, content());
    const QString label =
        m_plot.m_1dCutActive ? tarnis::cutLabel(m_plot.m_nameY, y.valueOf(y.cutFirst), y.valueOf(y.cutEnd)) : QString();
    fillCutPlot(plot, tarnis::PlotAccess::positionNameX(m_plot), label, m_plot.columnCount(),
        { std::max(m_plot.m_initMinX, m_plot.m_minX), std::min(m_plot.m_maxX, m_plot.m_initMaxX) },
        { m_plot.m_minX, m_plot.m_maxX }, sums);
    plot.setDecimalX(m_plot.m_decimalX);
    plot.setIndex(sums.index);
    if (m_plot.m_display1dCutIntensity)
        plot.setNotes(QStringLiteral("Inside: %1 / Total-X: %2").arg(numStr(sums.inside), numStr(sums.total)));
}

void XY2DGraphWidget::Cut::fillY(VectorGraphWidget& plot, const tarnis::CutSpan& x, const tarnis::CutSpan& y)
{
    const tarnis::CutSums sums = tarnis::sumsByRow(m_plot.m_data, x, y, content());
    const QString label = m_plot.m_1dCutActive
        ? tarnis::cutLabel(tarnis::PlotAccess::positionNameX(m_plot), x.valueOf(x.cutFirst), x.valueOf(x.cutEnd))
        : QString();
    // The plot is turned by a quarter: its axis runs from high to low.
    fillCutPlot(plot, m_plot.m_nameY, label, m_plot.m_data.size(),
        { std::min(m_plot.m_maxY, m_plot.m_initMaxY), std::max(m_plot.m_initMinY, m_plot.m_minY) },
        { m_plot.m_maxY, m_plot.m_minY }, sums);
    plot.setDecimalX(m_plot.m_decimalY);
    plot.setIndex(sums.index);
    if (m_plot.m_display1dCutIntensity)
        plot.setNotes(QStringLiteral("Inside: %1 / Total-Y: %2").arg(numStr(sums.inside), numStr(sums.total)));
}

tarnis::CutContent XY2DGraphWidget::Cut::content() const
{
    if (!m_plot.m_1dCutActive)
        return tarnis::CutContent::Nothing;
    return m_plot.m_1dCutInside ? tarnis::CutContent::InsideOnly : tarnis::CutContent::Everything;
}

tarnis::ScreenPlace XY2DGraphWidget::screenPlace()
{
    const QWidget* owner = parentWidget();
    if (owner == nullptr)
        return { geometry(), frameGeometry().right(), frameGeometry().top() };
    QSize topLeft;
    QSize bottomRight;
    getMargin(topLeft, bottomRight);
    QRect plot;
    plot.setLeft(x() + owner->x() + topLeft.width());
    plot.setTop(y() + owner->y() + topLeft.height());
    plot.setRight(x() + owner->x() + (width() - m_colorBar->width()) - 1 - bottomRight.width());
    plot.setBottom(owner->y() + geometry().bottom() - bottomRight.height());
    return { plot, owner->frameGeometry().right(), owner->frameGeometry().top() };
}

void XY2DGraphWidget::Cut::place()
{
    const tarnis::ScreenPlace place = m_plot.screenPlace();
    m_plot.m_cutRangeDialog->move(place.frameRight, place.frameTop - m_plot.m_cutRangeDialog->height());
    QSize topLeft;
    QSize bottomRight;
    if (VectorGraphWidget* plot = plotX()) {
        plot->getMargin(topLeft, bottomRight);
        const int height = tarnis::cutWindowExtent(place.plot.height());
        QWidget* window = m_plot.m_cutXWindows.map.value(nullptr); // a host may have embedded it in another window
        window->move(place.plot.left() - topLeft.width(), place.frameTop - height);
        window->resize(topLeft.width() + place.plot.width() + bottomRight.width(), height);
        plot->setLogScaleY(m_plot.m_logScale);
        plot->refreshPixmap();
    }
    if (VectorGraphWidget* plot = plotY()) {
        plot->getMargin(topLeft, bottomRight);
        QWidget* window = m_plot.m_cutYWindows.map.value(nullptr);
        window->move(place.frameRight, place.plot.top() - topLeft.width());
        window->resize(
            tarnis::cutWindowExtent(place.plot.width()), place.plot.height() + topLeft.width() + bottomRight.width());
        plot->setLogScaleY(m_plot.m_logScale);
        plot->refreshPixmap();
    }
}

void XY2DGraphWidget::setDisplay1dCutIntensity(bool on)
{
    if (on == m_display1dCutIntensity)
        return;
    m_display1dCutIntensity = on;
    refreshPixmap();
}

void XY2DGraphWidget::show1dCutWithGauss(const PeakSearch::Gaussian& x, const PeakSearch::Gaussian& y)
{
    m_1dCutActive = true;
    init1dCutRectWithDrawingRange();
    refresh1dCut(true);
    VectorGraphWidget* plotX = m_parts->cut.plotX();
    if (plotX != nullptr && !tarnis::plotEqual(x.N, 0.0))
        plotX->showPeak(x);
    VectorGraphWidget* plotY = m_parts->cut.plotY();
    if (plotY != nullptr && !tarnis::plotEqual(y.N, 0.0))
        plotY->showPeak(y);
}

void XY2DGraphWidget::close1dCut()
{
    m_1dCutActive = false;
    update();
    m_parts->cut.close();
}

void XY2DGraphWidget::Cut::close()
{
    if (m_plot.m_cutRangeDialog != nullptr) {
        m_plot.m_cutRangeDialog->hide();
        m_plot.m_cutRangeDialog->deleteLater();
        m_plot.m_cutRangeDialog = nullptr;
    }
    closeCutWindow(m_plot.m_cutXWindows);
    closeCutWindow(m_plot.m_cutYWindows);
}

void XY2DGraphWidget::Cut::raise()
{
    raiseIfOpen(m_plot.m_cutRangeDialog);
    raiseIfOpen(m_plot.m_cutXWindows.map.value(nullptr));
    raiseIfOpen(m_plot.m_cutYWindows.map.value(nullptr));
}

void XY2DGraphWidget::onParentMoved()
{
    if (m_act1dCut->isChecked() || m_1dCutActive)
        refresh1dCut(false);
    else if (IsRoiEnabled())
        refreshROI();
}

void XY2DGraphWidget::onParentActivate()
{
    if (m_act1dCut->isChecked())
        m_parts->cut.raise();
    else if (IsRoiEnabled())
        raiseIfOpen(m_roiWindow);
}
