// The fit panel on a plot: range and peaks by mouse, guess, fit, constraints, live data, history, lifetimes.
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/fitpanel.h>

#include <QClipboard>
#include <QDoubleSpinBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableView>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

using namespace tarnis;

namespace {

constexpr int bins = 200;

QList<double> twoPeaks(double area = 10000.0, double level = 20.0)
{
    QList<double> samples;
    std::mt19937_64 random(7); // the spread of counts, or a fit is too good to be accepted
    const std::array widths { 4.0 };
    for (int i = 0; i < bins; ++i) {
        double mean = level;
        for (const double centre : { 60.5, 120.5 })
            mean += area * peakIntegral(PeakShape::Gaussian, i, i + 1.0, centre, widths);
        samples << static_cast<double>(std::poisson_distribution<int>(mean)(random));
    }
    return samples;
}

void show(VectorGraphWidget& plot, const QList<double>& samples)
{
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), bins, 100, true, true);
    plot.setData(samples);
    plot.setMaxValue(*std::max_element(samples.begin(), samples.end()));
    plot.refreshPixmap();
    plot.resize(600, 400);
    plot.show();
    if (!QTest::qWaitForWindowExposed(&plot))
        qFatal("no window");
    plot.grab();
}

QPoint pixelOf(const XYGraphWidget& plot, double x)
{
    const PlotMapping mapping = PlotMapping::of(plot);
    return { qRound(mapping.pixelOf({ x, 0.0 }).x()), mapping.plotRect().center().y() };
}

QToolButton* toggleOf(const FitPanel& panel, const QString& text)
{
    for (QToolButton* const button : panel.findChildren<QToolButton*>()) {
        if (button->text() == text)
            return button;
    }
    qFatal("no such button");
}

void drag(XYGraphWidget& plot, double from, double to)
{
    QTest::mousePress(&plot, Qt::LeftButton, {}, pixelOf(plot, from));
    QTest::mouseMove(&plot, pixelOf(plot, (from + to) / 2));
    QTest::mouseRelease(&plot, Qt::LeftButton, {}, pixelOf(plot, to));
}

bool waitForFit(FitPanel& panel)
{
    const QSignalSpy fitted(&panel, &FitPanel::fitted);
    return tarnis::testing::eventually([&] { return !fitted.isEmpty(); });
}

} // namespace

class TestFitPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void guessesTheDraggedRangeAtOnce()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        QSignalSpy guessed(&panel, &FitPanel::guessed);
        toggleOf(panel, QStringLiteral("Range"))->click();
        drag(plot, 40, 85);
        QCOMPARE(guessed.size(), 1);
        QVERIFY(panel.isGuess());
        QVERIFY(std::fabs(panel.range().min - 40) < 1.0);
        QVERIFY(std::fabs(panel.range().max - 85) < 1.0);
        QVERIFY(std::fabs(panel.result().valueOf(QStringLiteral("centre")) - 60.5) < 2.0);
    }

    void leavesTheMouseToThePlotWhileOff()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        drag(plot, 40, 85);
        QCOMPARE(panel.range(), AxisRange());
    }

    void drawsTheGuessOnThePlot()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        const QImage before = plot.grab().toImage();
        auto panel = std::make_unique<FitPanel>(&plot);
        panel->setRange(40, 85);
        QVERIFY(plot.grab().toImage() != before);
        panel->clear();
        QCOMPARE(plot.grab().toImage(), before);
        panel->setRange(40, 85);
        panel.reset();
        QCOMPARE(plot.grab().toImage(), before);
    }

    void fitsClickedPeaks()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        toggleOf(panel, QStringLiteral("Peaks"))->click();
        QTest::mouseClick(&plot, Qt::LeftButton, {}, pixelOf(plot, 121));
        QTest::mouseClick(&plot, Qt::LeftButton, {}, pixelOf(plot, 61));
        QCOMPARE(panel.model().peaks, 2);
        panel.setRange(30, 150);
        panel.fit();
        QVERIFY(waitForFit(panel));
        QVERIFY(!panel.isGuess());
        QVERIFY2(panel.result().acceptable, qPrintable(panel.message()));
        QVERIFY(std::fabs(panel.result().valueOf(QStringLiteral("centre1")) - 60.5) < 0.1);
        QVERIFY(std::fabs(panel.result().valueOf(QStringLiteral("area2")) - 10000) < 400);
        // A second click on a peak removes it.
        QTest::mouseClick(&plot, Qt::LeftButton, {}, pixelOf(plot, 61));
        QCOMPARE(panel.model().peaks, 1);
    }

    void reportsWhyThereIsNoFit()
    {
        VectorGraphWidget plot;
        QList<double> samples = twoPeaks();
        samples[60] = -4;
        show(plot, samples);
        FitPanel panel(&plot);
        panel.setRange(40, 85);
        panel.fit();
        QVERIFY(waitForFit(panel));
        QCOMPARE(panel.result().status, FitStatus::Refused);
        QVERIFY(!panel.message().isEmpty());
        QCOMPARE(panel.message(), panel.result().message);
        QVERIFY(panel.historyTable().isEmpty());
    }

    // A limit that is typed first is not moved to the other end of the range.
    void waitsForBothTypedLimits()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        const QList<QDoubleSpinBox*> limits = panel.findChildren<QDoubleSpinBox*>();
        QCOMPARE(limits.size(), 2);
        QSignalSpy guessed(&panel, &FitPanel::guessed);
        limits[0]->setValue(40);
        QCOMPARE(guessed.size(), 0);
        QVERIFY(panel.message().contains(QStringLiteral("end above")));
        limits[1]->setValue(85);
        QCOMPARE(guessed.size(), 1);
        QCOMPARE(panel.range().min, 40.0);
        QCOMPARE(panel.range().max, 85.0);
        limits[0]->setValue(90);
        for (QPushButton* const button : panel.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("Fit"))
                button->click();
        }
        QVERIFY(!panel.isRunning());
        QVERIFY(panel.message().contains(QStringLiteral("end above")));
    }

    void keepsTheRowOfARefusedBound()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        panel.setRange(40, 85);
        QAbstractItemModel& table = *panel.findChild<QTableView*>()->model();
        const QString area = table.index(0, 0).data().toString();
        QVERIFY(table.setData(table.index(0, 5), QStringLiteral("100")));
        QVERIFY(table.setData(table.index(0, 4), QStringLiteral("1e9")));
        QCOMPARE(panel.result().status, FitStatus::Refused);
        QVERIFY(table.rowCount() >= 5);
        QCOMPARE(table.index(0, 0).data().toString(), area);
        QCOMPARE(table.index(0, 1).data().toString(), QString());
        QCOMPARE(table.index(0, 4).data().toString(), QStringLiteral("1000000000"));
        QVERIFY(table.setData(table.index(0, 4), QString()));
        QVERIFY(panel.result().status != FitStatus::Refused);
    }

    void refusesATieToAnUnknownParameter()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        panel.setRange(40, 85);
        QAbstractItemModel& table = *panel.findChild<QTableView*>()->model();
        QVERIFY(!table.setData(table.index(0, 6), QStringLiteral("foo")));
        QVERIFY2(panel.message().contains(QStringLiteral("foo")), qPrintable(panel.message()));
        QVERIFY(panel.message().contains(QStringLiteral("sigma")));
        QCOMPARE(table.index(0, 6).data().toString(), QString());
        QVERIFY(table.setData(table.index(0, 6), QStringLiteral("10 * sigma")));
    }

    // A verdict with many reasons can be read to its end in a panel without room for it.
    void scrollsALongMessage()
    {
        VectorGraphWidget plot;
        QList<double> samples(bins, 5.0);
        for (const int i : { 20, 60, 61, 110, 150 })
            samples[i] = 900.0;
        show(plot, samples);
        FitPanel panel(&plot);
        panel.resize(panel.minimumSizeHint());
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        panel.setRange(5, 195);
        panel.fit();
        QVERIFY(waitForFit(panel));
        const auto labels = panel.findChildren<QLabel*>();
        const auto text = std::find_if(
            labels.begin(), labels.end(), [&](const QLabel* label) { return label->text() == panel.message(); });
        QVERIFY(text != labels.end());
        TRY_VERIFY((*text)->height() >= (*text)->heightForWidth((*text)->width()));
        TRY_VERIFY((*text)->visibleRegion().boundingRect().height() < (*text)->height());
        TRY_VERIFY(panel.findChild<QScrollArea*>()->verticalScrollBar()->maximum() > 0);
    }

    void holdsATypedAndFixedValue()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        panel.setRange(40, 85);
        QAbstractItemModel& table = *panel.findChild<QTableView*>()->model();
        int row = 0;
        while (row < table.rowCount() && table.index(row, 0).data().toString() != QStringLiteral("Sigma"))
            ++row;
        QVERIFY(table.setData(table.index(row, 1), QStringLiteral("4.25")));
        QVERIFY(table.setData(table.index(row, 3), Qt::Checked, Qt::CheckStateRole));
        panel.fit();
        QVERIFY(waitForFit(panel));
        QCOMPARE(panel.result().valueOf(QStringLiteral("sigma")), 4.25);
    }

    void keepsTheLastGoodResultWhileFollowing()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        panel.setRange(40, 85);
        panel.setFollowSeconds(1);
        QVERIFY(waitForFit(panel));
        QVERIFY(panel.result().acceptable);
        const double area = panel.result().valueOf(QStringLiteral("area"));
        plot.setData(twoPeaks(0.0)); // the peak has disappeared
        plot.refreshPixmap();
        QVERIFY(waitForFit(panel));
        QCOMPARE(panel.result().valueOf(QStringLiteral("area")), area);
        QVERIFY(panel.message().contains(QStringLiteral("was not used")));
        plot.setData(twoPeaks(20000.0));
        plot.refreshPixmap();
        QVERIFY(waitForFit(panel));
        QVERIFY(std::fabs(panel.result().valueOf(QStringLiteral("area")) - 20000) < 800);
        QCOMPARE(panel.historyTable().count(u'\n'), 4);
        panel.setFollowSeconds(0);
        QCOMPARE(panel.followSeconds(), 0);
    }

    void copiesFullDigits()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        panel.setRange(40, 85);
        panel.fit();
        QVERIFY(waitForFit(panel));
        for (QPushButton* const button : panel.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("Copy"))
                button->click();
        }
        QCOMPARE(QGuiApplication::clipboard()->text(), panel.table());
        const QString line = panel.table().section(u'\n', 2, 2);
        QCOMPARE(line.section(u'\t', 0, 0), QStringLiteral("centre"));
        QVERIFY(line.section(u'\t', 1, 1).size() >= 8);
    }

    void comesBackFromItsState()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        FitPanel panel(&plot);
        panel.setRange(40, 140);
        FitModel model;
        model.peaks = 2;
        model.background = FitBackground::Constant;
        panel.setModel(model);
        FitPanel other(&plot);
        other.restoreState(panel.saveState());
        QCOMPARE(other.saveState(), panel.saveState());
        QCOMPARE(other.findChild<QSpinBox*>()->value(), 2);
        QCOMPARE(other.result().peaks.size(), std::size_t(2));
    }

    void outlivesItsPlot()
    {
        auto plot = std::make_unique<VectorGraphWidget>();
        show(*plot, twoPeaks());
        FitPanel panel(plot.get());
        panel.resize(500, 600);
        panel.setRange(40, 85);
        panel.setFollowSeconds(1);
        plot.reset();
        QCOMPARE(panel.plot(), nullptr);
        QCOMPARE(panel.followSeconds(), 0);
        QVERIFY(waitForFit(panel)); // of the data that it had copied
        panel.guess();
        QCOMPARE(panel.result().status, FitStatus::Refused);
        panel.grab();
    }

    void endsWhileAFitRuns()
    {
        VectorGraphWidget plot;
        show(plot, twoPeaks());
        for (int i = 0; i < 20; ++i) {
            FitPanel panel(&plot);
            panel.setRange(40, 85);
            panel.fit();
        }
        QCoreApplication::processEvents();
    }

    void offersEachCurve()
    {
        MultiVectorGraphWidget plot;
        plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0, 0, true, true);
        plot.m_groupSize = 1;
        plot.setData(0, twoPeaks(), 1000);
        plot.setData(1, twoPeaks(40000.0), 4000);
        plot.resizeData(2);
        plot.resize(600, 400);
        plot.show();
        plot.grab();
        FitPanel panel(&plot);
        panel.setRange(40, 85);
        panel.fit();
        QVERIFY(waitForFit(panel));
        QVERIFY(std::fabs(panel.result().valueOf(QStringLiteral("area")) - 10000) < 400);
    }
};

QTEST_MAIN(TestFitPanel)
#include "tst_fitpanel.moc"
