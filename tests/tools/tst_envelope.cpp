// Samples by pixel columns.
#include "tarnis/tools/curves/envelope_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;

namespace {

QList<EnvelopeColumn> envelope(const QList<double>& samples, int perColumn)
{
    return envelopeOf(
        0, samples.size() - 1, [&](qsizetype i) { return samples.at(i); },
        [&](qsizetype i) { return static_cast<double>(i) / perColumn; });
}

} // namespace

class TestEnvelope : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsExtremesAndMean()
    {
        QCOMPARE(envelope({ 4, -1, 6, 10, 20, 30, 7 }, 3),
            (QList<EnvelopeColumn> {
                { 0, 0, 4, 6, -1, 6, 3, true }, { 1, 1, 10, 30, 10, 30, 20, true }, { 2, 2, 7, 7, 7, 7, 7, true } }));
        QVERIFY(!envelope({ 4, 9, 1 }, 3).constFirst().isRising);
    }

    void leavesOutWhatIsNotFinite()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        QCOMPARE(envelope({ std::nan(""), 2, infinity, -infinity, std::nan(""), 3 }, 2),
            (QList<EnvelopeColumn> { { 0, 0.5, 2, 2, 2, 2, 2, true }, { 2, 2.5, 3, 3, 3, 3, 3, true } }));
        QVERIFY(envelope({}, 2).isEmpty());
        QVERIFY(envelope({ std::nan("") }, 2).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestEnvelope)
#include "tst_envelope.moc"
