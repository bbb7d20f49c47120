// Pictures and tables of plots: every vertex and every bin is in the files, and the plots are not changed.
#include <tarnis/export/plotexporter.h>
#include <tarnis/formats/formats.h>
#include <tarnis/foundation/files.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/plotoverlay.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/referencecurves.h>

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QPrinter>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>

using namespace tarnis;

namespace {

QList<double> wave(int count)
{
    QList<double> samples;
    for (int i = 0; i < count; ++i)
        samples += 10.0 + (i * 7) % 13;
    return samples;
}

std::unique_ptr<VectorGraphWidget> spectrum(const QList<double>& samples)
{
    auto plot = std::make_unique<VectorGraphWidget>();
    plot->resize(400, 300);
    plot->init("Time [us]", "Counts", double(samples.size()), 25.0, true, true);
    plot->initManualX(0.0, 100.0);
    plot->setData(samples);
    plot->setMaxValue(25.0);
    plot->setMinMaxY(0.0, 25.0);
    return plot;
}

std::unique_ptr<XY2DGraphWidget> map(int columns, int rows)
{
    auto plot = std::make_unique<XY2DGraphWidget>();
    plot->resize(500, 400);
    plot->init("x", "y", columns, rows, false, false);
    plot->initManualX(0.0, columns);
    plot->initManualY(0.0, rows);
    for (int row = 0; row < rows; ++row) {
        QList<double> values;
        for (int column = 0; column < columns; ++column)
            values += double(1 + (row * columns + column) % 97);
        plot->setData(row, values, 97.0, false);
    }
    return plot;
}

/// Lists of points of all elements of that name, with more than `least` of them.
QList<QStringList> pointLists(const QByteArray& svg, qsizetype least)
{
    QList<QStringList> lists;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        reader.readNext();
        const QStringList points = reader.attributes().value("points").toString().split(' ');
        if (reader.isStartElement() && reader.name() == u"polyline" && points.size() > least)
            lists += points;
    }
    if (reader.hasError())
        qWarning("%s", qUtf8Printable(reader.errorString()));
    return lists;
}

QPointF pointOf(const QString& text)
{
    return { text.section(',', 0, 0).toDouble(), text.section(',', 1, 1).toDouble() };
}

/// The images of an SVG file.
QList<QImage> imagesOf(const QByteArray& svg)
{
    QList<QImage> images;
    static const QRegularExpression data("base64,([^\"]+)\"");
    auto matches = data.globalMatch(QString::fromLatin1(svg));
    while (matches.hasNext())
        images += QImage::fromData(QByteArray::fromBase64(matches.next().captured(1).toLatin1()));
    return images;
}

/// The contents of all compressed streams of a PDF file.
QByteArray streamsOf(const QByteArray& pdf)
{
    QByteArray text;
    for (qsizetype begin = pdf.indexOf("stream\n"); begin >= 0; begin = pdf.indexOf("stream\n", begin + 1)) {
        const qsizetype from = begin + 7;
        const qsizetype end = pdf.indexOf("endstream", from);
        const QByteArray length("\x01\x00\x00\x00", 4); // an estimate, which qUncompress() corrects
        const QByteArray part = qUncompress(length + pdf.mid(from, end - from));
        if (part.contains(" re") || part.contains(" l\n"))
            text += part;
    }
    return text;
}

/// The gradient of the colour bar is rounded depending on its position on the device.
bool areClose(const QColor& a, const QColor& b)
{
    return qAbs(a.red() - b.red()) <= 1 && qAbs(a.green() - b.green()) <= 1 && qAbs(a.blue() - b.blue()) <= 1;
}

} // namespace

