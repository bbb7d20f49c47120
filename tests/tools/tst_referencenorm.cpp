// Norms of reference curves: counts, live time, counts in a range.
#include "tools/samples.h"

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
