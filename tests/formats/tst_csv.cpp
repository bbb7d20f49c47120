// CSV files: exact round trips, tables of other programs, and errors with their position.
#include "datasets.h"
#include "support/cases.h"

#include <tarnis/formats/csv.h>
#include <tarnis/formats/formats.h>

#include <QRegularExpression>
#include <QTemporaryDir>

#include <cmath>

using namespace tarnis;
using namespace tarnis::testing;

Q_DECLARE_METATYPE(tarnis::Dataset)

class TestCsv : public QObject {
    Q_OBJECT
private:
    static Dataset read(const QByteArray& text)
    {
        const DatasetResult result = decodeCsv(text);
        if (!result.error.isEmpty())
            qWarning("%s", qUtf8Printable(result.error));
        return result.data;
    }
    static QStringList lines(const QByteArray& text)
    {
        return QString::fromUtf8(text).split('\n', Qt::SkipEmptyParts).filter(QRegularExpression("^[^#]"));
    }

private Q_SLOTS:
    void readsBackBitForBit_data()
    {
        QTest::addColumn<Dataset>("data");
        QTest::newRow("one curve over bin numbers") << curves(1, 500);
        QTest::newRow("one value") << curves(1, 1);
        QTest::newRow("described") << described(curves(1, 20));
        Dataset data = described(curves(3, 40));
        data.x.values = uniformEdges(0.1, 40000.0, 40);
        QTest::newRow("three curves over even edges") << data;
        data.rowNames = QStringList { "module 0", "a,b", "say \"c\"" };
        QTest::newRow("named curves") << data;
        data.errors = awkwardNumbers(120, 9);
        QTest::newRow("named curves with errors") << data;
        data.x.values = awkwardNumbers(41, 3);
        QTest::newRow("uneven edges") << data;
        data.x.values = awkwardNumbers(40, 4);
        QTest::newRow("centres") << data;
        data = described(map(7, 5));
        QTest::newRow("map over bin numbers") << data;
        data.x.values = uniformEdges(-1.0 / 3.0, 7.7, 5);
        data.y.values = uniformEdges(1000.0, 0.0, 7);
        QTest::newRow("map over even edges") << data;
        data.errors = awkwardNumbers(35, 5);
        QTest::newRow("map with errors") << data;
        data.x.values = awkwardNumbers(6, 6);
        data.y.values = awkwardNumbers(8, 7);
        QTest::newRow("map over uneven edges") << data;
        data.x.values = awkwardNumbers(5, 6);
        data.y.values = awkwardNumbers(7, 7);
        QTest::newRow("map over centres") << data;
        data = map(2, 2);
        data.x.values = uniformEdges(0.0, 5.0, 2);
        QTest::newRow("map of two columns") << data;
        data.x.values = { 1.0, 2.0 };
        data.y.values = { 1.0, 2.0 };
        QTest::newRow("map of two columns over centres") << data;
        QTest::newRow("map of one bin") << map(1, 1);
        data = curves(2, 2);
        data.x.values = { 3.0, 9.0 };
        QTest::newRow("two bins over centres") << data;
        data.x.values = { 3.0, 9.0, 10.0 };
        QTest::newRow("two bins over uneven edges") << data;
    }
    void readsBackBitForBit()
    {
        QFETCH(Dataset, data);
        const Dataset back = read(encodeCsv(data));
        QVERIFY(sameBits(back.values, data.values));
        QVERIFY(sameBits(back.errors, data.errors));
        QVERIFY(sameBits(back.x.values, data.x.values));
        QVERIFY(sameBits(back.y.values, data.y.values));
        QCOMPARE(back, data);
    }

    void readsBackMissingValues()
    {
        Dataset data = curves(1, 3);
        data.values = { 1.0, std::numeric_limits<double>::quiet_NaN(), 3.0 };
        QVERIFY(sameBits(read(encodeCsv(data)).values, data.values));
    }

    void writesIntegersAsIntegers()
    {
        Dataset data = curves(1, 3);
        data.values = { 100000.0, 12345678.0, 0.5 };
        QCOMPARE(lines(encodeCsv(data)), (QStringList { "0,100000", "1,12345678", "2,0.5" }));
    }

    void writesTheCentreOfABin()
    {
        Dataset data = curves(1, 2);
        data.values = { 7.0, 8.0 };
        data.x.values = uniformEdges(0.0, 10.0, 2);
        QCOMPARE(lines(encodeCsv(data)), (QStringList { "2.5,7", "7.5,8" }));
    }

