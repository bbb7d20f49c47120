// Paints a plot onto paper, into a vector file, or at another resolution.
#pragma once

#include <tarnis/export/plotexporter.h>

#include <QFont>
#include <QRect>

QT_BEGIN_NAMESPACE
class QPainter;
class QPrinter;
QT_END_NAMESPACE
class ColorBarWidget;

namespace tarnis {

/// The size of a plot in files: its size on the screen, without rotation.
QSize pictureSize(const XYGraphWidget& plot);

/// Paints a plot with the layout of `options` and then restores the plot's layout.
class PlotPicture {
public:
    PlotPicture(XYGraphWidget& plot, const PictureOptions& options);

    // Empty if the picture would be too large.
    QImage image() const;
    QByteArray png() const;
    QByteArray pdf() const;
    QByteArray svg() const;
    /// Prints one page. Returns the same as writeFile().
    QString print(QPrinter& printer) const;

private:
    void paint(QPainter& painter) const;
    void settleLayout() const;
    void paintBar(QPainter& painter, ColorBarWidget& bar) const;
    QFont textFont() const;
    QRect plotRect() const;
    QString description() const;

    XYGraphWidget& m_plot;
    PictureOptions m_options;
    QSize m_size;
};

} // namespace tarnis
