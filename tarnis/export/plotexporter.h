/// @file
/// Exports what a plot shows as pictures, tables and files. GUI thread only.
#pragma once

#include <tarnis/formats/dataset.h>
#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <optional>

QT_BEGIN_NAMESPACE
class QPrinter;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

/// The formats of pictures.
enum class PictureFormat {
    Png, ///< pixels, lossless
    Pdf, ///< one page: axes, texts and curves as vectors, a map as an image with one pixel per bin
    Svg ///< the same as SVG 1.1
};

/// The format for the suffix of a file name, case-insensitive; empty for an unknown suffix.
TARNIS_EXPORT std::optional<PictureFormat> pictureFormatOfName(const QString& path);

/// Options of a picture. The defaults reproduce the screen.
struct TARNIS_EXPORT PictureOptions {
    QSize size; ///< layout in pixels of 1/96 inch; empty: the size of the plot
    double dpi = 96.0; ///< for a PNG file: pixels per inch, 24 to 1200
    QString heading; ///< drawn above the plot, instead of the title that a PlotStyle draws; empty: none
    QString title; ///< metadata of the file, not drawn
    QString source; ///< metadata: origin of the values, for example server and run
    QDateTime time; ///< metadata: when the values were taken
};

/// Which bins a table contains.
enum class Extent {
    Visible, ///< those inside the visible range
    All ///< all of them
};

/// Exports one plot: a VectorGraphWidget, a MultiVectorGraphWidget or an XY2DGraphWidget, shown or not. Each function
/// exports the plot's current state, leaves the plot unchanged, and opens no dialog. Errors are texts for users,
/// without the path; an empty text means success.
class TARNIS_EXPORT PlotExporter {
public:
    /// The plot must outlive the exporter.
    explicit PlotExporter(XYGraphWidget& plot);

    /// The values with axes: a spectrum, the curves that are visible, or a map. Without rows if the plot shows nothing.
    /// On a plot with a PlotCalibration X is the energy.
    Dataset dataset(Extent extent = Extent::All) const;
    /// The same as saveData() writes it: an .spe file has channels instead of energies.
    Dataset datasetFor(const QString& path, Extent extent = Extent::All) const;

    /// A picture of size * dpi / 96 pixels; null if that is more than 400 million.
    QImage image(const PictureOptions& options = {}) const;
    /// The content of a file. Empty, with the cause in `error`, if the picture cannot be made.
    QByteArray picture(PictureFormat format, const PictureOptions& options, QString* error) const;

    /// Writes a picture atomically, in the format of the file's suffix.
    [[nodiscard]] QString savePicture(const QString& path, const PictureOptions& options = {}) const;
    /// Writes a table atomically, in the format of the file's suffix (see writeDataset()).
    [[nodiscard]] QString saveData(const QString& path, Extent extent = Extent::All) const;

    /// Prints one page with the plot as large as fits: axes, texts and curves as vectors. Only the options size and
    /// heading are used. A PDF file is written atomically.
    [[nodiscard]] QString print(QPrinter& printer, const PictureOptions& options = {}) const;

    /// Copies a picture with twice the screen resolution to the clipboard.
    void copyPicture() const;
    /// Copies the numbers to the clipboard, tab-separated with a header line.
    void copyTable(Extent extent = Extent::Visible) const;

    /// A file name made of the histogram's name, the run and the time, joined by underscores. Characters that are
    /// unsafe in file names become "-". An invalid time and an empty run are omitted. `suffix` has no dot; if it is
    /// empty, so is the name's suffix.
    static QString suggestedName(
        const QString& histogram, const QString& run, const QDateTime& time, const QString& suffix);

private:
    XYGraphWidget& m_plot;
};

} // namespace tarnis
