// Saving the plot as an image and printing it.
#include "tarnis/plots/xygraphwidget.h"

#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/foundation/saving_p.h"
#include "tarnis/plots/plotpixmap_p.h"

#include <QPainter>
#include <QPrintDialog>

#include <memory>

void XYGraphWidget::onSave()
{
    const QString filter = tr("Images (*.png *.jpg)");
    if (tarnis::isSavedByHost(this, tarnis::SaveKind::Picture, tr("Save"), filter))
        return;
    const QString path = tarnis::askSavePath(this, tarnis::SaveKind::Picture, tr("Save"), filter);
    if (path.isEmpty())
        return;
    const std::unique_ptr<QPixmap> pixmap(toPixmap());
    const bool isReported = tarnis::isSaveReported();
    const QString error = isReported ? tarnis::writePicture(*pixmap, path) : QString();
    const bool isSaved = isReported ? error.isEmpty() : tarnis::savePixmap(*pixmap, path);
    if (isSaved)
        setSaveFilePath(path);
    if (isReported)
        tarnis::reportSave(this, path, error);
    else if (!isSaved)
        tarnis::showBox(QMessageBox::Warning, this, tr("Save Image"), tr("Save %1 failed.").arg(path));
}

void XYGraphWidget::onPrint()
{
    if (tarnis::isSavedByHost(this, tarnis::SaveKind::Page, m_title, {}))
        return;
    auto* const dialog = new QPrintDialog(&m_printer, this);
    if (!tarnis::isAccepted(dialog))
        return;
    delete dialog;
    const std::unique_ptr<QPixmap> pixmap(toPixmap());
    pixmap->setDevicePixelRatio(1.0); // the page is scaled by the picture's pixels
    tarnis::printPage(this, m_printer, [&](QPainter& painter) {
        QRect viewport = painter.viewport();
        const int margin = qMin(viewport.height() / 10, viewport.width() / 10);
        QFont font = painter.font();
        font.setPointSize(16);
        painter.setFont(font);
        painter.drawText(
            QRect(0, 0, viewport.width(), static_cast<int>(margin * 0.95)), Qt::AlignCenter | Qt::AlignBottom, m_title);

        viewport.adjust(margin, margin, -margin, -margin);
        if (pixmap->isNull())
            return;
        painter.setViewport(QRect(viewport.topLeft(), pixmap->size().scaled(viewport.size(), Qt::KeepAspectRatio)));
        painter.setWindow(pixmap->rect());
        painter.drawPixmap(0, 0, *pixmap);
    });
}
