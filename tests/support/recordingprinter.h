// A printer that writes no page and records what was drawn on it.
#pragma once

#include <QHash>
#include <QList>
#include <QPixmap>
#include <QPrinter>
#include <QRectF>
#include <QString>
#include <QVariant>

#include <memory>

namespace tarnis::testing {

/// The recorded content of a page, in device pixels.
struct PrintedPage {
    struct Text {
        QString text;
        int pointSize = 0;
        QPointF position; ///< start of the base line
    };
    struct Picture {
        QPixmap pixmap;
        QRectF target;
    };
    QList<Text> texts;
    QList<Picture> pictures;
    int painters = 0; ///< how often painting began
    bool refuses = false; ///< painting does not begin
};

/// Makes `printer` draw on `page`, which is `size` device pixels large at 300 dots per inch. Both must outlive the
/// printer's use.
void recordPages(QPrinter& printer, PrintedPage& page, const QSize& size);

} // namespace tarnis::testing
