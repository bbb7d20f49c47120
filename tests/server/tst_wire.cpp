// The wire protocol functions.
#include "support/cases.h"
#include "tarnis/server/wire_p.h"

#include <QTest>

#include <algorithm>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

const QByteArray prompt("> ");

} // namespace

class TestWire : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void writesRequests_data()
    {
        addColumns<QString, QByteArray>("request", "bytes");
        QTest::newRow("line") << QStringLiteral("stat") << QByteArray("stat\n");
        QTest::newRow("Latin-1") << QStringLiteral("gr\u00fcn") << QByteArray("gr\xfcn\n");
        QTest::newRow("beyond Latin-1") << QStringLiteral("\u20ac") << QByteArray("?\n");
        QTest::newRow("upload") << QStringLiteral("txfile a\nx\n") << QByteArray("txfile a\nx\n\x04");
        QTest::newRow("upload word in the middle") << QStringLiteral("x txfile a\n") << QByteArray("x txfile a\n\n");
        QTest::newRow("upload word in capitals") << QStringLiteral("TXFILE a\n") << QByteArray("TXFILE a\n\n");
    }
    void writesRequests()
    {
        QFETCH(QString, request);
        QTEST(requestBytes(request), "bytes");
    }

    void refusesUploads_data()
    {
        addColumns<QString, QByteArray>("request", "refusal");
        const QByteArray endMark("NG:File contains EOT(0x04) char.");
        const QByteArray noLine("NG:Command does not contain newline charactor[\\n].");
        QTest::newRow("sound") << QStringLiteral("txfile a\nx") << QByteArray();
        QTest::newRow("no line feed") << QStringLiteral("txfile a") << noLine;
        QTest::newRow("end mark") << QStringLiteral("txfile a\nx\u0004y") << endMark;
        QTest::newRow("end mark and no line feed") << QStringLiteral("txfile\u0004") << endMark;
    }
    void refusesUploads()
    {
        QFETCH(QString, request);
        QTEST(uploadRefusal(request), "refusal");
    }

    void readsLengths_data()
    {
        addColumns<QByteArray, int>("field", "length");
        QTest::newRow("nothing") << QByteArray(4, '\0') << 0;
        QTest::newRow("little-endian") << QByteArray("\x04\x03\x02\x01") << 0x01020304;
        QTest::newRow("largest") << QByteArray("\xff\xff\xff\x7f") << std::numeric_limits<int>::max();
        QTest::newRow("minus one") << QByteArray("\xff\xff\xff\xff") << -1;
        QTest::newRow("least") << QByteArray("\0\0\0\x80", 4) << std::numeric_limits<int>::min();
    }
    void readsLengths()
    {
        QFETCH(QByteArray, field);
        QTEST(announcedLength(field), "length");
    }

    void findsTheEnd_data()
    {
        addColumns<QByteArray, int, bool>("received", "length", "complete");
        QTest::newRow("payload, text, prompt") << QByteArray("abcOK:> ") << 3 << true;
        QTest::newRow("payload, prompt") << QByteArray("abc> ") << 3 << true;
        QTest::newRow("payload only") << QByteArray("abc") << 3 << false;
        QTest::newRow("prompt inside the payload") << QByteArray("a> ") << 3 << false;
        QTest::newRow("payload's tail and text's head look like it") << QByteArray("ab> ") << 3 << false;
        QTest::newRow("no payload") << QByteArray("> ") << 0 << true;
        QTest::newRow("negative length") << QByteArray("abc> ") << -7 << true;
        QTest::newRow("negative length, part of the prompt") << QByteArray(">") << -7 << false;
        QTest::newRow("largest length") << QByteArray("abc> ") << std::numeric_limits<int>::max() << false;
        QTest::newRow("text goes on") << QByteArray("abc> x") << 3 << false;
    }
    void findsTheEnd()
    {
        QFETCH(QByteArray, received);
        QFETCH(int, length);
        QTEST(endsBinaryReply(received, length, prompt), "complete");
    }

    void splitsABinaryReplyIntoTextAndPayload_data()
    {
        addColumns<QByteArray, int, QByteArray, QString>("received", "length", "payload", "text");
        QTest::newRow("payload and text") << QByteArray("abcOK:> ") << 3 << QByteArray("abc") << QStringLiteral("OK:");
        QTest::newRow("no text") << QByteArray("abc> ") << 3 << QByteArray("abc") << QString();
        QTest::newRow("no payload") << QByteArray("OK:> ") << 0 << QByteArray("") << QStringLiteral("OK:");
        QTest::newRow("negative length") << QByteArray("abc> ") << -2 << QByteArray("") << QStringLiteral("abc");
        QTest::newRow("UTF-8") << QByteArray("a\xc2\xb5> ") << 1 << QByteArray("a") << QStringLiteral("\u00b5");
    }
    void splitsABinaryReplyIntoTextAndPayload()
    {
        QFETCH(QByteArray, received);
        QFETCH(int, length);
        QTEST(splitBinaryReply(received, length, prompt.size()), "text");
        QTEST(received, "payload");
    }

    void believesLengthsWithinBounds()
    {
        const qint32 largest = std::numeric_limits<qint32>::max();
        QVERIFY(binaryReplyCapacity(1000, 1) >= 1000 + 1);
        QVERIFY(binaryReplyCapacity(1000, 1) < 16384);
        QVERIFY(binaryReplyCapacity(-5, 1) < 16384);
        QVERIFY(binaryReplyCapacity(largest, 1) <= 64 << 20);
        QVERIFY(binaryReplyCapacity(largest, 1 << 30) <= qsizetype(largest) + 16384);
        // The capacity is at most doubled.
        QCOMPARE(binaryReplyCapacity(largest, 100 << 20), 200 << 20);
    }

    void countsTheMissingPayload()
    {
        QByteArray buffer;
        QCOMPARE(ReplyFrame(ReplyFrame::Form::Text, buffer).missing(), 0);
        ReplyFrame frame(ReplyFrame::Form::Binary, buffer);
        frame.setLength(QByteArray("\x08\0\0\0", 4));
        QCOMPARE(frame.missing(), 8);
        std::fill_n(frame.room(12), 12, 'x');
        frame.commit(5);
        QCOMPARE(frame.missing(), 3);
        std::fill_n(frame.room(7), 7, 'x');
        frame.commit(7); // text after the payload
        QCOMPARE(frame.missing(), 0);
    }
};

QTEST_GUILESS_MAIN(TestWire)
#include "tst_wire.moc"
