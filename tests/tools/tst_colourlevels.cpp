// Colour maps of one map and of all, and the strip with the limits of the colours.
#include "support/map2dprobe.h"
#include "support/pictures.h"
#include "support/plotmouse.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/export/plotexporter.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/colourmaps.h>
#include <tarnis/tools/plotnavigator.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

/// Columns of 1 to 100, so that quantiles are known; the first column is empty.
void fill(XY2DGraphWidget& map)
{
    map.init("X", "Y", 101, 4, true, true);
    map.initManualX(0, 101);
    map.initManualY(0, 4);
    QList<double> row;
    for (int i = 0; i <= 100; ++i)
        row.append(i);
    for (int y = 0; y < 4; ++y)
        map.setData(y, row, 100, false);
    map.SetPaintGridLineOnGraph(false); // on finer screens its lines are wider and cover probed pixels
}

void show(XY2DGraphWidget& map)
{
    map.m_doubleBuffered = true;
    map.resize(700, 500);
    map.show();
    QVERIFY(QTest::qWaitForWindowExposed(&map));
    for (int i = 0; i < 3; ++i) { // the colour bar determines its width while it is painted
        map.refreshPixmap();
        map.grab();
        QCoreApplication::processEvents();
    }
}

QWidget* stripOf(XY2DGraphWidget& map)
{
    return map.findChild<QWidget*>(QStringLiteral("colourLevelStrip"));
}

QColor colourAt(XY2DGraphWidget& map, double x, double y)
{
    const QPoint at = PlotMapping::of(map).pixelOf({ x, y }).toPoint();
    return tarnis::testing::colourAt(map.grab().toImage(), at);
}

} // namespace

