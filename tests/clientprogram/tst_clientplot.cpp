// tarnis plot: figures of files and histograms, and refused arguments.
#include "clientprogram.h"
#include "simserver/simprogram.h"
#include "support/cases.h"

#include <tarnis/foundation/files.h>

#include <QDir>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace tarnis::testing;

using clienttest::Run;
using clienttest::runTarnis;
using clienttest::shell;

class TestClientPlot : public QObject, private clienttest::ScratchFolder {
    Q_OBJECT
private:
    static QByteArray counts(int bins)
    {
        QByteArray text = "# counts\n";
        for (int i = 0; i < bins; ++i)
            text += QByteArray::number(5 + i * 7 % 11) + '\n';
        return text;
    }
    QByteArray read(const QString& name) const { return tarnis::readFile(path(name)).bytes; }
    QStringList names() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void init() { m_folder = QTemporaryDir(); }

    void drawsAFileInEachFormat()
    {
        const QString file = write("a.csv", counts(100));
        for (const char* const name : { "a.png", "a.pdf", "a.svg" }) {
            const Run run = runTarnis({ "plot", file, "-o", path(name) });
            QCOMPARE(run.exitCode, 0);
            QCOMPARE(run.output + run.errors, QByteArray());
        }
        QCOMPARE(QImage(path("a.png")).size(), QSize(800, 500));
        QVERIFY(read("a.pdf").startsWith("%PDF-"));
        QVERIFY(read("a.svg").contains("<polyline points=\""));
    }

    void obeysItsOptions()
    {
        const QString file = write("a.csv", counts(100));
        const Run run = runTarnis({ "plot", file, "-o", path("a.png"), "--size", "400x300", "--dpi", "192", "--range",
            "10:20", "--yrange", "1:100", "--log", "--title", "A title", "--json" });
        QCOMPARE(run.exitCode, 0);
        const QImage image(path("a.png"));
        QCOMPARE(image.size(), QSize(800, 600));
        QCOMPARE(image.text("Title"), "A title");
        QVERIFY(run.output.contains("\"width\":400"));
        QCOMPARE(runTarnis({ "plot", file, "-o", path("a.svg"), "--range", "10:20", "--title", "T & T" }).exitCode, 0);
        QVERIFY(read("a.svg").contains(">T &amp; T</text>"));
        QVERIFY(read("a.svg").contains(">20</text>"));
        QVERIFY(!read("a.svg").contains(">100</text>"));
    }

    void drawsAMapWithColoursAndLevels()
    {
        const QString file = write("m.csv", "4,0,3\n2,1,4\n4,2,60\n");
        QCOMPARE(runTarnis({ "plot", file, "-o", path("m.png"), "--map", "greys", "--levels", "0:100" }).exitCode, 0);
        QCOMPARE(runTarnis({ "plot", file, "-o", path("m.svg"), "--map", "viridis", "--log" }).exitCode, 0);
        QVERIFY(read("m.svg").contains("data:image/png;base64,"));
        const QImage image(path("m.png"));
        bool white = false;
        for (int x = 0; x < image.width(); ++x)
            white = white || image.pixel(x, image.height() / 4) == qRgb(255, 255, 255);
        QVERIFY(white);
    }

    void drawsSeveralSpectraAndUnevenAxes()
    {
        const QString a = write("a.csv", counts(50));
        const QString b = write("b.csv", counts(80));
        QCOMPARE(runTarnis({ "plot", a, b, "-o", path("ab.svg") }).exitCode, 0);
        // Ticks are lines of two points.
        static const QRegularExpression curve("<polyline points=\"([-0-9.]+,[-0-9.]+ ?){3,}\"");
        QCOMPARE(QString::fromUtf8(read("ab.svg")).count(curve), 2);
        QVERIFY(read("ab.svg").contains(">a.csv</text>"));
        QVERIFY(read("ab.svg").contains(">b.csv</text>"));
        const QString uneven = write("u.csv", "1,5\n2,6\n4,9\n8,3\n16,7\n");
        QCOMPARE(runTarnis({ "plot", uneven, "-o", path("u.svg") }).exitCode, 0);
    }

