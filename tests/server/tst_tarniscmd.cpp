// The command, and lists of commands.
#include "support/cases.h"
#include "support/logfile.h"
#include "support/support.h"
#include "support/textoracle.h"
#include "support/virtualorder.h"

#include <tarnis/server/tarniscmds.h>

#include <QTest>

#include <memory>

using namespace tarnis::testing;

namespace {

Sections sectionsOf(const QString& text)
{
    Sections out { { QStringLiteral("old"), { QStringLiteral("old") } } };
    TarnisCmd::devideByKey(text, out);
    return out;
}

Values valuesOf(const QStringList& lines)
{
    Values out { { QStringLiteral("old"), QStringLiteral("old") } };
    TarnisCmd::makeNameValueMap(lines, out);
    return out;
}

QString randomText(std::mt19937_64& generator, const QString& alphabet, int maximum)
{
    QString text;
    const auto size = std::uniform_int_distribution<int>(0, maximum)(generator);
    std::uniform_int_distribution<qsizetype> letter(0, alphabet.size() - 1);
    for (int i = 0; i < size; ++i)
        text += alphabet[letter(generator)];
    return text;
}

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

class TestTarnisCmd : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // One command: sent text, log lines, and the two parsers of reply text.

    void startsWithDefaults()
    {
        const TarnisCmd cmd(QStringLiteral("stat"));
        QVERIFY(cmd.m_cmdName.isNull());
        QCOMPARE(cmd.m_cmd, QStringLiteral("stat"));
        QCOMPARE(cmd.m_bUser1, false);
        QCOMPARE(cmd.m_bUser2, false);
        QVERIFY(cmd.m_replyText.isNull());
        QCOMPARE(cmd.m_afterSleep, 20);
        QCOMPARE(cmd.m_bBinary, false);
        QCOMPARE(cmd.m_bProgress, false);
        const int* const pause = &TarnisCmd::AFTER_SLEEP_DEFAULT;
        QCOMPARE(*pause, 20);
    }

    void keepsItsMembersInOrder()
    {
        const TarnisCmd cmd(QStringLiteral("stat"));
        const std::vector<const void*> members { &cmd.m_cmdName, &cmd.m_cmd, &cmd.m_bUser1, &cmd.m_bUser2,
            &cmd.m_replyText, &cmd.m_afterSleep, &cmd.m_bBinary, &cmd.m_bProgress };
        QVERIFY(std::ranges::is_sorted(members));
    }

    void keepsItsVirtualsInOrder()
    {
        // Two slots of the table are the destructor's.
        QCOMPARE(virtualIndex(&TarnisCmd::getCmdString), 2);
        QCOMPARE(virtualIndex(&TarnisCmd::getUnicastId), 3);
        QCOMPARE(virtualIndex(&TarnisCmdUnicast::onReply), 4);
        QCOMPARE(virtualIndex(&TarnisCmdUnicastWithIndex::getIndex), -1);
        QCOMPARE(virtualIndex(&TarnisCmdStat::onReply), 4);
        QCOMPARE(virtualIndex(&TarnisCmdSetting::onReply), 4);
    }

    void sendsItsRoute_data()
    {
        addColumns<PTarnisCmd, QString, QString>("cmd", "request", "id");
        const auto row = [](const char* name, TarnisCmd* cmd, const char* request, const char* id = "") {
            QTest::newRow(name) << PTarnisCmd(cmd) << QString(request) << QString(id);
        };
        row("plain", new TarnisCmd("stat"), "stat");
        row("empty", new TarnisCmd(QString()), "");
        row("broadcast", new TarnisCmdBroadcast("start"), "broadcast start");
        row("multicast", new TarnisCmdMulticastOrsino("reset 1"), "mc orsino reset 1");
        row("unicast", new TarnisCmdUnicast("3", "stat"), "unicast 3 stat", "3");
        row("unicast, place holders in the texts", new TarnisCmdUnicast("%2", "%1"), "unicast %2 %1", "%2");
        row("unicast, index 0", new TarnisCmdUnicastWithIndex("3", "stat", 0), "unicast 3 stat", "3");
        row("unicast, index -7", new TarnisCmdUnicastWithIndex("3", "stat", -7), "unicast 3 stat", "3");
        row("stat", new TarnisCmdStat, "stat");
        row("setting", new TarnisCmdSetting, "setting");
    }
    void sendsItsRoute()
    {
        QFETCH(PTarnisCmd, cmd);
        QTEST(cmd->getCmdString(), "request");
        QTEST(cmd->getUnicastId(), "id");
    }

    void keepsItsIndex() { QCOMPARE(TarnisCmdUnicastWithIndex("3", "stat", -7).getIndex(), -7); }

    void takesNoReplyAsUnicast()
    {
        TarnisCmdUnicast cmd("3", "stat");
        cmd.onReply("reply", nullptr);
        QCOMPARE(cmd.getCmdString(), "unicast 3 stat");
    }

