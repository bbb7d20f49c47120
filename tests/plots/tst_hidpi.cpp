// Plots on high-DPI screens. Runs once for each ratio, which is set by QT_SCALE_FACTOR.
#include "support/devicepixeloracle.h"
#include "support/map2dprobe.h"
#include "support/modalwatchdog.h"
#include "support/recordingprinter.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

namespace {

using tarnis::testing::FrameState;

double ratio()
{
    const double factor = qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble();
    return factor > 0.0 ? factor : 1.0;
}

void drawDiagonal(QPainter& painter, const QRect& graph)
{
    painter.setPen(Qt::green);
    painter.drawLine(graph.topLeft(), graph.bottomRight());
}

class Plot : public tarnis::testing::FrameProbe<XYGraphWidget> {
public:
    explicit Plot(bool doubleBuffered)
    {
        m_doubleBuffered = doubleBuffered;
        init(QStringLiteral("Energy"), QStringLiteral("Counts"), 1000.0, 100.0, true, true);
        setNotes(QStringLiteral("notes"));
        resize(401, 303);
    }
    void paint(QPainter& painter, QRect* rect) override
    {
        viewport = painter.viewport();
        window = painter.window();
        given = rect != nullptr ? *rect : QRect();
        scale = painter.deviceTransform().mapRect(QRectF(0, 0, 1, 1)).size();
        XYGraphWidget::paint(painter, rect);
    }
    void onPaint(QPainter& painter, QRect const& graph) override { drawDiagonal(painter, graph); }
    void paintNow()
    {
        m_refreshRequired = true;
        refreshPixmapIfRequired();
    }

    QRect viewport;
    QRect window;
    QRect given;
    QSizeF scale;
};

/// A map whose picture is drawn at once.
class Map : public tarnis::testing::MapProbe {
public:
    Map(int columns, int rows, QSize size, const std::function<double(int, int)>& value)
    {
        m_doubleBuffered = true;
        init(QStringLiteral("X"), QStringLiteral("Y"), static_cast<unsigned>(columns), static_cast<unsigned>(rows),
            true, true);
        initManualX(0.0, columns);
        initManualY(0.0, rows);
        m_showGrid = false;
        for (int row = 0; row < rows; ++row) {
            QList<double> values;
            for (int column = 0; column < columns; ++column)
                values.append(value(row, column));
            setData(row, values, 100.0, row == rows - 1);
        }
        resize(size);
        m_refreshRequired = true;
        refreshPixmapIfRequired();
    }
    using XY2DGraphWidget::paint;
};

/// Geometry that the same plot has on a screen of ratio 1.
QRect plainGraph(const Plot& plot, const QSize& size)
{
    FrameState state = plot.frameState();
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    tarnis::testing::paintFrame(state, painter, nullptr);
    return state.graphRect;
}

} // namespace

