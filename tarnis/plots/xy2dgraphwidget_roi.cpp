// Regions of interest: the tool, its window, and the rectangles over the map.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/viewselectedroi.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"

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
        m_parts->regions.renewWindow();
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

void XY2DGraphWidget::closeROI()
{
    if (IsRoiEnabled())
        m_parts->regions.hideWindow();
}

ViewSelectedROI* XY2DGraphWidget::GetViewSelectedROI()
{
    return m_roiWindow != nullptr ? m_roiWindow->findChild<ViewSelectedROI*>() : nullptr;
}

void XY2DGraphWidget::refreshROI()
{
    if (m_roiWindow == nullptr)
        m_parts->regions.makeWindow();
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
        m_parts->regions.hideWindow();
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

void XY2DGraphWidget::Regions::makeWindow()
{
    auto* const window = new QDialog(&m_plot, Qt::FramelessWindowHint);
    m_plot.m_roiWindow = window;
    auto* layout = new QGridLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* view = new ViewSelectedROI(maxRegions, m_plot.m_roiRange, window);
    QObject::connect(view, &ViewSelectedROI::RoiChanged, &m_plot, &XY2DGraphWidget::onROIChanged);
    layout->addWidget(view, 0, 0);
}

/// The list in the window keeps its first range: a new range needs a new list.
void XY2DGraphWidget::Regions::renewWindow()
{
    const ViewSelectedROI* old = m_plot.GetViewSelectedROI();
    if (old == nullptr)
        return;
    const QList<QRect> regions = old->getRoiList();
    const int selected = old->currentIndex();
    m_plot.m_roiWindow->hide();
    m_plot.m_roiWindow->deleteLater();
    makeWindow();
    m_plot.GetViewSelectedROI()->setRoiList(regions, selected);
    if (m_plot.IsRoiEnabled())
        m_plot.refreshROI();
}

void XY2DGraphWidget::Regions::hideWindow()
{
    if (m_plot.m_roiWindow != nullptr)
        m_plot.m_roiWindow->hide();
    m_plot.refreshPixmap();
}

void XY2DGraphWidget::Regions::add(double x1, double x2, double y1, double y2)
{
    ViewSelectedROI* view = m_plot.GetViewSelectedROI();
    if (view == nullptr)
        return;
    view->addRoi({ QPoint(regionEdge(x1), regionEdge(y1)), QPoint(regionEdge(x2), regionEdge(y2)) });
    m_plot.refreshROI();
}

void XY2DGraphWidget::Regions::paint(QPainter& painter)
{
    painter.setBrush(Qt::NoBrush);
    const ViewSelectedROI* view = m_plot.GetViewSelectedROI();
    if (view == nullptr)
        return;
    const int selected = view->isEditable() ? view->currentIndex() : -1;
    const QList<QRect>& regions = view->getRoiList();
    const tarnis::PlotStyling* const styling = tarnis::stylingOf(&m_plot);
    const QColor colour = styling != nullptr ? styling->lineOverData() : QColor(Qt::white);
    for (qsizetype i = 0; i < regions.size(); ++i) {
        QPen pen(colour, 1, Qt::SolidLine);
        if (i == selected) {
            pen.setStyle(Qt::CustomDashLine);
            pen.setDashPattern({ 5, 5 });
        }
        const QRect rect = between(
            m_plot.calcWidgetPoint(regions.at(i).topLeft()), m_plot.calcWidgetPoint(regions.at(i).bottomRight()));
        if (styling != nullptr) { // a dark outline, for contrast with light colours
            painter.setPen(QPen(QColor(0, 0, 0, 140), 3));
            tarnis::drawEvenRect(painter, rect);
        }
        painter.setPen(pen);
        tarnis::drawEvenRect(painter, rect);
    }
}
