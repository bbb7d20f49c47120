// The two commands that keep the values of their last reply.
#include "support/cases.h"
#include "support/logfile.h"

#include <tarnis/server/tarniscmds.h>

#include <QTest>

using namespace tarnis::testing;

namespace {

// Both classes are the same in all but the command word and the block names: every case runs on both.
template <typename Command> class Snapshot {
public:
    explicit Snapshot(const QByteArrayList& replies = {})
    {
        for (const QByteArray& reply : replies)
            command.onReply(reply);
    }
    QString operator[](const char* name) { return command.GetValue(QString::fromUtf8(name)); }
    Command command;
};

template <typename Command> void checkSnapshots()
{
    Snapshot<Command> unread;
    QVERIFY(unread["a"].isNull());

    Snapshot<Command> two({ "a: 1\nb:2\n" });
    QCOMPARE(two["a"], "1");
    QCOMPARE(two["b"], "2");
    QVERIFY(two["c"].isNull());
    QVERIFY(two[""].isNull());

    Snapshot<Command> second({ "a: 1\nb:2\n", "b:3" });
    QVERIFY(second["a"].isNull());
    QCOMPARE(second["b"], "3");

    Snapshot<Command> keptByNull({ "a: 1\n", QByteArray() });
    QCOMPARE(keptByNull["a"], "1");

    Snapshot<Command> emptied({ "a: 1\n", QByteArray("") });
    QVERIFY(emptied["a"].isNull());

    Snapshot<Command> emptyValue({ "a:\n" });
    QVERIFY(!emptyValue["a"].isNull());
    QVERIFY(emptyValue["a"].isEmpty());

    Snapshot<Command> utf8({ "gr\xc3\xbcn: \xc2\xb5s\n" });
    QCOMPARE(utf8["gr\xc3\xbcn"], QString::fromUtf8("\xc2\xb5s"));
}

} // namespace

class TestTarnisCmds : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void statKeepsItsLastReply() { checkSnapshots<TarnisCmdStat>(); }
    void settingKeepsItsLastReply() { checkSnapshots<TarnisCmdSetting>(); }

    void findsTheWordAfterThePrefix_data()
    {
        addColumns<QString, QString, QString, QString>("text", "prefix", "suffix", "value");
        const auto row = [](const char* name, const char* text, const char* prefix, const char* suffix,
                             const char* value) {
            QTest::newRow(name) << QString(text) << QString(prefix) << QString(suffix) << QString(value);
        };
        row("the last pair", "x=1 y=2", "y", "=", "2");
        row("the first pair", "x=1 y=2", "x", "=", "1");
        row("absent", "x=1 y=2", "z", "=", "");
        row("at the end", "x=1 y=", "y", "=", "");
        row("followed by a blank", "x= y=2", "x", "=", "");
        row("the first of two", "x=1 x=2", "x", "=", "1");
        row("another case", "X=1 x=2", "x", "=", "2");
        row("a line feed does not end it", "x=1\n2 y=3", "x", "=", "1\n2");
        row("a tab does not end it", "x=1\ty", "x", "=", "1\ty");
        row("nothing to look for", "12 34", "", "", "12");
        row("nothing to look for, blank in front", " 12 34", "", "", " 12 34");
        row("nothing to look for in nothing", "", "", "", "");
        row("prefix only", "rate 12 Hz", "rate ", "", "12");
        row("suffix only", "a:b c", "", ":", "b");
    }
    void findsTheWordAfterThePrefix()
    {
        QFETCH(QString, text);
        QFETCH(QString, prefix);
        QFETCH(QString, suffix);
        TarnisCmdStat stat;
        QTEST(stat.getValue(text, prefix, suffix), "value");
        TarnisCmdSetting setting;
        QTEST(setting.getValue(text, prefix, suffix), "value");
    }

    void statLogsItsBlocks() { QCOMPARE(blocksOf<TarnisCmdStat>(), expectedBlocks(true)); }
    void settingLogsNoneForGetValue() { QCOMPARE(blocksOf<TarnisCmdSetting>(), expectedBlocks(false)); }

private:
    template <typename Command> static QStringList blocksOf()
    {
        const LogFile log(3);
        Snapshot<Command> snapshot({ "a:1", QByteArray() });
        snapshot["a"];
        snapshot.command.getValue("a=1", "a", "=");
        return log.messages();
    }
    static QStringList expectedBlocks(bool withGetValue)
    {
        QStringList blocks { "BLCK onReply", "BLCK makeNameValueMap", "BLCK onReply" };
        if (withGetValue)
            blocks.append("BLCK GetValue");
        return blocks << "BLCK getValue";
    }
};

QTEST_GUILESS_MAIN(TestTarnisCmds)
#include "tst_tarniscmds.moc"
