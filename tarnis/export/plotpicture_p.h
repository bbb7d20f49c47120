// A plot painted onto paper, into a vector file, or at another resolution.
#pragma once

#include <tarnis/export/plotexporter.h>

QT_BEGIN_NAMESPACE
class QPainter;
class QPrinter;
QT_END_NAMESPACE

namespace tarnis {

/// The layout of a plot in files: its size on the screen, but not turned.
QSize pictureSize(const XYGraphWidget& plot);

/// Paints a plot with its layout of `options`. The plot keeps its own layout.
class PlotPicture {
public:
    PlotPicture(XYGraphWidget& plot, const PictureOptions& options);

    // Empty if the picture would be too large.
    QImage image() const;
    QByteArray png() const;
    QByteArray pdf() const;
    QByteArray svg() const;
    /// One page. Returns as writeFile() does.
    QString print(QPrinter& printer) const;

private:
    void paint(QPainter& painter) const;
    void settleLayout() const;
    QString description() const;

    XYGraphWidget& m_plot;
    PictureOptions m_options;
    QSize m_size;
};

} // namespace tarnis
