// Stored views: restored values, ignored values, and damaged files.
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotview.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

using namespace tarnis;

namespace {

void fill(VectorGraphWidget& plot)
{
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("X"), QStringLiteral("Y"), 100, 10, true, true);
    plot.setData(QList<double>(100, 3.0));
    plot.setMaxValue(3.0);
    plot.resize(300, 200);
    plot.grab();
}

QList<double> rangesOf(XYGraphWidget& plot)
{
    double minX = 0.0, maxX = 0.0, minY = 0.0, maxY = 0.0;
    const bool autoX = plot.getMinMaxX(minX, maxX);
    const bool autoY = plot.getMinMaxY(minY, maxY);
    return { minX, maxX, autoX ? 1.0 : 0.0, minY, maxY, autoY ? 1.0 : 0.0 };
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestPlotView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rangesComeBackToTheBit()
    {
        VectorGraphWidget plot;
        fill(plot);
        plot.onAutoScaleX(false);
        plot.onAutoScaleY(false);
        plot.setMinMaxX(0.1 + 0.2, 1.0 / 3.0 * 100.0);
        plot.setMinMaxY(7.0e-3, -1.0e17);
        plot.onShowGrid();
        const QList<double> before = rangesOf(plot);
        const QByteArray bytes = QJsonDocument(PlotView::stateOf(plot)).toJson();
        VectorGraphWidget other;
        fill(other);
        QCOMPARE(PlotView::apply(other, QJsonDocument::fromJson(bytes).object()), QString());
        QCOMPARE(rangesOf(other), before);
        QCOMPARE(PlotView::stateOf(other), PlotView::stateOf(plot));
    }

    void automaticAxesFollowTheDataAgain()
    {
        VectorGraphWidget plot;
        fill(plot);
        const QJsonObject automatic = PlotView::stateOf(plot);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(5, 6);
        plot.setData(QList<double>(400, 3.0));
        PlotView::apply(plot, automatic);
        QCOMPARE(rangesOf(plot).at(1), 400.0); // not the end when the view was stored
        QCOMPARE(rangesOf(plot).at(2), 1.0);
    }

    void mapColoursAndScaleComeBack()
    {
        const auto fillMap = [](XY2DGraphWidget& map) {
            map.m_doubleBuffered = true;
            map.init(QStringLiteral("X"), QStringLiteral("Y"), 10, 10, true, true);
            for (int row = 0; row < 10; ++row)
                map.setData(row, QList<double>(10, row), row, false);
            map.resize(300, 300);
            map.grab();
        };
        XY2DGraphWidget map;
        fillMap(map);
        map.onAutoScaleZToggled(false);
        map.onMinZChanged(2.5);
        map.onMaxZChanged(7.25);
        map.onLogScale(true);
        XY2DGraphWidget other;
        fillMap(other);
        QCOMPARE(PlotView::apply(other, PlotView::stateOf(map)), QString());
        const QJsonObject colours = PlotView::stateOf(other).value(QStringLiteral("colours")).toObject();
        QCOMPARE(colours.value(QStringLiteral("min")).toDouble(), 2.5);
        QCOMPARE(colours.value(QStringLiteral("max")).toDouble(), 7.25);
        QCOMPARE(colours.value(QStringLiteral("auto")).toBool(true), false);
        QCOMPARE(PlotView::stateOf(other), PlotView::stateOf(map));
    }

    void toolsTakePart()
    {
        MultiVectorGraphWidget plot;
        plot.m_doubleBuffered = true;
        plot.init(QStringLiteral("X"), QStringLiteral("Y"), 10, 10, true, true);
        plot.setData(0, QList<double>(10, 1.0), 1);
        plot.resize(300, 200);
        plot.grab();
        auto& cross = *new PlotCrosshair(&plot);
        auto& legend = *new PlotLegend(&plot);
        cross.pinAt({ 3, 4 });
        legend.setPlace({ 0.5, 0.5 });
        const QJsonObject state = PlotView::stateOf(plot);
        cross.release();
        legend.setPlace({ 0, 0 });
        QCOMPARE(PlotView::apply(plot, state), QString());
        QVERIFY(cross.isPinned());
        QCOMPARE(legend.place(), QPointF(0.5, 0.5));
        delete &cross; // its state is ignored
        QCOMPARE(PlotView::apply(plot, state), QString());
    }

    void severalToolsOfOneKindKeepTheirStates()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto& first = *new PlotCrosshair(&plot);
        auto& second = *new PlotCrosshair(&plot);
        second.pinAt({ 1, 2 });
        const QJsonObject state = PlotView::stateOf(plot);
        second.release();
        QCOMPARE(PlotView::apply(plot, state), QString());
        QVERIFY(!first.isPinned());
        QVERIFY(second.isPinned());
    }

    void navigatorRevertsARestoredView()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto& navigator = *new PlotNavigator(&plot);
        const QList<double> before = rangesOf(plot);
        QJsonObject state = PlotView::stateOf(plot);
        state.insert(QStringLiteral("x"),
            QJsonObject {
                { QStringLiteral("min"), 20 }, { QStringLiteral("max"), 30 }, { QStringLiteral("auto"), false } });
        PlotView::apply(plot, state);
        TRY_VERIFY(navigator.isHeld(Qt::Horizontal));
        navigator.goBack();
        QCOMPARE(rangesOf(plot), before);
    }

    void wrongValuesLeaveThePlotAsItIs_data()
    {
        QTest::addColumn<QByteArray>("json");
        const QByteArray head = "\"format\":\"tarnis-view\",\"version\":1";
        QTest::newRow("nothing") << "{" + head + "}";
        QTest::newRow("no numbers") << "{" + head + ",\"x\":{\"min\":\"a\",\"max\":null,\"auto\":false}}";
        QTest::newRow("empty range") << "{" + head + ",\"x\":{\"min\":3,\"max\":3,\"auto\":false}}";
        QTest::newRow("too large") << "{" + head + ",\"x\":{\"min\":-1e308,\"max\":1e308,\"auto\":false}}";
        QTest::newRow("one end") << "{" + head + ",\"y\":{\"max\":4,\"auto\":false}}";
        QTest::newRow("other kinds") << "{" + head + ",\"x\":5,\"y\":[1],\"grid\":7,\"logScale\":\"no\",\"tools\":3}";
        QTest::newRow("unknown keys") << "{" + head + ",\"later\":{\"a\":1},\"tools\":{\"laser\":{\"on\":true}}}";
    }
    void wrongValuesLeaveThePlotAsItIs()
    {
        QFETCH(QByteArray, json);
        VectorGraphWidget plot;
        fill(plot);
        new PlotCrosshair(&plot);
        const QJsonObject before = PlotView::stateOf(plot);
        QCOMPARE(PlotView::apply(plot, QJsonDocument::fromJson(json).object()), QString());
        QCOMPARE(PlotView::stateOf(plot), before);
    }

    void filesComeBackByName()
    {
        const QTemporaryDir folder;
        const PlotView views(folder.filePath(QStringLiteral("new/views")));
        VectorGraphWidget plot;
        fill(plot);
        QCOMPARE(views.restore(plot, QStringLiteral("time")), QString()); // nothing there
        plot.onAutoScaleX(false);
        plot.setMinMaxX(1, 2);
        QCOMPARE(views.save(plot, QStringLiteral("time")), QString());
        plot.setMinMaxX(3, 4);
        QCOMPARE(views.save(plot, QStringLiteral("energy")), QString());
        QCOMPARE(views.names(), (QStringList { QStringLiteral("energy"), QStringLiteral("time") }));
        QCOMPARE(views.restore(plot, QStringLiteral("time")), QString());
        QCOMPARE(rangesOf(plot).first(), 1.0);
        QCOMPARE(QDir(views.folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 2);
    }

    void namesMayBeAnyText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("path") << QStringLiteral("../../etc/passwd");
        QTest::newRow("dots") << QStringLiteral("..");
        QTest::newRow("umlauts") << QStringLiteral("Ankunftszeiten für Modul 3 (gefiltert)");
        QTest::newRow("control") << QStringLiteral("a\nb\tc");
        QTest::newRow("percent") << QStringLiteral("100%2F3");
        QTest::newRow("slash") << QStringLiteral("/");
    }
    void namesMayBeAnyText()
    {
        QFETCH(QString, name);
        const QTemporaryDir folder;
        const PlotView views(folder.path());
        VectorGraphWidget plot;
        fill(plot);
        QCOMPARE(views.save(plot, name), QString());
        QVERIFY(views.contains(name));
        QCOMPARE(views.names(), QStringList { name });
        QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
    }

    void damagedFilesAreReportedAndLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("half") << QByteArray("{\"format\":\"tarnis-view\",\"ver");
        QTest::newRow("binary") << QByteArray("\0\1\2\xff\xfe", 5);
        QTest::newRow("list") << QByteArray("[1, 2]");
        QTest::newRow("other format") << QByteArray("{\"format\":\"shopping list\",\"version\":1}");
        QTest::newRow("no version") << QByteArray("{\"format\":\"tarnis-view\"}");
        QTest::newRow("later version") << QByteArray("{\"format\":\"tarnis-view\",\"version\":2}");
        QTest::newRow("deep") << QByteArray(5000, '[');
        QTest::newRow("large") << QByteArray(3 << 20, ' ');
    }
    void damagedFilesAreReportedAndLeftAlone()
    {
        QFETCH(QByteArray, bytes);
        const QTemporaryDir folder;
        const PlotView views(folder.path());
        const QString name = QStringLiteral("time");
        writeBytes(views.filePath(name), bytes);
        VectorGraphWidget plot;
        fill(plot);
        const QJsonObject before = PlotView::stateOf(plot);
        const QString error = views.restore(plot, name);
        QVERIFY2(error.contains(views.filePath(name)) && error.contains(u"not restored"), qPrintable(error));
        QCOMPARE(PlotView::stateOf(plot), before);
        QVERIFY(views.save(plot, name).contains(u"not changed"));
        QCOMPARE(bytesOf(views.filePath(name)), bytes);
    }

    void folderThatCannotBeMadeIsReported()
    {
        const QTemporaryDir folder;
        writeBytes(folder.filePath(QStringLiteral("file")), "x");
        const PlotView views(folder.filePath(QStringLiteral("file/views")));
        VectorGraphWidget plot;
        fill(plot);
        QVERIFY(views.save(plot, QStringLiteral("time")).contains(views.folder()));
    }

    void removeDeletesOneView()
    {
        const QTemporaryDir folder;
        const PlotView views(folder.path());
        VectorGraphWidget plot;
        fill(plot);
        QCOMPARE(views.save(plot, QStringLiteral("a")), QString());
        QCOMPARE(views.save(plot, QStringLiteral("b")), QString());
        QCOMPARE(views.remove(QStringLiteral("a")), QString());
        QCOMPARE(views.remove(QStringLiteral("a")), QString());
        QCOMPARE(views.names(), QStringList { QStringLiteral("b") });
    }
};

QTEST_MAIN(TestPlotView)
#include "tst_plotview.moc"
