#include "support/cases.h"
#include "tarnis/foundation/log.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <locale>
#include <memory>
#include <thread>
#include <vector>

#include <sys/syscall.h>
#include <unistd.h>

using namespace tarnis::testing;

namespace {

constexpr qint64 rotationSize = 0xA00000;

// Access to protected members.
struct Block : _LogBlock {
    using _LogBlock::_LogBlock;
    static long long nextNumber() { return _next_num; }
};

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

class TestLog : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;

    QString path(const QString& name = QStringLiteral("run.log")) const { return m_dir->filePath(name); }
    void openLog(int level = 0, const QString& name = QStringLiteral("run.log"))
    {
        initlog(path(name).toStdString(), level);
    }
    QByteArray fileContent(const QString& name = QStringLiteral("run.log")) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // Closes the log and returns its entries, without the leading empty lines and the final line feed.
    QList<QByteArray> lines()
    {
        closelog();
        QByteArray content = fileContent();
        if (!content.startsWith("\n\n") || !content.endsWith('\n'))
            return { "malformed file" };
        content = content.mid(2);
        content.chop(1);
        return content.isEmpty() ? QList<QByteArray>() : content.split('\n');
    }
    // Level and message of every entry.
    QList<QByteArray> messages()
    {
        QList<QByteArray> texts;
        const QList<QByteArray> entries = lines();
        for (const QByteArray& line : entries)
            texts.append(line.mid(line.indexOf('[')));
        return texts;
    }
    void makeFile(const QString& name, const QByteArray& content)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void makeFileOfSize(qint64 size)
    {
        makeFile(QStringLiteral("run.log"), "first");
        QVERIFY(QFile::resize(path(), size));
    }

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

    void blockWritesBothItsEnds()
    {
        openLog();
        const long long number = Block::nextNumber();
        {
            const Block block("run.cpp", 12, "name", 3);
            QCOMPARE(Block::nextNumber(), number + 1);
        }
        const QByteArray digits = QByteArray::number(number);
        const QList<QByteArray> written = lines();
        QCOMPARE(written.size(), 2);
        QVERIFY(written.at(0).endsWith("run.cpp:  12 " + threadText() + " [BLCK] name -> " + digits));
        QVERIFY(written.at(1).endsWith("run.cpp:  12 " + threadText() + " [   <]     <- " + digits));
    }

    void blockAcceptsATextOrAPrintfFormat()
    {
        openLog();
        const long long number = Block::nextNumber();
        {
            LOG_BLOCK("100%");
        }
        {
            LOG_BLOCK("value[%d] of [%s]", 7, "here");
        }
        {
            LOG_BLOCK(strprintf("[%s]", "formatted"));
        }
        const QList<QByteArray> written = messages();
        QCOMPARE(written.value(0), "[BLCK] 100% -> " + QByteArray::number(number));
        QCOMPARE(written.value(2), "[BLCK] value[7] of [here] -> " + QByteArray::number(number + 1));
        QCOMPARE(written.value(4), "[BLCK] [formatted] -> " + QByteArray::number(number + 2));
    }

    void innerBlockListsTheOuterOne()
    {
        openLog();
        const long long number = Block::nextNumber();
        {
            const Block outer("run.cpp", 1, "outer", 3);
            const Block inner("run.cpp", 2, "inner", 3);
        }
        const QByteArray outer = QByteArray::number(number);
        const QByteArray inner = QByteArray::number(number + 1);
        QCOMPARE(messages(),
            (QList<QByteArray> { "[BLCK] outer -> " + outer, "[BLCK] inner -> " + inner,
                "[   <]     <- " + inner + " (" + outer + ")", "[   <]     <- " + outer }));
    }

    void closingListsOpenNumbersInAscendingOrder()
    {
        openLog();
        const long long number = Block::nextNumber();
        auto first = std::make_unique<Block>("run.cpp", 1, "a", 3);
        auto second = std::make_unique<Block>("run.cpp", 2, "b", 3);
        auto third = std::make_unique<Block>("run.cpp", 3, "c", 3);
        second.reset();
        first.reset();
        third.reset();
        const auto digits = [number](int offset) { return QByteArray::number(number + offset); };
        QCOMPARE(messages().mid(3),
            (QList<QByteArray> { "[   <]     <- " + digits(1) + " (" + digits(0) + "," + digits(2) + ")",
                "[   <]     <- " + digits(0) + " (" + digits(2) + ")", "[   <]     <- " + digits(2) }));
    }

