// The text of CSV files.
#include "support/support.h"

#include "tarnis/plots/math/csvtext_p.h"

#include <QLocale>
#include <QTest>

#include <cmath>
#include <limits>

using Rows = QList<QList<double>>;

class TestCsvText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbersAreThoseOfArg()
    {
        auto random = tarnis::testing::seededGenerator(3561);
        std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
        std::uniform_int_distribution<int> exponent(-320, 308);
        QList<double> values { 0.0, -0.0, 1.0, 100000.0, 999999.5, 1e6, 1e-5, 0.0001, 1.0 / 3.0,
            std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
            std::numeric_limits<double>::quiet_NaN() };
        for (int i = 0; i < 20000; ++i)
            values << mantissa(random) << std::floor(mantissa(random) * 1000.0)
                   << mantissa(random) * std::pow(10.0, exponent(random));
        for (const double value : values)
            QCOMPARE(tarnis::plainNumber(value), QStringLiteral("%1").arg(value, 0, 'g', -1, QLatin1Char(' ')));
    }

    void numbersIgnoreTheLocale()
    {
        QLocale::setDefault(QLocale(QLocale::German));
        QCOMPARE(tarnis::plainNumber(1234.5), QStringLiteral("1234.5"));
        QLocale::setDefault(QLocale::c());
    }

    void seriesWithoutIndex()
    {
        QCOMPARE(tarnis::csvOfSeries({}, { 1.0, 2.5, 1e7 }), QStringLiteral("1\n2.5\n1e+07\n"));
    }

    void seriesWithIndex()
    {
        QCOMPARE(tarnis::csvOfSeries({ 0.5, 1.5 }, { 10.0, 20.0 }), QStringLiteral("0.5,10\n1.5,20\n"));
    }

    void indexOfAnotherLengthIsLeftOut()
    {
        QCOMPARE(tarnis::csvOfSeries({ 0.5 }, { 10.0, 20.0 }), QStringLiteral("10\n20\n"));
        QCOMPARE(tarnis::csvOfSeries({ 0.5, 1.5, 2.5 }, { 10.0, 20.0 }), QStringLiteral("10\n20\n"));
    }

    void columnsOfUnequalLength()
    {
        QCOMPARE(tarnis::csvOfColumns({}, { { 1.0, 2.0, 3.0 }, { 4.0, 5.0, 6.0, 7.0, 8.0 } }),
            QStringLiteral("1,4\n2,5\n3,6\n,7\n,8\n"));
        QCOMPARE(tarnis::csvOfColumns({}, { { 1.0, 2.0 }, {}, { 3.0 } }), QStringLiteral("1,,3\n2,,\n"));
    }

    void indexIsTheFirstColumn()
    {
        QCOMPARE(tarnis::csvOfColumns({ 0.1, 0.2 }, { { 1.0, 2.0 }, { 3.0 } }), QStringLiteral("0.1,1,3\n0.2,2,\n"));
    }

    void indexEndsWithTheData()
    {
        const QList<double> index { 0, 1, 2, 3, 4, 5, 6, 7, 8, 9 };
        QCOMPARE(tarnis::csvOfColumns(index, { { 1.0, 2.0, 3.0, 4.0 } }), QStringLiteral("0,1\n1,2\n2,3\n3,4\n"));
    }

    void indexShorterThanTheData()
    {
        QCOMPARE(tarnis::csvOfColumns({ 9.0 }, { { 1.0, 2.0 }, { 3.0, 4.0 } }), QStringLiteral("9,1,3\n2,4\n"));
    }

    // As many rows as the longest column, as many cells in each, each with its number or empty.
    void columnsKeepTheirPlaces()
    {
        auto random = tarnis::testing::seededGenerator(3563);
        const auto whole = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
        for (int number = 0; number < 500; ++number) {
            const auto list = [&](int longest) {
                QList<double> values(whole(0, longest));
                for (double& value : values)
                    value = whole(-1000, 1000) / 8.0;
                return values;
            };
            const QList<double> index = whole(0, 1) == 0 ? QList<double>() : list(40);
            QList<QList<double>> columns;
            qsizetype rows = 0;
            for (int k = whole(1, 6); k > 0; --k) {
                columns.append(list(30));
                rows = std::max(rows, columns.last().size());
            }
            const QString text = tarnis::csvOfColumns(index, columns);
            QStringList lines = text.split('\n');
            QVERIFY(lines.takeLast().isEmpty()); // each line is ended
            QCOMPARE(lines.size(), rows);
            for (qsizetype row = 0; row < rows; ++row) {
                QStringList cells = lines.at(row).split(',');
                if (row < index.size())
                    QCOMPARE(cells.takeFirst().toDouble(), QString::number(index.at(row), 'g', 6).toDouble());
                QCOMPARE(cells.size(), columns.size());
                for (qsizetype k = 0; k < columns.size(); ++k) {
                    const QList<double>& column = columns.at(k);
                    QCOMPARE(cells.at(k), row < column.size() ? tarnis::plainNumber(column.at(row)) : QString());
                }
            }
        }
    }

    void csvOfNoDataIsEmpty()
    {
        QVERIFY(tarnis::csvOfSeries({}, {}).isEmpty());
        QVERIFY(tarnis::csvOfColumns({ 1.0, 2.0 }, {}).isEmpty());
        QVERIFY(tarnis::csvOfColumns({ 1.0, 2.0 }, { {}, {} }).isEmpty());
    }

    void rowsOfAMap_data()
    {
        QTest::addColumn<Rows>("rows");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << Rows() << "";
        QTest::newRow("one bin") << Rows { { 1.0 } } << "1\n";
        QTest::newRow("row 0 first") << Rows { { 1.0, 2.0 }, { 3.0, 4.0 } } << "1,2\n3,4\n";
        QTest::newRow("ragged") << Rows { { 1.0, 2.0, 3.0 }, {}, { 4.0 } } << "1,2,3\n\n4\n";
        QTest::newRow("six digits") << Rows { { 1234567.0, 123456.0, 0.1234567, -1e-7 } }
                                    << "1.23457e+06,123456,0.123457,-1e-07\n";
        QTest::newRow("no numbers") << Rows { { std::nan(""), std::numeric_limits<double>::infinity(), -0.0 } }
                                    << "nan,inf,0\n";
    }
    void rowsOfAMap()
    {
        QFETCH(Rows, rows);
        QTEST(tarnis::csvOfRows(rows), "text");
        QString spelt;
        for (const QList<double>& row : rows) {
            QStringList bins;
            for (const double value : row)
                bins.append(QStringLiteral("%1").arg(value, 0, 'g', -1, QLatin1Char(' ')));
            spelt += bins.join(',') + '\n';
        }
        QCOMPARE(tarnis::csvOfRows(rows), spelt);
    }
};

QTEST_APPLESS_MAIN(TestCsvText)
#include "tst_csvtext.moc"
