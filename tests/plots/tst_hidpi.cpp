// Plots on screens with more pixels than points. Runs once for each ratio, which QT_SCALE_FACTOR gives from outside.
#include "support/frameprobe.h"
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
    void runsAtTheWantedRatio();
    void cacheHasTheScreensResolution();
    void paintSeesTheWidgetsCoordinates_data();
    void paintSeesTheWidgetsCoordinates();
    void pictureIsThatOfTheOracle_data();
    void pictureIsThatOfTheOracle();
    void pictureWithoutACache();
    void screenShowsThePictureUnchanged();
    void pictureOfAnotherScreenIsMadeAgain();
    void savedPictureHasFullResolution();
    void printedPictureFillsThePage();
};

void TestHiDpi::runsAtTheWantedRatio()
{
    QCOMPARE(Plot(true).devicePixelRatio(), ratio());
}

void TestHiDpi::cacheHasTheScreensResolution()
{
    Plot plot(true);
    plot.paintNow();
    QCOMPARE(plot.m_pixmap.devicePixelRatio(), ratio());
    QCOMPARE(plot.m_pixmap.size(), QSize(401, 303) * ratio());
    const std::unique_ptr<QPixmap> copy(plot.toPixmap());
    QCOMPARE(copy->devicePixelRatio(), ratio());
    QCOMPARE(copy->toImage(), plot.m_pixmap.toImage());
}

void TestHiDpi::paintSeesTheWidgetsCoordinates_data()
{
    QTest::addColumn<double>("rotation");
    QTest::newRow("upright screen") << 0.0;
    QTest::newRow("a quarter") << 90.0;
    QTest::newRow("a quarter back") << -90.0;
}

void TestHiDpi::paintSeesTheWidgetsCoordinates()
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

void TestHiDpi::pictureIsThatOfTheOracle_data()
{
    paintSeesTheWidgetsCoordinates_data();
}

void TestHiDpi::pictureIsThatOfTheOracle()
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

void TestHiDpi::pictureWithoutACache()
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

void TestHiDpi::screenShowsThePictureUnchanged()
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

void TestHiDpi::pictureOfAnotherScreenIsMadeAgain()
{
    Plot plot(true);
    plot.paintNow();
    const QImage own = plot.m_pixmap.toImage();
    QPixmap other(QSize(401, 303) * 3);
    other.setDevicePixelRatio(3.0);
    plot.m_pixmap = other;
    plot.refreshPixmapIfRequired(); // nothing was refreshed: the window has moved
    QCOMPARE(plot.m_pixmap.toImage(), own);
    const qint64 key = plot.m_pixmap.cacheKey();
    plot.refreshPixmapIfRequired();
    QCOMPARE(plot.m_pixmap.cacheKey(), key);
}

void TestHiDpi::savedPictureHasFullResolution()
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

void TestHiDpi::printedPictureFillsThePage()
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

QTEST_MAIN(TestHiDpi)
#include "tst_hidpi.moc"