    void statesTitleSourceTimeAndUnits()
    {
        const QByteArray text = encodeCsv(described(curves(1, 2)));
        QVERIFY(text.contains("# title: Total, \"all\" modules\\nsecond line \\\\ end\n"));
        QVERIFY(text.contains("# source: 127.0.0.1:5000, run 3\n"));
        QVERIFY(text.contains("# time: 2026-03-10T12:30:15.250Z\n"));
        QVERIFY(text.contains("# x: Time, of flight\n# x unit: µs\n"));
        QVERIFY(text.contains("# values: rate\n# values unit: 1/s\n"));
    }

    void readsOneColumnOfCounts()
    {
        const Dataset data = read("# a comment\n3\n\n 4 \r\n5.5 # half\n");
        QCOMPARE(data.values, (std::vector<double> { 3.0, 4.0, 5.5 }));
        QCOMPARE(data.kind, Dataset::Kind::Curves);
        QCOMPARE(data.rows, 1);
        QVERIFY(data.x.values.empty());
    }

    void readsXAndCounts_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("comma") << QByteArray("1,30\n2.5,40\n");
        QTest::newRow("semicolon") << QByteArray("1;30\n2.5;40");
        QTest::newRow("tab") << QByteArray("1\t30\n2.5\t40\n");
        QTest::newRow("blanks") << QByteArray("  1   30\n2.5 40  \n");
        QTest::newRow("quoted") << QByteArray("\"1\",\"30\"\r\n\"2.5\",\"40\"\r\n");
        QTest::newRow("names and a byte order mark") << QByteArray("\xEF\xBB\xBFx,y\n1,30\n2.5,40\n");
    }
    void readsXAndCounts()
    {
        QFETCH(QByteArray, text);
        const Dataset data = read(text);
        QCOMPARE(data.x.values, (std::vector<double> { 1.0, 2.5 }));
        QCOMPARE(data.values, (std::vector<double> { 30.0, 40.0 }));
    }

    void readsNamedColumnsWithErrors()
    {
        const Dataset data = read("time,a,a error,b,error\n0,1,0.5,2,0.25\n1,3,0.1,4,0.2\n");
        QCOMPARE(data.rows, 2);
        QCOMPARE(data.rowNames, (QStringList { "a", "b" }));
        QCOMPARE(data.values, (std::vector<double> { 1.0, 3.0, 2.0, 4.0 }));
        QCOMPARE(data.errors, (std::vector<double> { 0.5, 0.1, 0.25, 0.2 }));
        QCOMPARE(data.x.name, QString("time"));
    }

    void knowsTheNamesOfErrors_data()
    {
        addColumns<QByteArray, int>("name", "rows");
        QTest::newRow("error") << QByteArray("error") << 1;
        QTest::newRow("errors, in capitals and blanks") << QByteArray(" ERRORS ") << 1;
        QTest::newRow("of a name") << QByteArray("a error") << 1;
        QTest::newRow("of a name of an array") << QByteArray("a_errors") << 1;
        QTest::newRow("another word") << QByteArray("terror") << 2;
    }
    void knowsTheNamesOfErrors()
    {
        QFETCH(QByteArray, name);
        const Dataset data = read("time,a," + name + "\n0,1,0.5\n1,3,0.1\n");
        QTEST(int(data.rows), "rows");
        QCOMPARE(data.errors.empty(), data.rows == 2);
    }

    void readsNamesThatBeginWithADigit()
    {
        const Dataset data = read("x1,2nd run\n0,1\n1,3\n");
        QCOMPARE(data.x.name, QString("x1"));
        QCOMPARE(data.values, (std::vector<double> { 1.0, 3.0 }));
    }

    void readsATableOfOtherProgramsAsAMap()
    {
        const Dataset data = read("4,0,3\n2,1,4\n4,2,6\n");
        QCOMPARE(data.kind, Dataset::Kind::Map);
        QCOMPARE(data.rows, 3);
        QCOMPARE(data.at(1, 2), 4.0);
    }

    void readsAnEmptyFieldAsMissing()
    {
        const Dataset data = read("0,1,\n1,2,3\n");
        QVERIFY(std::isnan(data.at(1, 0)));
        QCOMPARE(data.at(1, 1), 3.0);
    }

    void reportsWhatIsWrongAndWhere_data()
    {
        addColumns<QByteArray, QString>("text", "error");
        const QString empty = "it has no numbers: it must have one column of counts, or x and counts";
        addCase("empty", QByteArray(), empty);
        addCase("comments alone", QByteArray("# a\n\n#b"), empty);
        addCase("not a number", QByteArray("1\n2\nabc\n"),
            QString("line 3: field 1: 'abc' is not a number: correct it, or begin the "
                    "line with # if it is a comment"));
        addCase("not a number in the second field", QByteArray("0,1\n1,2x\n"),
            QString("line 2: field 2: '2x' is not a number: correct it, or begin the line with # if it is a "
                    "comment"));
        addCase("number beyond the range in the first line", QByteArray("1e999\n2\n"),
            QString("line 1: field 1: '1e999' is not a number: correct it, or begin the line with # if it is a "
                    "comment"));
        addCase("hexadecimal in the first line", QByteArray("0x10,0x20\n1,2\n"),
            QString("line 1: field 1: '0x10' is not a number: correct it, or begin the line with # if it is a "
                    "comment"));
        addCase("ragged", QByteArray("0,1\n1\n"),
            QString("line 2: fields: 1, in the lines before: 2; each line needs the same number of fields"));
        addCase("x does not rise", QByteArray("1,5\n1,6\n"),
            QString("the first of two columns is x and must rise: sort the lines by x"));
        addCase("binary", QByteArray("1\n\x01\xFF\0\n", 6),
            QString("line 2: field 1: '___' is not a number: correct it, or begin the line with "
                    "# if it is a comment"));
        addCase("header and table differ", QByteArray("# Tarnis data 1\n# x edges: 0 1 5 9\n0,1\n1,2\n"),
            QString("the axes of the header do not fit the table: restore the file"));
        addCase("bad time", QByteArray("# Tarnis data 1\n# time: noon\n0,1\n"),
            QString("line 2: 'noon' is not a time: write it as 2026-03-10T12:00:00Z"));
        addCase("bad edges", QByteArray("# Tarnis data 1\n# x edges: 0 b\n0,1\n"),
            QString("line 2: '0 b' is not a list of numbers: correct 'x edges'"));
    }
    void reportsWhatIsWrongAndWhere()
    {
        QFETCH(QByteArray, text);
        const DatasetResult result = decodeCsv(text);
        QTEST(result.error, "error");
        QVERIFY(result.data.values.empty());
    }

    void choosesTheFormatByTheName()
    {
        const QTemporaryDir folder;
        const Dataset data = curves(1, 4);
        for (const char* const name : { "a.csv", "b.npy", "c.CSV" }) {
            QCOMPARE(writeDataset(folder.filePath(name), data), QString());
            const DatasetResult back = readDataset(folder.filePath(name));
            QCOMPARE(back.error, QString());
            QVERIFY(sameBits(back.data.values, data.values));
            QCOMPARE(back.data.title, QString(name));
        }
        QCOMPARE(writeDataset(folder.filePath("a.png"), data),
            QString("the name does not end in .csv, .npy, .spe or .h5: rename the file"));
        QCOMPARE(readDataset(folder.filePath("none.csv")).error, QString("there is no such file"));
        QCOMPARE(writeDataset(folder.filePath("a.csv"), {}), QString("there are no values to write"));
        QCOMPARE(writeDataset(folder.filePath("a.spe"), map(2, 2)),
            QString("a .spe file has one spectrum of counts over channel numbers: choose another format"));
    }

    void edgesAndCentresFollowFromEachOther()
    {
        DataAxis axis;
        QCOMPARE(edgesOf(axis, 2), (std::vector<double> { 0.0, 1.0, 2.0 }));
        QCOMPARE(centresOf(axis, 2), (std::vector<double> { 0.5, 1.5 }));
        axis.values = { 1.0, 3.0, 7.0 };
        QCOMPARE(centresOf(axis, 2), (std::vector<double> { 2.0, 5.0 }));
        QCOMPARE(edgesOf(axis, 3), (std::vector<double> { 0.0, 2.0, 5.0, 9.0 }));
        axis.values = { 4.0 };
        QCOMPARE(edgesOf(axis, 1), (std::vector<double> { 3.5, 4.5 }));
    }
};

QTEST_GUILESS_MAIN(TestCsv)
#include "tst_csv.moc"
