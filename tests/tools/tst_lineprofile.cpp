// The line profile: values in data terms, drags, width, live data, the plot of the profile, stored views.
#include "livemapgestures.h"
#include "support/pictures.h"
#include "support/plotmouse.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "support/visibleplot.h"
#include "support/wait.h"

#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>

#include <QAction>
#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr double binWidth = 2.0;

/// 10 x 6 bins of 2 x 1; bin (x, y) holds x + 100 y.
void fill(XY2DGraphWidget& map)
{
    map.init("X", "Y", 20, 6, true, true);
    map.initManualX(0, 20);
    map.initManualY(0, 6);
    for (int y = 0; y < 6; ++y) {
        QList<double> row;
        for (int x = 0; x < 10; ++x)
            row.append(x + 100 * y);
        map.setData(y, row, 509, false);
    }
}

} // namespace

class TestLineProfile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theMouseToolChosenLastHasTheDrags()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        PlotRuler ruler(&map);
        showActive(map);
        const QList<QAction*> entries = map.actions();
        const auto rectangle = std::find_if(entries.begin(), entries.end(),
            [](const QAction* entry) { return entry->text() == QLatin1String("Rectangle"); });
        QVERIFY(rectangle != entries.end());
        PlotMouse mouse(map);
        const QPoint from = pixelOf(map, 5, 1.5);
        const QPoint to = pixelOf(map, 9, 4.5);
        const auto drag = [&] { mouse.drag(from, to); };
        ruler.setOn(true);
        drag();
        QVERIFY(ruler.isSet());
        ruler.clear();
        profile.setOn(true);
        const QPointF end = profile.to();
        (*rectangle)->trigger();
        drag();
        QVERIFY(!ruler.isSet());
        QCOMPARE(profile.to(), end);
        QVERIFY(rangeX(map).max < 12.0); // zoomed
        (*rectangle)->trigger();
        drag();
        QVERIFY(profile.to() != end);
        (*rectangle)->trigger();
        ruler.setOn(false);
        ruler.setOn(true); // after the rectangle
        drag();
        QVERIFY(ruler.isSet());
    }

    void theProfileFollowsTheStyleOfTheMap()
    {
        XY2DGraphWidget map;
        map.init("X", "Y", 10, 10, true, true);
        for (int row = 0; row < 10; ++row)
            map.setData(row, QList<double>(10, row), row, false);
        LineProfile profile(&map);
        const auto styleOf = [&] {
            return profile.profilePlot()->findChild<PlotStyle*>(QString(), Qt::FindDirectChildrenOnly);
        };
        profile.setLine({ 1, 1 }, { 8, 8 });
        profile.setOn(true);
        QVERIFY(styleOf() == nullptr); // the map has the classic drawing
        profile.setOn(false);
        auto* const style = new PlotStyle(&map, PlotStyle::Theme::Dark);
        profile.setOn(true);
        QVERIFY(styleOf() != nullptr);
        QCOMPARE(styleOf()->theme(), PlotStyle::Theme::Dark);
        style->setTheme(PlotStyle::Theme::Print);
        QCOMPARE(styleOf()->theme(), PlotStyle::Theme::Print);
        delete style;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(styleOf() == nullptr);
    }

    void readsTheBinsAlongTheLine()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        showActive(map, { 600, 400 });
        profile.setLine({ 4.4, 2.2 }, { 12.9, 2.9 });
        QCOMPARE(profile.from(), QPointF(5, 2.5));
        QCOMPARE(profile.to(), QPointF(13, 2.5));
        QCOMPARE(profile.values(), (QList<double> { 202, 203, 204, 205, 206 }));
        double low = 0.0;
        double high = 0.0;
        profile.profilePlot()->getInitMinMaxX(low, high); // the edges of these bins
        QCOMPARE(low, 2 * binWidth);
        QCOMPARE(high, 7 * binWidth);
        QCOMPARE(profile.profilePlot()->getNameX(), QStringLiteral("X"));
        profile.setLine({ 5, 0.5 }, { 5, 3.5 });
        QCOMPARE(profile.values(), (QList<double> { 2, 102, 202, 302 }));
        QCOMPARE(profile.profilePlot()->getNameX(), QStringLiteral("Y"));
        profile.setLine({ 1, 0.5 }, { 9, 4.5 }); // the diagonal of the bins
        QCOMPARE(profile.values().size(), 5);
        QCOMPARE(profile.profilePlot()->getNameX(), QStringLiteral("Bins Along the Line"));
    }

    void joinsAcrossTheBand()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        showActive(map, { 600, 400 });
        profile.setLine({ 5, 2.5 }, { 9, 2.5 });
        profile.setBandWidth(3);
        QCOMPARE(profile.values(), (QList<double> { 606, 609, 612 }));
        profile.setJoin(LineProfile::Join::Mean);
        QCOMPARE(profile.values(), (QList<double> { 202, 203, 204 }));
        profile.setJoin(LineProfile::Join::Maximum);
        QCOMPARE(profile.values(), (QList<double> { 302, 303, 304 }));
        profile.setBandWidth(-4);
        QCOMPARE(profile.bandWidth(), 1.0);
        profile.setBandWidth(std::nan(""));
        QCOMPARE(profile.bandWidth(), 1.0);
    }

    void theToolThatWasSwitchedOnLastGetsTheDrags()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        PlotRuler ruler(&map);
        showActive(map, { 600, 400 });
        PlotMouse mouse(map);
        ruler.setOn(true);
        profile.setOn(true);
        mouse.drag(pixelOf(map, 5, 0.5), pixelOf(map, 9, 0.5));
        QVERIFY(!ruler.isSet());
        QCOMPARE(profile.to(), QPointF(9, 0.5));
        ruler.setOn(false);
        ruler.setOn(true);
        mouse.drag(pixelOf(map, 5, 3.5), pixelOf(map, 9, 3.5));
        QVERIFY(ruler.isSet());
        QCOMPARE(profile.to(), QPointF(9, 0.5));
    }

    void isLiveWhileItIsDragged()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        showActive(map, { 600, 400 });
        QTest::keyClick(&map, Qt::Key_B);
        QVERIFY(profile.isOn() && profile.isSet());
        QVERIFY(profile.profilePlot()->isVisible());
        map.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&map));
        map.setFocus();
        PlotMouse mouse(map);
        const QSignalSpy changed(&profile, &LineProfile::profileChanged);
        mouse.press(pixelOf(map, 5, 0.5));
        mouse.move(pixelOf(map, 9, 0.5));
        QCOMPARE(profile.values(), (QList<double> { 2, 3, 4 }));
        mouse.move(pixelOf(map, 13, 0.5));
        QCOMPARE(profile.values().size(), 5);
        mouse.release(pixelOf(map, 13, 0.5));
        mouse.drag(pixelOf(map, 13, 0.5), pixelOf(map, 17, 0.5)); // its end
        QCOMPARE(profile.values().last(), 8.0);
        mouse.drag(pixelOf(map, 10, 0.5), pixelOf(map, 10, 3.5)); // the line
        QCOMPARE(profile.from(), QPointF(5, 3.5));
        QCOMPARE(profile.values().first(), 302.0);
        QVERIFY(changed.count() >= 4);
        mouse.press(pixelOf(map, 5, 3.5));
        mouse.move(pixelOf(map, 15, 5.5));
        QVERIFY(profile.from() != QPointF(5, 3.5));
        QTest::keyClick(&map, Qt::Key_Escape);
        QCOMPARE(profile.from(), QPointF(5, 3.5));
        mouse.release(pixelOf(map, 15, 5.5));
        profile.setLine({ 5, 3.5 }, { 9, 3.5 });
        QTest::keyClick(&map, Qt::Key_Down, Qt::ControlModifier);
        QTest::keyClick(&map, Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(profile.to(), QPointF(11, 2.5));
        QTest::keyClick(&map, Qt::Key_Space);
        QCOMPARE(profile.from(), QPointF(11, 2.5));
        QCOMPARE(profile.to(), QPointF(5, 3.5));
        QTest::keyClick(&map, Qt::Key_Escape);
        QVERIFY(!profile.isOn());
        QVERIFY(!profile.profilePlot()->isVisible());
    }

    void aClickKeepsTheLine()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        showActive(map, { 600, 400 });
        profile.setOn(true);
        profile.setLine({ 5, 2.5 }, { 9, 2.5 });
        PlotMouse(map).click(pixelOf(map, 13, 4.5));
        QCOMPARE(profile.from(), QPointF(5, 2.5));
        QCOMPARE(profile.to(), QPointF(9, 2.5));
    }

    void aDragThatLeavesThePlotEndsAtItsBorder()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        showActive(map, { 600, 400 });
        profile.setOn(true);
        profile.setLine({ 5, 2.5 }, { 9, 2.5 });
        const double last = PlotMapping::of(map).columnEdges(PlotMapping::of(map).columns() - 1).max;
        PlotMouse(map).drag(pixelOf(map, 9, 2.5), QPoint(map.width() + 500, pixelOf(map, 9, 2.5).y()));
        QVERIFY2(last - profile.to().x() <= 1.0, qPrintable(QString::number(profile.to().x())));
        QCOMPARE(profile.from(), QPointF(5, 2.5));
    }

    void itsWindowIsShownAfterTheMaps()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        profile.setOn(true); // by a stored view, before the map is shown
        struct ShowWatch : QObject {
            bool eventFilter(QObject* /*object*/, QEvent* event) override
            {
                if (event->type() == QEvent::Show)
                    isMapShown = map->windowHandle() != nullptr && map->windowHandle()->isVisible();
                return false;
            }
            const QWidget* map = nullptr;
            bool isMapShown = false;
        } watch;
        watch.map = &map;
        profile.profilePlot()->installEventFilter(&watch);
        map.show();
        TRY_VERIFY(profile.profilePlot()->isVisible());
        QVERIFY(watch.isMapShown);
        map.hide();
        QVERIFY(!profile.profilePlot()->isVisible());
    }

    void theHandleWidensTheBand()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        showActive(map, { 600, 400 });
        profile.setOn(true);
        profile.setLine({ 3, 2.5 }, { 17, 2.5 });
        PlotMouse mouse(map);
        const QPoint handle = pixelOf(map, 10, 3.0); // half a bin above
        mouse.drag(handle, pixelOf(map, 10, 4.0));
        QCOMPARE(profile.bandWidth(), 3.0);
        QCOMPARE(profile.values().first(), 3.0 * 201);
    }

    void followsTheData()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        showActive(map, { 600, 400 });
        profile.setOn(true);
        profile.setLine({ 5, 2.5 }, { 9, 2.5 });
        profile.profilePlot()->onAutoScaleX(false);
        profile.profilePlot()->setMinMaxX(5, 8); // a zoom by the user
        map.setData(2, QList<double>(10, 7.0), 7, false);
        map.refreshPixmap();
        QCoreApplication::processEvents();
        QCOMPARE(profile.values(), (QList<double> { 7, 7, 7 }));
        double low = 0.0;
        double high = 0.0;
        profile.profilePlot()->getMinMaxX(low, high);
        QCOMPARE(low, 5.0);
        QCOMPARE(high, 8.0);
    }

    void drawsOverThePictureOnly()
    {
        XY2DGraphWidget map;
        fill(map);
        showActive(map, { 600, 400 });
        const QImage before = map.grab().toImage();
        const QSignalSpy painted(&map, &DoubleBufferedWidget::painted);
        auto* const profile = new LineProfile(&map);
        profile->setOn(true);
        profile->setLine({ 5, 2.5 }, { 15, 2.5 });
        const QImage with = map.grab().toImage();
        const QPoint onLine = pixelOf(map, 9, 2.5);
        const QColor colour(255, 90, 200);
        QVERIFY(colourAt(with, onLine) == colour || colourAt(with, onLine - QPoint(0, 1)) == colour
            || colourAt(with, onLine + QPoint(0, 1)) == colour);
        const std::unique_ptr<QPixmap> saved(map.toPixmap());
        QVERIFY(saved->toImage() != before);
        // The handle of the width, 7 x 7 pixels, is for the mouse only.
        const auto coloured = [&colour](const QImage& picture) {
            int count = 0;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x)
                    count += picture.pixelColor(x, y) == colour ? 1 : 0;
            }
            return count;
        };
        const int ofHandle = coloured(with) - coloured(saved->toImage());
        const double scale = with.devicePixelRatio() * with.devicePixelRatio();
        QVERIFY2(ofHandle >= 14 * scale && ofHandle <= 49 * scale, qPrintable(QString::number(ofHandle)));
        delete profile;
        QCOMPARE(map.grab().toImage(), before);
        QCOMPARE(painted.count(), 0);
    }

    void restoresItsState()
    {
        XY2DGraphWidget map;
        fill(map);
        LineProfile profile(&map);
        showActive(map, { 600, 400 });
        profile.setLine({ 5, 2.5 }, { 9, 4.5 });
        profile.setBandWidth(3);
        profile.setJoin(LineProfile::Join::Mean);
        profile.setOn(true);
        const QJsonObject state = profile.saveState();
        LineProfile other(&map);
        other.restoreState(state);
        QCOMPARE(other.saveState(), state);
        other.restoreState({ { "line", QJsonArray { 1, 2, "x", 4 } }, { "join", 3 }, { "width", "w" }, { "on", 7 } });
        QCOMPARE(other.saveState(), state);
    }

    void survivesOddMaps()
    {
        XY2DGraphWidget map;
        LineProfile profile(&map);
        map.resize(0, 0);
        map.grab();
        profile.setOn(true);
        profile.setLine({ 1, 1 }, { 2, 2 });
        profile.setLine({ std::nan(""), 1 }, { 2, 2 });
        map.resize(300, 200);
        map.grab();
        map.init("X", "Y", 2, 2, true, true);
        map.setData(0, {}, 0, false); // an empty row: bins have no width
        map.setData(1, { 1, 2 }, 2, false);
        map.refreshPixmap();
        map.grab();
        profile.setLine({ 0, 0 }, { 2, 2 });
        map.setData(0, { std::nan(""), INFINITY }, 0, false);
        map.refreshPixmap();
        map.grab();
        QCoreApplication::processEvents();
        LineProfile unattached(nullptr);
        unattached.setOn(true);
        unattached.setLine({ 1, 1 }, { 2, 2 });
        unattached.setBandWidth(3);
        unattached.restoreState(profile.saveState());
        QVERIFY(unattached.profilePlot() == nullptr && unattached.values().isEmpty());
    }

    void survivesTheEndOfMapOrPlot()
    {
        auto map = std::make_unique<XY2DGraphWidget>();
        fill(*map);
        auto* const profile = new LineProfile(map.get());
        showActive(*map, { 600, 400 });
        profile->setOn(true);
        delete profile->profilePlot();
        profile->setLine({ 5, 2.5 }, { 9, 4.5 });
        PlotMouse mouse(*map);
        mouse.press(pixelOf(*map, 5, 2.5));
        mouse.move(pixelOf(*map, 9, 2.5));
        map->hide();
        QCOMPARE(profile->from(), QPointF(5, 2.5));
        map.reset();
    }

    void attachesAndDetachesUnderLiveData()
    {
        XY2DGraphWidget map;
        fill(map);
        showActive(map, { 600, 400 });
        Generator generator = seededGenerator(9);
        attachUnderLiveRows<LineProfile>(map, generator);
    }
};

QTEST_MAIN(TestLineProfile)
#include "tst_lineprofile.moc"
