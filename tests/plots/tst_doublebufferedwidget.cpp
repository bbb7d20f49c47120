// The canvas: when it draws, through which picture, and in which coordinates.
#include "support/metamethods.h"
#include "support/wait.h"

#include <tarnis/plots/doublebufferedwidget.h>

#include <QMetaMethod>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <optional>

#ifdef __SANITIZE_ADDRESS__
// A picture beyond the memory is a case of this test, not a fault of the program.
extern "C" const char* __asan_default_options() // NOLINT(bugprone-reserved-identifier)
{
    return "allocator_may_return_null=1";
}
#endif

namespace {

/// Draws an asymmetric picture and records its arguments.
class Canvas : public DoubleBufferedWidget {
public:
    explicit Canvas(bool doubleBuffered, const QSize& size = QSize(300, 100))
        : DoubleBufferedWidget(nullptr)
    {
        m_doubleBuffered = doubleBuffered;
        QPalette colours = palette();
        colours.setBrush(QPalette::Window, Qt::yellow);
        setPalette(colours);
        resize(size);
    }

    void paint(QPainter& painter, QRect* rect) override
    {
        ++paints;
        given = rect != nullptr ? std::optional<QRect>(*rect) : std::nullopt;
        viewport = painter.viewport();
        font = painter.font();
        pen = painter.pen();
        painter.fillRect(QRect(0, 0, 10, 20), Qt::red); // top left corner of the picture in paint()
    }

    /// Paints the window as on the screen.
    QImage picture()
    {
        QImage image(size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        render(&image);
        return image;
    }

    using DoubleBufferedWidget::resizeEvent;

    int paints = 0;
    std::optional<QRect> given;
    QRect viewport;
    QFont font;
    QPen pen;
};

} // namespace

class TestDoubleBufferedWidget : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsWithNothing()
    {
        QWidget parent;
        struct Plain : DoubleBufferedWidget {
            using DoubleBufferedWidget::DoubleBufferedWidget;
            void paint(QPainter&, QRect*) override { }
        };
        const Plain canvas(&parent);
        QVERIFY(canvas.m_pixmap.isNull());
        QVERIFY(!canvas.m_doubleBuffered);
        QCOMPARE(canvas.m_rotation, 0.0);
        QVERIFY(!canvas.m_refreshRequired);
        QCOMPARE(canvas.parentWidget(), &parent);
        QVERIFY(!canvas.testAttribute(Qt::WA_OpaquePaintEvent) && !canvas.testAttribute(Qt::WA_NoSystemBackground));
        QVERIFY(
            reinterpret_cast<const char*>(&canvas.m_pixmap) < reinterpret_cast<const char*>(&canvas.m_doubleBuffered));
        QVERIFY(&canvas.m_doubleBuffered < &canvas.m_refreshRequired);
        QVERIFY(reinterpret_cast<const char*>(&canvas.m_doubleBuffered)
            < reinterpret_cast<const char*>(&canvas.m_rotation));
        QVERIFY(reinterpret_cast<const char*>(&canvas.m_rotation)
            < reinterpret_cast<const char*>(&canvas.m_refreshRequired));
    }

    void declaresItsSignalsInOrder()
    {
        const QMetaObject& meta = DoubleBufferedWidget::staticMetaObject;
        QCOMPARE(tarnis::testing::ownMethods(meta), (QStringList { "signal painting()", "signal painted()" }));
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    }

    void drawsOnceForManyRefreshes()
    {
        Canvas canvas(true);
        QSignalSpy painting(&canvas, &DoubleBufferedWidget::painting);
        QSignalSpy painted(&canvas, &DoubleBufferedWidget::painted);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        TRY_COMPARE(canvas.paints, 1);
        for (int i = 0; i < 20; ++i)
            canvas.refreshPixmap();
        QCOMPARE(canvas.paints, 1); // the call itself draws nothing
        TRY_COMPARE(canvas.paints, 2);
        QCOMPARE(painting.count(), 2);
        QCOMPARE(painted.count(), 2);
    }

    void drawsNothingIfNothingIsStale()
    {
        Canvas canvas(true);
        canvas.refreshPixmap();
        const QImage first = canvas.picture();
        QCOMPARE(canvas.paints, 1);
        const qint64 picture = canvas.m_pixmap.cacheKey();
        QSignalSpy painting(&canvas, &DoubleBufferedWidget::painting);
        QCOMPARE(canvas.picture(), first);
        canvas.refreshPixmapIfRequired();
        QCOMPARE(canvas.paints, 1);
        QCOMPARE(canvas.m_pixmap.cacheKey(), picture);
        QCOMPARE(painting.count(), 0);
    }

