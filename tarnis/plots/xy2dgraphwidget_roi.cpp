// Regions of interest: the tool, its window, and the rectangles over the map.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/math/projection_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/viewselectedroi.h"

#include <QAction>
#include <QDialog>
#include <QGridLayout>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int maxRegions = 8;

/// A corner of a region. Values beyond any region are clamped to a limit that prevents overflow of widths.
int regionEdge(double value)
{
    return std::clamp(tarnis::roundToInt(value), -1000000000, 1000000000);
}

/// The rectangle between two corners in any order.
QRect between(const QPoint& a, const QPoint& b)
{
    const auto limited = [](int pixel) { return tarnis::limitedPixel(pixel); };
    return { QPoint(limited(std::min(a.x(), b.x())), limited(std::min(a.y(), b.y()))),
        QPoint(limited(std::max(a.x(), b.x())), limited(std::max(a.y(), b.y()))) };
}

} // namespace

void XY2DGraphWidget::enalbeRoiSelect(QRect range)
{
    range = range.normalized();
    if (range.width() == 0 || range.height() == 0) {
        TARNIS_TRACE(QStringLiteral("XY2DGraphWidget::enalbeRoi(): range is invalid."));
        return;
    }
    m_roiRange = range;
    if (m_actRoi != nullptr) {
        renewRegionWindow();
        return;
    }
    m_actRoi = new QAction(this);
    tarnis::setTranslatedText(*m_actRoi, *this, [] { return tr("Select ROI..."); });
    m_actRoi->setCheckable(true);
    m_actRoi->setChecked(false);
    connect(m_actRoi, &QAction::toggled, this, &XY2DGraphWidget::onROI);
    addAction(m_actRoi);
}

void XY2DGraphWidget::SetRoiEnabled(bool on)
{
    if (m_actRoi != nullptr)
        m_actRoi->setChecked(on);
}

bool XY2DGraphWidget::IsRoiEnabled() const
{
    return m_actRoi != nullptr && m_actRoi->isChecked();
}

void XY2DGraphWidget::showRoiMenu(bool visible)
{
    if (m_actRoi == nullptr)
        return;
    m_actRoi->setVisible(visible);
    if (!visible)
        m_actRoi->setChecked(false);
}

void XY2DGraphWidget::hideRegionWindow()
{
    if (m_roiWindow != nullptr)
        m_roiWindow->hide();
    refreshPixmap();
}

void XY2DGraphWidget::closeROI()
{
    if (IsRoiEnabled())
        hideRegionWindow();
}

ViewSelectedROI* XY2DGraphWidget::GetViewSelectedROI()
{
    return m_roiWindow != nullptr ? m_roiWindow->findChild<ViewSelectedROI*>() : nullptr;
}

void XY2DGraphWidget::makeRegionWindow()
{
    m_roiWindow = new QDialog(this, Qt::FramelessWindowHint);
    auto* layout = new QGridLayout(m_roiWindow);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* view = new ViewSelectedROI(maxRegions, m_roiRange, m_roiWindow);
    connect(view, &ViewSelectedROI::RoiChanged, this, &XY2DGraphWidget::onROIChanged);
    layout->addWidget(view, 0, 0);
}

/// The list in the window has a fixed range: a new range needs a new list, with the old regions.
void XY2DGraphWidget::renewRegionWindow()
{
    const ViewSelectedROI* old = GetViewSelectedROI();
    if (old == nullptr)
        return;
    const QList<QRect> regions = old->getRoiList();
    const int selected = old->currentIndex();
    m_roiWindow->hide();
    m_roiWindow->deleteLater();
    makeRegionWindow();
    GetViewSelectedROI()->setRoiList(regions, selected);
    if (IsRoiEnabled())
        refreshROI();
}

void XY2DGraphWidget::refreshROI()
{
    if (m_roiWindow == nullptr)
        makeRegionWindow();
    const tarnis::ScreenPlace place = screenPlace();
    m_roiWindow->move(place.frameRight, place.plot.top());
    m_roiWindow->resize(tarnis::cutWindowExtent(place.plot.width()), place.plot.height());
    m_roiWindow->show();
    m_roiWindow->raise();
}

void XY2DGraphWidget::onROI(bool on)
{
    if (!on) {
        updateModeAndCursor();
        hideRegionWindow();
        Q_EMIT onSelectRoiEnd();
        return;
    }
    uncheckTools();
    m_act1dCut->setChecked(false);
    updateModeAndCursor();
    refreshROI();
    close1dCut();
    Q_EMIT onSelectRoiBegin(GetViewSelectedROI()->getRoiList());
}

void XY2DGraphWidget::onROIChanged(const QList<QRect>& roiList, int /*selectedIndex*/, bool dataChanged)
{
    if (dataChanged)
        Q_EMIT onSelectRoiChanged(roiList);
    refreshPixmap();
}

void XY2DGraphWidget::addRegion(double x1, double x2, double y1, double y2)
{
    ViewSelectedROI* view = GetViewSelectedROI();
    if (view == nullptr)
        return;
    view->addRoi({ QPoint(regionEdge(x1), regionEdge(y1)), QPoint(regionEdge(x2), regionEdge(y2)) });
    refreshROI();
}

void XY2DGraphWidget::paintRegions(QPainter& painter)
{
    painter.setBrush(Qt::NoBrush);
    const ViewSelectedROI* view = GetViewSelectedROI();
    if (view == nullptr)
        return;
    const int selected = view->isEditable() ? view->currentIndex() : -1;
    const QList<QRect>& regions = view->getRoiList();
    const tarnis::PlotStyling* const styling = tarnis::stylingOf(this);
    const QColor color = styling != nullptr ? styling->lineOverData() : QColor(Qt::white);
    for (qsizetype i = 0; i < regions.size(); ++i) {
        QPen pen(color, 1, Qt::SolidLine);
        if (i == selected) {
            pen.setStyle(Qt::CustomDashLine);
            pen.setDashPattern({ 5, 5 });
        }
        const QRect rect =
            between(calcWidgetPoint(regions.at(i).topLeft()), calcWidgetPoint(regions.at(i).bottomRight()));
        if (styling != nullptr) { // a dark outline, for contrast with light colours
            painter.setPen(QPen(QColor(0, 0, 0, 140), 3));
            tarnis::drawEvenRect(painter, rect);
        }
        painter.setPen(pen);
        tarnis::drawEvenRect(painter, rect);
    }
}