    void logsCreationAndDestruction_data()
    {
        addColumns<int, QString>("kind", "text");
        QTest::newRow("plain") << 0 << QStringLiteral("gr\u00fcn");
        QTest::newRow("broadcast") << 1 << QStringLiteral("a");
        QTest::newRow("multicast") << 2 << QStringLiteral("b");
        QTest::newRow("unicast") << 3 << QStringLiteral("c");
        QTest::newRow("unicast with index") << 4 << QStringLiteral("d");
        QTest::newRow("stat") << 5 << QStringLiteral("stat");
        QTest::newRow("setting") << 6 << QStringLiteral("setting");
    }
    void logsCreationAndDestruction()
    {
        QFETCH(int, kind);
        QFETCH(QString, text);
        const LogFile log;
        const auto make = [&]() -> TarnisCmd* {
            switch (kind) {
            case 1:
                return new TarnisCmdBroadcast(text);
            case 2:
                return new TarnisCmdMulticastOrsino(text);
            case 3:
                return new TarnisCmdUnicast("1", text);
            case 4:
                return new TarnisCmdUnicastWithIndex("1", text, 2);
            case 5:
                return new TarnisCmdStat;
            case 6:
                return new TarnisCmdSetting;
            default:
                return new TarnisCmd(text);
            }
        };
        TarnisCmd* const cmd = make();
        const QString address = QString::asprintf("%p", static_cast<void*>(cmd));
        delete cmd;
        QCOMPARE(log.messages(),
            QStringList({ "DBG TarnisCmd::TarnisCmd(cmd[" + text + "]), " + address,
                "DBG TarnisCmd::~TarnisCmd(), " + address }));
    }

    void parsersLogABlock()
    {
        const LogFile log;
        sectionsOf(QString());
        valuesOf({});
        QCOMPARE(log.messages(), QStringList({ "BLCK devideByKey", "BLCK makeNameValueMap" }));
        for (const auto& entry : log.entries())
            QVERIFY(entry.file.isEmpty() || entry.file == QLatin1String("tarniscmd.cpp"));
    }

    void dividesByKey_data()
    {
        addColumns<QString, Sections>("text", "sections");
        const auto row = [](const char* name, const char* text, const Sections& sections) {
            QTest::newRow(name) << QString(text) << sections;
        };
        row("empty", "", {});
        row("sections of one key are joined", "junk\n--a\n1\n--b\n--a\n2\n", { { "a", { "1", "2", "" } } });
        row("no final line feed", "--a\n1", { { "a", { "1" } } });
        row("nothing but the key", "--a", {});
        row("an empty line is a line", "--a\n", { { "a", { "" } } });
        row("lines before the first key", "1\n2\n", {});
        row("every mark goes", "--a--b\n1", { { "ab", { "1" } } });
        row("no trimming", "-- x \n1", { { " x ", { "1" } } });
        row("a key of dashes only", "----\n1\n--a\n2", { { "a", { "2" } } });
        row("three dashes", "---\n1", { { "-", { "1" } } });
        row("five dashes", "-----\n1", { { "-", { "1" } } });
        row("dashes further in", "--a\n x--y\n -- z", { { "a", { " x--y", " -- z" } } });
        row("one dash", "--a\n-1", { { "a", { "-1" } } });
        row("carriage returns stay", "--a\r\n1\r\n", { { "a\r", { "1\r", "" } } });
        row("an empty key ends a section", "--a\n1\n--\n2\n--a\n3", { { "a", { "1", "3" } } });
    }
    void dividesByKey()
    {
        QFETCH(QString, text);
        QTEST(sectionsOf(text), "sections");
        QTEST(spelledSections(text), "sections");
    }

    void divisionMatchesTheOracle()
    {
        auto generator = seededGenerator(1);
        for (int i = 0; i < 20000; ++i) {
            const QString text = randomText(generator, QStringLiteral("---\n\nab "), 30);
            QCOMPARE(sectionsOf(text), spelledSections(text));
        }
    }

    void mapsNames_data()
    {
        addColumns<QStringList, Values>("lines", "values");
        const auto row = [](const char* name, const QStringList& lines, const Values& values) {
            QTest::newRow(name) << lines << values;
        };
        row("empty", {}, {});
        row("the first colon divides", { "a:b:c" }, { { "a", "b:c" } });
        row("no name", { ":x" }, {});
        row("no colon", { "x", "" }, {});
        row("no value", { "a:" }, { { "a", "" } });
        row("one blank in front of the value", { "a: x" }, { { "a", "x" } });
        row("two blanks in front of the value", { "a:  x" }, { { "a", " x" } });
        row("blanks around the name", { "  a :x" }, { { " a", "x" } });
        row("all blanks at the end", { "a  \t : x \t \r" }, { { "a", "x" } });
        row("a tab in front", { "\ta:\tx" }, { { "a", "x" } });
        row("a name of one blank", { " :x" }, { { "", "x" } });
        row("a name of blanks", { "    :    " }, { { "", "" } });
        row("blanks inside", { "a b: c  d" }, { { "a b", "c  d" } });
        row("later lines replace", { "a:1", "b:2", "a:3" }, { { "a", "3" }, { "b", "2" } });
        row("a no-break space stays", { QString("a:x") + QChar(0xA0) }, { { "a", QString("x") + QChar(0xA0) } });
        row("a final line feed", { "a: x\n" }, { { "a", "x" } });
    }
    void mapsNames()
    {
        QFETCH(QStringList, lines);
        QTEST(valuesOf(lines), "values");
        QTEST(spelledValues(lines), "values");
    }

    void mapsAnyLinesAsSpelt()
    {
        auto generator = seededGenerator(2);
        for (int i = 0; i < 20000; ++i) {
            const QStringList lines { randomText(generator, QStringLiteral("  \t\n:ab"), 12),
                randomText(generator, QStringLiteral("  :ab\r\v"), 12) };
            QCOMPARE(valuesOf(lines), spelledValues(lines));
        }
    }

    // The two commands that keep the values of their last reply.

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

QTEST_GUILESS_MAIN(TestTarnisCmd)
#include "tst_tarniscmd.moc"
