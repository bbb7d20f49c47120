// The peak search of the plot of many series, used as a user does.
#include "plots/modulesplot.h"
#include "support/pictures.h"
#include "support/plotmouse.h"
#include "support/wait.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>

#include <cmath>
#include <memory>

using namespace tarnis::testing;

namespace {

/// Two Gaussians on a low background that rises and falls, so that the fitted segments end beside the peaks.
QList<double> twoPeaks(int count, double first, double second)
{
    QList<double> samples(count);
    for (int i = 0; i < count; ++i)
        samples[i] = 1.0 + 0.4 * (i % 2) + 100.0 * std::exp(-0.5 * std::pow((i - first) / 8.0, 2))
            + 60.0 * std::exp(-0.5 * std::pow((i - second) / 8.0, 2));
    return samples;
}

} // namespace

class TestMultiVectorPeaks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void peakDialogIsOne()
    {
        Plot plot;
        QVERIFY(PlotMouse(plot).pick(QStringLiteral("Peak Search")));
        QPointer<PeakSearchDialog> dialog = plot.peakDialog();
        QVERIFY(dialog->isVisible() && dialog->testAttribute(Qt::WA_DeleteOnClose));
        dialog->hide();
        QVERIFY(PlotMouse(plot).pick(QStringLiteral("Peak Search")));
        QVERIFY(dialog->isVisible());
        QCOMPARE(plot.findChildren<PeakSearchDialog*>().size(), 1);
    }

    void peakSearchFindsAndShows()
    {
        Plot plot;
        plot.m_firstNumber = 7;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.setData(9, twoPeaks(600, 100.0, 500.0), 101.0);
        plot.setEnable(0, false);
        for (int i = 1; i < 9; ++i)
            plot.setEnable(i, false);
        plot.onPeakSearch();
        plot.wasRefreshed();
        click(*plot.peakDialog(), "pushButtonSearch");
        QVERIFY(plot.wasRefreshed());
        QCOMPARE(plot.m_peaks.size(), 2);
        QVERIFY(std::abs(plot.m_peaks.at(0).center - 100.0) < 3.0);
        QCOMPARE(plot.m_peakSelected, -1);
        QVERIFY(std::abs(plot.m_peakThreshold - 20.2) < 0.1);
        QCOMPARE(plot.peakDialog()->windowTitle(), QStringLiteral("Peak Search [Module 1 - ch 1]"));
        const auto* table = plot.peakDialog()->findChild<QTableWidget*>();
        QCOMPARE(table->rowCount(), 2);
        QCOMPARE(table->item(0, 0)->text(), QString::number(plot.m_peaks.at(0).center, 'f', 1));
        QVERIFY(countPixels(plot.picture(), Qt::white) > 100); // threshold and curves
    }

    void peakSearchOnAManualAxis()
    {
        Plot plot;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.peakSearch(20, 15, true);
        const QList<PeakSearch::Gaussian> inSamples = plot.m_peaks;
        plot.initManualX(1000.0, 1300.0);
        plot.peakSearch(20, 15, true);
        QCOMPARE(plot.m_peaks.size(), 2);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(plot.m_peaks.at(i).center, inSamples.at(i).center * 0.5 + 1000.0);
            QCOMPARE(plot.m_peaks.at(i).sigma, inSamples.at(i).sigma * 0.5);
            QCOMPARE(plot.m_peaks.at(i).start, inSamples.at(i).start);
            QCOMPARE(plot.m_peaks.at(i).points, inSamples.at(i).points);
        }
    }

    void peakSearchInTheVisibleRange()
    {
        Plot plot;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(300.0, 600.0);
        plot.peakSearch(20, 15, true);
        QCOMPARE(plot.m_peaks.size(), 1);
        QVERIFY(plot.m_peaks.constFirst().center > 350.0);
    }

    void peakSearchAgainReplaces()
    {
        Plot plot;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.onPeakSearch();
        click(*plot.peakDialog(), "pushButtonSearch");
        plot.peakDialog()->findChild<QTableWidget*>()->setCurrentCell(1, 0);
        QCOMPARE(plot.m_peakSelected, 1);
        plot.peakDialog()->findChild<QLineEdit*>(QStringLiteral("lineEditThreshold"))->setText(QStringLiteral("65"));
        plot.peakDialog()->findChild<QLineEdit*>(QStringLiteral("lineEditWidth"))->setText(QStringLiteral("5"));
        click(*plot.peakDialog(), "pushButtonSearch");
        QCOMPARE(plot.m_peaks.size(), 1);
        QCOMPARE(plot.m_peakSelected, -1);
        QCOMPARE(plot.peakDialog()->findChild<QTableWidget*>()->rowCount(), 1);
    }

    void peakSearchWithoutADialog()
    {
        Plot plot;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.peakSearch(20, 15, true);
        QCOMPARE(plot.m_peaks.size(), 2);
        QVERIFY(plot.findChildren<PeakSearchDialog*>().isEmpty());
        QVERIFY(countPixels(plot.picture(), QColor(0, 65, 255)) > 50);
    }

    void peakSearchWithoutAnEnabledSeries()
    {
        Plot plot;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.peakSearch(20, 15, true);
        plot.resizeData(1);
        plot.setEnable(0, false);
        plot.wasRefreshed();
        plot.peakSearch(80, 15, true);
        QCOMPARE(plot.m_peaks.size(), 2);
        QVERIFY(!plot.wasRefreshed());
    }

    void selectedPeakAndPoints()
    {
        Plot plot;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.onPeakSearch();
        click(*plot.peakDialog(), "pushButtonSearch");
        const int plain = countPixels(plot.picture(), Qt::white);
        plot.peakSelected(0);
        QVERIFY(plot.wasRefreshed());
        plot.peakSelected(0);
        QVERIFY(!plot.wasRefreshed());
        QVERIFY(countPixels(plot.picture(), Qt::white) > plain); // drawn bold
        click(*plot.peakDialog(), "displayPointsCheckBox");
        QVERIFY(plot.m_peakDisplayPoints && plot.wasRefreshed());
        QVERIFY(countPixels(plot.picture(), Qt::white) != plain);
    }

    void closingTheDialogClearsThePeaks()
    {
        Plot plot;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.onPeakSearch();
        click(*plot.peakDialog(), "pushButtonSearch");
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("peakClear")));
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("Destroyed:")));
        QPointer<PeakSearchDialog> dialog = plot.peakDialog();
        dialog->close();
        TRY_VERIFY(dialog.isNull());
        QVERIFY(plot.m_peaks.isEmpty() && plot.m_peakDialogs.map.isEmpty());
    }

    void plotMayDieFirst()
    {
        auto plot = std::make_unique<Plot>();
        plot->setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot->onPeakSearch();
        plot->onSelectVisibles();
        click(*plot->peakDialog(), "pushButtonSearch");
        const QPointer<QWidget> peaks = plot->peakDialog();
        const QPointer<QWidget> visibles = plot->visibles();
        plot.reset();
        QVERIFY(peaks.isNull() && visibles.isNull());
    }

    void newDialogRemovesThePeaks()
    {
        Plot plot;
        plot.setData(0, twoPeaks(600, 150.0, 400.0), 101.0);
        plot.peakSearch(20, 15, true);
        plot.peakToggledDisplayPoints(true);
        plot.onPeakSearch();
        QVERIFY(plot.m_peaks.isEmpty());
        QVERIFY(!plot.m_peakDisplayPoints);
    }
};

QTEST_MAIN(TestMultiVectorPeaks)
#include "tst_multivectorpeaks.moc"