    void blocksBelowTheGateTakeNoNumber()
    {
        const long long number = Block::nextNumber();
        openLog(10);
        {
            LOG_BLOCK("dropped");
            const Block passed("run.cpp", 1, "passed", 10);
            QCOMPARE(Block::nextNumber(), number + 1);
        }
        const QByteArray digits = QByteArray::number(number);
        QCOMPARE(messages(), (QList<QByteArray> { "[BLCK] passed -> " + digits, "[   <]     <- " + digits }));
    }

    void blocksOfTwoThreadsDoNotSeeEachOther()
    {
        openLog();
        const long long number = Block::nextNumber();
        {
            const Block here("run.cpp", 1, "here", 3);
            std::thread([] { const Block there("run.cpp", 2, "there", 3); }).join();
        }
        QCOMPARE(messages().value(2), "[   <]     <- " + QByteArray::number(number + 1));
        QCOMPARE(messages().value(3), "[   <]     <- " + QByteArray::number(number));
    }

    void blockThatOutlivesTheLogLeavesItsNumber()
    {
        const long long number = Block::nextNumber();
        // On a separate thread, because the number is kept per thread.
        std::thread([this] {
            openLog(0, QStringLiteral("before.log"));
            {
                const Block block("run.cpp", 1, "left", 3);
                closelog();
            }
            openLog();
            const Block next("run.cpp", 2, "next", 3);
        }).join();
        QVERIFY(!fileContent(QStringLiteral("before.log")).contains("<-"));
        QCOMPARE(messages().value(1),
            "[   <]     <- " + QByteArray::number(number + 1) + " (" + QByteArray::number(number) + ")");
    }

    void blockOpenedBeforeTheLogClosesWithoutHarm()
    {
        const long long number = Block::nextNumber();
        {
            const Block block("run.cpp", 1, "early", 3);
            openLog();
        }
        QCOMPARE(Block::nextNumber(), number);
        QCOMPARE(messages(), QList<QByteArray> { "[   <]     <- 0" });
    }

    void linesOfFourThreadsStayWhole()
    {
        constexpr int threadCount = 4;
        constexpr int lineCount = 500;
        openLog();
        {
            std::vector<std::jthread> threads;
            for (int t = 0; t < threadCount; ++t) {
                threads.emplace_back([t] {
                    const std::string filler(static_cast<std::size_t>(100 * t), 'x');
                    for (int i = 0; i < lineCount; ++i)
                        LOG_DBG("thread %d line %d %s.", t, i, filler.c_str());
                });
            }
        }
        QList<int> next(threadCount, 0);
        const QRegularExpression whole(QStringLiteral("^\\[ DBG\\] thread (\\d) line (\\d+) (x*)\\.$"));
        const QList<QByteArray> written = messages();
        QCOMPARE(written.size(), threadCount * lineCount);
        for (const QByteArray& text : written) {
            const QRegularExpressionMatch match = whole.match(QString::fromLatin1(text));
            QVERIFY2(match.hasMatch(), text.constData());
            const int thread = match.captured(1).toInt();
            QCOMPARE(match.captured(2).toInt(), next[thread]++);
            QCOMPARE(match.captured(3).size(), 100 * thread);
        }
    }

    void aLineRacingWithTheClosingIsSafe()
    {
        std::atomic<bool> stop = false;
        {
            std::vector<std::jthread> threads;
            for (int t = 0; t < 3; ++t) {
                threads.emplace_back([&stop] {
                    while (!stop) {
                        LOG_BLOCK("block");
                        LOG_DBG("text");
                    }
                });
            }
            for (int i = 0; i < 200; ++i) {
                openLog();
                LOG_DBG("open %d", i);
                closelog();
            }
            stop = true;
        }
        const QByteArray content = fileContent();
        QCOMPARE(content.count("] open "), 200);
        QVERIFY(content.endsWith('\n'));
    }
};

QTEST_APPLESS_MAIN(TestLog)
#include "tst_log.moc"
