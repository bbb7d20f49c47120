#include "tarnis/export/plotexporter.h"

#include "tarnis/export/plotdata_p.h"
#include "tarnis/export/plotpicture_p.h"
#include "tarnis/formats/csv.h"
#include "tarnis/formats/formats.h"
#include "tarnis/foundation/files.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::PlotExporter)
};

} // namespace

std::optional<PictureFormat> pictureFormatOfName(const QString& path)
{
    const QString end = QFileInfo(path).suffix().toLower();
    if (end == u"png")
        return PictureFormat::Png;
    if (end == u"pdf")
        return PictureFormat::Pdf;
    if (end == u"svg")
        return PictureFormat::Svg;
    return std::nullopt;
}

PlotExporter::PlotExporter(XYGraphWidget& plot)
    : m_plot(plot)
{
}

Dataset PlotExporter::dataset(Extent extent) const
{
    return plotData(m_plot, extent);
}

Dataset PlotExporter::datasetFor(const QString& path, Extent extent) const
{
    const bool hasChannels = QFileInfo(path).suffix().toLower() == u"spe";
    return plotData(m_plot, extent, hasChannels ? TableScale::Positions : TableScale::Named);
}

QImage PlotExporter::image(const PictureOptions& options) const
{
    return PlotPicture(m_plot, options).image();
}

QByteArray PlotExporter::picture(PictureFormat format, const PictureOptions& options, QString* error) const
{
    const PlotPicture picture(m_plot, options);
    QByteArray content;
    if (format == PictureFormat::Png)
        content = picture.png();
    else
        content = format == PictureFormat::Pdf ? picture.pdf() : picture.svg();
    if (content.isEmpty() && error != nullptr)
        *error = Texts::tr("the picture is too large: choose a smaller size or resolution");
    return content;
}

QString PlotExporter::savePicture(const QString& path, const PictureOptions& options) const
{
    const std::optional<PictureFormat> format = pictureFormatOfName(path);
    if (!format)
        return Texts::tr("the name does not end in .png, .pdf or .svg: rename the file");
    QString error;
    const QByteArray content = picture(*format, options, &error);
    return error.isEmpty() ? writeFile(path, content) : error;
}

QString PlotExporter::saveData(const QString& path, Extent extent) const
{
    return writeDataset(path, datasetFor(path, extent));
}

QString PlotExporter::print(QPrinter& printer, const PictureOptions& options) const
{
    return PlotPicture(m_plot, options).print(printer);
}

void PlotExporter::copyPicture() const
{
    constexpr double twice = 192.0;
    PictureOptions options;
    options.dpi = twice;
    QGuiApplication::clipboard()->setImage(image(options));
}

void PlotExporter::copyTable(Extent extent) const
{
    QGuiApplication::clipboard()->setText(tableText(dataset(extent)));
}

QString PlotExporter::suggestedName(
    const QString& histogram, const QString& run, const QDateTime& time, const QString& suffix)
{
    QStringList parts { histogram };
    if (!run.isEmpty())
        parts += QStringLiteral("run") + run;
    if (time.isValid())
        parts += time.toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString name = parts.join(u'_').simplified();
    static const QRegularExpression awkward(
        QStringLiteral("[^\\w.-]+"), QRegularExpression::UseUnicodePropertiesOption);
    name.replace(awkward, QStringLiteral("-"));
    return suffix.isEmpty() ? name : name + u'.' + suffix;
}

} // namespace tarnis
