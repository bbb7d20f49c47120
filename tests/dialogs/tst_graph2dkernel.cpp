// The 5 by 5 filter against explicit loops, bit by bit.
#include "support/support.h"

#include "tarnis/dialogs/graph2dfilterdialog.h"
#include "tarnis/dialogs/graph2dkernel_p.h"

#include <QTest>

#include <cstring>
#include <limits>

using Rows = QList<QList<double>>;

namespace {

/// The oracle: each inner bin separately, in the order of the kernel.
Rows speltOut(const Rows& source, const Graph2DFilter& filter)
{
    Rows target = source;
    const qsizetype rows = source.size();
    const qsizetype columns = source.isEmpty() ? 0 : source.first().size();
    for (qsizetype y = rows - 3; y >= 2; --y) {
        for (qsizetype x = 2; x <= columns - 3 && columns > 4; ++x) {
            double sum = 0.0;
            for (int i = 0; i < 5; ++i) {
                for (int j = 0; j < 5; ++j)
                    sum += filter.matrix[i][j] * source.at(y + 2 - i).value(x - 2 + j);
            }
            if (filter.divisor != 0)
                sum /= filter.divisor;
            if (x < target.at(y).size())
                target[y][x] = sum;
        }
    }
    return target;
}

bool sameBits(const Rows& a, const Rows& b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype row = 0; row < a.size(); ++row) {
        if (a.at(row).size() != b.at(row).size())
            return false;
        for (qsizetype i = 0; i < a.at(row).size(); ++i) {
            const double left = a.at(row).at(i);
            const double right = b.at(row).at(i);
            // The NaN resulting from adding two NaNs depends on the processor, so all NaNs count as equal.
            if (std::memcmp(&left, &right, sizeof left) != 0 && !(left != left && right != right))
                return false;
        }
    }
    return true;
}

Rows ramp(int rows, int columns)
{
    Rows result;
    for (int r = 0; r < rows; ++r) {
        QList<double> row;
        for (int c = 0; c < columns; ++c)
            row.append(100 * r + c);
        result.append(row);
    }
    return result;
}

} // namespace

class TestGraph2DKernel : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void identity() { QVERIFY(sameBits(tarnis::filtered(ramp(7, 9), Graph2DFilter()), ramp(7, 9))); }

    void firstKernelRowMeetsTheHighestIndex()
    {
        Graph2DFilter filter;
        filter.matrix[2][2] = 0;
        filter.matrix[0][4] = 1; // top right on the form
        QCOMPARE(tarnis::filtered(ramp(5, 5), filter).at(2).at(2), 404.0);
    }

    void dividesUnlessTheDivisorIsZero()
    {
        Graph2DFilter filter;
        filter.matrix[2][2] = 3;
        filter.divisor = 2;
        QCOMPARE(tarnis::filtered(ramp(5, 5), filter).at(2).at(2), 303.0);
        filter.divisor = 0;
        QCOMPARE(tarnis::filtered(ramp(5, 5), filter).at(2).at(2), 606.0);
    }

    void borderStays()
    {
        Graph2DFilter filter;
        filter.matrix[2][2] = 0;
        const Rows source = ramp(6, 7);
        const Rows target = tarnis::filtered(source, filter);
        for (int r = 0; r < 6; ++r) {
            for (int c = 0; c < 7; ++c) {
                const bool inside = r >= 2 && r <= 3 && c >= 2 && c <= 4;
                QCOMPARE(target.at(r).at(c), inside ? 0.0 : source.at(r).at(c));
            }
        }
    }

    void doesNotChangeMapsBelowFiveByFive_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::newRow("no rows") << 0 << 0;
        QTest::newRow("four rows") << 4 << 9;
        QTest::newRow("four columns") << 9 << 4;
        QTest::newRow("empty rows") << 9 << 0;
    }

    void doesNotChangeMapsBelowFiveByFive()
    {
        QFETCH(int, rows);
        QFETCH(int, columns);
        Graph2DFilter filter;
        filter.matrix[2][2] = 7;
        QVERIFY(sameBits(tarnis::filtered(ramp(rows, columns), filter), ramp(rows, columns)));
    }

    void theSpeltOutLoops()
    {
        auto generator = tarnis::testing::seededGenerator(52);
        std::uniform_int_distribution<int> size(0, 14);
        std::uniform_int_distribution<int> weight(-9, 9);
        std::uniform_int_distribution<int> kind(0, 40);
        std::uniform_real_distribution<double> number(-1e3, 1e3);
        for (int round = 0; round < 3000; ++round) {
            Rows source;
            const int columns = size(generator);
            const bool ragged = kind(generator) < 10;
            for (int r = size(generator); r > 0; --r) {
                QList<double> row;
                for (int c = ragged ? size(generator) : columns; c > 0; --c) {
                    const int special = kind(generator);
                    row.append(special == 0 ? std::numeric_limits<double>::infinity()
                            : special == 1  ? std::numeric_limits<double>::quiet_NaN()
                            : special == 2  ? -0.0
                                            : number(generator));
                }
                source.append(row);
            }
            Graph2DFilter filter;
            for (auto& row : filter.matrix) {
                for (int& value : row)
                    value = kind(generator) == 0 ? std::numeric_limits<int>::min() : weight(generator);
            }
            filter.divisor = weight(generator);
            QVERIFY2(sameBits(tarnis::filtered(source, filter), speltOut(source, filter)),
                qPrintable(QString::number(round)));
        }
    }
};

QTEST_APPLESS_MAIN(TestGraph2DKernel)
#include "tst_graph2dkernel.moc"
