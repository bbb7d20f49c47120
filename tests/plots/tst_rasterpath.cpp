// The choice between direct pixels and QPainter.
#include "tarnis/plots/curvepaint_p.h"
#include "tarnis/plots/raster/pixeltarget_p.h"
#include "tarnis/plots/raster/rastercheck_p.h"

#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>

using tarnis::RasterPath;

class RasterPathTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { tarnis::setRasterPath(RasterPath::Direct); }

    void bothWaysDrawTheReference() { QVERIFY(tarnis::referencePatternsMatch(tarnis::drawReferenceDirectly)); }

    void referenceHasMapsAndLines()
    {
        QImage image(96, 96, QImage::Format_RGB32);
        image.fill(Qt::black);
        tarnis::drawReferenceByPainter(image);
        for (const int top : { 0, 32, 64 }) {
            int painted = 0;
            for (int y = top; y < top + 32; ++y)
                for (int x = 0; x < 96; ++x)
                    painted += int(image.pixelColor(x, y) != Qt::black);
            QVERIFY2(painted > 500, qPrintable(QStringLiteral("%1 pixels from line %2").arg(painted).arg(top)));
        }
    }

    void findsOnePixelThatDiffers()
    {
        const auto disturbed = [](QImage& image) {
            tarnis::drawReferenceDirectly(image);
            image.setPixel(95, 95, image.pixel(95, 95) ^ 1U);
        };
        QVERIFY(!tarnis::referencePatternsMatch(disturbed));
    }

    void fallsBackWhenPatternsDiffer()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("draws other pixels than the plots expect"));
        QCOMPARE(tarnis::chooseRasterPath({}, [] { return false; }), RasterPath::Painter);
        QCOMPARE(tarnis::chooseRasterPath({}, [] { return true; }), RasterPath::Direct);
    }

    void environmentDecidesFirst()
    {
        bool isAsked = false;
        const auto match = [&] { return isAsked = true; };
        QCOMPARE(tarnis::chooseRasterPath("painter", match), RasterPath::Painter);
        QVERIFY(!isAsked);
        QCOMPARE(tarnis::chooseRasterPath("anything", match), RasterPath::Direct);
        QVERIFY(isAsked);
    }

    void painterPathWritesNoPixelsDirectly()
    {
        QImage image(20, 20, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setPen(Qt::red);
        tarnis::setRasterPath(RasterPath::Direct);
        QVERIFY(tarnis::pixelTargetOf(painter).has_value());
        QVERIFY(tarnis::mergingOn(painter).columns);
        tarnis::setRasterPath(RasterPath::Painter);
        QCOMPARE(tarnis::rasterPath(), RasterPath::Painter);
        QVERIFY(!tarnis::pixelTargetOf(painter).has_value());
        QVERIFY(!tarnis::mergingOn(painter).columns);
    }
};

QTEST_MAIN(RasterPathTest)
#include "tst_rasterpath.moc"