class TestColourLevels : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { ColourMaps::applyToAll(QStringLiteral("rainbow1")); }

    void paintsTheChosenMap_data()
    {
        QTest::addColumn<QString>("name");
        const QStringList names = ColourMaps::names();
        QCOMPARE(names.size(), 15);
        for (const QString& name : names)
            QTest::newRow(qPrintable(name)) << name;
    }
    void paintsTheChosenMap()
    {
        QFETCH(QString, name);
        MapProbe map;
        MapProbe other;
        fill(map);
        fill(other);
        show(map);
        show(other);
        const QImage before = other.grab().toImage();
        QVERIFY(ColourMaps::apply(map, name));
        QCOMPARE(ColourMaps::current(map), name);
        QCOMPARE(ColourMaps::current(other), QStringLiteral("rainbow1"));
        for (const double value : { 1.0, 20.0, 50.0, 99.0, 100.0 }) {
            const QColor expected = ColourMaps::colour(name, value / 100.0);
            QCOMPARE(map.getColor(value), expected);
            QCOMPARE(colourAt(map, value + 0.5, 2.5), expected);
        }
        other.refreshPixmap();
        QCOMPARE(other.grab().toImage(), before);
        QVERIFY(!ColourMaps::title(name).isEmpty());
        const QImage preview = ColourMaps::preview(name, { 64, 4 });
        QCOMPARE(preview.pixelColor(63, 0), ColourMaps::colour(name, 63.5 / 64));
    }

    void appliesToAllMapsAndLaterOnes()
    {
        MapProbe map;
        fill(map);
        show(map);
        QVERIFY(ColourMaps::apply(map, QStringLiteral("magma")));
        QVERIFY(ColourMaps::applyToAll(QStringLiteral("viridis")));
        MapProbe later;
        fill(later);
        QCOMPARE(ColourMaps::current(map), QStringLiteral("viridis"));
        QCOMPARE(ColourMaps::current(later), QStringLiteral("viridis"));
        QCOMPARE(colourAt(map, 100.5, 2.3), QColor(0xfd, 0xe7, 0x25));
        QVERIFY(ColourMaps::applyToAll(QStringLiteral("yellowhot")));
        QCOMPARE(MapProbe::colHalf, QColor(0xff0000));
        QCOMPARE(ColourMaps::current(later), QStringLiteral("yellowhot"));
    }

    void refusesUnknownNames()
    {
        MapProbe map;
        QVERIFY(!ColourMaps::apply(map, QStringLiteral("jet")));
        QVERIFY(!ColourMaps::applyToAll(QString()));
        QVERIFY(!ColourMaps::colour(QStringLiteral("jet"), 0.5).isValid());
        QVERIFY(ColourMaps::preview(QStringLiteral("jet"), { 4, 4 }).isNull());
        QVERIFY(ColourMaps::preview(QStringLiteral("magma"), { 0, 4 }).isNull());
        QCOMPARE(ColourMaps::current(map), QStringLiteral("rainbow1"));
    }

    void aPaletteOfTheMenuReplacesTheChoice()
    {
        MapProbe map;
        fill(map);
        show(map);
        QVERIFY(ColourMaps::applyToAll(QStringLiteral("viridis")));
        map.onPatternGrays();
        QCOMPARE(ColourMaps::current(map), QStringLiteral("grayscale"));
        QCOMPARE(colourAt(map, 100.5, 2.3), QColor(Qt::white));
        QCOMPARE(map.m_colorBar->*(&BarProbe::m_positions), (QList<double> { 0.0, 0.25, 0.5, 0.75, 1.0 }));
    }

    void spreadsColoursByTheRoot()
    {
        MapProbe map;
        fill(map);
        auto* const levels = new ColourLevels(&map);
        ColourMaps::apply(map, QStringLiteral("greys"));
        levels->setScale(ColourLevels::Scale::SquareRoot);
        show(map);
        QCOMPARE(levels->scale(), ColourLevels::Scale::SquareRoot);
        QCOMPARE(map.getColor(25), QColor(128, 128, 128));
        QCOMPARE(colourAt(map, 25.5, 2.3), QColor(128, 128, 128));
        levels->setScale(ColourLevels::Scale::Logarithmic);
        QVERIFY(map.m_logScale);
        QCOMPARE(map.getColor(10), QColor(128, 128, 128));
        levels->setScale(ColourLevels::Scale::Linear);
        QVERIFY(!map.m_logScale);
        QCOMPARE(map.getColor(50), QColor(128, 128, 128));
    }

    void percentilesFollowTheData()
    {
        MapProbe map;
        fill(map);
        auto* const levels = new ColourLevels(&map);
        show(map);
        QCOMPARE(levels->mode(), ColourLevels::Mode::Automatic);
        levels->setPercentiles(1, 99);
        QCOMPARE(levels->mode(), ColourLevels::Mode::Percentiles);
        QCOMPARE(levels->lower(), 5.0 - 3.0); // of 400 values, 4 of each from 1 to 100: rank 4
        QCOMPARE(levels->upper(), 99.0);
        QVERIFY(!map.m_colorBar->isAutoScale());
        for (int y = 0; y < 4; ++y)
            map.setData(y, QList<double>(101, 7.0), 7, false);
        map.refreshPixmap();
        TRY_VERIFY(levels->upper() == 7.0 && levels->lower() == 0.0); // equal limits would paint every bin alike
        QCOMPARE(levels->mode(), ColourLevels::Mode::Percentiles);
        map.onMaxZChanged(12); // by the user, in the colour bar
        QCOMPARE(levels->mode(), ColourLevels::Mode::Held);
        levels->setAutomatic();
        QCOMPARE(levels->mode(), ColourLevels::Mode::Automatic);
        QVERIFY(map.m_colorBar->isAutoScale());
    }

    void countsTheFirstDataAtOnce()
    {
        MapProbe map;
        map.init("X", "Y", 101, 4, true, true);
        new ColourLevels(&map);
        ColourMaps::apply(map, QStringLiteral("greys"));
        show(map);
        fill(map);
        map.refreshPixmap();
        map.grab();
        QCoreApplication::processEvents();
        // The top of the axis has 3 % of room; a little below the largest value is counted, in white.
        const QImage strip = stripOf(map)->grab().toImage();
        const int edge = stripOf(map)->fontMetrics().height();
        bool isCounted = false;
        for (int y = edge; y < stripOf(map)->height() / 4; ++y)
            isCounted =
                isCounted || tarnis::testing::colourAt(strip, QPoint(stripOf(map)->width() - 8, y)).lightness() > 240;
        QVERIFY(isCounted);
    }

    /// The limits of earlier data do not widen the axis, although the new ones are known after the next paint only.
    void theAxisFollowsTheDataWhileTheLimitsDo()
    {
        MapProbe map;
        map.init("X", "Y", 101, 4, true, true);
        new ColourLevels(&map);
        ColourMaps::apply(map, QStringLiteral("greys"));
        QList<double> row;
        for (int i = 0; i <= 100; ++i)
            row.append(0.03 * i);
        for (int y = 0; y < 4; ++y)
            map.setData(y, row, 3.0, false);
        show(map);
        const QImage strip = stripOf(map)->grab().toImage();
        bool isCounted = false;
        for (int y = stripOf(map)->fontMetrics().height(); y < stripOf(map)->height() / 4; ++y)
            isCounted =
                isCounted || tarnis::testing::colourAt(strip, QPoint(stripOf(map)->width() - 8, y)).lightness() > 240;
        QVERIFY(isCounted);
    }

    void draggingALineHoldsThatLimit()
    {
        MapProbe map;
        fill(map);
        auto* const levels = new ColourLevels(&map);
        show(map);
        QWidget* const strip = stripOf(map);
        QVERIFY(strip != nullptr);
        QCOMPARE(strip->geometry().right() + 1, map.m_colorBar->geometry().left());
        QVERIFY(strip->geometry().left() >= PlotMapping::of(map).plotRect().right());
        const QImage before = strip->grab().toImage();
        // The upper line is near the upper end of the axis, which has 3 % of room.
        const int edge = strip->fontMetrics().height();
        const int span = strip->height() - 2 * edge;
        const QPoint upper(strip->width() / 2, edge + static_cast<int>(span * 0.03));
        const QSignalSpy changed(levels, &ColourLevels::levelsChanged);
        PlotMouse mouse(*strip);
        mouse.drag(upper, upper + QPoint(0, span / 2));
        QCOMPARE(levels->mode(), ColourLevels::Mode::Held);
        QVERIFY2(levels->upper() > 40 && levels->upper() < 60, qPrintable(QString::number(levels->upper())));
        QCOMPARE(levels->lower(), 0.0);
        QVERIFY(changed.count() > 0);
        QVERIFY(strip->grab().toImage() != before);
        QTest::mouseDClick(strip, Qt::LeftButton, {}, QPoint(strip->width() / 2, edge + span / 2));
        QCOMPARE(levels->mode(), ColourLevels::Mode::Automatic);
    }

    void escapeRevertsADrag()
    {
        MapProbe map;
        fill(map);
        auto* const levels = new ColourLevels(&map);
        show(map);
        levels->setLevels(10, 90);
        QWidget* const strip = stripOf(map);
        const QPoint middle = strip->rect().center();
        PlotMouse mouse(*strip);
        const auto cancel = [&](bool byKey) {
            byKey ? QTest::keyClick(strip, Qt::Key_Escape) : InteractiveTool::cancelDrags(map);
        };
        for (const bool byKey : { true, false }) {
            mouse.press(middle);
            mouse.move(middle + QPoint(0, 4));
            mouse.move(middle + QPoint(0, 20));
            QVERIFY(levels->lower() < 10);
            cancel(byKey);
            QCOMPARE(levels->lower(), 10.0);
            QCOMPARE(levels->upper(), 90.0);
            mouse.release(middle);
        }
    }

    void keysMoveTheLines()
    {
        MapProbe map;
        fill(map);
        auto* const levels = new ColourLevels(&map);
        show(map);
        levels->setLevels(10, 50);
        QWidget* const strip = stripOf(map);
        QTest::keyClick(strip, Qt::Key_Up);
        QVERIFY(levels->upper() > 50 && levels->lower() == 10);
        QTest::keyClick(strip, Qt::Key_Left);
        QTest::keyClick(strip, Qt::Key_Down);
        QVERIFY(levels->lower() < 10);
        QTest::keyClick(strip, Qt::Key_Home);
        QCOMPARE(levels->mode(), ColourLevels::Mode::Automatic);
    }

    void keysOfTheHistoryAreLeftToTheMap()
    {
        MapProbe map;
        fill(map);
        auto* const navigator = new PlotNavigator(&map);
        new ColourLevels(&map);
        show(map);
        stripOf(map)->setFocus();
        navigator->zoomIn();
        QTest::keyClick(stripOf(map), Qt::Key_Backspace);
        QVERIFY(!navigator->canGoBack() && navigator->canGoForward());
        QTest::keyClick(stripOf(map), Qt::Key_Right, Qt::AltModifier);
        QVERIFY(navigator->canGoBack());
    }

    void detachingRestoresTheMap()
    {
        MapProbe map;
        fill(map);
        show(map);
        const QImage before = map.grab().toImage();
        auto* const levels = new ColourLevels(&map);
        map.grab();
        QVERIFY(map.grab().toImage() != before);
        delete levels;
        QCoreApplication::processEvents();
        QVERIFY(stripOf(map) == nullptr);
        QCOMPARE(map.grab().toImage(), before);
    }

    void savedPicturesHaveTheStrip()
    {
        MapProbe map;
        fill(map);
        new ColourLevels(&map);
        show(map);
        const std::unique_ptr<QPixmap> saved(map.toPixmap());
        const QRect strip = stripOf(map)->geometry();
        const QImage shown = stripOf(map)->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QPointF corner = QPointF(strip.topLeft()) * shown.devicePixelRatio();
        QCOMPARE(
            saved->copy(QRect(corner.toPoint(), shown.size())).toImage().convertToFormat(QImage::Format_RGB32), shown);
    }

    void exportedPicturesHaveNoSpaceForTheStrip()
    {
        MapProbe map;
        fill(map);
        ColourLevels levels(&map);
        show(map);
        PictureOptions options;
        options.heading = QStringLiteral("Heading"); // moves the map
        const QImage picture = PlotExporter(map).image(options);
        QVERIFY(!picture.isNull());
        const QRect strip = stripOf(map)->geometry();
        show(map);
        QCOMPARE(stripOf(map)->geometry(), strip);
        levels.setStripVisible(false);
        QCOMPARE(PlotExporter(map).image(options), picture);
    }

    void menuHasAllColourMaps()
    {
        MapProbe map;
        fill(map);
        auto* const levels = new ColourLevels(&map);
        show(map);
        QCOMPARE(levels->actions().size(), 2);
        QMenu* const menu = levels->actions().at(1)->menu();
        Q_EMIT menu->aboutToShow();
        QAction* const magma = menu->findChild<QAction*>(QStringLiteral("magma"));
        QVERIFY(magma != nullptr);
        QCOMPARE(magma->icon().actualSize(QSize(16, 16)), QSize(16, 16)); // a menu would make a strip a thin line
        magma->trigger();
        QCOMPARE(ColourMaps::current(map), QStringLiteral("magma"));
        levels->actions().at(0)->trigger();
        QVERIFY(!levels->isStripVisible());
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German));
        Q_EMIT menu->aboutToShow();
        QLocale::setDefault(before);
        QVERIFY(menu->actions().constLast()->text().contains(QStringLiteral("99,9")));
        QVERIFY(menu->actions().constLast()->actionGroup() != nullptr); // drawn as alternatives
        menu->actions().constLast()->trigger();
        QCOMPARE(levels->mode(), ColourLevels::Mode::Percentiles);
        delete levels;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void restoresItsState()
    {
        MapProbe map;
        fill(map);
        auto* const levels = new ColourLevels(&map);
        show(map);
        ColourMaps::apply(map, QStringLiteral("cividis"));
        levels->setScale(ColourLevels::Scale::SquareRoot);
        levels->setLevels(3, 40);
        const QJsonObject state = levels->saveState();
        ColourMaps::apply(map, QStringLiteral("turbo"));
        levels->setScale(ColourLevels::Scale::Linear);
        levels->setAutomatic();
        levels->setStripVisible(false);
        levels->restoreState(state);
        QCOMPARE(levels->saveState(), state);
        QCOMPARE(levels->upper(), 40.0);
        levels->restoreState({ { "colours", "none" }, { "scale", 7 }, { "levels", QJsonArray { 1 } }, { "x", 1 } });
        QCOMPARE(levels->saveState(), state);
    }

    void survivesOddMaps()
    {
        MapProbe map;
        auto* const levels = new ColourLevels(&map);
        map.resize(0, 0);
        map.grab();
        levels->setPercentiles(1, 99);
        levels->setLevels(std::nan(""), 1);
        map.resize(300, 200);
        map.grab();
        map.init("X", "Y", 2, 2, true, true);
        map.setData(0, { std::nan(""), std::numeric_limits<double>::infinity(), 0 }, 0, false);
        map.refreshPixmap();
        map.grab();
        levels->setScale(ColourLevels::Scale::Logarithmic);
        levels->setLevels(0, 0);
        levels->setLevels(-5, -5);
        map.grab();
        stripOf(map)->grab();
        ColourLevels unattached(nullptr);
        unattached.setLevels(1, 2);
        unattached.setPercentiles(1, 2);
        unattached.setAutomatic();
        unattached.setScale(ColourLevels::Scale::SquareRoot);
        unattached.restoreState(levels->saveState());
        QCOMPARE(unattached.upper(), 0.0);
    }

    void endsWithItsMapInMidDrag()
    {
        auto map = std::make_unique<MapProbe>();
        fill(*map);
        new ColourLevels(map.get());
        show(*map);
        PlotMouse mouse(*stripOf(*map));
        mouse.press(stripOf(*map)->rect().center());
        mouse.move(stripOf(*map)->rect().center() + QPoint(0, 20));
        map.reset();
        QCoreApplication::processEvents();
    }

    void attachesAndDetachesUnderLiveData()
    {
        MapProbe map;
        fill(map);
        show(map);
        Generator generator = seededGenerator(3);
        std::unique_ptr<ColourLevels> levels;
        for (int i = 0; i < 300; ++i) {
            QList<double> row(101);
            for (double& value : row)
                value = std::floor(uniform(generator, 0, 50));
            map.setData(whole(generator, 0, 3), row, 50, false);
            map.refreshPixmap();
            switch (whole(generator, 0, 6)) {
            case 0:
                levels = levels ? nullptr : std::make_unique<ColourLevels>(&map);
                break;
            case 1:
                if (levels)
                    levels->setPercentiles(uniform(generator, 0, 100), uniform(generator, 0, 100));
                break;
            case 2:
                if (levels)
                    levels->setScale(static_cast<ColourLevels::Scale>(whole(generator, 0, 2)));
                break;
            case 3:
                if (levels)
                    levels->setStripVisible(!levels->isStripVisible());
                break;
            case 4:
                map.resize(whole(generator, 0, 500), whole(generator, 0, 400));
                break;
            default:
                ColourMaps::apply(map, ColourMaps::names().at(whole(generator, 0, 14)));
            }
            map.grab();
            QCoreApplication::processEvents();
        }
        levels.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(stripOf(map) == nullptr);
    }
};

QTEST_MAIN(TestColourLevels)
#include "tst_colourlevels.moc"