    // Whether the edge has only the colour of the corner: a clipped text would reach the edge.
    static bool hasClearEdge(const QImage& image)
    {
        const QRgb paper = image.pixel(0, 0);
        bool isClear = true;
        for (int x = 0; x < image.width(); ++x)
            isClear = isClear && image.pixel(x, 0) == paper && image.pixel(x, image.height() - 1) == paper;
        for (int y = 0; y < image.height(); ++y)
            isClear = isClear && image.pixel(0, y) == paper && image.pixel(image.width() - 1, y) == paper;
        return isClear;
    }

    void drawsInAThemeWithoutClippedTexts_data()
    {
        addColumns<QString, QString, QRgb>("theme", "size", "paper");
        const QRgb white = qRgb(255, 255, 255);
        addCase("default", "", "800x500", white);
        addCase("small", "", "300x200", white);
        addCase("large", "", "1800x1300", white);
        addCase("light", "light", "640x400", white);
        addCase("dark", "dark", "640x400", qRgb(27, 29, 34));
        addCase("high contrast", "high-contrast", "640x400", qRgb(0, 0, 0));
    }
    void drawsInAThemeWithoutClippedTexts()
    {
        QFETCH(QString, theme);
        QFETCH(QString, size);
        QFETCH(QRgb, paper);
        const QString one = write("one.csv", counts(300));
        QByteArray rows;
        for (int y = 0; y < 30; ++y)
            rows += QByteArray::number(y % 3) + ",4,0,3,1,2,5,1\n";
        const QString map = write("map.csv", rows);
        QStringList many;
        for (int i = 0; i < 8; ++i)
            many += write(QStringLiteral("curve%1.csv").arg(i), counts(100 + i));
        const QStringList look = theme.isEmpty() ? QStringList() : QStringList { "--theme", theme };
        for (const QStringList& files : { QStringList { one }, many, QStringList { map } }) {
            const Run run = runTarnis(QStringList { "plot", "-o", path("a.png"), "--size", size } + look + files);
            QCOMPARE(run.errors, QByteArray());
            const QImage image(path("a.png"));
            QCOMPARE(image.pixel(0, 0), paper);
            QVERIFY2(hasClearEdge(image), qPrintable(files.first()));
        }
    }

    void keepsTheClassicLookOnDemand()
    {
        const QString file = write("a.csv", counts(100));
        QCOMPARE(runTarnis({ "plot", file, "-o", path("a.png"), "--theme", "classic", "--title", "" }).exitCode, 0);
        const QImage image(path("a.png"));
        QCOMPARE(image.pixel(1, 1), QColor(Qt::lightGray).rgb());
        QCOMPARE(image.pixel(700, 40), qRgb(0, 0, 0));
    }

    void keepsTheLegendOffTheCurves()
    {
        QStringList words { "plot", "-o", path("l.svg") };
        for (int i = 0; i < 8; ++i)
            words += write(QStringLiteral("curve%1.csv").arg(i), counts(100));
        QCOMPARE(runTarnis(words).exitCode, 0);
        const QString svg = QString::fromUtf8(read("l.svg"));
        // The x labels end the plot; all names are below them.
        const auto rowOf = [&](const QString& text) {
            const QRegularExpression row(
                QStringLiteral("y=\"([0-9.]+)\"[^>]*>%1</text>").arg(QRegularExpression::escape(text)));
            const QRegularExpressionMatch match = row.match(svg);
            return match.hasMatch() ? match.captured(1).toDouble() : -1.0;
        };
        const double axis = rowOf("Channel");
        QVERIFY(axis > 0.0);
        for (int i = 0; i < 8; ++i)
            QVERIFY2(rowOf(QStringLiteral("curve%1.csv").arg(i)) > axis, qPrintable(QString::number(i)));
    }

