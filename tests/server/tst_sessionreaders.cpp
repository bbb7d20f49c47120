// The two readers of a session, iteration by iteration, on a socket whose waits deliver bytes defined by the test.
#include "support/cases.h"
#include "support/chunksocket.h"
#include "support/logfile.h"
#include "support/replyoracle.h"
#include "support/support.h"

#include <tarnis/server/tarnissession.h>

#include <QTest>
#include <QtEndian>

#include <limits>

using namespace tarnis::testing;

namespace {

const QByteArray prompt("> ");

// A session that never starts; its readers run on the test's thread.
class Reader : public TarnisSession {
public:
    explicit Reader(const QByteArray& itsPrompt = prompt)
        : TarnisSession(QString(), 0, nullptr, nullptr)
        , ownPrompt(itsPrompt)
    {
        m_pPrompt = &ownPrompt;
        connect(this, &TarnisSession::error, this,
            [this](int code, const QString& text) { errors.append(qMakePair(code, text)); });
        connect(this, qOverload<const QByteArray&>(&TarnisSession::read), this,
            [this](const QByteArray& piece) { pieces.append(piece); });
    }
    void quit() { m_bQuit = true; }

    ReadOutcome readText(ChunkSocket& socket, bool progress = true)
    {
        ReadOutcome out;
        out.buffer = "left over";
        out.complete = read(socket, out.buffer, progress);
        return finish(out, socket);
    }
    ReadOutcome readBinaryReply(ChunkSocket& socket)
    {
        ReadOutcome out;
        out.buffer = "left over";
        out.text = "left over";
        out.complete = readBinary(socket, out.buffer, out.text);
        return finish(out, socket);
    }

    QList<QPair<int, QString>> errors;
    QByteArrayList pieces;
    const QByteArray ownPrompt;

private:
    ReadOutcome finish(ReadOutcome out, const ChunkSocket& socket)
    {
        out.error = !errors.isEmpty();
        out.pieces = pieces;
        out.waits = int(socket.waits.size());
        return out;
    }
};

QByteArray lengthField(qint32 length)
{
    QByteArray field(4, Qt::Uninitialized);
    qToLittleEndian(length, field.data());
    return field;
}

QByteArrayList oneByOne(const QByteArray& bytes)
{
    QByteArrayList pieces;
    for (const char byte : bytes)
        pieces.append(QByteArray(1, byte));
    return pieces;
}

QByteArrayList silentFor(int waits)
{
    return QByteArrayList(waits, QByteArray());
}

QByteArrayList randomPieces(std::mt19937_64& generator, const QByteArray& alphabet)
{
    QByteArrayList pieces;
    std::uniform_int_distribution<int> count(0, 12);
    std::uniform_int_distribution<int> size(0, 5);
    std::uniform_int_distribution<qsizetype> letter(0, alphabet.size() - 1);
    for (int i = count(generator); i > 0; --i) {
        QByteArray piece;
        for (int j = size(generator); j > 0; --j)
            piece += alphabet[letter(generator)];
        pieces.append(piece);
        // Sometimes a silence, shorter or longer than allowed.
        if (generator() % 8 == 0)
            pieces += silentFor(int(generator() % 110));
    }
    return pieces;
}

} // namespace

