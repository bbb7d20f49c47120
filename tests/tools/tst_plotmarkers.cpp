// Markers: names, drags, keys, bins, live data, tables and stored views.
#include "support/contrast.h"
#include "support/pictures.h"
#include "support/plotmouse.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "support/visibleplot.h"
#include "tools/samples.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotstyle.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

/// Ten samples on an axis from 0 to 100.
void fill(VectorGraphWidget& plot)
{
    tarnis::testing::fill(plot, { 4, 1, 0, std::nan(""), 2.5, 5, 6, 7, 8, 9 });
}

void fill(XY2DGraphWidget& map)
{
    map.init("X", "Y", 4, 2, true, true);
    map.initManualX(0, 4);
    map.initManualY(0, 2);
    map.setData(0, { 1, 2, 3, 4 }, 4, false);
    map.setData(1, { 5, 6 }, 6, false); // a short row
}

bool isDrawn(XYGraphWidget& plot, double x, double y, const QColor& colour)
{
    return hasPixel(
        plot.grab().toImage(), pixelOf(plot, x, y), QSize(0, 0), [&](const QColor& found) { return found == colour; });
}

/// Shows a map with a marker that is selected.
void showSelected(XY2DGraphWidget& map, PlotMarkers& markers)
{
    fill(map);
    showActive(map);
    markers.add({ 1.5, 0.5 });
    PlotMouse(map).click(pixelOf(map, 1.5, 0.5));
}

} // namespace

