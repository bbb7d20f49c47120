/// @file
/// Pictures, tables and files of what a plot shows. GUI thread only.
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
    Pdf, ///< one page: axes, texts and curves as vectors, a map as an image of its own bins
    Svg ///< the same as SVG 1.1
};

/// The format by the end of a file's name, whatever its case; nothing for another end.
TARNIS_EXPORT std::optional<PictureFormat> pictureFormatOfName(const QString& path);

/// How a picture is made. The defaults are what the screen shows.
struct TARNIS_EXPORT PictureOptions {
    QSize size; ///< layout in pixels of 1/96 inch; empty: the size of the plot
    double dpi = 96.0; ///< of a PNG file: pixels per inch, 24 to 1200
    QString heading; ///< drawn above the plot; empty: none
    QString title; ///< of the file, not drawn
    QString source; ///< of the file: where the values come from, for example server and run
    QDateTime time; ///< of the file: when the values were taken
};

/// Which bins a table has.
enum class Extent {
    Visible, ///< those inside the visible range
    All ///< all of them
};

/// Exports one plot: a VectorGraphWidget, a MultiVectorGraphWidget or an XY2DGraphWidget, shown or not. Each function
/// works on what the plot shows at the moment of the call, leaves the plot as it is, and opens no dialog. Errors are
/// texts for users, without the path; an empty text is success.
class TARNIS_EXPORT PlotExporter {
public:
    /// The plot must outlive the exporter.
    explicit PlotExporter(XYGraphWidget& plot);

    /// The values with axes: a spectrum, the curves that are visible, or a map. Without rows if the plot shows nothing.
    Dataset dataset(Extent extent = Extent::All) const;

    /// A picture of size * dpi / 96 pixels; null if that is more than 400 million.
    QImage image(const PictureOptions& options = {}) const;
    /// The content of a file. Empty, with the cause in `error`, if the picture cannot be made.
    QByteArray picture(PictureFormat format, const PictureOptions& options, QString* error) const;

    /// Writes a picture in one step, in the format of the file's name.
    [[nodiscard]] QString savePicture(const QString& path, const PictureOptions& options = {}) const;
    /// Writes a table in one step, in the format of the file's name (see writeDataset()).
    [[nodiscard]] QString saveData(const QString& path, Extent extent = Extent::All) const;

    /// Prints one page with the plot as large as fits: axes, texts and curves as vectors. Of the options, size and
    /// heading are used. A PDF file is written in one step.
    [[nodiscard]] QString print(QPrinter& printer, const PictureOptions& options = {}) const;

    /// Puts a picture of twice the resolution of the screen layout on the clipboard.
    void copyPicture() const;
    /// Puts the numbers on the clipboard, with tabs between them and a line of names.
    void copyTable(Extent extent = Extent::Visible) const;

    /// A name for a file: the histogram's name, the run and the time, joined by underscores, with any character that is
    /// awkward in a file's name as "-". An invalid time and an empty run are left out. `suffix` has no dot; without one
    /// the name has none.
    static QString suggestedName(
        const QString& histogram, const QString& run, const QDateTime& time, const QString& suffix);

private:
    XYGraphWidget& m_plot;
};

} // namespace tarnis
