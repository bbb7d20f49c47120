// Parsing of histogram replies for the live windows.
#include "support/cases.h"
#include "support/payload.h"
#include "support/support.h"

#include "tarnis/client/histogramwire_p.h"

#include <QLoggingCategory>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

/// A token of decimal digits with a sign and spaces around it, if it fits in 32 bits; 0 for anything else.
int speltOutInteger(const QString& token)
{
    const QString text = token.trimmed();
    qsizetype i = text.startsWith('-') || text.startsWith('+') ? 1 : 0;
    if (i == text.size())
        return 0;
    long long value = 0;
    for (; i < text.size(); ++i) {
        if (text.at(i) < '0' || text.at(i) > '9' || value > 10000000000)
            return 0;
        value = 10 * value + (text.at(i).unicode() - '0');
    }
    if (text.startsWith('-'))
        value = -value;
    return value < -2147483648LL || value > 2147483647LL ? 0 : int(value);
}

/// The counts, character by character.
std::optional<BinCounts> speltOutCounts(const QString& text)
{
    const QString word = "exported";
    qsizetype at = 0;
    while (at + word.size() <= text.size() && text.mid(at, word.size()) != word)
        ++at;
    if (at == 0 || at + word.size() > text.size())
        return std::nullopt;
    const qsizetype end = text.endsWith('\n') ? text.size() - 1 : text.size();
    QStringList tokens { QString() };
    for (qsizetype i = at + word.size() + 1; i < end; ++i) {
        if (text.at(i) == ' ')
            tokens.append(QString());
        else
            tokens.last() += text.at(i);
    }
    if (tokens.size() < 4)
        return std::nullopt;
    return BinCounts { speltOutInteger(tokens.at(0)), speltOutInteger(tokens.at(2)) };
}

} // namespace