class TestPlotExporter : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void printsEveryVertexOnOnePage()
    {
        const QTemporaryDir folder;
        const auto plot = spectrum(wave(3000)); // more samples than the plot has pixels
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(folder.filePath("page.pdf"));
        const QSize size = plot->size();
        PictureOptions options;
        options.heading = "A heading";
        QCOMPARE(PlotExporter(*plot).print(printer, options), QString());
        QCOMPARE(plot->size(), size);
        const QByteArray page = streamsOf(readFile(folder.filePath("page.pdf")).bytes);
        QVERIFY2(page.count(" l\n") >= 2999, qPrintable(QString::number(page.count(" l\n"))));
    }

    void reportsAPageThatCannotBeWritten()
    {
        const auto plot = spectrum(wave(10));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName("/dev/full");
        QVERIFY(PlotExporter(*plot).print(printer).contains("no space is left"));
    }

    void drawsTheOverlays()
    {
        struct Overlay : PlotOverlay {
            using PlotOverlay::PlotOverlay;
            void paintOverlay(QPainter& painter, const PlotMapping& mapping) override
            {
                painter.fillRect(mapping.plotRect(), Qt::magenta);
            }
        };
        const auto plot = spectrum(wave(10));
        const Overlay overlay(plot.get());
        const QImage image = PlotExporter(*plot).image();
        QCOMPARE(image.pixelColor(image.rect().center()), QColor(Qt::magenta));
    }

    void svgHasEveryVertexOfASpectrum()
    {
        const QList<double> samples = wave(150);
        const auto plot = spectrum(samples);
        const QByteArray svg = PlotExporter(*plot).picture(PictureFormat::Svg, {}, nullptr);
        const QList<QStringList> curves = pointLists(svg, 2);
        QCOMPARE(curves.size(), 1);
        QCOMPARE(curves.front().size(), samples.size());
        // Positions are linear in index and value.
        const QPointF first = pointOf(curves.front().front());
        const QPointF last = pointOf(curves.front().back());
        const double perSample = (last.x() - first.x()) / 149.0;
        const double perCount = (pointOf(curves.front().at(1)).y() - first.y()) / (samples.at(1) - samples.at(0));
        QVERIFY(perSample > 1.0 && perCount < -1.0);
        for (int i = 0; i < samples.size(); ++i) {
            const QPointF point = pointOf(curves.front().at(i));
            QVERIFY(qAbs(point.x() - first.x() - i * perSample) < 0.01);
            QVERIFY(qAbs(point.y() - first.y() - (samples.at(i) - samples.at(0)) * perCount) < 0.02);
        }
    }

    void svgHasEveryVertexThatPaperShows()
    {
        QList<double> samples = wave(100000);
        samples[54321] = 24.0;
        const auto plot = spectrum(samples);
        const QByteArray svg = PlotExporter(*plot).picture(PictureFormat::Svg, {}, nullptr);
        const QList<QStringList> curves = pointLists(svg, 2);
        QCOMPARE(curves.size(), 1);
        // First, last and both extremes of each step of 1/600 inch, about 2100 of them.
        QVERIFY(curves.front().size() > 4000 && curves.front().size() < 10000);
        double top = 1e9;
        for (const QString& point : curves.front())
            top = std::min(top, pointOf(point).y());
        int atTop = 0;
        for (const QString& point : curves.front())
            atTop += pointOf(point).y() == top ? 1 : 0;
        QCOMPARE(atTop, 1);
    }

    void pdfHasEveryVertexOfASpectrum()
    {
        const auto plot = spectrum(wave(150));
        const QByteArray pdf = PlotExporter(*plot).picture(PictureFormat::Pdf, {}, nullptr);
        QVERIFY(pdf.startsWith("%PDF-"));
        QVERIFY(pdf.contains("/MediaBox [0 0 300"));
        const QByteArray drawn = streamsOf(pdf);
        static const QRegularExpression line(
            "[-0-9.]+ [-0-9.]+ m\n(?:[-0-9.]+ [-0-9.]+ l\n){149}(?![-0-9.]+ [-0-9.]+ l)");
        QVERIFY(line.match(QString::fromLatin1(drawn)).hasMatch());
    }

    void svgClipsAZoomedCurve()
    {
        const auto plot = spectrum(wave(150));
        plot->onAutoScaleY(false);
        plot->setMinMaxY(12.0, 14.0);
        const QByteArray svg = PlotExporter(*plot).picture(PictureFormat::Svg, {}, nullptr);
        static const QRegularExpression clipped("<g clip-path=\"url\\(#clip[0-9a-f]+\\)\"><polyline");
        QVERIFY(clipped.match(QString::fromLatin1(svg)).hasMatch());
    }

    void svgHasTextsAsTexts()
    {
        const auto plot = spectrum(wave(10));
        PictureOptions options;
        options.heading = "A <heading>";
        const QByteArray svg = PlotExporter(*plot).picture(PictureFormat::Svg, options, nullptr);
        QVERIFY(svg.contains(">Time [us]</text>"));
        QVERIFY(svg.contains(">A &lt;heading&gt;</text>"));
    }

    void aHeadingReplacesTheTitleOfAStyle()
    {
        const auto plot = spectrum(wave(10));
        plot->setTitle(QStringLiteral("Own title"));
        new PlotStyle(plot.get(), PlotStyle::Theme::Light); // owned by the plot
        PictureOptions options;
        QVERIFY(PlotExporter(*plot).picture(PictureFormat::Svg, options, nullptr).contains(">Own title</text>"));
        options.heading = QStringLiteral("Page heading");
        const QByteArray svg = PlotExporter(*plot).picture(PictureFormat::Svg, options, nullptr);
        QVERIFY(svg.contains(">Page heading</text>"));
        QVERIFY(!svg.contains("Own title"));
        options.heading.clear();
        QVERIFY(PlotExporter(*plot).picture(PictureFormat::Svg, options, nullptr).contains(">Own title</text>"));
    }

    void svgHasSharpLinesOfTools()
    {
        const auto plot = spectrum({ 5.0, 20.0 }); // a slanted line
        PlotCrosshair cross(plot.get());
        cross.pinAt({ 50.0, 10.0 });
        const QByteArray svg = PlotExporter(*plot).picture(PictureFormat::Svg, {}, nullptr);
        static const QRegularExpression sharp(
            QStringLiteral("points=\"([-\\d.]+),([-\\d.]+) ([-\\d.]+),([-\\d.]+)\"[^>]*#ebebeb[^>]*crispEdges"));
        auto matches = sharp.globalMatch(QString::fromLatin1(svg));
        for (int line = 0; line < 2; ++line) {
            const QStringList ends = matches.next().capturedTexts();
            QVERIFY(ends.size() == 5 && (ends.at(1) == ends.at(3) || ends.at(2) == ends.at(4)));
        }
        QVERIFY(!matches.hasNext());
    }

    void svgHasAMapAsAnImageOfItsBins()
    {
        const auto plot = map(30, 20);
        const QByteArray svg = PlotExporter(*plot).picture(PictureFormat::Svg, {}, nullptr);
        const QList<QImage> images = imagesOf(svg);
        QCOMPARE(images.size(), 1);
        const int factor = images.front().width() / 30;
        QVERIFY(factor >= 1);
        QCOMPARE(images.front().size(), QSize(30, 20) * factor);
        for (int row = 0; row < 20; ++row) {
            for (int column = 0; column < 30; ++column) {
                const QColor wanted = plot->getColor(double(1 + (row * 30 + column) % 97));
                QCOMPARE(QColor(images.front().pixel(column * factor, (19 - row) * factor)), wanted);
            }
        }
    }

    void svgHasTheVisibleBinsAlone()
    {
        const auto plot = map(300, 200);
        plot->setMinMaxX(100.0, 110.0);
        plot->setMinMaxY(50.0, 55.0);
        const QList<QImage> images = imagesOf(PlotExporter(*plot).picture(PictureFormat::Svg, {}, nullptr));
        QCOMPARE(images.size(), 1);
        QCOMPARE(images.front().width() / images.front().height(), 2);
    }

    void filesOfALargeMapStaySmall()
    {
        const auto plot = map(1024, 1024);
        for (const PictureFormat format : { PictureFormat::Svg, PictureFormat::Pdf }) {
            const QByteArray file = PlotExporter(*plot).picture(format, {}, nullptr);
            QVERIFY(!file.isEmpty());
            QVERIFY2(file.size() < 2000000, qPrintable(QString::number(file.size())));
        }
    }

    void filesOfALargeMapOfNoiseStaySmall()
    {
        const auto plot = std::make_unique<XY2DGraphWidget>();
        plot->resize(500, 400);
        plot->init("x", "y", 1024, 1024, false, false);
        std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same noise in each run
        for (int row = 0; row < 1024; ++row) {
            QList<double> values;
            for (int column = 0; column < 1024; ++column)
                values += 1.0 + double(random() % 100000);
            plot->setData(row, values, 100000.0, false);
        }
        const QByteArray pdf = PlotExporter(*plot).picture(PictureFormat::Pdf, {}, nullptr);
        QVERIFY2(pdf.size() < 2000000, qPrintable(QString::number(pdf.size())));
        const QByteArray svg = PlotExporter(*plot).picture(PictureFormat::Svg, {}, nullptr);
        QVERIFY2(svg.size() < 2000000, qPrintable(QString::number(svg.size())));
        static const QRegularExpression data("data:image/png;base64,([^\"]+)");
        const QByteArray text = data.match(QString::fromLatin1(svg)).captured(1).toLatin1();
        const QImage whole = QImage::fromData(QByteArray::fromBase64(text)).convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(whole.size(), QSize(1024, 1024));
        QSet<QRgb> colours;
        for (int y = 0; y < 1024; ++y) {
            for (int x = 0; x < 1024; ++x)
                colours += whole.pixel(x, y);
        }
        QVERIFY(colours.size() > 100);
        QVERIFY(std::all_of(colours.begin(), colours.end(), [](QRgb colour) { return qAlpha(colour) == 255; }));
    }

    void pngHasTheChosenResolution()
    {
        const auto plot = spectrum(wave(50));
        PictureOptions options;
        options.size = QSize(600, 200);
        options.dpi = 300.0;
        options.title = "A title";
        const QImage image = QImage::fromData(PlotExporter(*plot).picture(PictureFormat::Png, options, nullptr));
        QCOMPARE(image.size(), QSize(1875, 625));
        QCOMPARE(image.dotsPerMeterX(), 11811);
        QCOMPARE(image.text("Title"), "A title");
    }

    void pngAtScreenResolutionIsTheScreen()
    {
        for (const bool isMap : { false, true }) {
            const std::unique_ptr<XYGraphWidget> plot = isMap ? std::unique_ptr<XYGraphWidget>(map(30, 20))
                                                              : std::unique_ptr<XYGraphWidget>(spectrum(wave(50)));
            plot->show();
            QVERIFY(QTest::qWaitForWindowExposed(plot.get()));
            const std::unique_ptr<QPixmap> screen(plot->toPixmap());
            QImage shown = screen->toImage().convertToFormat(QImage::Format_RGB32);
            QCOMPARE(PlotExporter(*plot).image().size(), shown.size());
            const QImage image = PlotExporter(*plot).image().convertToFormat(QImage::Format_RGB32);
            int different = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    different += areClose(image.pixelColor(x, y), shown.pixelColor(x, y)) ? 0 : 1;
            }
            QVERIFY2(different == 0, qPrintable(QString::number(different)));
        }
    }

    void refusesAPictureWithoutEnd()
    {
        const auto plot = spectrum(wave(5));
        // Too many pixels along a side, and in all.
        for (const auto& [side, dpi] : { std::pair(30000, 1200.0), std::pair(25000, 96.0) }) {
            PictureOptions options;
            options.size = QSize(side, side);
            options.dpi = dpi;
            QString error;
            QVERIFY(PlotExporter(*plot).picture(PictureFormat::Png, options, &error).isEmpty());
            QCOMPARE(error, "the picture is too large: choose a smaller size or resolution");
        }
    }

    void leavesThePlotAsItIs()
    {
        const auto plot = spectrum(wave(50));
        const std::unique_ptr<QPixmap> before(plot->toPixmap());
        const QPointF place = plot->calcGraphPointF(QPointF(200, 100));
        PictureOptions options;
        options.size = QSize(1000, 1000);
        QVERIFY(!PlotExporter(*plot).picture(PictureFormat::Pdf, options, nullptr).isEmpty());
        QCOMPARE(plot->calcGraphPointF(QPointF(200, 100)), place);
        const std::unique_ptr<QPixmap> after(plot->toPixmap());
        QCOMPARE(after->toImage(), before->toImage());
    }

    void exportsASpectrumWithItsAxis()
    {
        const QList<double> samples = wave(50);
        const auto plot = spectrum(samples);
        const Dataset data = PlotExporter(*plot).dataset();
        QCOMPARE(data.columns, 50);
        QCOMPARE(data.x.name, "Time");
        QCOMPARE(data.x.unit, "us");
        QCOMPARE(data.name, "Counts");
        QCOMPARE(data.x.values, uniformEdges(0.0, 100.0, 50));
        QCOMPARE(data.values, std::vector<double>(samples.begin(), samples.end()));
        plot->setMinMaxX(20.0, 30.0);
        const Dataset visible = PlotExporter(*plot).dataset(Extent::Visible);
        QCOMPARE(visible.x.values, (std::vector<double> { 20, 22, 24, 26, 28, 30 }));
        QCOMPARE(visible.values, std::vector<double>(samples.begin() + 10, samples.begin() + 15));
    }

    void exportsTheVisibleCurves()
    {
        MultiVectorGraphWidget plot;
        plot.resize(400, 300);
        plot.init("Channel", "Counts", 10.0, 30.0, true, true);
        plot.m_groupSize = 4;
        plot.m_groupName = "Module";
        plot.m_itemName = "Tube";
        for (int i = 0; i < 3; ++i)
            plot.setData(i, { double(i), 1.0, 2.0 }, 30.0);
        plot.setEnable(1, false);
        const Dataset data = PlotExporter(plot).dataset();
        QCOMPARE(data.rows, 2);
        QCOMPARE(data.values, (std::vector<double> { 0, 1, 2, 2, 1, 2 }));
        QCOMPARE(data.rowNames.size(), 2);
        QVERIFY(data.x.values.empty());
        const QByteArray svg = PlotExporter(plot).picture(PictureFormat::Svg, {}, nullptr);
        QCOMPARE(pointLists(svg, 2).size(), 2);
    }

    void exportsAMapWithBothAxes()
    {
        const auto plot = map(30, 20);
        plot->initManualX(0.0, 60.0);
        const Dataset data = PlotExporter(*plot).dataset();
        QCOMPARE(data.kind, Dataset::Kind::Map);
        QCOMPARE(data.rows, 20);
        QCOMPARE(data.columns, 30);
        QCOMPARE(data.x.values, uniformEdges(0.0, 60.0, 30));
        QVERIFY(data.y.values.empty());
        QCOMPARE(data.at(1, 2), 33.0);
    }

    /// The strip of a comparison is below the plot, as on a widget of that size.
    void placesAComparisonInThePicture()
    {
        const auto plot = spectrum(wave(50));
        plot->resize(500, 400);
        ReferenceCurves references(plot.get());
        references.freeze(QStringLiteral("before"));
        references.setView(ReferenceCurves::View::Difference);
        plot->setData(wave(50));
        for (const QSize size : { QSize(800, 600), QSize(450, 380) }) {
            plot->resize(500, 400);
            PictureOptions options;
            options.size = size;
            const QImage picture = PlotExporter(*plot).image(options);
            plot->resize(size);
            QCOMPARE(picture, PlotExporter(*plot).image());
        }
    }

    void savesPicturesAndTables()
    {
        const QTemporaryDir folder;
        const auto plot = spectrum(wave(50));
        const PlotExporter exporter(*plot);
        for (const char* const name : { "a.png", "a.pdf", "a.SVG" })
            QCOMPARE(exporter.savePicture(folder.filePath(name)), QString());
        QCOMPARE(exporter.saveData(folder.filePath("a.csv")), QString());
        QCOMPARE(readDataset(folder.filePath("a.csv")).data.values, exporter.dataset().values);
        QCOMPARE(exporter.savePicture(folder.filePath("a.bmp")),
            "the name does not end in .png, .pdf or .svg: rename the file");
        QVERIFY(exporter.savePicture(folder.filePath("no/a.png")).contains("does not exist"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 4);
    }

    void copiesPictureAndTable()
    {
        const auto plot = spectrum({ 1.0, 2.5 });
        PlotExporter(*plot).copyPicture();
        QCOMPARE(QGuiApplication::clipboard()->image().size(), QSize(800, 600));
        PlotExporter(*plot).copyTable(Extent::All);
        QCOMPARE(QGuiApplication::clipboard()->text(), "low\thigh\tCounts\n0\t50\t1\n50\t100\t2.5\n");
    }

    void suggestsNames()
    {
        const QDateTime time(QDate(2026, 3, 10), QTime(12, 30, 15), QTimeZone::utc());
        QCOMPARE(PlotExporter::suggestedName("image", "7", time, "png"), "image_run7_20260310-123015.png");
        QCOMPARE(PlotExporter::suggestedName("a/b: c", {}, {}, "csv"), "a-b-c.csv");
    }
};

QTEST_MAIN(TestPlotExporter)
#include "tst_plotexporter.moc"
