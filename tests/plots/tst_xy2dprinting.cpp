// Printed maps and cuts.
#include "plots/smallmap.h"
#include "support/map2dprobe.h"
#include "support/modalwatchdog.h"
#include "support/oversizedpictures.h"
#include "support/recordingprinter.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QTemporaryDir>

using namespace tarnis::testing;

class TestXY2DPrinting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(folder.isValid());
        setSaveFilePath(folder.path() + '/');
    }

    void cleanup() { resetColours(); }

    void printsThePlotAlone_data()
    {
        QTest::addColumn<int>("closed");
        QTest::newRow("no cut") << 0;
        QTest::newRow("X cut closed") << 1;
        QTest::newRow("Y cut closed") << 2;
    }
    void printsThePlotAlone()
    {
        QFETCH(int, closed);
        Plot plot;
        if (closed > 0) {
            plot.m_act1dCut->setChecked(true);
            delete (closed == 1 ? plot.windowX() : plot.windowY());
        }
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(2000, 3000));
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("page.pdf")) });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QCOMPARE(page.pictures.size(), 1);
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        QCOMPARE(page.pictures.first().pixmap.toImage(), picture->toImage()); // with the bar
    }

    void printsThreePlots()
    {
        Plot plot;
        plot.setTitle("Run 000123");
        plot.show();
        plot.m_act1dCut->setChecked(true);
        auto* cutX = plot.windowX()->findChild<VectorGraphWidget*>();
        auto* cutY = plot.windowY()->findChild<VectorGraphWidget*>();
        cutX->grab();
        cutY->grab();
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(2000, 3000));
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("page.pdf")) });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QCOMPARE(page.painters, 1);
        QCOMPARE(page.pictures.size(), 3);

        const std::unique_ptr<QPixmap> m(plot.toPixmap());
        const std::unique_ptr<QPixmap> a(cutX->toPixmap());
        const std::unique_ptr<QPixmap> b(cutY->toPixmap());
        QCOMPARE(page.pictures.at(0).pixmap.toImage(), m->toImage());
        QCOMPARE(page.pictures.at(1).pixmap.toImage(), a->toImage());
        QCOMPARE(page.pictures.at(2).pixmap.toImage(), b->toImage());
        QSize marginM;
        QSize marginA;
        QSize marginB;
        QSize rest;
        plot.getMargin(marginM, rest);
        cutX->getMargin(marginA, rest);
        cutY->getMargin(marginB, rest);
        const int dx = marginA.width() - marginM.width();
        const int dy = marginB.width() - marginM.height();
        const QSize whole(m->width() + dx + b->width(), m->height() + a->height());
        const QSize scaled = whole.scaled(QSize(1600, 2600), Qt::KeepAspectRatio);
        const auto onPage = [&](int x, int y, const QPixmap& pixmap) {
            const qreal sx = qreal(scaled.width()) / whole.width();
            const qreal sy = qreal(scaled.height()) / whole.height();
            return QRectF(200 + x * sx, 200 + y * sy, pixmap.width() * sx, pixmap.height() * sy);
        };
        const auto isAt = [](const QRectF& actual, const QRectF& expected) {
            return qAbs(actual.x() - expected.x()) < 0.01 && qAbs(actual.y() - expected.y()) < 0.01
                && qAbs(actual.width() - expected.width()) < 0.01 && qAbs(actual.height() - expected.height()) < 0.01;
        };
        QVERIFY(isAt(page.pictures.at(0).target, onPage(qMax(dx, 0), a->height(), *m)));
        QVERIFY(isAt(page.pictures.at(1).target, onPage(dx >= 1 ? 0 : -dx, 0, *a)));
        QVERIFY(isAt(page.pictures.at(2).target, onPage(m->width(), a->height() - dy, *b)));

        QCOMPARE(page.texts.size(), 1);
        const auto& title = page.texts.first();
        QCOMPARE(title.text, QString("Run 000123"));
        QCOMPARE(title.pointSize, 16);
        QVERIFY(title.position.y() > 100 && title.position.y() < 200); // at the bottom of the margin
        QVERIFY(title.position.x() > 600 && title.position.x() < 1000);
    }

    void printsTheCutAsideOfTheMap_data()
    {
        QTest::addColumn<int>("wider");
        QTest::newRow("cut with a wider margin") << 30;
        QTest::newRow("one pixel wider") << 1;
        QTest::newRow("equal margins") << 0;
        QTest::newRow("map with a wider margin") << -20;
    }
    void printsTheCutAsideOfTheMap()
    {
        QFETCH(int, wider);
        Plot plot;
        plot.show();
        plot.m_act1dCut->setChecked(true);
        auto* cutX = plot.windowX()->findChild<VectorGraphWidget*>();
        QSize marginM;
        QSize marginA;
        QSize rest;
        const auto margins = [&] {
            plot.getMargin(marginM, rest);
            cutX->getMargin(marginA, rest);
            return marginA.width() - marginM.width();
        };
        (cutX->*(&FrameProbe<VectorGraphWidget>::m_margin)).setLeft(50);
        plot.m_margin.setLeft(50);
        plot.m_margin.setLeft(50 + margins() - wider);
        cutX->refreshPixmap();
        const int dx = margins();
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(2000, 3000));
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("page.pdf")) });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QCOMPARE(page.pictures.size(), 3);
        const qreal left = page.pictures.at(0).target.left() - page.pictures.at(1).target.left();
        QCOMPARE(left > 0.0, dx > 0);
        QCOMPARE(left < 0.0, dx < 0);
    }

    void printCancelled()
    {
        Plot plot;
        plot.m_act1dCut->setChecked(true);
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(2000, 3000));
        ModalWatchdog watchdog({ reject() });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QCOMPARE(page.painters, 0);
    }

    void printThatCannotBeginStops()
    {
        Plot plot;
        plot.m_act1dCut->setChecked(true);
        PrintedPage page;
        page.refuses = true;
        recordPages(plot.m_printer, page, QSize(2000, 3000));
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("page.pdf")) });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QVERIFY(page.pictures.isEmpty() && page.texts.isEmpty());
    }

    void printOfACutThatWasNeverPainted()
    {
        Plot plot;
        plot.m_act1dCut->setChecked(true);
        auto* cutY = plot.windowY()->findChild<VectorGraphWidget*>();
        cutY->m_pixmap = QPixmap();
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(2000, 3000));
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("page.pdf")) });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QVERIFY(!page.pictures.isEmpty()); // what there is
    }

    void printMayLoseACut()
    {
        Plot plot;
        plot.m_act1dCut->setChecked(true);
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(2000, 3000));
        ModalWatchdog watchdog({ [&](QWidget& window) {
            delete plot.windowX();
            acceptPrint(folder.filePath("page.pdf"))(window);
        } });
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QVERIFY(page.pictures.size() <= 1);
    }

    void printWritesItsTrace()
    {
        Plot plot;
        plot.m_act1dCut->setChecked(true);
        PrintedPage page;
        recordPages(plot.m_printer, page, QSize(2000, 3000));
        ModalWatchdog watchdog({ acceptPrint(folder.filePath("page.pdf")) });
        QTest::ignoreMessage(QtDebugMsg,
            QRegularExpression(
                "^xy2dgraphwidget : \\d+ .* \\| Viewport: +QRect\\(200,200 1600x2600\\) +Print Size: +QSize"));
        plot.onPrint();
        QVERIFY(watchdog.isContent());
    }

private:
    QTemporaryDir folder;
};

QTEST_MAIN(TestXY2DPrinting)
#include "tst_xy2dprinting.moc"