    void drawsResidualsOfAModel()
    {
        const QString file = write("f.csv", "0,10,8\n1,20,25\n2,40,39\n3,20,22\n");
        QCOMPARE(runTarnis({ "plot", file, "-o", path("f.svg"), "--residuals" }).exitCode, 0);
        QVERIFY(read("f.svg").contains(">Residuals in standard deviations</text>"));
        QVERIFY(read("f.svg").contains(">-3</text>"));
        QVERIFY(read("f.svg").contains(">curve 1</text>"));
        // The range includes the error bar of the largest count, 46 with 6.8.
        const QRegularExpression bar("y=\"([0-9.]+)\"[^>]*>50</text>");
        QCOMPARE(
            runTarnis({ "plot", write("g.csv", "0,10,8\n1,46,45\n"), "-o", path("g.svg"), "--residuals" }).exitCode, 0);
        QVERIFY(bar.match(QString::fromUtf8(read("g.svg"))).hasMatch());
        QCOMPARE(runTarnis({ "plot", write("a.csv", counts(20)), "-o", path("a.svg"), "--residuals" }).exitCode, 2);
        QCOMPARE(runTarnis({ "plot", file, file, "-o", path("a.svg"), "--residuals" }).exitCode, 2);
    }

    void readsStandardInput()
    {
        QCOMPARE(runTarnis({ "plot", "-", "-o", path("a.svg") }, counts(20)).exitCode, 0);
        QVERIFY(read("a.svg").contains(">standard input</text>"));
        const Run bad = runTarnis({ "plot", "-", "-o", path("b.svg") }, "1\nx\n");
        QCOMPARE(bad.exitCode, 4);
        QVERIFY2(bad.hasOneLineOfError(), bad.errors);
    }

    void drawsEachSpectrumOverItsOwnAxis()
    {
        const QString near = write("near.csv", "0.5,10\n1.5,20\n2.5,10\n");
        const QString far = write("far.csv", "100,10\n200,20\n300,nan\n400,10\n500,20\n");
        const Run run = runTarnis({ "plot", near, far, "-o", path("nf.svg"), "--title", "Both" });
        QCOMPARE(run.errors, "tarnis: warning: 1 of 5 values of '" + far.toUtf8() + "' are not finite\n");
        QCOMPARE(run.exitCode, 0);
        const QString svg = QString::fromUtf8(read("nf.svg"));
        for (const char* const text : { ">near.csv</text>", ">far.csv</text>", ">Both</text>", ">500</text>" })
            QVERIFY2(svg.contains(QLatin1String(text)), text);
        static const QRegularExpression curve(
            "<polyline points=\"([-0-9.]+),[-0-9.]+ ([-0-9.]+),[-0-9.]+ [-0-9.]+,[-0-9.]+\"");
        const QRegularExpressionMatch first = curve.match(svg);
        QVERIFY(first.hasMatch());
        QVERIFY(first.captured(2).toDouble() - first.captured(1).toDouble() < 3.0); // one of 500 units
        QCOMPARE(runTarnis({ "plot", near, far, "-o", path("nf.png"), "--log" }).exitCode, 0);
    }

