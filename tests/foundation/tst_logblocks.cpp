// Blocks of the log, and lines of several threads.
#include "foundation/logfixture.h"
#include "tarnis/foundation/log.h"

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

// Access to protected members.
struct Block : _LogBlock {
    using _LogBlock::_LogBlock;
    static long long nextNumber() { return _next_num; }
};

QByteArray threadText()
{
    return QByteArray::number(static_cast<qlonglong>(::syscall(SYS_gettid)), 16).rightJustified(8);
}

} // namespace

class TestLogBlocks : public LogFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }
    void cleanup() { closelog(); }

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

QTEST_APPLESS_MAIN(TestLogBlocks)
#include "tst_logblocks.moc"
