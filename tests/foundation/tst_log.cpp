#include "foundation/logfixture.h"
#include "support/cases.h"
#include "tarnis/foundation/log.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <locale>
#include <memory>

#include <sys/syscall.h>
#include <unistd.h>

using namespace tarnis::testing;

namespace {

constexpr qint64 rotationSize = 0xA00000;

QByteArray threadText()
{
    return QByteArray::number(static_cast<qlonglong>(::syscall(SYS_gettid)), 16).rightJustified(8);
}

// A global locale that groups digits, as some hosts have.
struct GroupingPunctuation : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

class TestLog : public LogFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }
    void cleanup() { closelog(); }

    void isOffUntilItIsOpened()
    {
        QVERIFY(!log_is_enabled());
        closelog();
        openLog();
        QVERIFY(log_is_enabled());
        closelog();
        QVERIFY(!log_is_enabled());
    }

    void writesAnEmptyPairOfLinesAtTheStart()
    {
        openLog();
        closelog();
        openLog();
        closelog();
        QCOMPARE(fileContent(), QByteArray("\n\n\n\n"));
    }

    void writesALineInTheGivenFormat_data()
    {
        addColumns<QByteArray, QByteArray, int, QByteArray>("word", "file", "line", "expected");
        addCase("short name", QByteArray("DBG"), QByteArray("run.cpp"), 7,
            QByteArray("                  run.cpp:   7 TTTTTTTT [ DBG] text"));
        addCase("name of 25 characters", QByteArray("INFO"), QByteArray("abcdefghijklmnopqrstu.cpp"), 1234,
            QByteArray("abcdefghijklmnopqrstu.cpp:1234 TTTTTTTT [INFO] text"));
        addCase("longer name", QByteArray("ERR"), QByteArray("abcdefghijklmnopqrstuv.cpp"), 12345,
            QByteArray("abcdefghijklmnopqrstuv.cpp:12345 TTTTTTTT [ ERR] text"));
        addCase("one-letter word", QByteArray("<"), QByteArray("a"), 0,
            QByteArray("                        a:   0 TTTTTTTT [   <] text"));
    }
    void writesALineInTheGivenFormat()
    {
        QFETCH(QByteArray, word);
        QFETCH(QByteArray, file);
        QFETCH(int, line);
        QFETCH(QByteArray, expected);
        const QDateTime before = QDateTime::currentDateTime();
        openLog();
        __log__(0, word.constData(), file.constData(), line, "%s", "text");
        const QByteArray entry = lines().value(0);
        const QDateTime after = QDateTime::currentDateTime();

        const QDateTime time =
            QDateTime::fromString(QString::fromLatin1(entry.left(23)), QStringLiteral("yyyy/MM/dd HH:mm:ss.zzz"));
        QVERIFY2(time.isValid() && before <= time && time <= after, entry.constData());
        QCOMPARE(entry.mid(23), " " + expected.replace("TTTTTTTT", threadText()));
    }

    void ignoresTheGroupingOfTheGlobalLocale()
    {
        const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new GroupingPunctuation));
        openLog();
        __log__(0, "DBG", "run.cpp", 12345, "text");
        std::locale::global(previous);
        QVERIFY(lines().value(0).contains("run.cpp:12345 "));
    }

    void dropsLinesBelowTheMinimumLevel_data()
    {
        addColumns<int, QList<QByteArray>>("minimum", "expected");
        QTest::newRow("0 passes all") << 0 << QList<QByteArray> { "[ DBG] d", "[INFO] i", "[ ERR] e" };
        QTest::newRow("1 drops debug") << 1 << QList<QByteArray> { "[INFO] i", "[ ERR] e" };
        QTest::newRow("10 passes exactly 10") << 10 << QList<QByteArray> { "[INFO] i", "[ ERR] e" };
        QTest::newRow("11 drops 10") << 11 << QList<QByteArray> { "[ ERR] e" };
        QTest::newRow("30 passes errors") << 30 << QList<QByteArray> { "[ ERR] e" };
        QTest::newRow("31 drops all") << 31 << QList<QByteArray>();
    }
    void dropsLinesBelowTheMinimumLevel()
    {
        QFETCH(int, minimum);
        QFETCH(QList<QByteArray>, expected);
        openLog(minimum);
        LOG_DBG("%s", "d");
        LOG_INFO(std::string("i"));
        LOG_ERR(QStringLiteral("e"));
        QCOMPARE(messages(), expected);
    }

    void cutsAFormattedMessageAt8191Bytes_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : { 0, 8190, 8191, 8192, 9000 })
            QTest::addRow("%d characters", length) << length;
    }
    void cutsAFormattedMessageAt8191Bytes()
    {
        QFETCH(int, length);
        const std::string text(static_cast<std::size_t>(length), 'x');
        openLog();
        LOG_DBG("%s", text.c_str());
        LOG_DBG(text);
        const QList<QByteArray> written = messages();
        QCOMPARE(written.size(), 2);
        QCOMPARE(written.at(0), "[ DBG] " + QByteArray(qMin(length, 8191), 'x'));
        QCOMPARE(written.at(1), "[ DBG] " + QByteArray(length, 'x'));
    }

    void writesATextUnchanged_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("percent sign") << QByteArray("100%");
        QTest::newRow("formats") << QByteArray("%s %n %d");
        QTest::newRow("UTF-8") << QByteArray("Größe µ");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("zero inside") << QByteArray("a\0b", 3);
        QTest::newRow("9000 bytes") << QByteArray(9000, 'x');
    }
    void writesATextUnchanged()
    {
        QFETCH(QByteArray, text);
        openLog();
        LOG_INFO(text.toStdString());
        LOG_INFO(QString::fromUtf8(text));
        QCOMPARE(messages(), QList<QByteArray>(2, "[INFO] " + text));
    }

    void evaluatesNoArgumentWhileOff()
    {
        int evaluated = 0;
        const auto argument = [&] { return ++evaluated; };
        LOG_DBG("%d", argument());
        LOG_INFO("%d", argument());
        LOG_ERR("%d", argument());
        LOG_BLOCK("%d", argument());
        QCOMPARE(evaluated, 0);
    }

    void hasEveryLineOnDiskWhenTheCallReturns()
    {
        openLog();
        LOG_DBG("one");
        QVERIFY(fileContent().endsWith("] one\n"));
        LOG_DBG("two");
        QVERIFY(fileContent().endsWith("] two\n"));
    }

    void staysOffAfterAnUnwritablePath()
    {
        openLog(0, QStringLiteral("no such directory/run.log"));
        QVERIFY(!log_is_enabled());
        LOG_ERR("nowhere");
        openLog();
        LOG_ERR("here");
        QCOMPARE(messages(), QList<QByteArray> { "[ ERR] here" });
    }

    void opensAgainAfterClosing()
    {
        openLog();
        LOG_DBG("one");
        closelog();
        LOG_DBG("lost");
        openLog();
        LOG_DBG("two");
        closelog();
        QCOMPARE(fileContent().count("] one\n"), 1);
        QCOMPARE(fileContent().count("] two\n"), 1);
        QCOMPARE(fileContent().count("\n\n\n"), 1); // the pair of the second start
        QVERIFY(!fileContent().contains("lost"));
    }

    void replacesAnOpenStream()
    {
        openLog(0, QStringLiteral("first.log"));
        openLog(10, QStringLiteral("run.log"));
        LOG_DBG("below the second level");
        LOG_INFO("text");
        QCOMPARE(messages(), QList<QByteArray> { "[INFO] text" });
        QVERIFY(!fileContent(QStringLiteral("first.log")).contains("text"));
    }

    void rotatesAtTheExactByte_data()
    {
        addColumns<qint64, bool>("size", "rotates");
        QTest::newRow("10 MiB less 3") << rotationSize - 3 << false;
        QTest::newRow("10 MiB less 2") << rotationSize - 2 << false;
        QTest::newRow("10 MiB less 1") << rotationSize - 1 << true;
        QTest::newRow("10 MiB") << rotationSize << true;
    }
    void rotatesAtTheExactByte()
    {
        QFETCH(qint64, size);
        QFETCH(bool, rotates);
        makeFileOfSize(size);
        openLog();
        LOG_DBG("after");
        closelog();
        QCOMPARE(QFile::exists(path(QStringLiteral("run.1.log"))), rotates);
        if (!rotates) {
            QVERIFY(QFile(path()).size() > size + 2);
            QVERIFY(fileContent().startsWith("first"));
            return;
        }
        QCOMPARE(QFile(path(QStringLiteral("run.1.log"))).size(), size + 2);
        QVERIFY(fileContent(QStringLiteral("run.1.log")).endsWith("\n\n"));
        QVERIFY(!fileContent().startsWith('\n'));
        QCOMPARE(fileContent().count('\n'), 1);
    }

    void rotationShiftsTenFiles()
    {
        for (int i = 1; i <= 10; ++i)
            makeFile(QStringLiteral("run.%1.log").arg(i), QByteArray::number(i));
        makeFileOfSize(rotationSize);
        openLog();
        closelog();
        for (int i = 2; i <= 10; ++i)
            QCOMPARE(fileContent(QStringLiteral("run.%1.log").arg(i)), QByteArray::number(i - 1));
        QVERIFY(fileContent(QStringLiteral("run.1.log")).startsWith("first"));
        QVERIFY(!QFile::exists(path(QStringLiteral("run.11.log"))));
        QCOMPARE(fileContent(), QByteArray());
    }

    void numberGoesBeforeTheLastDotOfTheWholePath_data()
    {
        addColumns<QString, QString>("name", "numbered");
        addCase("one dot", "a.log", "a.1.log");
        addCase("two dots", "a.b.log", "a.b.1.log");
        addCase("dot at the end", "a.", "a.1.");
        addCase("dot in the directory only", "d.x/run", "d.1.x/run");
    }
    void numberGoesBeforeTheLastDotOfTheWholePath()
    {
        QFETCH(QString, name);
        QFETCH(QString, numbered);
        QVERIFY(QDir(m_dir->path()).mkpath(QFileInfo(path(name)).path()));
        QVERIFY(QDir(m_dir->path()).mkpath(QFileInfo(path(numbered)).path()));
        makeFile(name, "first");
        QVERIFY(QFile::resize(path(name), rotationSize));
        openLog(0, name);
        closelog();
        QCOMPARE(fileContent(name), QByteArray());
        QVERIFY(fileContent(numbered).startsWith("first"));
    }

    void passesOverARenameThatFails()
    {
        QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("d.x")));
        makeFile(QStringLiteral("d.x/run"), "first");
        QVERIFY(QFile::resize(path(QStringLiteral("d.x/run")), rotationSize));
        openLog(0, QStringLiteral("d.x/run")); // would go to d.1.x/run, whose directory does not exist
        LOG_DBG("text");
        closelog();
        QVERIFY(fileContent(QStringLiteral("d.x/run")).startsWith("first"));
        QVERIFY(fileContent(QStringLiteral("d.x/run")).endsWith("] text\n"));
    }

    void strprintfCutsAt8189Bytes_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : { 0, 8188, 8189, 8190, 9000 })
            QTest::addRow("%d characters", length) << length;
    }
    void strprintfCutsAt8189Bytes()
    {
        QFETCH(int, length);
        const QByteArray text(length, 'x');
        QCOMPARE(strprintf("%s", text.constData()), QString::fromLatin1(text.left(8189)));
    }

    void strprintfTakesUtf8() { QCOMPARE(strprintf("%s[%d] %%", "Größe", 3), QStringLiteral("Größe[3] %")); }
};

QTEST_APPLESS_MAIN(TestLog)
#include "tst_log.moc"