class TestSessionReaders : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsText_data()
    {
        addColumns<QByteArrayList, QByteArray, QByteArrayList>("waits", "text", "pieces");
        const auto row = [](const char* name, const QByteArrayList& waits, const QByteArray& text,
                             const QByteArrayList& pieces) { QTest::newRow(name) << waits << text << pieces; };
        row("in one piece", { "abc> " }, "abc", { "abc" });
        row("prompt only", { "> " }, "", {});
        row("prompt as a chunk of its own", { "abc", "> " }, "abc", { "abc" });
        row("prompt in two chunks", { "abc>", " " }, "abc", { "abc>" });
        row("prompt in two chunks of its own", { "abc", ">", " " }, "abc", { "abc", ">" });
        row("byte by byte", oneByOne("abc> "), "abc", { "a", "b", "c", ">" });
        row("prompt inside a chunk", { "a> b", "c> " }, "a> bc", { "a> b", "c" });
        row("prompt inside, at a chunk's end", { "a> ", "b> " }, "a", { "a" });
        row("pauses", { "", "a", "", "", "b> " }, "ab", { "a", "b" });
        row("last chunk shorter than the prompt", { "ab>", " " }, "ab", { "ab>" });
        row("zeros", { QByteArray("a\0b> ", 5) }, QByteArray("a\0b", 3), { QByteArray("a\0b", 3) });
    }
    void readsText()
    {
        QFETCH(QByteArrayList, waits);
        QFETCH(QByteArray, text);
        ChunkSocket socket(waits);
        Reader reader;
        const ReadOutcome out = reader.readText(socket);
        QVERIFY(out.complete);
        QCOMPARE(out.buffer, text);
        QVERIFY(!out.buffer.isNull());
        QTEST(out.pieces, "pieces");
        QCOMPARE(out, readTextReply(waits, prompt, true));

        ChunkSocket again(waits);
        Reader quiet;
        QVERIFY(quiet.readText(again, false).pieces.isEmpty());
    }

    void splitsPromptAnywhere()
    {
        const QByteArray longPrompt("\r\nREADY:\0> ", 11);
        const QByteArray reply = "READY: text" + longPrompt;
        for (qsizetype i = 1; i < reply.size(); ++i) {
            for (qsizetype j = i; j < reply.size(); ++j) {
                ChunkSocket socket({ reply.left(i), reply.mid(i, j - i), reply.mid(j) });
                Reader reader(longPrompt);
                const ReadOutcome out = reader.readText(socket);
                QVERIFY(out.complete);
                QCOMPARE(out.buffer, "READY: text");
            }
        }
    }

    void failsOnThe102ndSilentWait_data()
    {
        addColumns<QByteArrayList, bool, bool, int>("waits", "binary", "complete", "waitCount");
        const QByteArray field = lengthField(1);
        const auto row = [](const char* name, const QByteArrayList& waits, bool binary, bool complete, int count) {
            QTest::newRow(name) << waits << binary << complete << count;
        };
        row("text, nothing ever", {}, false, false, 102);
        row("text, at the last moment", silentFor(101) + QByteArrayList { "> " }, false, true, 102);
        row("text, too late", silentFor(102) + QByteArrayList { "> " }, false, false, 102);
        row("text, counted from the last data",
            silentFor(101) + QByteArrayList { "a" } + silentFor(101) + QByteArrayList { "> " }, false, true, 204);
        row("text, silence behind data", QByteArrayList { "a" }, false, false, 103);
        row("binary, nothing ever", {}, true, false, 102);
        row("binary, at the last moment", silentFor(101) + QByteArrayList { field + "x> " }, true, true, 102);
        row("binary, too late", silentFor(102) + QByteArrayList { field + "x> " }, true, false, 102);
        // Counted over the complete reply: 60 before the length, 41 after it.
        row("binary, counted over all",
            silentFor(60) + QByteArrayList { field, "x" } + silentFor(41) + QByteArrayList { "> " }, true, true, 104);
        row("binary, one more", silentFor(60) + QByteArrayList { field, "x" } + silentFor(42) + QByteArrayList { "> " },
            true, false, 104);
        row("binary, data does not forgive", silentFor(101) + QByteArrayList { field, "x" }, true, false, 104);
        row("binary, part of the length", QByteArrayList { field.left(3) }, true, false, 102);
    }
    void failsOnThe102ndSilentWait()
    {
        QFETCH(QByteArrayList, waits);
        QFETCH(bool, binary);
        QFETCH(bool, complete);
        ChunkSocket socket(waits);
        Reader reader;
        const ReadOutcome out = binary ? reader.readBinaryReply(socket) : reader.readText(socket);
        QCOMPARE(out.complete, complete);
        QCOMPARE(out.error, !complete);
        QTEST(out.waits, "waitCount");
        if (!complete) {
            QCOMPARE(reader.errors.size(), 1);
            QCOMPARE(reader.errors.first(), qMakePair(int(socket.error()), socket.errorString()));
        }
    }

    void readsBinary_data()
    {
        addColumns<QByteArrayList, QByteArray, QString, int>("waits", "payload", "text", "waitCount");
        const QByteArray four = lengthField(4);
        const auto row = [](const char* name, const QByteArrayList& waits, const QByteArray& payload,
                             const QString& text,
                             int count) { QTest::newRow(name) << waits << payload << text << count; };
        row("in one piece: one wait", { four + "1234OK:> " }, "1234", "OK:", 1);
        row("length first", { four, "1234OK:> " }, "1234", "OK:", 2);
        row("length in two pieces", { four.left(3), four.mid(3) + "1234> " }, "1234", "", 2);
        row("length byte by byte", oneByOne(four) + QByteArrayList { "1234> " }, "1234", "", 5);
        row("byte by byte", oneByOne(four + "1234OK:> "), "1234", "OK:", 13);
        row("no payload", { lengthField(0) + "OK:\n> " }, "", "OK:\n", 1);
        row("neither payload nor text", { lengthField(0) + "> " }, "", "", 1);
        row("prompt in the payload", { lengthField(2) + "> ", "OK:> " }, "> ", "OK:", 2);
        row("prompt from payload and text", { lengthField(1) + "> ", "OK:> " }, ">", " OK:", 2);
        row("prompt in two pieces", { four + "1234OK:>", " " }, "1234", "OK:", 2);
        row("minus one", { lengthField(-1) + "OK:> " }, "", "OK:", 1);
        row("least length", { lengthField(std::numeric_limits<qint32>::min()) + "OK:> " }, "", "OK:", 1);
        row("bytes behind the prompt", { four + "1234OK:> x", "yz> " }, "1234", "OK:> xyz", 2);
        row("text of UTF-8 in two pieces", { four + "1234\xc2", "\xb5> " }, "1234", QString::fromUtf8("\xc2\xb5"), 2);
    }
    void readsBinary()
    {
        QFETCH(QByteArrayList, waits);
        QFETCH(QByteArray, payload);
        ChunkSocket socket(waits);
        Reader reader;
        const ReadOutcome out = reader.readBinaryReply(socket);
        QVERIFY(out.complete);
        QCOMPARE(out.buffer, payload);
        QVERIFY(!out.buffer.isNull());
        QTEST(out.text, "text");
        QTEST(out.waits, "waitCount");
        QVERIFY(out.pieces.isEmpty());
        QCOMPARE(out, tarnis::testing::readBinaryReply(waits, prompt));
    }

    void survivesFalseLengths_data()
    {
        QTest::addColumn<int>("length");
        QTest::newRow("reaching into the prompt") << 6;
        QTest::newRow("longer than the reply") << 100;
        QTest::newRow("huge") << std::numeric_limits<int>::max();
    }
    void survivesFalseLengths()
    {
        QFETCH(int, length);
        ChunkSocket socket({ lengthField(length) + "123OK> " });
        Reader reader;
        reader.setMaxReplySize(0); // else an announced length beyond the limit ends the session at once
        const ReadOutcome out = reader.readBinaryReply(socket);
        QVERIFY(!out.complete);
        QVERIFY(out.error);
        QCOMPARE(out.waits, 103);
        QVERIFY(out.buffer.capacity() < 64 << 20);
    }

    void textMatchesTheOracle()
    {
        auto generator = seededGenerator(3);
        for (int i = 0; i < 20000; ++i) {
            const QByteArray itsPrompt = QByteArrayList({ ">", "> ", "aa", "aba", "" })[int(generator() % 5)];
            const QByteArrayList waits = randomPieces(generator, "a>b ");
            const bool progress = generator() % 2 == 0;
            ChunkSocket socket(waits);
            Reader reader(itsPrompt);
            QCOMPARE(reader.readText(socket, progress), readTextReply(waits, itsPrompt, progress));
        }
    }

    void binaryMatchesTheOracle()
    {
        auto generator = seededGenerator(4);
        for (int i = 0; i < 20000; ++i) {
            const QByteArray itsPrompt = QByteArrayList({ ">", "> ", "aa", "aba", "" })[int(generator() % 5)];
            const QByteArray field = lengthField(qint32(generator() % 12) - 2);
            const qsizetype cut = qsizetype(generator() % 5);
            QByteArrayList waits = randomPieces(generator, "a>b ");
            waits.prepend(field.mid(cut) + (waits.isEmpty() ? QByteArray() : waits.takeFirst()));
            waits.prepend(field.left(cut));
            ChunkSocket socket(waits);
            Reader reader(itsPrompt);
            QCOMPARE(reader.readBinaryReply(socket), tarnis::testing::readBinaryReply(waits, itsPrompt));
        }
    }

    void waitsInUnitsOfTenMilliseconds_data()
    {
        addColumns<int, int>("timeout", "milliseconds");
        QTest::newRow("at first") << 40 << 400;
        QTest::newRow("shortest") << 1 << 10;
        QTest::newRow("none") << 0 << 0;
        QTest::newRow("negative") << -1 << 0;
        QTest::newRow("too long to count") << std::numeric_limits<int>::max() << std::numeric_limits<int>::max();
    }
    void waitsInUnitsOfTenMilliseconds()
    {
        QFETCH(int, timeout);
        QFETCH(int, milliseconds);
        Reader reader;
        reader.setTimeout(timeout);
        ChunkSocket text({});
        reader.readText(text);
        QCOMPARE(text.waits, QList<int>(102, milliseconds));
        ChunkSocket binary({});
        reader.readBinaryReply(binary);
        QCOMPARE(binary.waits, QList<int>(102, milliseconds));
    }

    void usesANewTimeoutAtTheNextWait()
    {
        Reader reader;
        ChunkSocket socket({ "a", "b", "c> " });
        socket.onWait = [&](int number) { reader.setTimeout(number); };
        QVERIFY(reader.readText(socket).complete);
        QCOMPARE(socket.waits, QList<int>({ 400, 10, 20 }));
    }

    void quitsBeforeTheFirstWait()
    {
        for (const bool binary : { false, true }) {
            Reader reader;
            reader.quit();
            ChunkSocket socket({ "> " });
            const ReadOutcome out = binary ? reader.readBinaryReply(socket) : reader.readText(socket);
            QCOMPARE(out, ReadOutcome());
        }
    }

    void quitsAtTheEndOfAWait_data()
    {
        addColumns<QByteArrayList, bool, bool>("waits", "binary", "complete");
        addCase("text, silent", QByteArrayList { "", "" }, false, false);
        addCase("text, with data", QByteArrayList { "a", "b" }, false, false);
        addCase("text, with the prompt", QByteArrayList { "a", "> " }, false, true);
        addCase("binary, silent", QByteArrayList { "", "" }, true, false);
        addCase("binary, with the length and all else", QByteArrayList { "", lengthField(0) + "> " }, true, false);
        addCase("binary, with data", QByteArrayList { lengthField(1), "b" }, true, false);
        addCase("binary, with the prompt", QByteArrayList { lengthField(1), "b> " }, true, true);
    }
    void quitsAtTheEndOfAWait()
    {
        QFETCH(QByteArrayList, waits);
        QFETCH(bool, binary);
        Reader reader;
        ChunkSocket socket(waits);
        socket.onWait = [&](int number) {
            if (number == 2)
                reader.quit();
        };
        const ReadOutcome out = binary ? reader.readBinaryReply(socket) : reader.readText(socket);
        QTEST(out.complete, "complete");
        QCOMPARE(out.waits, 2);
        QVERIFY(!out.error);
    }

    void logsItsBlocks()
    {
        Reader reader;
        const QString self = QString::asprintf("%p", static_cast<void*>(&reader));
        const LogFile log;
        ChunkSocket text({ "> " });
        reader.readText(text);
        ChunkSocket binary({ lengthField(0) + "> " });
        reader.readBinaryReply(binary);
        QCOMPARE(log.messages(),
            QStringList({ "BLCK TarnisSession::read(), this[" + self + "]",
                "BLCK TarnisSession::readBinary(), this[" + self + "]" }));
    }
};

QTEST_GUILESS_MAIN(TestSessionReaders)
#include "tst_sessionreaders.moc"