    void refusesAxesWithDifferentUnits()
    {
        const QString us = write(
            "us.csv", "# Tarnis data 1\n# kind: curves\n# x: Time\n# x unit: us\n# x column: centre\n1,10\n2,20\n");
        const QString kev = write(
            "kev.csv", "# Tarnis data 1\n# kind: curves\n# x: Energy\n# x unit: keV\n# x column: centre\n1,10\n2,20\n");
        const Run run = runTarnis({ "plot", us, kev, "-o", path("u.svg") });
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.contains("is over us and 'kev.csv' over keV: draw them one by one"), run.errors);
    }

    void drawsAHistogramOfTheServer()
    {
        simtest::Program server({ "--start" });
        const Run run = runTarnis(
            { "plot", "total", "-o", path("t.png"), "--server", QStringLiteral("127.0.0.1:%1").arg(server.port()) });
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(QImage(path("t.png")).text("Title"), "total");
        QCOMPARE(shell(QStringLiteral("$TARNIS plot image -o - --server 127.0.0.1:%1 | head -c 4").arg(server.port()))
                     .output.mid(1),
            QByteArray("PNG"));
    }

    void refusesWhatItCannotDraw_data()
    {
        addColumns<QString, int, QByteArray>("words", "exitCode", "text");
        const auto row = [](const char* name, const char* words, int exitCode, const QByteArray& text) {
            QTest::newRow(name) << QString::fromLatin1(words) << exitCode << text;
        };
        row("no output", "a.csv", 2, "no output: give -o FILE");
        row("another format", "a.csv -o b.bmp", 2, "'b.bmp' does not end in .png, .pdf or .svg");
        row("size", "a.csv -o b.png --size 10", 2, "--size '10' is not of the form WxH");
        row("small size", "a.csv -o b.png --size 10x10", 2, "--size '10x10' is not of the form WxH");
        row("dpi", "a.csv -o b.png --dpi 10000", 2, "--dpi '10000' is not a number from 24 to 1200");
        row("range", "a.csv -o b.png --range 5", 2, "--range '5' is not a range");
        row("reversed range", "a.csv -o b.png --range 9:5", 2, "the second number must be larger");
        row("levels", "m.csv -o b.png --levels 5:500", 2, "--levels are percentages");
        row("map", "m.csv -o b.png --map pink", 2, "--map 'pink' is not one of cividis,");
        row("map of a spectrum", "a.csv -o b.png --map viridis", 2, "--map and --levels are for maps");
        row("two maps", "m.csv m.csv -o b.png", 2, "a map is drawn alone");
        row("no such file", "none.csv -o b.png", 4, "cannot read 'none.csv': there is no such file");
        row("name without server", "total -o b.png", 2,
            "'total' is not a file, and for a histogram there is no server");
        row("damaged file", "bad.csv -o b.png", 4, "cannot read 'bad.csv': line 2: field 1: 'x' is not a number");
        row("damaged spectrum", "bad.spe -o b.png", 4, "cannot read 'bad.spe': it has no section $DATA");
        row("damaged array", "bad.npy -o b.png", 4, "cannot read 'bad.npy': byte 0");
        row("damaged HDF5", "bad.h5 -o b.png", 4, "cannot read 'bad.h5': ");
        row("no connection", "total -o b.png --server 127.0.0.1:1", 3, "no connection to 127.0.0.1:1");
        row("full device", "a.csv -o /dev/full", 4, "cannot write '/dev/full': no space is left on the device");
        row("no folder", "a.csv -o no/b.png", 4, "the folder 'no' does not exist");
        row("full output", "a.csv -o - > /dev/full", 4, "cannot write to standard output: no space");
    }
    void refusesWhatItCannotDraw()
    {
        QFETCH(QString, words);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, text);
        write("a.csv", counts(20));
        write("m.csv", "4,0,3\n2,1,4\n");
        write("bad.csv", "1\nx\n");
        write("bad.spe", "nothing");
        write("bad.npy", "nothing");
        write("bad.h5", "nothing");
        const QStringList before = names();
        const Run run = shell(QStringLiteral("cd '%1'; $TARNIS plot %2").arg(m_folder.path(), words));
        QCOMPARE(run.exitCode, exitCode);
        QVERIFY2(run.hasOneLineOfError() && run.errors.contains(text), run.errors.constData());
        QCOMPARE(names(), before);
    }

    void needsNoDisplay()
    {
        const QString file = write("a.csv", counts(20));
        const Run run =
            shell(QStringLiteral("env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=xcb $TARNIS plot %1 -o %2")
                      .arg(file, path("a.png")));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
    }
};

QTEST_GUILESS_MAIN(TestClientPlot)
#include "tst_clientplot.moc"
