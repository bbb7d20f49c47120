// The plot of one series: members, orders, ranges, menu, CSV file, peak and peak search.
#include "support/cases.h"
#include "support/curveprobe.h"
#include "support/metamethods.h"
#include "support/modalwatchdog.h"
#include "support/pictures.h"
#include "support/plotmouse.h"
#include "support/virtualorder.h"
#include "support/wait.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/peak/peaksearchdialog.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

#include <cmath>

using namespace tarnis::testing;

namespace {

class Plot : public tarnis::testing::VectorProbe {
public:
    Plot()
    {
        init(QStringLiteral("Channel"), QStringLiteral("Counts"), 500.0, 50.0, true, true);
        resize(400, 300);
        m_refreshRequired = false;
    }
};

PeakSearch::Gaussian peakAt(double center, double height)
{
    PeakSearch::Gaussian peak;
    peak.N = height;
    peak.center = center;
    peak.sigma = 10.0;
    return peak;
}

} // namespace

class TestVectorGraphWidget : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(folder.isValid());
        setSaveFilePath(folder.path() + u'/');
    }

    void startsWithItsDefaults()
    {
        const tarnis::testing::VectorProbe plot;
        QVERIFY(plot.m_data.isEmpty());
        QVERIFY(plot.m_index.isEmpty());
        QVERIFY(plot.m_peaks.isEmpty());
        QVERIFY(plot.m_modeless.map.isEmpty());
        QCOMPARE(plot.m_maxValue, 0.0);
        QVERIFY(!plot.hasMouseTracking());
    }

    void declaresItsMembersInOrder()
    {
        const Plot plot;
        const QList<const void*> places { &plot.m_xRangeDialog, &plot.m_data, &plot.m_maxValue, &plot.m_index,
            &plot.m_peaks, &plot.m_modeless };
        QVERIFY(std::is_sorted(places.cbegin(), places.cend()));
    }

    void declaresItsSlotsInOrder()
    {
        const QMetaObject& meta = VectorGraphWidget::staticMetaObject;
        QCOMPARE(tarnis::testing::ownMethods(meta),
            (QStringList { "slot onAutoScaleX(bool)", "slot onAutoScaleY(bool)", "slot onSaveCsv()",
                "slot onPeakSearch()", "slot peakSearch(int,int,bool)" }));
        QCOMPARE(meta.method(meta.indexOfMethod("peakSearch(int,int,bool)")).parameterNames(),
            (QList<QByteArray> { "threshold", "width", "peak" }));
        QCOMPARE(
            meta.method(meta.indexOfMethod("onAutoScaleX(bool)")).parameterNames(), QList<QByteArray> { "checked" });
    }

    void overridesButAddsNoVirtuals()
    {
        using V = VectorGraphWidget;
        using X = XYGraphWidget;
        QCOMPARE(virtualIndex(&V::setLogScaleY), virtualIndex(&X::setLogScaleY));
        QCOMPARE(virtualIndex(&V::onPaint), virtualIndex(&X::onPaint));
        QCOMPARE(virtualIndex(&V::setData), std::ptrdiff_t(-1));
        QCOMPARE(virtualIndex(&V::paintPeak), std::ptrdiff_t(-1));
        QCOMPARE(virtualIndex(&V::peakSearch), std::ptrdiff_t(-1));
        QCOMPARE(virtualIndex(&V::onPeakSearch), std::ptrdiff_t(-1));
    }

    void menuEndsWithSaveCsv()
    {
        const Plot plot;
        QCOMPARE(plot.actions().size(), 13);
        QCOMPARE(plot.actions().constLast()->text(), QStringLiteral("Save CSV..."));
        for (const QAction* action : plot.actions())
            QVERIFY(!action->text().contains(QStringLiteral("Peak")));
    }

    void dataFitsAnAutomaticXAxis()
    {
        Plot plot;
        plot.m_minX = 7.0;
        plot.setData(QList<double>(1000, 1.0));
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 1000.0);
        plot.setData(QList<double>(1024, 1.0));
        QCOMPARE(plot.m_maxX, 1200.0);
    }

    void dataOnAFixedXAxis()
    {
        Plot plot;
        plot.onAutoScaleX(false);
        plot.setMinMaxX(10.0, 20.0);
        plot.setData(QList<double>(1000, 1.0));
        QCOMPARE(plot.m_minX, 10.0);
        QCOMPARE(plot.m_maxX, 20.0);
    }

    void dataOnAManualXAxis()
    {
        Plot plot;
        plot.initManualX(-5.0, 33.0);
        plot.setMinMaxX(0.0, 10.0);
        plot.setData(QList<double>(1000, 1.0));
        QCOMPARE(plot.m_minX, -5.0);
        QCOMPARE(plot.m_maxX, 33.0);
    }

    void maxValueFitsAnAutomaticYAxis()
    {
        Plot plot;
        plot.m_minY = 7.0;
        plot.setMaxValue(90.0);
        QCOMPARE(plot.m_maxValue, 90.0);
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_maxY, 100.0);
        plot.onAutoScaleY(false);
        plot.setMaxValue(9000.0);
        QCOMPARE(plot.m_maxValue, 9000.0);
        QCOMPARE(plot.m_maxY, 100.0);
    }

    void settersDoNotRepaint()
    {
        Plot plot;
        plot.setData({ 1.0, 2.0 });
        plot.setIndex({ 1.0, 2.0 });
        plot.setMaxValue(2.0);
        QVERIFY(!plot.wasRefreshed());
        plot.showPeak(peakAt(1.0, 1.0));
        QVERIFY(plot.wasRefreshed());
    }

    void logScaleRefitsTheMaximum()
    {
        Plot plot;
        plot.setMaxValue(1500.0);
        plot.m_minY = 0.5;
        plot.m_refreshRequired = false;
        plot.setLogScaleY(true);
        QVERIFY(plot.m_logScaleY);
        QCOMPARE(plot.m_minY, 0.5); // stays
        QCOMPARE(plot.m_maxY, 10000.0);
        QVERIFY(plot.wasRefreshed());
        plot.onAutoScaleY(false);
        plot.m_maxY = 77.0;
        plot.setLogScaleY(false);
        QCOMPARE(plot.m_maxY, 77.0);
    }

    void autoScaleX()
    {
        Plot plot;
        plot.setData(QList<double>(1024, 1.0));
        plot.onAutoScaleX(false);
        QVERIFY(!plot.m_actAutoScaleX->isChecked());
        plot.setMinMaxX(3.0, 4.0);
        plot.wasRefreshed();
        plot.m_actAutoScaleX->trigger();
        QVERIFY(plot.m_autoScaleX);
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 1200.0);
        QVERIFY(plot.wasRefreshed());
    }

    void autoScaleXWithoutData()
    {
        Plot plot;
        plot.setMinMaxX(3.0, 4.0);
        plot.onAutoScaleX(true);
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 500.0); // not rounded
    }

    void autoScaleXWithTheInitialMaximum()
    {
        Plot plot;
        plot.init(QString(), QString(), 1024.0, 1.0, false, true);
        plot.setData(QList<double>(10, 1.0));
        plot.onAutoScaleX(true);
        QCOMPARE(plot.m_maxX, 1200.0);
    }

    void autoScaleY()
    {
        Plot plot;
        plot.onAutoScaleY(false);
        plot.setMaxValue(90.0);
        plot.setMinMaxY(3.0, 4.0);
        plot.wasRefreshed();
        plot.onAutoScaleY(false);
        QVERIFY(!plot.wasRefreshed());
        plot.onAutoScaleY(true);
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_maxY, 100.0);
        QVERIFY(plot.wasRefreshed());
        QVERIFY(plot.m_actAutoScaleY->isChecked());
    }

    void zerosDrawNothing()
    {
        Plot plot;
        plot.setData(QList<double>(500, 0.0));
        plot.setMaxValue(40.0);
        QCOMPARE(countPixels(plot.picture(), Qt::white), 0);
        plot.m_data[250] = 40.0;
        QVERIFY(countPixels(plot.picture(), Qt::white) > 100);
    }

    void curveStartsAtTheFirstSampleInView()
    {
        Plot plot;
        plot.setData({ 50.0, 10.0, 10.0, 10.0, 10.0 });
        plot.setMaxValue(50.0);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(1.0, 5.0);
        const QImage picture = plot.picture();
        const QRect graph = plot.m_graphRect;
        // The steep line from the sample left of the view is not there.
        QCOMPARE(countPixels(picture.copy(graph.left(), graph.top(), 30, graph.height() / 2), Qt::white), 0);
        QVERIFY(countPixels(picture, Qt::white) > 100);
    }

    void drawsLowValuesOnTheFloorOfALogAxis()
    {
        Plot plot;
        plot.setLogScaleY(true);
        plot.onAutoScaleY(false);
        plot.setMinMaxY(1.0, 1000.0);
        plot.setData({ 2.0, 2.0, 2.0, 2.0 }); // one above the minimum: on the floor, though log10 of it is above
        const QImage floor = plot.picture();
        const QRect graph = plot.m_graphRect;
        QCOMPARE(countPixels(floor.copy(graph.adjusted(0, 0, 0, -1)), Qt::white), 0);
        QVERIFY(countPixels(floor, Qt::white) > 100);
        plot.setData({ 2.5, 2.5, 2.5, 2.5 });
        QVERIFY(countPixels(plot.picture().copy(graph.adjusted(0, 0, 0, -5)), Qt::white) > 100);
    }

    void peakReplacesThePeakBefore()
    {
        Plot plot;
        plot.setData(QList<double>(500, 0.0));
        plot.setMaxValue(40.0);
        plot.showPeak(peakAt(100.0, 40.0));
        plot.showPeak(peakAt(300.0, 30.0));
        QCOMPARE(plot.m_peaks.size(), 1);
        QCOMPARE(plot.m_peaks.constFirst().center, 300.0);
        const QImage picture = plot.picture();
        const QPoint top = plot.calcWidgetPoint(QPoint(300, 30));
        QVERIFY(countPixels(picture.copy(QRect(top - QPoint(3, 3), QSize(7, 7))), Qt::red) > 0);
        const QPoint before = plot.calcWidgetPoint(QPoint(100, 40));
        QCOMPARE(countPixels(picture.copy(QRect(before - QPoint(20, 20), QSize(40, 40))), Qt::red), 0);
    }

    void peakOnAReversedAxis()
    {
        Plot plot;
        plot.onAutoScaleX(false);
        plot.setMinMaxX(500.0, 0.0);
        plot.showPeak(peakAt(300.0, 40.0));
        QVERIFY(countPixels(plot.picture(), Qt::red) > 50);
    }

    void saveCsvFromTheMenu()
    {
        Plot plot;
        plot.setData({ 1.0, 2.5 });
        plot.show();
        ModalWatchdog watchdog({ [](QWidget& window) {
            auto* dialog = qobject_cast<QFileDialog*>(&window);
            QVERIFY(dialog != nullptr);
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Save CSV"));
            QCOMPARE(dialog->nameFilters(), QStringList { QStringLiteral("CSV Files (*.csv *.txt)") });
            QCOMPARE(dialog->directory().absolutePath() + u'/', getSaveDir());
            dialog->reject();
        } });
        QVERIFY(PlotMouse(plot).pick(QStringLiteral("Save CSV...")));
        QVERIFY(watchdog.isContent());
    }

    void saveCsv_data()
    {
        addColumns<QList<double>, QByteArray>("index", "text");
        QTest::newRow("no index") << QList<double>() << QByteArray("1\n2.5\n0\n");
        QTest::newRow("an index for each") << QList<double> { 10.0, 20.0, 30.0 } << QByteArray("10,1\n20,2.5\n30,0\n");
        QTest::newRow("one short") << QList<double> { 10.0, 20.0 } << QByteArray("1\n2.5\n0\n");
    }
    void saveCsv()
    {
        QFETCH(QList<double>, index);
        QDir(folder.path()).mkdir(QStringLiteral("sub"));
        const QString path = folder.filePath(QStringLiteral("sub/%1.csv").arg(index.size()));
        Plot plot;
        plot.setData({ 1.0, 2.5, 0.0 });
        plot.setIndex(index);
        ModalWatchdog watchdog({ acceptFile(path) });
        plot.onSaveCsv();
        QVERIFY(watchdog.isContent());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTEST(file.readAll(), "text");
        QCOMPARE(getSaveDir(), folder.filePath(QStringLiteral("sub/")));
    }

    void saveCsvCancelled()
    {
        const Plot plot;
        ModalWatchdog watchdog({ tarnis::testing::reject() });
        const_cast<Plot&>(plot).onSaveCsv();
        QVERIFY(watchdog.isContent());
        QCOMPARE(getSaveDir(), folder.path() + u'/');
    }

    // No message box opens: the watchdog would count it.
    void saveCsvIsSilentOnFailure()
    {
        Plot plot;
        plot.setData({ 1.0 });
        {
            ModalWatchdog watchdog({ acceptFile(QStringLiteral("/proc/nowhere.csv")) });
            plot.onSaveCsv();
            QVERIFY(watchdog.isContent());
            QCOMPARE(getSaveDir(), folder.path() + u'/'); // stays
        }
        if (QFile::exists(QStringLiteral("/dev/full"))) { // a disk without room
            QVERIFY(QFile::link(QStringLiteral("/dev/full"), folder.filePath(QStringLiteral("full.csv"))));
            ModalWatchdog watchdog({ acceptFile(folder.filePath(QStringLiteral("full.csv"))), [](QWidget& window) {
                                        auto* box = qobject_cast<QMessageBox*>(&window);
                                        QVERIFY(box != nullptr);
                                        box->button(QMessageBox::Yes)->click(); // overwrite
                                    } });
            plot.onSaveCsv();
            QVERIFY(watchdog.isContent());
        }
    }

    void peakSearchDialogIsOne()
    {
        Plot plot;
        plot.show();
        plot.onPeakSearch();
        QPointer<QWidget> dialog = plot.m_modeless.map.value(&plot);
        QVERIFY(qobject_cast<PeakSearchDialog*>(dialog.data()) != nullptr);
        QVERIFY(dialog->isVisible());
        QVERIFY(dialog->testAttribute(Qt::WA_DeleteOnClose));
        dialog->hide();
        plot.onPeakSearch();
        QCOMPARE(plot.findChildren<PeakSearchDialog*>().size(), 1);
        QVERIFY(dialog->isVisible());
        dialog->close();
        TRY_VERIFY(dialog.isNull());
        QVERIFY(plot.m_modeless.map.isEmpty());
        plot.onPeakSearch();
        QCOMPARE(plot.findChildren<PeakSearchDialog*>().size(), 1);
    }

    void peakSearchShowsNothing()
    {
        Plot plot;
        QList<double> samples(500);
        for (int i = 0; i < samples.size(); ++i)
            samples[i] = 100.0 * std::exp(-0.5 * std::pow((i - 250.0) / 12.0, 2));
        plot.setData(samples);
        plot.setMaxValue(100.0);
        plot.showPeak(peakAt(1.0, 2.0));
        plot.show();
        plot.onPeakSearch();
        plot.wasRefreshed();
        auto* dialog = plot.findChild<PeakSearchDialog*>();
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("pushButtonSearch")), Qt::LeftButton);
        QCOMPARE(plot.m_peaks.size(), 1);
        QCOMPARE(plot.m_peaks.constFirst().center, 1.0);
        QVERIFY(!plot.wasRefreshed());
    }

    void survivesExtremeValues()
    {
        Plot plot;
        for (const double odd : { 0.0, -1.0, 1e308, -1e308, 5e-324, std::nan(""), HUGE_VAL, -HUGE_VAL }) {
            plot.setData({ odd, 1.0, odd });
            plot.setMaxValue(odd);
            plot.showPeak(peakAt(odd, odd));
            for (const bool logScale : { false, true }) {
                plot.setLogScaleY(logScale);
                plot.picture();
                plot.peakSearch(20, 3, true);
                plot.setMinMaxX(odd, 5.0);
                plot.setMinMaxY(odd, odd);
                plot.picture();
                plot.peakSearch(20, 3, true);
            }
            plot.initMode(true, true);
        }
    }

private:
    QTemporaryDir folder;
};

QTEST_MAIN(TestVectorGraphWidget)
#include "tst_vectorgraphwidget.moc"
