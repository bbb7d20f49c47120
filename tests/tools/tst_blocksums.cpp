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

    void addsUpRectangles()
    {
        auto random = seededGenerator(32);
        for (int round = 0; round < 20; ++round) {
            QList<QList<double>> rows(whole(random, 1, 200));
            for (QList<double>& row : rows) {
                row.resize(whole(random, 200, 300)); // of different lengths
                for (double& number : row)
                    number = chance(random, 0.02) ? std::nan("") : std::floor(uniform(random, -1e6, 1e6));
            }
            if (chance(random, 0.3)) // the sum of a column of these is not finite
                rows[rows.size() / 2][5] = rows[0][5] = std::numeric_limits<double>::max();
            RectangleSums sums;
            for (int part = 0; part < 20; ++part) {
                if (chance(random, 0.2))
                    rows[whole(random, 0, int(rows.size()) - 1)][whole(random, 6, 199)] += 1.0;
                sums.update(rows);
                const int first = whole(random, 6, 310);
                const int last = whole(random, 6, 310);
                const int firstRow = whole(random, 0, int(rows.size()) - 1);
                const int lastRow = whole(random, 0, int(rows.size()) - 1);
                double expected = 0.0;
                for (int row = firstRow; row <= lastRow; ++row)
                    expected += BlockSums(rows.at(row)).between(first, last);
                QCOMPARE(sums.between(first, last, firstRow, lastRow), expected); // whole numbers: exact
            }
        }
    }

    void keepsHugeNumbersInRectangles()
    {
        QList<QList<double>> rows(64, QList<double>(10, 1.0));
        rows[3][2] = rows[40][2] = std::numeric_limits<double>::max();
        rows[4][2] = -std::numeric_limits<double>::max();
        rows[5][2] = rows[6][2] = std::numeric_limits<double>::max();
        RectangleSums sums;
        sums.update(rows);
        for (int use = 0; use < 3; ++use)
            QCOMPARE(sums.between(2, 2, 0, 63), std::numeric_limits<double>::infinity());
    }
};

QTEST_GUILESS_MAIN(TestBlockSums)
#include "tst_blocksums.moc"