class TestHiDpi : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void runsAtTheWantedRatio() { QCOMPARE(Plot(true).devicePixelRatio(), ratio()); }

    void cacheHasTheScreensResolution()
    {
        Plot plot(true);
        plot.paintNow();
        QCOMPARE(plot.m_pixmap.devicePixelRatio(), ratio());
        QCOMPARE(plot.m_pixmap.size(), QSize(401, 303) * ratio());
        const std::unique_ptr<QPixmap> copy(plot.toPixmap());
        QCOMPARE(copy->devicePixelRatio(), ratio());
        QCOMPARE(copy->toImage(), plot.m_pixmap.toImage());
    }

    void paintUsesTheWidgetsCoordinates_data()
    {
        QTest::addColumn<double>("rotation");
        QTest::newRow("upright screen") << 0.0;
        QTest::newRow("a quarter") << 90.0;
        QTest::newRow("a quarter back") << -90.0;
    }
    void paintUsesTheWidgetsCoordinates()
    {
        QFETCH(double, rotation);
        Plot plot(true);
        plot.m_rotation = rotation;
        plot.paintNow();
        QCOMPARE(plot.viewport, QRect(0, 0, 401, 303));
        QCOMPARE(plot.window, QRect(0, 0, 401, 303));
        QCOMPARE(plot.given, rotation == 0.0 ? QRect() : QRect(0, 0, 303, 401));
        QCOMPARE(plot.scale, QSizeF(ratio(), ratio()));
        QCOMPARE(plot.m_graphRect, plainGraph(plot, rotation == 0.0 ? QSize(401, 303) : QSize(303, 401)));
    }

    void pictureIsThatOfTheOracle_data() { paintUsesTheWidgetsCoordinates_data(); }
    void pictureIsThatOfTheOracle()
    {
        QFETCH(double, rotation);
        Plot plot(true);
        plot.m_rotation = rotation;
        for (const QSize size : { QSize(401, 303), QSize(640, 480), QSize(97, 64), QSize(1, 1) }) {
            plot.resize(size);
            FrameState state = plot.frameState();
            plot.paintNow();
            const QPixmap expected = tarnis::testing::framePicture(state, plot, drawDiagonal);
            QCOMPARE(plot.m_pixmap.toImage(), expected.toImage());
        }
    }

    void pictureWithoutACache()
    {
        Plot plot(false);
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        QCOMPARE(picture->devicePixelRatio(), ratio());
        QCOMPARE(picture->size(), QSize(401, 303) * ratio());
        QCOMPARE(plot.viewport, QRect(0, 0, 401, 303));
        plot.m_rotation = 90.0;
        const std::unique_ptr<QPixmap> lying(plot.toPixmap());
        QCOMPARE(lying->size(), QSize(303, 401) * ratio());
        QCOMPARE(plot.viewport, QRect(0, 0, 303, 401));
    }

    void screenShowsThePictureUnchanged()
    {
        Plot plot(true);
        plot.resize(400, 300); // whole pixels at every ratio
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        plot.paintNow();
        const QImage grabbed = plot.grab().toImage().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(grabbed.size(), QSize(400, 300) * ratio());
        QCOMPARE(grabbed, plot.m_pixmap.toImage().convertToFormat(QImage::Format_RGB32));
    }

    void pictureOfAnotherScreenIsMadeAgain()
    {
        Plot plot(true);
        plot.paintNow();
        const QImage own = plot.m_pixmap.toImage();
        QPixmap other(QSize(401, 303) * 4);
        other.setDevicePixelRatio(4.0);
        plot.m_pixmap = other;
        plot.refreshPixmapIfRequired(); // no refresh was requested: the window has moved
        QCOMPARE(plot.m_pixmap.toImage(), own);
        const qint64 key = plot.m_pixmap.cacheKey();
        plot.refreshPixmapIfRequired();
        QCOMPARE(plot.m_pixmap.cacheKey(), key);
    }

    void savedPictureHasFullResolution()
    {
        const QTemporaryDir folder;
        Plot plot(true);
        plot.paintNow();
        const QString path = folder.filePath("plot.png");
        tarnis::testing::ModalWatchdog watchdog({ tarnis::testing::acceptFile(path) });
        plot.onSave();
        QVERIFY(watchdog.isContent());
        const QImage saved(path);
        QCOMPARE(saved.size(), QSize(401, 303) * ratio());
        QImage shown = plot.m_pixmap.toImage().convertToFormat(QImage::Format_RGB32);
        shown.setDevicePixelRatio(1.0);
        QCOMPARE(saved.convertToFormat(QImage::Format_RGB32), shown);
    }

    void printedPictureFillsThePage()
    {
        const QTemporaryDir folder;
        Plot plot(true);
        plot.resize(400, 300);
        plot.paintNow();
        tarnis::testing::PrintedPage page;
        tarnis::testing::recordPages(plot.m_printer, page, QSize(2000, 3000));
        tarnis::testing::ModalWatchdog watchdog({ [&](QWidget& window) {
            window.findChild<QLineEdit*>("filename")->setText(folder.filePath("plot.pdf"));
            window.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        } });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QCOMPARE(page.pictures.size(), 1);
        QCOMPARE(page.pictures.first().pixmap.size(), QSize(400, 300) * ratio());
        QCOMPARE(page.pictures.first().target, QRectF(200, 200, 1600, 1200));
    }

    void equalBinsLeaveNoHole_data()
    {
        QTest::addColumn<int>("bins");
        QTest::newRow("larger than a pixel") << 200;
        QTest::newRow("much larger") << 7;
        QTest::newRow("smaller than a pixel") << 900;
    }
    void equalBinsLeaveNoHole()
    {
        QFETCH(int, bins);
        const Map map(bins, bins, QSize(640, 520), [](int, int) { return 50.0; });
        const QImage picture = map.m_pixmap.toImage();
        const QTransform scale = QTransform::fromScale(ratio(), ratio());
        // The bins begin slightly inside of the frame: their own extent must be filled.
        const QRect graph = tarnis::testing::devicePixels(scale, map.m_graphRect.adjusted(4, 4, -4, -4));
        const QRgb colour = picture.pixel(graph.center());
        QVERIFY(colour != QColor(XYGraphWidget::m_backGroundColor).rgb());
        int others = 0;
        for (int y = graph.top(); y <= graph.bottom(); ++y) {
            for (int x = graph.left(); x <= graph.right(); ++x)
                others += picture.pixel(x, y) != colour ? 1 : 0;
        }
        QCOMPARE(others, 0);
    }

    void binsAreThoseOfAnOrdinaryScreenEnlarged()
    {
        for (const int bins : { 3, 40, 333, 1000 }) {
            Map map(
                bins, bins, QSize(401, 303), [](int row, int column) { return 1.0 + (row * 31 + column * 17) % 97; });
            const QImage picture = map.m_pixmap.toImage();
            QImage ordinary(map.size(), QImage::Format_RGB32);
            QPainter painter(&ordinary);
            painter.setFont(map.font());
            map.paint(painter, nullptr);
            painter.end();
            const QTransform scale = QTransform::fromScale(ratio(), ratio());
            const QRect graph = map.m_graphRect.adjusted(1, 1, -1, -1);
            for (int y = graph.top(); y <= graph.bottom(); ++y) {
                for (int x = graph.left(); x <= graph.right(); ++x) {
                    const QRect pixel = tarnis::testing::devicePixels(scale, QRect(x, y, 1, 1));
                    QCOMPARE(picture.pixel(pixel.topLeft()), ordinary.pixel(x, y));
                    QCOMPARE(picture.pixel(pixel.bottomRight()), ordinary.pixel(x, y));
                }
            }
        }
    }

    void gridLinesAreOfOneThickness()
    {
        Plot plot(true);
        plot.m_showGrid = true;
        plot.resize(640, 480);
        plot.paintNow();
        const QImage picture = plot.m_pixmap.toImage();
        const QRect graph = tarnis::testing::devicePixels(
            QTransform::fromScale(ratio(), ratio()), plot.m_graphRect.adjusted(2, 2, -2, -2));
        const QRgb line = QColor(64, 64, 64).rgb();
        QList<int> runs;
        // A row of pixels that is no line itself.
        int y = graph.bottom();
        while (picture.pixel(graph.left(), y) == line)
            --y;
        int run = 0;
        for (int x = graph.left(); x <= graph.right(); ++x) {
            const bool isLine = picture.pixel(x, y) == line;
            if (!isLine && run > 0)
                runs.append(run);
            run = isLine ? run + 1 : 0;
        }
        QVERIFY(runs.size() > 3);
        const int thickness = std::max(1, int(std::lround(ratio())));
        QCOMPARE(runs, QList<int>(runs.size(), thickness));
    }
};

QTEST_MAIN(TestHiDpi)
#include "tst_hidpi.moc"
