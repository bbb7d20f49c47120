// Norms of reference curves: counts, live time, counts in a range.
#include "support/visibleplot.h"
#include "tools/samples.h"

#include <tarnis/export/plotexporter.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QMenu>
#include <QTest>

#include <cmath>

using namespace tarnis;
using namespace tarnis::testing;

class TestReferenceNorm : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void scalesTheReference()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 2, 4, 6, 8 });
        ReferenceCurves references(&plot);
        references.setLiveTime(10);
        references.freeze();
        references.setView(ReferenceCurves::View::Difference);
        plot.setData({ 6, 8, 10, 16 });
        references.setNorm(ReferenceCurves::Norm::TotalCounts); // 40 / 20
        QCOMPARE(references.compared(0), (QList<double> { 2, 0, -2, 0 }));
        references.setView(ReferenceCurves::View::Significance);
        QCOMPARE(references.compared(0).at(0), 2.0 / std::sqrt(6.0)); // 4 counts since, less the 2 of the reference
        references.setView(ReferenceCurves::View::Difference);
        references.setLiveTime(30);
        references.setNorm(ReferenceCurves::Norm::LiveTime);
        QCOMPARE(references.compared(0), (QList<double> { 0, -4, -8, -8 }));
        references.setLiveTime(std::nan("")); // unknown
        QCOMPARE(references.compared(0), (QList<double> { 4, 4, 4, 8 }));
    }

    void scalesTheReferenceInARange()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 2, 4, 6, 8 });
        ReferenceCurves references(&plot);
        references.freeze();
        references.setView(ReferenceCurves::View::Ratio);
        plot.setData({ 1, 8, 22, 4 });
        references.setNormRange(1.0, 3.0); // 30 / 10
        QCOMPARE(references.norm(), ReferenceCurves::Norm::RangeCounts);
        QCOMPARE(references.compared(0), (QList<double> { 1.0 / 6, 8.0 / 12, 22.0 / 18, 4.0 / 24 }));
        references.setNormRange(0.6, 2.5); // the centre of a bin counts, that of the lower end included
        QCOMPARE(references.compared(0).at(0), 0.25); // 8 / 4
        plot.setData({ 1, 2, 22, 4 });
        QCOMPARE(references.compared(0).at(0), 1.0); // 2 / 4
        references.setNormRange(7.0, 9.0); // no bins: not scaled
        QCOMPARE(references.compared(0).at(0), 0.5);
        const AxisRange before = references.normRange();
        references.setNormRange(2.0, 2.0);
        references.setNormRange(std::nan(""), 2.0);
        QCOMPARE(references.normRange(), before);
    }

    void takesTheRangeOfTheNormFromTheView()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 2, 4, 6, 8 });
        ReferenceCurves references(&plot);
        showActive(plot);
        references.freeze();
        references.setView(ReferenceCurves::View::Difference);
        plot.setData({ 1, 8, 22, 4 });
        const auto choose = [&] {
            QMenu* const menu = references.actions().last()->menu();
            Q_EMIT menu->aboutToShow();
            for (QAction* const action : menu->actions()) {
                if (action->text() == QStringLiteral("Scaled to the Counts in the Visible Range")) {
                    action->trigger();
                    return;
                }
            }
        };
        plot.onAutoScaleX(false);
        plot.setMinMaxX(1.0, 2.0);
        plot.refreshPixmap();
        choose();
        QCOMPARE(references.normRange(), (AxisRange { 1.0, 2.0 }));
        QCOMPARE(references.compared(0), (QList<double> { -3, 0, 10, -12 }));
        plot.setMinMaxX(0.0, 4.0); // a later view changes nothing until it is chosen again
        plot.refreshPixmap();
        QCOMPARE(references.compared(0).at(0), -3.0);
        choose();
        QCOMPARE(references.normRange(), (AxisRange { 0.0, 4.0 }));
    }

    void saysWhatIsMissingForANorm()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 2, 4, 6, 8 });
        ReferenceCurves references(&plot);
        showActive(plot);
        references.freeze();
        references.setView(ReferenceCurves::View::Ratio);
        const auto says = [&](const char* text) {
            return PlotExporter(plot).picture(PictureFormat::Svg, {}, nullptr).contains(text);
        };
        references.setNormRange(1.0, 3.0);
        QVERIFY(says("data /") && !says("not scaled"));
        references.setNormRange(7.0, 9.0);
        QVERIFY(says("not scaled: there are no counts"));
        references.setNorm(ReferenceCurves::Norm::LiveTime);
        QVERIFY(says("not scaled: the live time is unknown"));
        references.setNorm(ReferenceCurves::Norm::None);
        QVERIFY(!says("not scaled"));
    }

    void offersTheLiveTimeOnlyIfItIsKnown()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 1, 2, 3, 4 });
        ReferenceCurves references(&plot);
        references.freeze();
        const auto canScale = [&] {
            QMenu* const menu = references.actions().last()->menu();
            Q_EMIT menu->aboutToShow();
            for (const QAction* const action : menu->actions()) {
                if (action->text() == QStringLiteral("Scaled to the Live Time"))
                    return action->isEnabled();
            }
            return false;
        };
        QVERIFY(!canScale());
        references.setLiveTime(10);
        QVERIFY(!canScale()); // that of the reference is unknown
        references.freeze();
        QVERIFY(canScale());
    }
};

QTEST_MAIN(TestReferenceNorm)
#include "tst_referencenorm.moc"