class TestHistogramWire : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textLines()
    {
        QCOMPARE(replyTextLines("  a \n\n NG: b \n"), QStringList({ "a", "", "NG: b" }));
        QCOMPARE(replyTextLines(QString()), QStringList(""));
    }

    void readsDoublesWithAStride()
    {
        const QByteArray payload = bytesOf({ 0, 1, 2, 3, 4, 5, 6 }) + "xyz";
        QCOMPARE(doubleCount(payload), 7);
        QCOMPARE(stridedDoubles(payload, 1, 3, 2), QList<double>({ 1, 4 }));
        QCOMPARE(stridedDoubles(payload, 2, 1, 4), QList<double>({ 2, 3, 4, 5 }));
        QCOMPARE(stridedDoubles(payload, 0, 2, 0), QList<double>());
        QCOMPARE(doubleCount("1234567"), 0);
    }

    void largestIgnoresNaN()
    {
        QCOMPARE(largest({ -3, -1, -2 }, 0.0), 0.0);
        QCOMPARE(largest({ -3, -1, -2 }, -3.0), -1.0);
        QCOMPARE(largest({ 1, notANumber, 2 }, 0.0), 2.0);
        QCOMPARE(largest({}, 0.5), 0.5);
    }

    void readsTheAxisInFrontOfPairs_data()
    {
        addColumns<QString, bool, QString>("text", "good", "left");
        QTest::newRow("plain") << "ok (0 10 5)" << true << "ok (0 10 5";
        QTest::newRow("line feed behind") << "ok (0 10 5)\n" << true << "ok (0 10 5";
        QTest::newRow("no closing parenthesis") << "ok (0 10 5" << true << "ok (0 10 5";
        QTest::newRow("first parenthesis first") << "(0 10 5)" << false << "(0 10 5)";
        QTest::newRow("none") << "ok 0 10 5" << false << "ok 0 10 5";
        QTest::newRow("two tokens") << "ok (0 10)\n" << false << "ok (0 10";
        QTest::newRow("four tokens") << "ok (0 10 5 )" << false << "ok (0 10 5 ";
        QTest::newRow("two blanks") << "ok (0  10 5)" << false << "ok (0  10 5";
        QTest::newRow("two line feeds") << "ok (0 10 5)\n\n" << true << "ok (0 10 5)\n";
        QTest::newRow("too many bins") << "ok (0 10 16777217)" << false << "ok (0 10 16777217";
        QTest::newRow("empty") << "" << false << "";
    }

    void readsTheAxisInFrontOfPairs()
    {
        QFETCH(QString, text);
        QFETCH(bool, good);
        QFETCH(QString, left);
        QCOMPARE(takePairAxis(text).has_value(), good);
        QCOMPARE(text, left);
    }

    void axisNumbers()
    {
        QString text = "a (1.5e1 -2 7)";
        const std::optional<PairAxis> axis = takePairAxis(text);
        QCOMPARE(axis->min, 15.0);
        QCOMPARE(axis->max, -2.0);
        QCOMPARE(axis->bins, 7);
        text = "a (x y 99999999999)"; // conversions that fail give 0
        QCOMPARE(takePairAxis(text)->bins, 0);
    }

    void findsTheBinOfAPosition_data()
    {
        addColumns<double, int>("x", "bin");
        QTest::newRow("least") << 0.0 << 0;
        QTest::newRow("half rounds up") << 0.5 << 1;
        QTest::newRow("just below a half") << 0.49 << 0;
        QTest::newRow("largest that fits") << 9.49 << 9;
        QTest::newRow("the upper end") << 10.0 << -1;
        QTest::newRow("a half below zero") << -0.5 << -1;
        QTest::newRow("a little below zero") << -0.4 << 0;
        QTest::newRow("nan") << notANumber << -1;
        QTest::newRow("infinite") << infinite << -1;
    }

    void findsTheBinOfAPosition()
    {
        QFETCH(double, x);
        QFETCH(int, bin);
        QCOMPARE(binOf(x, PairAxis { 0, 10, 10 }).value_or(-1), bin);
    }

    void binsOfDegenerateAxes()
    {
        QVERIFY(!binOf(0.0, PairAxis { 0, 10, 0 }));
        QVERIFY(!binOf(0.0, PairAxis { 0, 10, -4 }));
        QVERIFY(!binOf(1.0, PairAxis { 1, 1, 10 }));
        QVERIFY(!binOf(2.0, PairAxis { 1, 1, 10 }));
    }

    void placesPairsInTheirBins()
    {
        const auto samples = pairSamples(bytesOf({ 2, 20, 0, 5, 7 }), PairAxis { 0, 4, 4 });
        QCOMPARE(samples->xs, QList<double>({ 2, 0, 0, 0 }));
        QCOMPARE(samples->ys, QList<double>({ 5, 0, 20, 0 }));
        QVERIFY(!pairSamples(bytesOf({ 0, 1, 4, 1 }), PairAxis { 0, 4, 4 }));
        QCOMPARE(pairSamples(bytesOf({ 0, 1, 0, 2, 0, 3 }), PairAxis { 0, 2, 2 })->ys, QList<double>({ 2, 0 }));
        QVERIFY(!pairSamples(bytesOf({ 0, 1 }), PairAxis { 0, 4, 0 }));
        QVERIFY(pairSamples(QByteArray(), PairAxis { 0, 4, -7 })->ys.isEmpty());
    }

    void tracesOfPairsFollowTheLibrarysCategory()
    {
        const auto reset = qScopeGuard([] { QLoggingCategory::setFilterRules(QString()); });
        QLoggingCategory::setFilterRules("*.debug=false\ntarnis.client.debug=true"); // the host traces only the library
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("\\[2\\] 2,20$"));
        pairSamples(bytesOf({ 2, 20 }), PairAxis { 0, 4, 4 });
    }

    void pairsMatchTheOracle()
    {
        auto generator = testing::seededGenerator(51);
        std::uniform_int_distribution<int> count(0, 12);
        std::uniform_real_distribution<double> number(-2, 12);
        for (int round = 0; round < 20000; ++round) {
            const PairAxis axis { std::round(number(generator)), std::round(number(generator)), count(generator) };
            QList<double> numbers;
            for (int i = count(generator); i > 0; --i)
                numbers.append(number(generator));
            // The oracle: plain lists, every step in the order of the format.
            QList<double> xs(axis.bins, 0.0);
            QList<double> ys(axis.bins, 0.0);
            bool good = true;
            for (int p = 0; p < numbers.size() / 2 && (p < axis.bins || axis.bins == 0) && good; ++p) {
                const double position = (numbers[2 * p] - axis.min) * axis.bins / (axis.max - axis.min);
                const double index = position < 0 ? std::ceil(position - 0.5) : std::floor(position + 0.5);
                good = index >= 0 && index < axis.bins;
                if (good) {
                    xs[p] = numbers[2 * p];
                    ys[int(index)] = numbers[2 * p + 1];
                }
            }
            const auto samples = pairSamples(bytesOf(numbers), axis);
            QCOMPARE(samples.has_value(), good);
            if (good) {
                QCOMPARE(samples->xs, xs);
                QCOMPARE(samples->ys, ys);
            }
        }
    }

    void readsTheSizeOfAnExportedMap_data()
    {
        addColumns<QString, int, int>("text", "x", "y");
        QTest::newRow("plain") << "OK: exported 256 x 128 y\n" << 256 << 128;
        QTest::newRow("one character in front") << " exported 3 a 4 b" << 3 << 4;
        QTest::newRow("first") << "exported 3 a 4 b" << -1 << -1;
        QTest::newRow("absent") << "OK: 3 a 4 b" << -1 << -1;
        QTest::newRow("other case") << "OK: Exported 3 a 4 b" << -1 << -1;
        QTest::newRow("exactly one character dropped") << "OK: exported:3 a 4 b" << 3 << 4;
        QTest::newRow("two blanks shift the tokens") << "OK: exported  3 a 4" << 0 << 0;
        QTest::newRow("three tokens") << "OK: exported 3 a 4\n" << -1 << -1;
        QTest::newRow("five tokens") << "OK: exported 3 a 4 b c" << 3 << 4;
        QTest::newRow("beyond 32 bits") << "OK: exported 2147483648 a 4 b" << 0 << 4;
        QTest::newRow("negative") << "OK: exported -3 a -4 b" << -3 << -4;
        QTest::newRow("the first word counts") << "an exported exported 3 a 4" << 0 << 0;
    }

    void exportMatchesTheOracle()
    {
        auto generator = testing::seededGenerator(52);
        const QStringList pieces { "exported", " ", " ", " ", "3", "-4", "12", "2147483647", "2147483648", "x", "\n",
            "exporte", "Exported", "+7", "0x1", " 5", ":", "exported 6 x 7 y" };
        std::uniform_int_distribution<qsizetype> piece(0, pieces.size() - 1);
        std::uniform_int_distribution<int> length(0, 14);
        int reported = 0;
        for (int round = 0; round < 200000; ++round) {
            QString text;
            for (int i = length(generator); i > 0; --i)
                text += pieces.at(piece(generator));
            const std::optional<BinCounts> expected = speltOutCounts(text);
            const std::optional<BinCounts> counts = exportedCounts(text);
            QVERIFY2(counts.has_value() == expected.has_value(), qPrintable(text));
            if (!expected)
                continue;
            ++reported;
            QVERIFY2(counts->x == expected->x && counts->y == expected->y, qPrintable(text));
        }
        QVERIFY(reported > 10000);
    }

    void readsTheSizeOfAnExportedMap()
    {
        QFETCH(QString, text);
        QFETCH(int, x);
        QFETCH(int, y);
        const BinCounts counts = exportedCounts(text).value_or(BinCounts { -1, -1 });
        QCOMPARE(counts.x, x);
        QCOMPARE(counts.y, y);
    }

    void tracesEachPair_data()
    {
        addColumns<double, QString>("x", "line");
        QTest::newRow("within") << 2.0 << "[2] 2,1";
        QTest::newRow("lower end, rounded up") << -0.4 << "[0] -0.4,1";
        QTest::newRow("upper end") << 10.0 << "[10] 10,1";
        QTest::newRow("above") << 12.0 << "[12] 12,1";
        QTest::newRow("below") << -3.0 << "[-3] -3,1";
        QTest::newRow("beyond int") << 1e12 << "[1000000000000] 1e+12,1";
    }

    void tracesEachPair()
    {
        QFETCH(double, x);
        QFETCH(QString, line);
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QRegularExpression::escape(line) + '$'));
        pairSamples(bytesOf({ x, 1 }), { 0.0, 10.0, 10 });
    }
};

QTEST_APPLESS_MAIN(TestHistogramWire)
#include "tst_histogramwire.moc"