class TestPlotMarkers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesMarkersByLetters()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotMarkers markers(&plot);
        QCOMPARE(markers.add({ 5, 0 }), QStringLiteral("A"));
        QCOMPARE(markers.add({ 15, 0 }), QStringLiteral("B"));
        QVERIFY(markers.remove(QStringLiteral("A")));
        QCOMPARE(markers.add({ 25, 0 }), QStringLiteral("A"));
        for (int i = 0; i < 24; ++i)
            markers.add({ 5, 0 });
        QCOMPARE(markers.add({ 5, 0 }), QStringLiteral("AA"));
        while (markers.markers().size() < PlotMarkers::maxMarkers)
            QVERIFY(!markers.add({ 1, 1 }).isEmpty());
        QVERIFY(markers.add({ 1, 1 }).isEmpty());
    }

    void linesAreReadableOnEveryTheme_data()
    {
        QTest::addColumn<PlotStyle::Theme>("theme");
        QTest::newRow("light") << PlotStyle::Theme::Light;
        QTest::newRow("dark") << PlotStyle::Theme::Dark;
        QTest::newRow("print") << PlotStyle::Theme::Print;
        QTest::newRow("high contrast") << PlotStyle::Theme::HighContrast;
    }
    void linesAreReadableOnEveryTheme()
    {
        QFETCH(const PlotStyle::Theme, theme);
        VectorGraphWidget plot;
        fill(plot);
        new PlotStyle(&plot, theme);
        PlotMarkers markers(&plot);
        markers.add({ 25, 0 });
        plot.onShowGrid(); // off
        showActive(plot);
        // Between the label at the top and the curve: the line, and the background beside it.
        const QImage picture = plot.grab().toImage();
        const QPoint at = pixelOf(plot, 25, 6.5);
        const QColor background = colourAt(picture, at + QPoint(8, 0));
        QVERIFY(
            hasPixel(picture, at, QSize(0, 0), [&](const QColor& found) { return contrast(found, background) > 3.0; }));
    }

    void snapsToBinsInsideOfTheData()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotMarkers markers(&plot);
        showActive(plot);
        markers.add({ 12.3, 4 });
        markers.add({ -7.5, 4 });
        QCOMPARE(markers.markers().at(0).position, QPointF(15, 4));
        QCOMPARE(markers.markers().at(1).position, QPointF(-7.5, 4));
        XY2DGraphWidget map;
        fill(map);
        auto* const onMap = new PlotMarkers(&map);
        showActive(map);
        onMap->add({ 1.2, 0.7 });
        QCOMPARE(onMap->markers().at(0).position, QPointF(1.5, 0.5));
    }

    void aLeftDragMovesAMarker()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotMarkers markers(&plot);
        showActive(plot);
        markers.add({ 15, 0 });
        const QSignalSpy changed(&markers, &PlotMarkers::markersChanged);
        PlotMouse mouse(plot);
        mouse.press(pixelOf(plot, 15, 3));
        QCOMPARE(markers.selected(), 0);
        mouse.move(pixelOf(plot, 40, 3));
        mouse.move(pixelOf(plot, 62, 5));
        mouse.release(pixelOf(plot, 62, 5));
        QCOMPARE(markers.markers().at(0).position.x(), 65.0);
        QVERIFY(changed.count() >= 2);
        mouse.drag(pixelOf(plot, 35, 3), pixelOf(plot, 75, 3)); // beside it
        QCOMPARE(markers.markers().at(0).position.x(), 65.0);
        QCOMPARE(markers.selected(), -1);
        markers.setOn(false);
        mouse.drag(pixelOf(plot, 65, 3), pixelOf(plot, 85, 3));
        QCOMPARE(markers.markers().at(0).position.x(), 65.0);
    }

    void aDragThatLeavesThePlotEndsAtItsBorder()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotMarkers markers(&plot);
        showActive(plot);
        markers.add({ 15, 0 });
        PlotMouse(plot).drag(pixelOf(plot, 15, 3), QPoint(plot.width() + 500, 5));
        QCOMPARE(markers.markers().at(0).position.x(), 95.0);
    }

    void namesAreBesideTheLegendAndHeldMarks()
    {
        MultiVectorGraphWidget plot;
        plot.init("Time", "Counts", 0, 0, true, true);
        plot.m_groupSize = 1;
        for (int i = 0; i < 4; ++i)
            plot.setData(i, QList<double>(100, 1.0 + i), 4);
        PlotNavigator navigator(&plot);
        PlotLegend legend(&plot);
        PlotMarkers markers(&plot);
        showActive(plot, { 600, 400 });
        legend.setPlace({ 0, 0 });
        const QRect list = legend.overlayBoxes().first();
        const QPointF under = PlotMapping::of(plot).valueAt(list.center());
        for (int i = 0; i < 3; ++i)
            markers.add({ under.x(), 0.0 });
        QTest::keyClick(&plot, Qt::Key_PageUp); // holds Y, with a mark in the corner
        markers.add({ -500.0, 0.0 }); // an arrow at the border
        QCOMPARE(navigator.overlayBoxes().size(), 1);
        const QList<QRect> taken = legend.overlayBoxes() + navigator.overlayBoxes();
        for (const QRect& name : markers.overlayBoxes()) {
            QVERIFY(PlotMapping::of(plot).plotRect().contains(name));
            for (const QRect& box : taken)
                QVERIFY(!box.intersects(name));
        }
    }

    void escapeRevertsADrag()
    {
        XY2DGraphWidget map;
        fill(map);
        PlotMarkers markers(&map);
        showActive(map);
        markers.add({ 1.5, 0.5 });
        PlotMouse mouse(map);
        mouse.press(pixelOf(map, 1.5, 0.5));
        mouse.move(pixelOf(map, 3.5, 1.5));
        QCOMPARE(markers.markers().at(0).position, QPointF(3.5, 1.5));
        QTest::keyClick(&map, Qt::Key_Escape);
        QCOMPARE(markers.markers().at(0).position, QPointF(1.5, 0.5));
        mouse.release(pixelOf(map, 3.5, 1.5));
    }

    void keysMoveRenameCopyAndRemove()
    {
        XY2DGraphWidget map;
        PlotMarkers markers(&map);
        showSelected(map, markers);
        QTest::keyClick(&map, Qt::Key_Right);
        QTest::keyClick(&map, Qt::Key_Up);
        QCOMPARE(markers.markers().at(0).position, QPointF(2.5, 1.5));
        QTest::keyClick(&map, Qt::Key_F2);
        auto* const editor = map.findChild<QLineEdit*>();
        QVERIFY(editor != nullptr);
        QTest::keyClicks(editor, QStringLiteral("Cs 137"));
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(markers.markers().at(0).name, QStringLiteral("Cs 137"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(map.hasFocus());
        QTest::keyClick(&map, Qt::Key_Left);
        QTest::keyClick(&map, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(),
            QStringLiteral("marker\tX\tbin\tX lo\tX hi\tY\trow\tY lo\tY hi\tvalue\n"
                           "Cs 137\t1.5\t1\t1\t2\t1.5\t1\t1\t2\t6\n"));
        QTest::keyClick(&map, Qt::Key_Delete);
        QVERIFY(markers.markers().isEmpty());
        QVERIFY(markers.table().isEmpty());
        QTest::keyClick(&map, Qt::Key_M);
        QCOMPARE(markers.markers().size(), 1);
        markers.add({ 3.5, 1.5 });
        for (const int expected : { 0, 1, 0 }) {
            QTest::keyClick(&map, Qt::Key_M, Qt::ShiftModifier);
            QCOMPARE(markers.selected(), expected);
        }
    }

    void editorIsOverTheName_data()
    {
        QTest::addColumn<double>("rotation");
        for (const int rotation : { 0, 90, -90 })
            QTest::newRow(qPrintable(QString::number(rotation))) << double(rotation);
    }
    void editorIsOverTheName()
    {
        QFETCH(const double, rotation);
        VectorGraphWidget plot;
        fill(plot);
        plot.m_doubleBuffered = true;
        plot.m_rotation = rotation;
        PlotMarkers markers(&plot);
        plot.resize(500, 400);
        showActive(plot);
        markers.add({ 20.5, 0.0 });
        QTest::keyClick(&plot, Qt::Key_M, Qt::ShiftModifier);
        const PlotMapping mapping = PlotMapping::of(plot);
        QTest::keyClick(&plot, Qt::Key_F2);
        const auto* const editor = plot.findChild<QLineEdit*>();
        QVERIFY(editor != nullptr);
        const QPointF at = mapping.toFrame(QRectF(editor->geometry()).center());
        QVERIFY(std::abs(at.x() - mapping.columnOf(20.5)) < 50.0);
        QVERIFY(at.y() < mapping.frameRect().top() + 50.0);
    }

    void savedPictureHasNoSelection()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotMarkers markers(&plot);
        showActive(plot);
        markers.add({ 20.5, 0.0 });
        const auto saved = [&] { return std::unique_ptr<QPixmap>(plot.toPixmap())->toImage(); };
        const QImage picture = saved();
        const QImage screen = plot.grab().toImage();
        QTest::keyClick(&plot, Qt::Key_M, Qt::ShiftModifier);
        QCOMPARE(markers.selected(), 0);
        QCOMPARE(saved(), picture);
        QVERIFY(plot.grab().toImage() != screen);
    }

    void escapeDropsTheNewName()
    {
        XY2DGraphWidget map;
        PlotMarkers markers(&map);
        showSelected(map, markers);
        QTest::keyClick(&map, Qt::Key_F2);
        auto* const editor = map.findChild<QLineEdit*>();
        QVERIFY(editor != nullptr);
        QTest::keyClicks(editor, QStringLiteral("other"));
        QTest::keyClick(editor, Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(map.findChild<QLineEdit*>(), nullptr);
        QVERIFY(map.hasFocus());
        QCOMPARE(markers.markers().at(0).name, QStringLiteral("A"));
        QCOMPARE(markers.selected(), 0); // the key is not for the tool
    }

    void anUnchangedNameClosesTheEditor()
    {
        XY2DGraphWidget map;
        PlotMarkers markers(&map);
        showSelected(map, markers);
        for (const Qt::Key key : { Qt::Key_Escape, Qt::Key_Return, Qt::Key_Tab }) {
            QTest::keyClick(&map, Qt::Key_F2);
            auto* const editor = map.findChild<QLineEdit*>();
            QVERIFY(editor != nullptr);
            QTest::keyClick(editor, key);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(map.findChild<QLineEdit*>(), nullptr);
            QCOMPARE(markers.markers().at(0).name, QStringLiteral("A"));
        }
    }

    void tableHasEveryVisibleCurve()
    {
        MultiVectorGraphWidget plot;
        fillGroups(plot, 3);
        plot.setEnable(1, false);
        PlotMarkers markers(&plot);
        showActive(plot);
        markers.add({ 1.5, 0 });
        markers.add({ -3, 0 });
        QCOMPARE(markers.table(),
            QStringLiteral("marker\tChannel\tbin\tChannel lo\tChannel hi\tvalue 0\tvalue "
                           "2\nA\t1.5\t1\t1\t2\t10\t12\nB\t-3\t\t\t\t\t\n"));
    }

    void staysWhenDataAndViewChange()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotMarkers markers(&plot);
        showActive(plot);
        markers.add({ 15, 0 });
        plot.setData(QList<double>(1000, 3.0));
        plot.onAutoScaleX(false);
        plot.setMinMaxX(10, 30);
        plot.refreshPixmap();
        plot.grab();
        QCOMPARE(markers.markers().at(0).position.x(), 15.0);
        QVERIFY(isDrawn(plot, 15, 8, QColor(255, 176, 0)));
        plot.setMinMaxX(40, 90); // an arrow at the left border shows where it is
        plot.refreshPixmap();
        const QImage with = plot.grab().toImage();
        markers.clear();
        QVERIFY(plot.grab().toImage() != with);
    }

    void drawsOverThePictureOnly()
    {
        VectorGraphWidget plot;
        fill(plot);
        showActive(plot);
        const QImage before = plot.grab().toImage();
        const QSignalSpy painted(&plot, &DoubleBufferedWidget::painted);
        auto* const markers = new PlotMarkers(&plot);
        markers->add({ 15, 0 });
        markers->select(0);
        QVERIFY(plot.grab().toImage() != before);
        const std::unique_ptr<QPixmap> saved(plot.toPixmap());
        QVERIFY(saved->toImage() != before);
        delete markers;
        QCOMPARE(plot.grab().toImage(), before);
        QCOMPARE(painted.count(), 0);
    }

    void refusesWhatIsNotValid()
    {
        VectorGraphWidget plot;
        PlotMarkers markers(&plot);
        QVERIFY(markers.add({ std::nan(""), 0 }).isEmpty());
        QVERIFY(markers.add({ 0, INFINITY }).isEmpty());
        markers.add({ 1, 1 });
        markers.add({ 2, 2 });
        QVERIFY(!markers.rename(QStringLiteral("A"), QStringLiteral("B")));
        QVERIFY(!markers.rename(QStringLiteral("A"), QStringLiteral("  ")));
        QVERIFY(!markers.rename(QStringLiteral("X"), QStringLiteral("Y")));
        QVERIFY(!markers.move(QStringLiteral("A"), { INFINITY, 0 }));
        QVERIFY(!markers.remove(QStringLiteral("X")));
        markers.select(17);
        QCOMPARE(markers.selected(), -1);
        markers.setMarkers({ { "P", { 1, 2 } }, { "P", { 3, 4 } }, { "", { 1, 1 } }, { "Q", { std::nan(""), 1 } } });
        QCOMPARE(markers.markers(), (QList<PlotMarker> { { "P", { 1, 2 } } }));
        plot.resize(0, 0);
        plot.grab();
        markers.addHere();
        markers.copy();
        PlotMarkers unattached(nullptr);
        QVERIFY(unattached.add({ 1, 1 }).isEmpty());
        QVERIFY(unattached.table().isEmpty());
    }

    void restoresItsState()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotMarkers markers(&plot);
        markers.setMarkers({ { "peak 1", { 12.25, 3 } }, { "B", { -1e300, 5e-320 } } });
        markers.setOn(false);
        const QJsonObject state = markers.saveState();
        PlotMarkers other(&plot);
        other.restoreState(state);
        QCOMPARE(other.markers(), markers.markers());
        QVERIFY(!other.isOn());
        other.restoreState(
            { { "on", "x" }, { "markers", QJsonArray { 1, QJsonArray { "Z" }, QJsonArray { "Z", 1, "2" } } } });
        QVERIFY(other.markers().isEmpty());
        other.restoreState({ { "markers", 7 } });
    }

    void endsWithItsPlotInMidDrag()
    {
        auto plot = std::make_unique<VectorGraphWidget>();
        fill(*plot);
        auto* const markers = new PlotMarkers(plot.get());
        showActive(*plot);
        markers->add({ 15, 0 });
        PlotMouse mouse(*plot);
        mouse.press(pixelOf(*plot, 15, 3));
        mouse.move(pixelOf(*plot, 40, 3));
        plot->hide();
        QCOMPARE(markers->markers().at(0).position.x(), 15.0);
        plot.reset();
    }

    void attachesAndDetachesUnderLiveData()
    {
        VectorGraphWidget plot;
        fill(plot);
        showActive(plot);
        Generator generator = seededGenerator(5);
        std::unique_ptr<PlotMarkers> markers;
        PlotMouse mouse(plot);
        for (int i = 0; i < 400; ++i) {
            QList<double> samples(whole(generator, 0, 30));
            for (double& sample : samples)
                sample = chance(generator, 0.1) ? std::nan("") : uniform(generator, -5, 20);
            plot.setData(samples);
            plot.refreshPixmap();
            const QPoint at(whole(generator, 0, 500), whole(generator, 0, 400));
            switch (whole(generator, 0, 6)) {
            case 0:
                markers = markers ? nullptr : std::make_unique<PlotMarkers>(&plot);
                break;
            case 1:
                if (markers)
                    markers->add({ uniform(generator, -50, 150), 0 });
                break;
            case 2:
                mouse.press(at);
                break;
            case 3:
                mouse.release(at);
                break;
            case 4:
                QTest::keyClick(&plot, chance(generator, 0.5) ? Qt::Key_Left : Qt::Key_Delete);
                break;
            case 5:
                plot.setLogScaleY(chance(generator, 0.5));
                break;
            default:
                mouse.move(at);
            }
            plot.grab();
        }
        markers.reset();
        mouse.release(QPoint(1, 1));
    }
};

QTEST_MAIN(TestPlotMarkers)
#include "tst_plotmarkers.moc"
