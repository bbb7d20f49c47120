// Images, CSV, printing, and the menu of the colour bar.
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/foundation/saving_p.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/math/maptext_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/vectorgraphwidget.h"

#include <QAction>
#include <QDebug>
#include <QMenu>
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
    VectorGraphWidget* plotX = cutPlot(m_cutXWindows);
    VectorGraphWidget* plotY = cutPlot(m_cutYWindows);
    if (plotX == nullptr || plotY == nullptr) {
        XYGraphWidget::onPrint();
        return;
    }
    auto* const dialog = new QPrintDialog(&m_printer, this);
    if (!tarnis::isAccepted(dialog))
        return;
    delete dialog;
    // The cuts may have been closed in the meantime.
    plotX = cutPlot(m_cutXWindows);
    plotY = cutPlot(m_cutYWindows);
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

void XY2DGraphWidget::openColorBarMenu(const QPoint& globalPosition)
{
    using Slot = void (XY2DGraphWidget::*)();
    if (m_colorBarMenu != nullptr)
        m_colorBarMenu->deleteLater();
    m_colorBarMenu = new QMenu(this);
    connect(m_colorBarMenu, &QMenu::aboutToHide, this, &XY2DGraphWidget::onColorBarMenuHide);
    const auto addEntry = [this](const QString& text, Slot slot) { m_colorBarMenu->addAction(text, this, slot); };
    // A colour dialog opens after the menu was closed.
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
    // A replaced menu may be hidden late; its replacement is kept.
    if (m_colorBarMenu == nullptr || (sender() != nullptr && sender() != m_colorBarMenu))
        return;
    m_colorBarMenu->deleteLater();
    m_colorBarMenu = nullptr;
}
