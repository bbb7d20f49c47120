#include "support/cases.h"
#include "tarnis/foundation/helpers.h"

#include "support/helpersoracle.h"
#include "support/support.h"

#include <QDate>
#include <QDir>
#include <QLabel>
#include <QTest>

#include <cfloat>
#include <cmath>
#include <limits>

using namespace tarnis::testing;

Q_DECLARE_METATYPE(QList<QString>)

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

class TestHelpers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QVERIFY(setNumberFormat('g', 6)); }

    void capitalizesTheFirstLetter_data()
    {
        addColumns<QString, QString>("text", "expected");
        addCase("empty", "", "");
        addCase("one letter", "a", "A");
        addCase("rest stays", "aBC dE", "ABC dE");
        addCase("no letter", "1abc", "1abc");
        addCase("umlaut", "äb", "Äb");
        addCase("sharp s has no single capital", "ßa", "ßa");
    }
    void capitalizesTheFirstLetter()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(capitalize(text), expected);
    }

    void numStrStripsTrailingZeros_data()
    {
        addColumns<double, char, int, QString>("value", "format", "precision", "expected");
        QTest::newRow("zeros behind digits") << 1.5 << 'f' << 3 << "1.5";
        QTest::newRow("zeros and point") << 20.0 << 'f' << 2 << "20";
        QTest::newRow("zeros before the point stay") << 1200.0 << 'f' << 3 << "1200";
        QTest::newRow("no point") << 1200.0 << 'f' << 0 << "1200";
        QTest::newRow("negative") << -0.25 << 'f' << 5 << "-0.25";
        QTest::newRow("zero") << 0.0 << 'f' << 3 << "0";
        QTest::newRow("exponent stays unstripped") << 100.0 << 'e' << 2 << "1.00e+02";
        QTest::newRow("capital exponent stays") << 100.0 << 'E' << 2 << "1.00E+02";
        QTest::newRow("engineering") << 1500.0 << 'n' << 6 << "1.5e+3";
        QTest::newRow("engineering keeps mantissa zeros") << 10000.0 << 'n' << 6 << "10e+3";
        QTest::newRow("engineering without exponent") << 20.0 << 'n' << 6 << "20";
        QTest::newRow("infinite") << infinity << 'f' << 3 << "inf";
    }
    void numStrStripsTrailingZeros()
    {
        QFETCH(double, value);
        QFETCH(char, format);
        QFETCH(int, precision);
        QFETCH(QString, expected);
        QCOMPARE(numStr(value, format, precision), expected);
    }

    void numStrUsesTheStoredFormat_data()
    {
        addColumns<char, int, bool>("format", "precision", "accepted");
        QTest::addColumn<QString>("expected"); // of 1234.5678
        QTest::newRow("f") << 'f' << 2 << true << "1234.57";
        QTest::newRow("e") << 'e' << 2 << true << "1.23e+03";
        QTest::newRow("E") << 'E' << 1 << true << "1.2E+03";
        QTest::newRow("g") << 'g' << 5 << true << "1234.6";
        QTest::newRow("G") << 'G' << 2 << true << "1.2E+03";
        QTest::newRow("n") << 'n' << 3 << true << "1.23e+3";
        QTest::newRow("x is refused, precision too") << 'x' << 9 << false << "1234.57";
        QTest::newRow("F is refused") << 'F' << 1 << false << "1234.57";
        QTest::newRow("N is refused") << 'N' << 1 << false << "1234.57";
        QTest::newRow("zero is refused") << '\0' << 1 << false << "1234.57";
    }
    void numStrUsesTheStoredFormat()
    {
        QFETCH(char, format);
        QFETCH(int, precision);
        QFETCH(bool, accepted);
        QFETCH(QString, expected);
        QCOMPARE(numStr(1234.5678), QStringLiteral("1234.57")); // g and 6 at first
        QCOMPARE(setNumberFormat(format, precision), accepted);
        QCOMPARE(numStr(1234.5678), expected);
    }

    void engineersNumbers_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected"); // precision 6
        QTest::newRow("thousand and a half") << 1500.0 << "1.5e+3";
        QTest::newRow("million") << 1000000.0 << "1e+6";
        QTest::newRow("two thousandths") << 0.002 << "2e-3";
        QTest::newRow("largest without exponent") << 999.0 << "999";
        QTest::newRow("thousand") << 1000.0 << "1e+3";
        QTest::newRow("zero") << 0.0 << "0";
        QTest::newRow("negative zero") << -0.0 << "0";
        QTest::newRow("one") << 1.0 << "1";
        QTest::newRow("below one") << 0.5 << "500e-3";
        QTest::newRow("negative") << -2500.0 << "-2.5e+3";
        QTest::newRow("not whole") << 12.25 << "12.25";
        QTest::newRow("cut by the precision") << 123.456789 << "123.457";
        QTest::newRow("largest double") << DBL_MAX << "179.769e+306";
        QTest::newRow("smallest double") << std::numeric_limits<double>::denorm_min() << "4.94066e-324";
        QTest::newRow("infinite") << infinity << "inf";
        QTest::newRow("negative infinite") << -infinity << "-inf";
        QTest::newRow("not a number") << notANumber << "nan";
    }
    void engineersNumbers()
    {
        QFETCH(double, value);
        QFETCH(QString, expected);
        QCOMPARE(engineeringNumber(value, 6), expected);
    }

    void trimsLists()
    {
        const QList<QString> ragged { " a", "b\n", "\t", "", " c d " };
        const QList<QString> smooth { "a", "b", "", "", "c d" };
        QList<QString> list = ragged;
        QCOMPARE(&trim(list), &list);
        QCOMPARE(list, smooth);
        list = ragged;
        QCOMPARE(trimmed(list), smooth);
        QCOMPARE(list, ragged);
    }

    void findsTheValueOfAKey_data()
    {
        addColumns<QList<QString>, bool>("list", "trimResult");
        QTest::addColumn<QString>("expected"); // of key a, separator =, default " d "
        QTest::newRow("longer key before") << QList<QString> { "ab=1", "a=2" } << false << "2";
        QTest::newRow("first wins") << QList<QString> { "a=1", "a=2" } << false << "1";
        QTest::newRow("blanks stay") << QList<QString> { "a= 1 " } << false << " 1 ";
        QTest::newRow("blanks go") << QList<QString> { "a= 1 " } << true << "1";
        QTest::newRow("case counts") << QList<QString> { "A=1" } << false << " d ";
        QTest::newRow("only at the front") << QList<QString> { " a=1" } << false << " d ";
        QTest::newRow("default trimmed") << QList<QString> {} << true << "d";
        QTest::newRow("empty value") << QList<QString> { "a=" } << false << "";
        QTest::newRow("separator inside the value") << QList<QString> { "a=b=c" } << false << "b=c";
    }
    void findsTheValueOfAKey()
    {
        QFETCH(QList<QString>, list);
        QFETCH(bool, trimResult);
        QFETCH(QString, expected);
        QCOMPARE(valueOf(list, "a", "=", " d ", trimResult), expected);
    }

    void filtersByPrefix_data()
    {
        addColumns<QString, QList<QString>>("prefix", "expected");
        addCase("something must follow", "run", QList<QString> { "run1", "runs" });
        addCase("a piece of an expression", "r.n", QList<QString> { "run1", "runs" });
        addCase("no group: the last piece alone needs more", "x|run",
            QList<QString> { "run1", "runs", "arun1", "xb", "x" });
        addCase("empty", "", QList<QString> { "run", "run1", "runs", "arun1", "xb", "x", "%1a" });
        addCase("not an expression", "(", QList<QString> {});
        addCase("place marker", "%1", QList<QString> { "%1a" });
    }
    void filtersByPrefix()
    {
        QFETCH(QString, prefix);
        QFETCH(QList<QString>, expected);
        const QList<QString> list { "run", "run1", "runs", "arun1", "xb", "x", "%1a" };
        QCOMPARE(startsWith(list, prefix), expected);
    }

    void splitsAtTheSeparatorUpToALimit_data()
    {
        addColumns<QString, QString, int, QList<QString>>("text", "separator", "maxParts", "expected");
        addCase("no limit", "a,b,c", ",", 0, QList<QString> { "a", "b", "c" });
        addCase("two parts", "a,b,c", ",", 2, QList<QString> { "a", "b,c" });
        addCase("three parts", "a,b,c", ",", 3, QList<QString> { "a", "b", "c" });
        addCase("more parts than there are", "a,b", ",", 9, QList<QString> { "a", "b" });
        addCase("one part", " a,b ", ",", 1, QList<QString> { "a,b" });
        addCase("negative", " a,b ", ",", -1, QList<QString> { "a,b" });
        addCase("separator in front", ",a", ",", 0, QList<QString> { ",a" });
        addCase("adjacent separators end it", "a,,b,c", ",", 0, QList<QString> { "a", ",b,c" });
        addCase("separator at the end", "a,", ",", 0, QList<QString> { "a", "" });
        addCase("rest is not trimmed again", "a, b , c", ",", 0, QList<QString> { "a", " b ", " c" });
        addCase("two characters leave the second", "a::b::c", "::", 0, QList<QString> { "a", ":b", ":c" });
        addCase("case counts", "aXbxc", "x", 0, QList<QString> { "aXb", "c" });
        addCase("empty text", "", ",", 0, QList<QString> { "" });
        addCase("blanks only", "  ", ",", 0, QList<QString> { "" });
        addCase("empty separator", "ab", "", 0, QList<QString> { "ab" });
    }
    void splitsAtTheSeparatorUpToALimit()
    {
        QFETCH(QString, text);
        QFETCH(QString, separator);
        QFETCH(int, maxParts);
        QFETCH(QList<QString>, expected);
        QCOMPARE(split(text, separator, maxParts), expected);
    }

    void sortsByLocale()
    {
        QList<QString> list { "b", "a", "", "c", "a" };
        QCOMPARE(&localeAwareSort(list), &list);
        QCOMPARE(list, (QList<QString> { "", "a", "a", "b", "c" }));
        list = { "Zebra", "apple", "Äpfel", "10", "9" };
        localeAwareSort(list);
        for (qsizetype i = 1; i < list.size(); ++i)
            QVERIFY(QString::localeAwareCompare(list.at(i - 1), list.at(i)) <= 0);
    }

    void parsesARunDirectory_data()
    {
        addColumns<QString, bool, QString, int, QDate>("name", "matches", "prefix", "run", "date");
        const QDate day(2024, 1, 31);
        QTest::newRow("ordinary") << "data000123_20240131" << true << "data" << 123 << day;
        QTest::newRow("last six digits are the run") << "data12000123_20240131" << true << "data12" << 123 << day;
        QTest::newRow("prefix of one digit") << "1000123_20240131" << true << "1" << 123 << day;
        QTest::newRow("prefix with underscore") << "a_b_000001_20240131" << true << "a_b_" << 1 << day;
        QTest::newRow("invalid month") << "data000123_20241331" << true << "data" << 123 << QDate();
        QTest::newRow("no prefix") << "000123_20240131" << false << "" << 0 << QDate();
        QTest::newRow("no underscore") << "data00012320240131" << false << "" << 0 << QDate();
        QTest::newRow("five digits of run") << "data00123_20240131" << false << "" << 0 << QDate();
        QTest::newRow("something behind") << "data000123_20240131a" << false << "" << 0 << QDate();
        QTest::newRow("digit behind") << "data000123_202401310" << false << "" << 0 << QDate();
        QTest::newRow("line feed behind") << "data000123_20240131\n" << false << "" << 0 << QDate();
        QTest::newRow("empty") << "" << false << "" << 0 << QDate();
    }
    void parsesARunDirectory()
    {
        QFETCH(QString, name);
        QFETCH(bool, matches);
        QFETCH(QString, prefix);
        QFETCH(int, run);
        QFETCH(QDate, date);
        QString gotPrefix;
        int gotRun = 0;
        QDate gotDate;
        QCOMPARE(getRunDirInfo(name, &gotPrefix, &gotRun, &gotDate), matches);
        QCOMPARE(gotPrefix, prefix);
        QCOMPARE(gotRun, run);
        QCOMPARE(gotDate, date);
    }

    void runDirectoryOutputsMayBeNull()
    {
        QVERIFY(getRunDirInfo("data000123_20240131", nullptr, nullptr, nullptr));
        QVERIFY(!getRunDirInfo("data", nullptr, nullptr, nullptr));
    }

    void refusedRunDirectoryWritesNothing()
    {
        QString prefix = "before";
        int run = 7;
        QDate date(2000, 1, 1);
        QVERIFY(!getRunDirInfo("data", &prefix, &run, &date));
        QCOMPARE(prefix, QStringLiteral("before"));
        QCOMPARE(run, 7);
        QCOMPARE(date, QDate(2000, 1, 1));
    }

    void enablesAndDisablesAWidget()
    {
        QLabel widget;
        widget.setStyleSheet("color:red;");
        setEnabled(&widget, false);
        QVERIFY(!widget.isEnabled());
        QCOMPARE(widget.styleSheet(), QStringLiteral("color:gray; background-color:rgb(240,240,240);"));
        setEnabled(&widget, true);
        QVERIFY(widget.isEnabled());
        QCOMPARE(widget.styleSheet(), QString());
        setEnabled(nullptr, true);
    }

    void storesTheSaveDirectory()
    {
        QCOMPARE(getSaveDir(), QDir::currentPath());
        setSaveFilePath("plain.csv");
        QCOMPARE(getSaveDir(), QDir::currentPath());
        setSaveFilePath("/data/run/plot.png");
        QCOMPARE(getSaveDir(), QStringLiteral("/data/run/"));
        setSaveFilePath("plain.csv");
        QCOMPARE(getSaveDir(), QStringLiteral("/data/run/"));
        setSaveFilePath("/");
        QCOMPARE(getSaveDir(), QStringLiteral("/"));
        setSaveFilePath("relative/");
        QCOMPARE(getSaveDir(), QStringLiteral("relative/"));
    }

    void numbersAgreeWithTheOracle()
    {
        auto generator = seededGenerator(1);
        std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
        std::uniform_int_distribution<int> exponent(-320, 307);
        std::uniform_int_distribution<int> nearby(-6, 7);
        std::uniform_int_distribution<int> precision(1, 12);
        const char formats[] = { 'E', 'G', 'e', 'f', 'g', 'n' };
        for (int i = 0; i < 20000; ++i) {
            const int power = i % 2 == 0 ? exponent(generator) : nearby(generator);
            const int digits = precision(generator);
            double value = mantissa(generator) * std::pow(10.0, power);
            // Only integers of few digits: Qt and the oracle's snprintf may round ties differently and show negative
            // zero differently.
            if (i % 3 == 0 && std::abs(power) < 10)
                value = std::fmod(std::round(value), std::pow(10.0, digits)) + 0.0;
            const char format = formats[i % 6];
            if (format == 'f' && std::abs(value) > 1e300)
                continue; // wider than the oracle's buffer
            const std::string got = numStr(value, format, digits).toStdString();
            const std::string expected = oracle::numStr(value, format, digits);
            QVERIFY2(got == expected,
                qPrintable(QStringLiteral("%1 %2 %3: %4, not %5")
                               .arg(value, 0, 'g', 17)
                               .arg(QLatin1Char(format))
                               .arg(digits)
                               .arg(got.c_str(), expected.c_str())));
        }
    }

    void splitAgreesWithTheOracle()
    {
        auto generator = seededGenerator(2);
        std::uniform_int_distribution<int> length(0, 20);
        std::uniform_int_distribution<int> letter(0, 3);
        std::uniform_int_distribution<int> parts(-1, 6);
        const auto word = [&](int size) {
            std::string text;
            for (int i = 0; i < size; ++i)
                text += "ab, "[letter(generator)];
            return text;
        };
        for (int i = 0; i < 5000; ++i) {
            const std::string text = word(length(generator));
            const std::string separator = word(1 + i % 2);
            const int maxParts = parts(generator);
            std::vector<std::string> got;
            const QList<QString> list =
                split(QString::fromStdString(text), QString::fromStdString(separator), maxParts);
            for (const QString& part : list)
                got.push_back(part.toStdString());
            QVERIFY2(got == oracle::split(text, separator, maxParts),
                qPrintable(
                    QStringLiteral("[%1] at [%2], %3 parts").arg(text.c_str(), separator.c_str()).arg(maxParts)));
        }
    }

    void runDirectoriesAgreeWithTheOracle()
    {
        auto generator = seededGenerator(3);
        std::uniform_int_distribution<int> letter(0, 9);
        std::uniform_int_distribution<int> kind(0, 11);
        std::uniform_int_distribution<int> length(0, 3);
        for (int i = 0; i < 20000; ++i) {
            std::string name(static_cast<std::size_t>(length(generator)), 'r');
            for (int k = 0; k < 15; ++k)
                name += k == 6 ? '_' : static_cast<char>('0' + letter(generator));
            if (kind(generator) == 0)
                name.insert(static_cast<std::size_t>(kind(generator)), 1, "a_\n7"[i % 4]);
            QString prefix;
            int run = 0;
            QDate date;
            const bool matches = getRunDirInfo(QString::fromStdString(name), &prefix, &run, &date);
            const oracle::RunDir expected = oracle::runDirInfo(name);
            QVERIFY2(matches == expected.matches, name.c_str());
            QCOMPARE(prefix.toStdString(), expected.prefix);
            QCOMPARE(run, expected.run);
            QCOMPARE(date, matches ? QDate(expected.year, expected.month, expected.day) : QDate());
        }
    }
};

QTEST_MAIN(TestHelpers)
#include "tst_helpers.moc"