    void emitsBeforeAndAfterPainting()
    {
        Canvas canvas(true);
        canvas.m_pixmap = QPixmap(7, 7);
        QStringList order;
        QObject::connect(&canvas, &DoubleBufferedWidget::painting, &canvas, [&] {
            order << QStringLiteral("painting %1").arg(canvas.paints);
            QCOMPARE(canvas.m_pixmap.size(), QSize(300, 100)); // the old picture is already released
            QVERIFY(!canvas.m_refreshRequired);
        });
        QObject::connect(&canvas, &DoubleBufferedWidget::painted, &canvas, [&] {
            order << QStringLiteral("painted %1").arg(canvas.paints);
            QVERIFY(canvas.m_pixmap.paintingActive()); // the painter closes last
        });
        canvas.refreshPixmap();
        canvas.refreshPixmapIfRequired();
        QCOMPARE(order, (QStringList { QStringLiteral("painting 0"), QStringLiteral("painted 1") }));
        QVERIFY(!canvas.m_pixmap.paintingActive());
    }

    void takesFontAndPenFromTheWidget()
    {
        Canvas canvas(true);
        QFont font;
        font.setPointSize(23);
        canvas.setFont(font);
        QPalette colours = canvas.palette();
        colours.setColor(QPalette::WindowText, QColor(12, 34, 56));
        canvas.setPalette(colours);
        canvas.refreshPixmap();
        canvas.refreshPixmapIfRequired();
        QCOMPARE(canvas.font.pointSize(), 23);
        QCOMPARE(canvas.pen.color(), QColor(12, 34, 56));
    }

    void fillsWithTheWindowColour()
    {
        Canvas canvas(true);
        canvas.refreshPixmap();
        canvas.refreshPixmapIfRequired();
        const QImage picture = canvas.m_pixmap.toImage();
        QCOMPARE(picture.pixelColor(5, 5), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(299, 99), QColor(Qt::yellow));
        QCOMPARE(picture.pixelColor(5, 99), QColor(Qt::yellow));
    }

    void rebuildsAfterAResize()
    {
        Canvas canvas(true);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        TRY_COMPARE(canvas.m_pixmap.size(), QSize(300, 100));
        const int before = canvas.paints;
        QSizeF held;
        canvas.resize(200, 150);
        held = canvas.m_pixmap.size();
        QCOMPARE(held, QSizeF(300, 100)); // until the paint event
        QVERIFY(canvas.m_refreshRequired);
        TRY_COMPARE(canvas.m_pixmap.size(), QSize(200, 150));
        QCOMPARE(canvas.paints, before + 1);
        QVERIFY(!canvas.m_refreshRequired);
    }

    void resizeEventRefreshesAndDoesNotMore()
    {
        Canvas canvas(true);
        QResizeEvent event(QSize(1, 1), QSize(2, 2));
        canvas.m_refreshRequired = false;
        canvas.resizeEvent(&event);
        QVERIFY(canvas.m_refreshRequired);
        QCOMPARE(canvas.paints, 0);
    }

    void turnsTheDrawingByTheRotation_data()
    {
        QTest::addColumn<double>("rotation");
        QTest::addColumn<bool>("hasRect");
        const double step = 90.0 * 2.220446049250313e-16;
        QTest::newRow("not at all") << 0.0 << false;
        QTest::newRow("a quarter") << 90.0 << true;
        QTest::newRow("a quarter back") << -90.0 << true;
        QTest::newRow("as good as a quarter") << 90.0 + step << true;
        QTest::newRow("not quite a quarter") << 90.0 + 4 * step << false;
        QTest::newRow("any other angle") << 45.0 << false;
        QTest::newRow("half a turn") << 180.0 << false;
        QTest::newRow("three quarters") << 270.0 << false;
        QTest::newRow("not a number") << std::nan("") << false;
    }
    void turnsTheDrawingByTheRotation()
    {
        QFETCH(double, rotation);
        QFETCH(bool, hasRect);
        Canvas canvas(true);
        canvas.m_rotation = rotation;
        canvas.refreshPixmap();
        canvas.refreshPixmapIfRequired();
        QCOMPARE(canvas.given.has_value(), hasRect);
        if (hasRect)
            QCOMPARE(*canvas.given, QRect(QPoint(0, 0), QPoint(99, 299)));
        QCOMPARE(canvas.viewport, QRect(0, 0, 300, 100));
        QCOMPARE(canvas.m_pixmap.size(), QSize(300, 100));
    }

