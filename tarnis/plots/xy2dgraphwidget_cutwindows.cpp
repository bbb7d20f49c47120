// The range box and the two cut windows, which are docked to the plot's window.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/math/projection_p.h"
#include "tarnis/plots/vectorgraphwidget.h"
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

void raiseIfOpen(QWidget* window)
{
    if (window != nullptr)
        window->raise();
}

} // namespace

void XY2DGraphWidget::refresh1dCut(bool refreshData)
{
    if (m_cutRangeDialog == nullptr) {
        m_cutRangeDialog = new XYRangeInputDialog(this, 'g', 6);
        connect(m_cutRangeDialog, &XYRangeInputDialog::edited, this, &XY2DGraphWidget::on1dCutEdited);
        fillRangeBox();
        moveOnTo(m_cutRangeDialog, *this);
        m_cutRangeDialog->show();
        m_cutRangeDialog->raise();
    }
    if (!m_cutXWindows.map.contains(nullptr))
        openCutWindow(m_cutXWindows, false);
    if (!m_cutYWindows.map.contains(nullptr))
        openCutWindow(m_cutYWindows, true);
    if (refreshData) {
        fillCutX();
        fillCutY();
    }
    placeCutWindows();
    update();
}

void XY2DGraphWidget::openCutWindow(ModelessWidgetManager& windows, bool upright)
{
    auto* window = new QDialog(this, Qt::FramelessWindowHint);
    auto* layout = new QGridLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* plot = new VectorGraphWidget(window);
    plot->m_doubleBuffered = m_doubleBuffered;
    keepCutActions(plot);
    if (upright) {
        plot->m_doubleBuffered = true;
        plot->m_rotation = 90.0;
    }
    layout->addWidget(plot, 0, 0);
    windows.map.insert(nullptr, window);
    connect(window, &QObject::destroyed, &windows, &ModelessWidgetManager::onDestroyed);
    window->setAttribute(Qt::WA_DeleteOnClose);
    moveOnTo(window, *this);
    window->show();
}

VectorGraphWidget* XY2DGraphWidget::cutPlot(const ModelessWidgetManager& windows)
{
    const QWidget* window = windows.map.value(nullptr);
    return window != nullptr ? window->findChild<VectorGraphWidget*>() : nullptr;
}

void XY2DGraphWidget::fillCutX()
{
    VectorGraphWidget* plot = cutPlot(m_cutXWindows);
    if (plot == nullptr)
        return;
    const tarnis::CutSpan x = tarnis::cutSpan(binAxisX(), { m_cutMinX, m_cutMaxX }, columnCount());
    const tarnis::CutSpan y = tarnis::cutSpan(binAxisY(), { m_cutMinY, m_cutMaxY }, m_data.size());
    const tarnis::CutSums sums = tarnis::sumsByColumn(m_data, x, y, cutContent());
    const QString label =
        m_1dCutActive ? tarnis::cutLabel(m_nameY, y.valueOf(y.cutFirst), y.valueOf(y.cutEnd)) : QString();
    fillCutPlot(*plot, m_nameX, label, columnCount(), { std::max(m_initMinX, m_minX), std::min(m_maxX, m_initMaxX) },
        { m_minX, m_maxX }, sums);
    plot->setDecimalX(m_decimalX);
    plot->setIndex(sums.index);
    if (m_display1dCutIntensity)
        plot->setNotes(QStringLiteral("Inside: %1 / Total-X: %2").arg(numStr(sums.inside), numStr(sums.total)));
}

void XY2DGraphWidget::fillCutY()
{
    VectorGraphWidget* plot = cutPlot(m_cutYWindows);
    if (plot == nullptr)
        return;
    const tarnis::CutSpan x = tarnis::cutSpan(binAxisX(), { m_cutMinX, m_cutMaxX }, columnCount());
    const tarnis::CutSpan y = tarnis::cutSpan(binAxisY(), { m_cutMinY, m_cutMaxY }, m_data.size());
    const tarnis::CutSums sums = tarnis::sumsByRow(m_data, x, y, cutContent());
    const QString label =
        m_1dCutActive ? tarnis::cutLabel(m_nameX, x.valueOf(x.cutFirst), x.valueOf(x.cutEnd)) : QString();
    // The plot is rotated, so its axis is reversed.
    fillCutPlot(*plot, m_nameY, label, m_data.size(), { std::min(m_maxY, m_initMaxY), std::max(m_initMinY, m_minY) },
        { m_maxY, m_minY }, sums);
    plot->setDecimalX(m_decimalY);
    plot->setIndex(sums.index);
    if (m_display1dCutIntensity)
        plot->setNotes(QStringLiteral("Inside: %1 / Total-Y: %2").arg(numStr(sums.inside), numStr(sums.total)));
}

tarnis::CutContent XY2DGraphWidget::cutContent() const
{
    if (!m_1dCutActive)
        return tarnis::CutContent::Nothing;
    return m_1dCutInside ? tarnis::CutContent::InsideOnly : tarnis::CutContent::Everything;
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

void XY2DGraphWidget::placeCutWindows()
{
    const tarnis::ScreenPlace place = screenPlace();
    m_cutRangeDialog->move(place.frameRight, place.frameTop - m_cutRangeDialog->height());
    QSize topLeft;
    QSize bottomRight;
    if (VectorGraphWidget* plot = cutPlot(m_cutXWindows)) {
        plot->getMargin(topLeft, bottomRight);
        const int height = tarnis::cutWindowExtent(place.plot.height());
        QWidget* window = m_cutXWindows.map.value(nullptr); // a host may have embedded it in another window
        window->move(place.plot.left() - topLeft.width(), place.frameTop - height);
        window->resize(topLeft.width() + place.plot.width() + bottomRight.width(), height);
        plot->setLogScaleY(m_logScale);
        plot->refreshPixmap();
    }
    if (VectorGraphWidget* plot = cutPlot(m_cutYWindows)) {
        plot->getMargin(topLeft, bottomRight);
        QWidget* window = m_cutYWindows.map.value(nullptr);
        window->move(place.frameRight, place.plot.top() - topLeft.width());
        window->resize(
            tarnis::cutWindowExtent(place.plot.width()), place.plot.height() + topLeft.width() + bottomRight.width());
        plot->setLogScaleY(m_logScale);
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
    VectorGraphWidget* plotX = cutPlot(m_cutXWindows);
    if (plotX != nullptr && !tarnis::plotEqual(x.N, 0.0))
        plotX->showPeak(x);
    VectorGraphWidget* plotY = cutPlot(m_cutYWindows);
    if (plotY != nullptr && !tarnis::plotEqual(y.N, 0.0))
        plotY->showPeak(y);
}

void XY2DGraphWidget::close1dCut()
{
    m_1dCutActive = false;
    update();
    if (m_cutRangeDialog != nullptr) {
        m_cutRangeDialog->hide();
        m_cutRangeDialog->deleteLater();
        m_cutRangeDialog = nullptr;
    }
    closeCutWindow(m_cutXWindows);
    closeCutWindow(m_cutYWindows);
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
    if (m_act1dCut->isChecked()) {
        raiseIfOpen(m_cutRangeDialog);
        raiseIfOpen(m_cutXWindows.map.value(nullptr));
        raiseIfOpen(m_cutYWindows.map.value(nullptr));
    } else if (IsRoiEnabled()) {
        raiseIfOpen(m_roiWindow);
    }
}
