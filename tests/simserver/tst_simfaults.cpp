// The effect of each fault on a greeting and on replies, as steps. No socket.
#include "faults.h"

#include <QtEndian>
#include <QtTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <set>

using namespace simserver;

namespace {

using Kind = Step::Kind;

const QByteArray prompt = "tarnis> ";

QByteArray payloadOf(const std::vector<double>& values)
{
    QByteArray bytes(static_cast<qsizetype>(values.size() * sizeof(double)), Qt::Uninitialized);
    std::memcpy(bytes.data(), values.data(), values.size() * sizeof(double));
    return bytes;
}

Reply textReply()
{
    return Reply::ok("one\ntwo\n");
}

Reply binaryReply(Reply::Kind kind)
{
    Reply reply;
    reply.kind = kind;
    reply.payload = payloadOf({ 0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0 });
    if (kind == Reply::Kind::Pairs)
        reply.text = "OK: pairs (0 10 5)\n";
    else
        reply.text = kind == Reply::Kind::Map ? "OK: map, exported 5 x 2 y\n" : "OK: rows\n";
    return reply;
}

FaultSwitch switchTo(const char* name, int every = 1, int delayMs = -1)
{
    FaultSwitch fault;
    fault.set(faultByName(QString::fromLatin1(name)).value(), every, delayMs);
    return fault;
}

/// All bytes that are sent.
QByteArray bytesOf(const Steps& steps)
{
    QByteArray bytes;
    for (const Step& step : steps)
        bytes += step.bytes;
    return bytes;
}

/// The steps as text: "write 5, pause 50, close".
QString textOf(const Steps& steps)
{
    QStringList words;
    for (const Step& step : steps) {
        switch (step.kind) {
        case Kind::Write:
            words << QStringLiteral("write %1").arg(step.bytes.size());
            break;
        case Kind::WritePieces:
            words << QStringLiteral("write %1 by %2, %3 ms").arg(step.bytes.size()).arg(step.piece).arg(step.pauseMs);
            break;
        case Kind::Pause:
            words << QStringLiteral("pause %1").arg(step.pauseMs);
            break;
        case Kind::Close:
            words << "close";
            break;
        case Kind::Reset:
            words << "reset";
            break;
        case Kind::Exit:
            words << "exit";
            break;
        case Kind::Crash:
            words << "crash";
            break;
        }
    }
    return words.join("; ");
}

qint32 announced(const QByteArray& bytes)
{
    return qFromLittleEndian<qint32>(bytes.constData());
}

} // namespace

