// Sums over parts of lists, against a loop.
#include "support/randomcases.h"
#include "support/support.h"

#include "tarnis/tools/base/blocksums_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

class TestBlockSums : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void equalsALoopOverTheNumbers()
    {
        auto random = seededGenerator(31);
        for (int round = 0; round < 200; ++round) {
            QList<double> numbers(whole(random, 0, 1000));
            for (double& number : numbers)
                number = chance(random, 0.02) ? std::nan("")
                    : chance(random, 0.02)    ? std::numeric_limits<double>::infinity()
                                              : std::floor(uniform(random, -1e6, 1e6));
            const BlockSums sums(numbers);
            for (int part = 0; part < 20; ++part) {
                const int first = whole(random, -10, 1010);
                const int last = whole(random, -10, 1010);
                double expected = 0.0;
                for (qsizetype i = std::max(first, 0); i <= std::min<qsizetype>(last, numbers.size() - 1); ++i)
                    expected += std::isfinite(numbers.at(i)) ? numbers.at(i) : 0.0;
                QCOMPARE(sums.between(first, last), expected); // whole numbers: exact
            }
        }
    }

    void keepsSumsOfListsThatStay()
    {
        QList<QList<double>> lists { { 1, 2, 3 }, { 4, 5 } };
        QList<BlockSums> sums;
        updateSums(sums, lists);
        QCOMPARE(sums.at(1).between(0, 1), 9.0);
        lists[0] = { 7, 7 };
        lists.append(QList<double> { 1 });
        updateSums(sums, lists);
        QCOMPARE(sums.size(), 3);
        QCOMPARE(sums.at(0).between(0, 9), 14.0);
        QVERIFY(sums.at(1).areOf(lists.at(1)) && !sums.at(1).areOf(lists.at(0)));
        updateSums(sums, {});
        QVERIFY(sums.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBlockSums)
#include "tst_blocksums.moc"
