// Formatting of replies in the console.
#include "app/language.h"
#include "server/replytext.h"
#include "support/cases.h"
#include "support/payload.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace console;
using namespace tarnis::testing;

class TestConsoleReplyText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(setLanguage(QStringLiteral("en"))); }
    void cleanup() { setLanguage(QStringLiteral("en")); }

    void recognisesKindsOfReplies()
    {
        QCOMPARE(replyKind(QStringLiteral("NG:no")), ReplyKind::Refused);
        QCOMPARE(replyKind(QStringLiteral("OK:")), ReplyKind::Accepted);
        QCOMPARE(replyKind(QStringLiteral(" NG:")), ReplyKind::Plain);
        QCOMPARE(replyKind(QString()), ReplyKind::Plain);
    }

    void sumsUpNumbers()
    {
        const BinarySummary summary = summarizeBinary(bytesOf({ 3.0, -1.5, 7.0 }));
        QCOMPARE(summary.count, qsizetype(3));
        QCOMPARE(summary.sum, 8.5);
        QCOMPARE(summary.least, -1.5);
        QCOMPARE(summary.largest, 7.0);
        QCOMPARE(summary.first, (QList<double> { 3.0, -1.5, 7.0 }));
        QCOMPARE(binaryText(summary), QStringLiteral("3 values\nsum 8.5, minimum -1.5, maximum 7\nfirst: 3 -1.5 7"));
    }

    void aNegativeBlockHasANegativeLargest()
    {
        const BinarySummary summary = summarizeBinary(bytesOf({ -3.0, -2.0 }));
        QCOMPARE(summary.least, -3.0);
        QCOMPARE(summary.largest, -2.0);
    }

    void anEmptyBlockHasNoNumbers()
    {
        QCOMPARE(binaryText(summarizeBinary(QByteArray())), QStringLiteral("0 values"));
        QCOMPARE(binaryText(summarizeBinary(QByteArray(3, 'x'))),
            QStringLiteral("0 values, plus 3 bytes of an incomplete value"));
    }

    void spareBytesAreCounted()
    {
        const BinarySummary summary = summarizeBinary(bytesOf({ 1.0 }) + "x");
        QCOMPARE(summary.count, qsizetype(1));
        QCOMPARE(summary.spareBytes, qsizetype(1));
        QVERIFY(binaryText(summary).startsWith(QStringLiteral("1 value, plus 1 byte of an incomplete value")));
    }

    void showsTheFirstValuesOnly()
    {
        const BinarySummary summary = summarizeBinary(bytesOf(QList<double>(firstCount + 1, 2.0)));
        QCOMPARE(summary.first.size(), qsizetype(firstCount));
        QVERIFY(binaryText(summary).endsWith(QStringLiteral("2 ...")));
        QVERIFY(!binaryText(summarizeBinary(bytesOf(QList<double>(firstCount, 2.0)))).contains(QStringLiteral("...")));
    }

    void leavesOutWhatIsNotFinite()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        const BinarySummary summary = summarizeBinary(bytesOf({ nan, 1.0, infinity, -infinity, 2.0 }));
        QCOMPARE(summary.notFinite, qsizetype(3));
        QCOMPARE(summary.sum, 3.0);
        QCOMPARE(summary.least, 1.0);
        QCOMPARE(summary.largest, 2.0);
        QVERIFY(binaryText(summarizeBinary(bytesOf({ nan }))).contains(QStringLiteral("no finite value")));
    }

    void keepsSmallCountsBesideLargeOnes()
    {
        QList<double> values { 1e16 };
        values.append(QList<double>(1000, 1.0));
        values.append(-1e16);
        QCOMPARE(summarizeBinary(bytesOf(values)).sum, 1000.0);
    }

    void aSumBeyondTheRangeIsInfinite()
    {
        const double most = std::numeric_limits<double>::max();
        QVERIFY(std::isinf(summarizeBinary(bytesOf({ most, most })).sum));
    }

    void makesTextVisible_data()
    {
        addColumns<QByteArray, QString>("reply", "text");
        QTest::newRow("plain") << QByteArray("OK:\nline\n") << QStringLiteral("OK:\nline");
        QTest::newRow("one line feed at the end goes") << QByteArray("a\n\n") << QStringLiteral("a\n");
        QTest::newRow("carriage returns") << QByteArray("a\r\nb") << QStringLiteral("a\nb");
        QTest::newRow("control bytes") << QByteArray("a\0b\x1b\x7f", 5) << QString::fromUtf8("a\u2400b\u241b\u2421");
        QTest::newRow("tab") << QByteArray("a\tb") << QStringLiteral("a\tb");
        QTest::newRow("UTF-8") << QByteArray("\xc2\xb5s") << QString::fromUtf8("\u00b5s");
        QTest::newRow("no UTF-8") << QByteArray("\xff") << QString(QChar::ReplacementCharacter);
        QTest::newRow("empty") << QByteArray() << QString();
    }
    void makesTextVisible()
    {
        QFETCH(QByteArray, reply);
        QFETCH(QString, text);
        QCOMPARE(visibleText(reply), text);
    }

    void leavesOutTheMiddleOfALongReply()
    {
        const QByteArray reply = QByteArray(50, 'a') + QByteArray(100, 'm') + QByteArray(50, 'z');
        QCOMPARE(visibleText(reply, 200), QString::fromLatin1(reply));
        const QString text = visibleText(reply, 100);
        QCOMPARE(text, QString(50, u'a') + QStringLiteral("\n[100 bytes omitted here]\n") + QString(50, u'z'));
    }

    void findsWhyACommandCannotBeSent_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("named"); // empty: it can
        addCase("plain", "stat", "");
        addCase("Latin-1", QString::fromUtf8("set \u00b5"), "");
        addCase("tab", "a\tb", "");
        addCase("empty", "", "no command");
        addCase("blanks", "  ", "no command");
        addCase("two lines", "a\nb", "one line");
        addCase("line separator", QString(QChar::LineSeparator) + "a", "one line");
        addCase("EOT", QString(QChar(4)), "control");
        addCase("beyond Latin-1", QString::fromUtf8("\u03b1"), QString::fromUtf8("\u03b1"));
        addCase("beyond 16 bits", QString::fromUtf8("\U0001F600"), QString::fromUtf8("\U0001F600"));
    }
    void findsWhyACommandCannotBeSent()
    {
        QFETCH(QString, command);
        QFETCH(QString, named);
        const QString problem = commandProblem(command);
        QCOMPARE(problem.isEmpty(), named.isEmpty());
        QVERIFY2(problem.contains(named), qPrintable(problem));
    }

    void countsBytes()
    {
        QCOMPARE(byteCountText(0), QStringLiteral("0 bytes"));
        QCOMPARE(byteCountText(1), QStringLiteral("1 byte"));
        QCOMPARE(byteCountText(1048575), QStringLiteral("1,048,575 bytes"));
        QCOMPARE(byteCountText(1048576), QStringLiteral("1.0 MiB"));
    }

    void formatsInGerman()
    {
        setLanguage(QStringLiteral("de"));
        QCOMPARE(byteCountText(1), QStringLiteral("1 Byte"));
        QCOMPARE(byteCountText(1048575), QStringLiteral("1.048.575 Bytes"));
        QCOMPARE(byteCountText(3250586), QStringLiteral("3,1 MiB"));
        QCOMPARE(binaryText(summarizeBinary(bytesOf({ 3.0, -1.5 }))),
            QString::fromUtf8("2 Werte\nSumme 1.5, kleinster -1.5, gr\u00f6\u00dfter 3\nerste: 3 -1.5"));
        QCOMPARE(binaryText(summarizeBinary(bytesOf({ 1.0 }))).section(u'\n', 0, 0), QStringLiteral("1 Wert"));
        QCOMPARE(commandProblem(QString()), QStringLiteral("Es gibt keinen Befehl."));
        QVERIFY(visibleText(QByteArray(300, 'x'), 100).contains(QStringLiteral("[200 Bytes hier ausgelassen]")));
    }

    void recognisesHistogramCommands()
    {
        QVERIFY(looksBinary(QStringLiteral("hist1d total")));
        QVERIFY(looksBinary(QStringLiteral(" hist2d")));
        QVERIFY(looksBinary(QStringLiteral("rxfile /data/notes.txt")));
        QVERIFY(requestsFile(QStringLiteral("rxfile /data/notes.txt")));
        QVERIFY(!requestsFile(QStringLiteral("hist1d rxfile")));
        QVERIFY(!looksBinary(QStringLiteral("hists")));
        QVERIFY(!looksBinary(QStringLiteral("help hist1d")));
    }

    void readsTheStateOfTheRun_data()
    {
        addColumns<QString, QString>("command", "reply");
        QTest::addColumn<int>("state"); // 1 running, 0 not, -1 unknown
        addCase("start", "start", "OK:\nrun: 1\n", 1);
        addCase("start refused", "start", "NG:running\n", -1);
        addCase("stop", "stop", "OK:\n", 0);
        addCase("stat running", "stat", "OK:\nstate: RUNNING\n", 1);
        addCase("stat stopped", "stat", "OK:\nstate: STOPPED\n", 0);
        addCase("stat without a state", "stat", "OK:\nevents: 1\n", -1);
        addCase("another state", "stat", "state: PAUSED\n", -1);
        addCase("another command", "restart", "state: RUNNING\n", -1);
    }
    void readsTheStateOfTheRun()
    {
        QFETCH(QString, command);
        QFETCH(QString, reply);
        QFETCH(int, state);
        const std::optional<bool> isRunning = runStateFromReply(command, reply);
        QCOMPARE(isRunning ? int(*isRunning) : -1, state);
    }
};

QTEST_GUILESS_MAIN(TestConsoleReplyText)
#include "tst_consolereplytext.moc"