class TestSimFaults : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void namesAreUniqueAndFound()
    {
        std::set<QString> names;
        for (const FaultInfo& info : allFaults()) {
            const QString name = QString::fromLatin1(info.name);
            QVERIFY(names.insert(name).second);
            QVERIFY(faultByName(name) == info.fault);
            QCOMPARE(infoOf(info.fault).name, info.name);
        }
        QVERIFY(!faultByName("gremlin"));
        QVERIFY(!faultByName(""));
    }

    void everyFaultIsInTheHelp()
    {
        const QStringList lines = faultHelp().split('\n', Qt::SkipEmptyParts);
        QCOMPARE(static_cast<std::size_t>(lines.size()), allFaults().size());
        for (const QString& line : lines)
            QVERIFY2(line.size() < 100, qPrintable(line));
    }

    void goodReplyIsFramed()
    {
        FaultSwitch none;
        QCOMPARE(bytesOf(none.reply(textReply(), prompt)), QByteArray("OK:\none\ntwo\ntarnis> "));
        const Reply rows = binaryReply(Reply::Kind::Rows);
        const QByteArray bytes = bytesOf(none.reply(rows, prompt));
        QCOMPARE(bytes, QByteArray("\x50\0\0\0", 4) + rows.payload + "OK: rows\ntarnis> ");
        QCOMPARE(bytesOf(none.reply(Reply::binaryRefusal("no"), prompt)), QByteArray("\0\0\0\0NG:no\ntarnis> ", 18));
        QCOMPARE(bytesOf(none.reply(Reply(), prompt)), prompt);
    }

    void leadsComeFirst()
    {
        FaultSwitch none;
        Reply reply = Reply::ok();
        reply.delayedTexts = { { .pauseMs = 7, .text = {} }, { .pauseMs = 9, .text = "x\n" } };
        QCOMPARE(textOf(none.reply(reply, prompt)), QStringLiteral("pause 7; pause 9; write 2; write 12"));
    }

    void textFaults_data()
    {
        QTest::addColumn<QString>("steps"); // a reply of 12 bytes and a prompt of 8
        QTest::newRow("bytewise") << QStringLiteral("write 20 by 1, 0 ms");
        QTest::newRow("slow") << QStringLiteral("pause 2000; write 20");
        QTest::newRow("silent") << QString();
        QTest::newRow("no-prompt") << QStringLiteral("write 12");
        QTest::newRow("trailing") << QStringLiteral("write 30");
        QTest::newRow("close-before") << QStringLiteral("close");
        QTest::newRow("close-in-reply") << QStringLiteral("write 10; close");
        QTest::newRow("close-after") << QStringLiteral("write 20; close");
        QTest::newRow("reset-in-reply") << QStringLiteral("write 10; pause 50; reset");
        QTest::newRow("exit") << QStringLiteral("exit");
        QTest::newRow("crash") << QStringLiteral("crash");
        QTest::newRow("early-prompt") << QStringLiteral("write 14; pause 50; write 14");
        QTest::newRow("none") << QStringLiteral("write 20");
    }
    void textFaults()
    {
        FaultSwitch fault = switchTo(QTest::currentDataTag());
        QTEST(textOf(fault.reply(textReply(), prompt)), "steps");
    }

    void splitPromptVisitsEveryPlace()
    {
        FaultSwitch fault = switchTo("split-prompt", 1, 3);
        std::set<qsizetype> places;
        for (qsizetype i = 0; i < prompt.size(); ++i) {
            const Steps steps = fault.reply(textReply(), prompt);
            QCOMPARE(bytesOf(steps), QByteArray("OK:\none\ntwo\ntarnis> "));
            QCOMPARE(steps.size(), std::size_t { 3 });
            QCOMPARE(steps[1].pauseMs, 3);
            places.insert(steps[0].bytes.size() - 12);
        }
        QCOMPARE(static_cast<qsizetype>(places.size()), prompt.size());
        QCOMPARE(*places.begin(), 0);
        // A prompt of one byte is sent separately.
        FaultSwitch shortOne = switchTo("split-prompt");
        QCOMPARE(textOf(shortOne.reply(textReply(), "#")), QStringLiteral("write 12; pause 50; write 1"));
    }

    void chunksGiveTheSameBytes()
    {
        FaultSwitch fault = switchTo("chunks");
        Reply large = binaryReply(Reply::Kind::Rows);
        large.payload = QByteArray(100000, 'x');
        const Steps steps = fault.reply(large, prompt);
        QCOMPARE(bytesOf(steps), frameOf(large, prompt).whole());
        QVERIFY(steps.size() > 50);
        for (const Step& step : steps)
            QVERIFY(step.kind == Kind::Pause || (step.kind == Kind::Write && !step.bytes.isEmpty()));
    }

    void earlyPromptEndsThePiece()
    {
        FaultSwitch fault = switchTo("early-prompt");
        const Steps steps = fault.reply(textReply(), prompt);
        QVERIFY(steps.front().bytes.endsWith(prompt));
        QVERIFY(steps.back().bytes.endsWith(prompt));
        QCOMPARE(bytesOf(steps).replace(prompt, ""), textReply().text);
    }

    void garbageEndsWithThePrompt()
    {
        FaultSwitch fault = switchTo("garbage");
        const QByteArray one = bytesOf(fault.reply(textReply(), prompt));
        const QByteArray other = bytesOf(fault.reply(binaryReply(Reply::Kind::Map), prompt));
        QVERIFY(one.endsWith(prompt) && other.endsWith(prompt));
        QVERIFY(one != other);
        FaultSwitch again = switchTo("garbage");
        QCOMPARE(bytesOf(again.reply(textReply(), prompt)), one);
    }

    void lengthFaults_data()
    {
        QTest::addColumn<int>("length"); // of a payload of 80 bytes
        QTest::newRow("wrong-length") << 88;
        QTest::newRow("short-length") << 72;
        QTest::newRow("zero-length") << 0;
        QTest::newRow("negative-length") << -80;
        QTest::newRow("oversized-length") << std::numeric_limits<int>::max();
        QTest::newRow("split-length") << 80;
    }
    void lengthFaults()
    {
        FaultSwitch fault = switchTo(QTest::currentDataTag());
        const Reply reply = binaryReply(Reply::Kind::Rows);
        const Steps steps = fault.reply(reply, prompt);
        const QByteArray bytes = bytesOf(steps);
        QTEST(announced(bytes), "length");
        QCOMPARE(bytes.mid(4), reply.payload + reply.text + prompt);
        if (fault.fault() == Fault::SplitLength)
            QCOMPARE(textOf(steps), QStringLiteral("write 3; pause 50; write 98"));
    }

    void payloadFaults()
    {
        FaultSwitch cut = switchTo("cut-payload");
        const Reply reply = binaryReply(Reply::Kind::Rows);
        const QByteArray bytes = bytesOf(cut.reply(reply, prompt));
        QCOMPARE(announced(bytes), 77);
        QCOMPARE(bytes.mid(4), reply.payload.chopped(3) + reply.text + prompt);
        FaultSwitch empty = switchTo("empty-payload");
        QCOMPARE(bytesOf(empty.reply(reply, prompt)), lengthBytes(0) + reply.text + prompt);
    }

    void badValuesAreNoCounts()
    {
        FaultSwitch fault = switchTo("bad-values");
        Reply reply = binaryReply(Reply::Kind::Map);
        reply.payload = payloadOf(std::vector<double>(42, 5.0));
        const QByteArray bytes = bytesOf(fault.reply(reply, prompt));
        QCOMPARE(announced(bytes), 42 * 8);
        std::vector<double> values(42);
        std::memcpy(values.data(), bytes.constData() + 4, values.size() * sizeof(double));
        QVERIFY(std::isnan(values[0]));
        QCOMPARE(values[1], 5.0);
        QCOMPARE(values[7], std::numeric_limits<double>::infinity());
        QCOMPARE(values[14], -std::numeric_limits<double>::infinity());
        QCOMPARE(values[35], -1.0);
    }

    void windowFaults()
    {
        FaultSwitch noAxis = switchTo("no-axis");
        QVERIFY(bytesOf(noAxis.reply(binaryReply(Reply::Kind::Pairs), prompt)).endsWith("OK: pairs \ntarnis> "));
        FaultSwitch badIndex = switchTo("bad-index");
        const QByteArray bytes = bytesOf(badIndex.reply(binaryReply(Reply::Kind::Pairs), prompt));
        QCOMPARE(announced(bytes), 96);
        double last = 0.0;
        std::memcpy(&last, bytes.constData() + 4 + 80, sizeof(last));
        QCOMPARE(last, 10.0); // the upper end of the axis
        FaultSwitch counts = switchTo("wrong-counts");
        QVERIFY(bytesOf(counts.reply(binaryReply(Reply::Kind::Map), prompt)).contains("exported 15 x 2 y\n"));
    }

    void repliesToWhichAFaultDoesNotApply_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("kind");
        QTest::newRow("length of a text") << "wrong-length" << static_cast<int>(Reply::Kind::Text);
        QTest::newRow("values of a text") << "bad-values" << static_cast<int>(Reply::Kind::Text);
        QTest::newRow("axis of rows") << "no-axis" << static_cast<int>(Reply::Kind::Rows);
        QTest::newRow("counts of pairs") << "wrong-counts" << static_cast<int>(Reply::Kind::Pairs);
        QTest::newRow("early prompt of a map") << "early-prompt" << static_cast<int>(Reply::Kind::Map);
        QTest::newRow("greeting's fault") << "no-greeting" << static_cast<int>(Reply::Kind::Rows);
        QTest::newRow("start's fault") << "port-zero" << static_cast<int>(Reply::Kind::Text);
    }
    void repliesToWhichAFaultDoesNotApply()
    {
        QFETCH(QString, fault);
        QFETCH(int, kind);
        const Reply reply = binaryReply(static_cast<Reply::Kind>(kind));
        QCOMPARE(bytesOf(switchTo(fault.toLatin1()).reply(reply, prompt)), frameOf(reply, prompt).whole());
    }

    void changesTheGreetingAsTheFaultSays_data()
    {
        QTest::addColumn<QString>("steps"); // a greeting of 3 bytes and a prompt of 8
        QTest::newRow("none") << QStringLiteral("write 11");
        QTest::newRow("silent") << QStringLiteral("write 11");
        QTest::newRow("bytewise") << QStringLiteral("write 11");
        QTest::newRow("no-greeting") << QString();
        QTest::newRow("late-greeting") << QStringLiteral("pause 2000; write 11");
        QTest::newRow("split-greeting") << QStringLiteral("write 11 by 1, 5 ms");
        QTest::newRow("close-at-greeting") << QStringLiteral("close");
    }
    void changesTheGreetingAsTheFaultSays()
    {
        FaultSwitch fault = switchTo(QTest::currentDataTag());
        QTEST(textOf(fault.greeting("hi\n", prompt)), "steps");
    }

    void faultHitsEveryNthReply()
    {
        FaultSwitch fault = switchTo("silent", 3);
        QStringList steps;
        for (int i = 0; i < 6; ++i)
            steps << textOf(fault.reply(textReply(), prompt));
        QCOMPARE(steps, (QStringList { "write 20", "write 20", "", "write 20", "write 20", "" }));
        // Only applicable replies count.
        FaultSwitch length = switchTo("zero-length", 2);
        length.reply(binaryReply(Reply::Kind::Rows), prompt);
        length.reply(textReply(), prompt);
        QCOMPARE(announced(bytesOf(length.reply(binaryReply(Reply::Kind::Rows), prompt))), 0);
    }

    void exemptRepliesAreNotAffected()
    {
        FaultSwitch fault = switchTo("close-before");
        Reply reply = textReply();
        reply.exempt = true;
        QCOMPARE(textOf(fault.reply(reply, prompt)), QStringLiteral("write 20"));
    }

    void refusalsAreCounted()
    {
        FaultSwitch none;
        QVERIFY(!none.refuses());
        FaultSwitch fault = switchTo("refuse", 2);
        QVERIFY(!fault.refuses());
        QVERIFY(fault.refuses());
        QVERIFY(!fault.refuses());
        QCOMPARE(textOf(fault.reply(textReply(), prompt)), QStringLiteral("write 20"));
        QVERIFY(fault.refuses()); // the reply has not been counted again
    }
};

QTEST_APPLESS_MAIN(TestSimFaults)
#include "tst_simfaults.moc"
