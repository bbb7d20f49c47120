// Images, CSV and printing.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/foundation/saving_p.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/math/csvtext_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/vectorgraphwidget.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"

#include <QDebug>
#include <QPainter>
#include <QPrintDialog>

#include <algorithm>

QPixmap* XY2DGraphWidget::toPixmap()
{
    auto pixmap = std::make_unique<QPixmap>(tarnis::windowPixmap(*this, size()));
    QPainter painter;
    if (pixmap->isNull() || !painter.begin(pixmap.get()))
        return pixmap.release(); // a plot without size, or too large for the memory
    initPainter(&painter);
    tarnis::useWidgetCoordinates(painter, *pixmap, size());
    paint(painter, nullptr);
    paintSelectedRect(painter);
    painter.setClipping(false);
    if (const auto* hooks = tarnis::PlotHooks::existing(*this))
        hooks->paintOverlays(painter, true);
    const QPixmap bar = m_colorBar->getPixmap();
    painter.drawPixmap(QRect(QPoint(width() - m_colorBar->width(), m_colorBar->y()), m_colorBar->size()), bar);
    return pixmap.release();
}

void XY2DGraphWidget::onSave()
{
    XYGraphWidget::onSave(); // uses this class's picture
}

void XY2DGraphWidget::onSaveCsv()
{
    tarnis::saveTable(
        this, tr("Save CSV"), tr("CSV Files (*.csv *.txt)"), [this] { return tarnis::csvOfRows(m_data); });
}

void XY2DGraphWidget::onPrint()
{
    const Cut& cut = m_parts->cut;
    VectorGraphWidget* plotX = cut.plotX();
    VectorGraphWidget* plotY = cut.plotY();
    if (plotX == nullptr || plotY == nullptr) {
        XYGraphWidget::onPrint();
        return;
    }
    auto* const dialog = new QPrintDialog(&m_printer, this);
    if (!tarnis::isAccepted(dialog))
        return;
    delete dialog;
    // The cuts may have been closed in the meantime.
    plotX = cut.plotX();
    plotY = cut.plotY();
    if (plotX != nullptr && plotY != nullptr)
        printWithCuts(*plotX, *plotY);
}

void XY2DGraphWidget::printWithCuts(VectorGraphWidget& plotX, VectorGraphWidget& plotY)
{
    const std::unique_ptr<QPixmap> map(toPixmap());
    const std::unique_ptr<QPixmap> cutX(plotX.toPixmap());
    const std::unique_ptr<QPixmap> cutY(plotY.toPixmap());
    const QSize mapSize = map->deviceIndependentSize().toSize();
    const QSize sizeX = cutX->deviceIndependentSize().toSize();
    const QSize sizeY = cutY->deviceIndependentSize().toSize();
    QSize margin;
    QSize marginX;
    QSize marginY;
    QSize bottomRight;
    getMargin(margin, bottomRight);
    plotX.getMargin(marginX, bottomRight);
    plotY.getMargin(marginY, bottomRight);
    const int dx = marginX.width() - margin.width();
    const int dy = marginY.width() - margin.height();
    const QSize picture(mapSize.width() + dx + sizeY.width(), mapSize.height() + sizeX.height());

    tarnis::printPage(this, m_printer, [&](QPainter& painter) {
        QRect viewport = painter.viewport();
        const int edge = std::min(viewport.width() / 10, viewport.height() / 10);
        QFont font = painter.font();
        font.setPointSize(16);
        painter.setFont(font);
        painter.drawText(
            QRect(QPoint(0, 0), QPoint(viewport.right() - viewport.left(), static_cast<int>(edge * 0.95) - 1)),
            Qt::AlignHCenter | Qt::AlignVCenter | Qt::AlignBottom, m_title);
        viewport.adjust(edge, edge, -edge, -edge);
        const QSize printSize = picture.scaled(viewport.size(), Qt::KeepAspectRatio);
        QString note;
        QDebug(&note) << "Viewport: " << viewport << " Print Size: " << printSize;
        tarnis::trace(TARNIS_TRACE_CATEGORY(), "xy2dgraphwidget", __LINE__, note);
        painter.setViewport(QRect(viewport.topLeft(), printSize));
        painter.setWindow(QRect(QPoint(0, 0), picture));
        painter.drawPixmap(std::max(dx, 0), sizeX.height(), *map);
        painter.drawPixmap(dx >= 1 ? 0 : -dx, 0, *cutX);
        painter.drawPixmap(mapSize.width(), sizeX.height() - dy, *cutY);
    });
}