    void showsTheTurnedPicture()
    {
        Canvas canvas(true);
        canvas.m_rotation = 90.0; // clockwise: the picture's top left corner is at the top right
        canvas.refreshPixmap();
        QImage seen = canvas.picture();
        QCOMPARE(seen.pixelColor(299, 0), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(280, 9), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(279, 9), QColor(Qt::yellow));
        QCOMPARE(seen.pixelColor(280, 10), QColor(Qt::yellow));
        QCOMPARE(seen.pixelColor(0, 0), QColor(Qt::yellow));

        canvas.m_rotation = -90.0; // at the bottom left
        canvas.refreshPixmap();
        seen = canvas.picture();
        QCOMPARE(seen.pixelColor(0, 99), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(19, 90), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(20, 90), QColor(Qt::yellow));
        QCOMPARE(seen.pixelColor(19, 89), QColor(Qt::yellow));

        canvas.m_rotation = 45.0;
        canvas.refreshPixmap();
        QCOMPARE(canvas.picture().pixelColor(9, 19), QColor(Qt::red));
    }

    void paintsStraightToTheScreenWithoutACache()
    {
        Canvas canvas(false);
        canvas.m_rotation = 90.0;
        const QImage seen = canvas.picture();
        QCOMPARE(canvas.paints, 1);
        QVERIFY(!canvas.given.has_value());
        QCOMPARE(seen.pixelColor(5, 5), QColor(Qt::red));
        QVERIFY(canvas.m_pixmap.isNull());
        canvas.picture();
        QCOMPARE(canvas.paints, 2);
    }

    void keepsQuietWithoutACache()
    {
        Canvas canvas(false);
        QSignalSpy painting(&canvas, &DoubleBufferedWidget::painting);
        QSignalSpy painted(&canvas, &DoubleBufferedWidget::painted);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        canvas.resize(250, 90);
        canvas.refreshPixmap();
        canvas.refreshPixmapIfRequired();
        canvas.repaint();
        canvas.picture();
        QVERIFY(canvas.paints >= 2);
        QCOMPARE(painting.count(), 0);
        QCOMPARE(painted.count(), 0);
    }

    void neverDrawsAStalePictureWithoutACache()
    {
        Canvas canvas(false);
        canvas.refreshPixmap();
        canvas.picture();
        QVERIFY(canvas.m_refreshRequired); // it stays, and has no effect
        canvas.m_doubleBuffered = true;
        canvas.picture();
        QVERIFY(!canvas.m_refreshRequired);
        QVERIFY(!canvas.m_pixmap.isNull());
    }

    void anEmptyWidgetHasNoPicture()
    {
        Canvas canvas(true, QSize(0, 0));
        canvas.m_pixmap = QPixmap(7, 7);
        canvas.refreshPixmap();
        canvas.refreshPixmapIfRequired();
        QVERIFY(canvas.m_pixmap.isNull());
        QCOMPARE(canvas.paints, 0);
        canvas.resize(10, 10);
        canvas.refreshPixmap();
        canvas.refreshPixmapIfRequired();
        QCOMPARE(canvas.paints, 1);
    }

    void aHugeWidgetHasNoPicture()
    {
        Canvas canvas(true, QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
        QTest::ignoreMessage(QtWarningMsg, "QPainter::begin: Paint device returned engine == 0, type: 2");
        canvas.refreshPixmap();
        canvas.refreshPixmapIfRequired();
        QCOMPARE(canvas.paints, 0);
    }

    void refreshesMadeWhilePaintingAreKept()
    {
        Canvas canvas(true);
        bool again = true;
        QObject::connect(&canvas, &DoubleBufferedWidget::painted, &canvas, [&] {
            if (again)
                canvas.refreshPixmap();
            again = false;
        });
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        TRY_COMPARE(canvas.paints, 2);
        QVERIFY(!canvas.m_refreshRequired);
    }
};

QTEST_MAIN(TestDoubleBufferedWidget)
#include "tst_doublebufferedwidget.moc"
