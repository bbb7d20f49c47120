// The manager's settings, readout addresses, base path and downloads. No session: SendCmd is overridden and recorded.
#include "support/cases.h"
#include "support/helpersoracle.h"
#include "support/logfile.h"
#include "support/managerprobe.h"
#include "support/support.h"

#include <QTest>

#include <climits>
#include <functional>
#include <map>
#include <new>
#include <thread>
#include <vector>

using namespace tarnis::testing;
using Status = Tarnis::SERVER_STATUS;

namespace {

class Manager : public TarnisProbe {
public:
    Manager()
        : TarnisProbe(nullptr, nullptr)
    {
        connect(this, &Tarnis::onBasePathChange, this, [this](const QString& path) { sent.append("signal " + path); });
    }

    /// "session|name|command" of every SendCmd, "signal path" of every onBasePathChange, in order.
    QStringList sent;
    std::function<void()> onSend = [] {};
    bool refuseMemory = false;

    bool SendCmd(const QString& session, const QString& name, const QString& cmd, bool progress) override
    {
        sent.append(session + '|' + name + '|' + cmd + (progress ? "|progress" : ""));
        onSend();
        return true;
    }
    bool SetSettingValue(const QString& key, const QString& value) override
    {
        if (refuseMemory)
            throw std::bad_alloc();
        return Tarnis::SetSettingValue(key, value);
    }
    QString GetSettingValue(const QString& key, const QString& defaultValue) const override
    {
        if (refuseMemory)
            throw std::bad_alloc();
        return Tarnis::GetSettingValue(key, defaultValue);
    }
    void fill(int count)
    {
        for (int i = 0; i < count; ++i)
            QVERIFY(SetSettingValue(QStringLiteral("k%1").arg(i), QString::number(i)));
    }
};

struct Address {
    QString ip = "before";
    unsigned int tcp = 77;
    unsigned int bcp = 77;
};

} // namespace

class TestTarnisSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void checksPorts_data()
    {
        addColumns<QString, QString, bool>("key", "value", "accepted");
        addCase("tcp number", "tcp", "5000", true);
        addCase("tcp word", "tcp", "abc", false);
        addCase("tcp empty", "tcp", "", false);
        addCase("tcp negative", "tcp", "-1", true);
        addCase("tcp blanks", "tcp", " 7 ", true);
        addCase("tcp largest int", "tcp", "2147483647", true);
        addCase("tcp beyond int", "tcp", "2147483648", false);
        addCase("tcp hexadecimal", "tcp", "0x10", false);
        addCase("bcp number", "bcp", "4660", true);
        addCase("bcp word", "bcp", "abc", false);
        addCase("tcp1 word", "tcp1", "abc", true);
        addCase("bcp0 word", "bcp0", "abc", true);
        addCase("TCP word", "TCP", "abc", true);
        addCase("ip word", "ip", "nowhere", true);
        addCase("empty key", "", "", true);
    }
    void checksPorts()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(bool, accepted);
        Manager manager;
        QCOMPARE(manager.CheckSettingKey(key, value), accepted);
        QVERIFY(manager.m_settings.isEmpty());
        QCOMPARE(manager.SetSettingValue(key, value), accepted);
        QCOMPARE(manager.m_settings.contains(key), accepted);
    }

    void storesWhatIsAccepted()
    {
        Manager manager;
        QVERIFY(manager.SetSettingValue("inst", "a"));
        QVERIFY(manager.SetSettingValue("inst", "b"));
        QCOMPARE(manager.GetSettingValue("inst", "default"), QStringLiteral("b"));
        QCOMPARE(manager.sent, QStringList()); // nothing is sent to the server
    }

    void refusalKeepsTheOldValue()
    {
        Manager manager;
        QVERIFY(manager.SetSettingValue("tcp", "5000"));
        QVERIFY(!manager.SetSettingValue("tcp", "abc"));
        QCOMPARE(manager.GetSettingValue("tcp", QString()), QStringLiteral("5000"));
    }

    void logsCheckAndStore()
    {
        Manager manager;
        const LogFile log;
        manager.SetSettingValue("tcp", "abc");
        QCOMPARE(log.messages(),
            (QStringList { "BLCK Tarnis::SetSettingValue, key[tcp] value[abc]",
                "BLCK Tarnis::CheckSettingKey(key[tcp], value[abc])", "DBG     return false" }));
    }

    void missingValuesAreTheDefault()
    {
        Manager manager;
        QCOMPARE(manager.GetSettingValue("a", "default"), QStringLiteral("default"));
        QVERIFY(manager.GetStatValue("a").isNull());
        QVERIFY(manager.m_settings.isEmpty() && manager.m_stats.isEmpty());
        manager.SetSettingValue("a", QString());
        QCOMPARE(manager.GetSettingValue("a", "default"), QString());
        QVERIFY(manager.GetStatValue("a").isNull());
        manager.m_stats["a"] = "1";
        QCOMPARE(manager.GetStatValue("a"), QStringLiteral("1"));
    }

    void settingsAreOneMapAndItsCopy()
    {
        Manager manager;
        manager.SetSettingValue("a", "1");
        QMap<QString, QString> copy = manager.CopySettings();
        QCOMPARE(&manager.GetSettings(), &manager.m_settings);
        QCOMPARE(copy, manager.m_settings);
        copy["a"] = "2";
        QCOMPARE(manager.m_settings.value("a"), QStringLiteral("1"));
    }

    void readsAnAddress_data()
    {
        addColumns<QString, QString, QString, bool, unsigned int, unsigned int>(
            "ip", "tcp", "bcp", "result", "tcpNumber", "bcpNumber");
        addCase("whole", "10.0.0.1", "24", "4660", true, 24U, 4660U);
        addCase("nothing set", QString(), QString(), QString(), false, 0U, 0U);
        addCase("tcp missing", "10.0.0.1", QString(), "4660", false, 0U, 4660U);
        addCase("bcp missing", "10.0.0.1", "24", QString(), false, 24U, 0U);
        addCase("ip missing", QString(), "24", "4660", true, 24U, 4660U);
        addCase("negative", "10.0.0.1", "-1", "4660", false, 0U, 4660U);
    }
    void readsAnAddress()
    {
        QFETCH(QString, ip);
        QFETCH(QString, tcp);
        QFETCH(QString, bcp);
        QFETCH(bool, result);
        QFETCH(unsigned int, tcpNumber);
        QFETCH(unsigned int, bcpNumber);
        for (const QString index : { "", "0", "2", "12" }) {
            Manager manager;
            const auto set = [&](const QString& key, const QString& value) {
                if (!value.isNull())
                    manager.m_settings[key + index] = value;
            };
            set("ip", ip);
            set("tcp", tcp);
            set("bcp", bcp);
            Address got;
            QCOMPARE(index.isEmpty() ? manager.GetReadoutAddress(got.ip, got.tcp, got.bcp)
                                     : manager.GetReadoutAddress(index.toInt(), got.ip, got.tcp, got.bcp),
                result);
            QCOMPARE(got.ip, ip.isNull() ? QString() : ip);
            QCOMPARE(got.tcp, tcpNumber);
            QCOMPARE(got.bcp, bcpNumber);
        }
    }

    void storesAnAddress()
    {
        Manager manager;
        QString ip("10.0.0.1");
        QVERIFY(manager.SetReadoutAddress(ip, 24, 4660));
        QCOMPARE(manager.CopySettings(),
            (QMap<QString, QString> { { "ip", "10.0.0.1" }, { "tcp", "24" }, { "bcp", "4660" } }));
        QCOMPARE(manager.GetReadoutAddressText(), QStringLiteral("10.0.0.1:24"));
    }

    void storesAnIndexedAddress()
    {
        Manager manager;
        QString ip("10.0.0.1");
        QString other("10.0.0.2");
        QVERIFY(manager.SetReadoutAddress(2, ip, 24, 4660));
        QCOMPARE(manager.CopySettings(),
            (QMap<QString, QString> { { "ip2", "10.0.0.1" }, { "tcp2", "24" }, { "bcp2", "4660" } }));
        QCOMPARE(manager.GetReadoutAddressText(), QStringLiteral("10.0.0.1:24"));
        QVERIFY(manager.SetReadoutAddress(other, 25, 1));
        QCOMPARE(manager.GetReadoutAddressText(), QStringLiteral("10.0.0.2:25"));
        QVERIFY(manager.SetReadoutAddress(0, ip, 26, 1)); // of any index, the one set last
        QCOMPARE(manager.GetReadoutAddressText(), QStringLiteral("10.0.0.1:26"));
    }

    void portBeyondIntShowsButIsNotStored()
    {
        Manager manager;
        QString ip("10.0.0.1");
        QVERIFY(manager.SetReadoutAddress(ip, 24, 4660));
        QVERIFY(manager.SetReadoutAddress(ip, UINT_MAX, UINT_MAX));
        QCOMPARE(manager.GetSettingValue("tcp", QString()), QStringLiteral("24"));
        QCOMPARE(manager.GetSettingValue("bcp", QString()), QStringLiteral("4660"));
        QCOMPARE(manager.GetReadoutAddressText(), QStringLiteral("10.0.0.1:4294967295"));
        QVERIFY(manager.SetReadoutAddress(1, ip, UINT_MAX, UINT_MAX)); // indexed keys are not checked
        Address got;
        QVERIFY(manager.GetReadoutAddress(1, got.ip, got.tcp, got.bcp));
        QCOMPARE(got.tcp, UINT_MAX);
    }

    void exceptionGivesFalse()
    {
        Manager manager;
        manager.m_readoutAddress = "before";
        manager.refuseMemory = true;
        Address got;
        QVERIFY(!manager.GetReadoutAddress(got.ip, got.tcp, got.bcp));
        QVERIFY(!manager.GetReadoutAddress(1, got.ip, got.tcp, got.bcp));
        QVERIFY(!manager.SetReadoutAddress(got.ip, 1, 2));
        QVERIFY(!manager.SetReadoutAddress(1, got.ip, 1, 2));
        QCOMPARE(manager.GetReadoutAddressText(), QStringLiteral("before"));
        bool isFree = false;
        std::thread([&] {
            isFree = manager.m_mutex.tryLock();
            if (isFree)
                manager.m_mutex.unlock();
        }).join();
        QVERIFY(isFree);
    }

    void basePathByStatus_data()
    {
        addColumns<int, bool, bool>("value", "stores", "sends");
        QTest::newRow("IDLE") << 0 << true << false;
        QTest::newRow("SERVER_CONNECTED") << 1 << true << true;
        QTest::newRow("SERVER_ERROR") << 2 << false << false;
        QTest::newRow("READOUT_CONNECTED") << 3 << true << true;
        QTest::newRow("READOUT_ERROR") << 4 << true << true;
        QTest::newRow("HARDWARE_BUSY") << 5 << false << false;
        QTest::newRow("STARTING") << 6 << false << false;
        QTest::newRow("RUNNING") << 7 << false << false;
        QTest::newRow("LOADING") << 8 << false << false;
        QTest::newRow("SHUTTING_DOWN") << 9 << false << false;
        QTest::newRow("10") << 10 << false << false;
    }
    void basePathByStatus()
    {
        QFETCH(int, value);
        QFETCH(bool, stores);
        QFETCH(bool, sends);
        for (const bool withInst : { false, true }) {
            Manager manager;
            manager.SetSettingValue("inst", "hall 1");
            manager.SetSettingValue("basepath", "/old");
            manager.SetStatus(static_cast<Status>(value));
            // Stored, sent, signalled, in this order.
            QStringList storedWhenSent;
            manager.onSend = [&] { storedWhenSent.append(manager.m_settings.value("basepath")); };
            QVERIFY(!manager.SetBasePath("/new", withInst));
            QCOMPARE(manager.GetSettingValue("basepath", QString()), QString(stores ? "/new" : "/old"));
            const QString text = withInst ? "setting inst:hall 1 basepath:/new" : "setting basepath:/new";
            QCOMPARE(manager.sent,
                sends ? (QStringList { "control|settingBasePathCmd|" + text, "signal /new" }) : QStringList());
            QCOMPARE(storedWhenSent, sends ? QStringList { "/new" } : QStringList());
        }
    }

    void basePathOfARefusingSubclassIsSentAllTheSame()
    {
        class Refusing : public Manager {
        public:
            bool CheckSettingKey(const QString&, const QString&) const override { return false; }
        } manager;
        manager.SetStatus(Tarnis::SERVER_CONNECTED);
        manager.SetBasePath("/new", true);
        QVERIFY(manager.m_settings.isEmpty());
        QCOMPARE(
            manager.sent, (QStringList { "control|settingBasePathCmd|setting inst: basepath:/new", "signal /new" }));
    }

    void basePathIsSentWithTheNextDownload()
    {
        Manager manager;
        manager.SetBasePath("/data", false);
        QCOMPARE(manager.DownloadSettings("control", false), 1);
        QCOMPARE(manager.sent, QStringList { "control|updateSettingCmd0|setting basepath:/data " });
    }

    void basePathLogsABlock()
    {
        Manager manager;
        const LogFile log;
        manager.SetBasePath("/data", false);
        QCOMPARE(log.messages().value(0), QStringLiteral("BLCK SetBasePath"));
    }

    void downloadMakesLinesOfFive_data()
    {
        addColumns<int, QStringList>("count", "lines");
        const QString five = "setting k0:0 k1:1 k2:2 k3:3 k4:4";
        QTest::newRow("none") << 0 << QStringList {};
        QTest::newRow("one") << 1 << QStringList { "setting k0:0 " };
        QTest::newRow("four") << 4 << QStringList { "setting k0:0 k1:1 k2:2 k3:3 " };
        QTest::newRow("five, no blank at the end") << 5 << QStringList { five };
        QTest::newRow("six") << 6 << QStringList { five, "setting k5:5 " };
        QTest::newRow("ten") << 10 << QStringList { five, "setting k5:5 k6:6 k7:7 k8:8 k9:9" };
    }
    void downloadMakesLinesOfFive()
    {
        QFETCH(int, count);
        QFETCH(QStringList, lines);
        Manager manager;
        manager.fill(count);
        QCOMPARE(manager.DownloadSettings("control", false), int(lines.size()));
        QStringList expected;
        for (const QString& line : lines)
            expected.append(QStringLiteral("control|updateSettingCmd%1|%2").arg(expected.size()).arg(line));
        QCOMPARE(manager.sent, expected);
    }

    void downloadSendsAddedLinesFirst()
    {
        Manager manager;
        manager.fill(1);
        manager.AddCommand("first");
        manager.AddCommand("second");
        QCOMPARE(manager.DownloadSettings("other", false), 3);
        QCOMPARE(manager.sent,
            (QStringList { "other|updateSettingCmd0|first", "other|updateSettingCmd1|second",
                "other|updateSettingCmd2|setting k0:0 " }));
    }

    void downloadSavesAtTheEnd_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("with settings") << 1;
        QTest::newRow("without settings") << 0;
    }
    void downloadSavesAtTheEnd()
    {
        QFETCH(int, count);
        Manager manager;
        manager.fill(count);
        QCOMPARE(manager.DownloadSettings("control", true), count);
        QCOMPARE(manager.sent.size(), count + 1);
        QCOMPARE(manager.sent.last(), QStringLiteral("control|savesettingCmd|savesetting"));
    }

    void downloadClearsSentLines()
    {
        Manager manager;
        manager.AddCommand("once");
        manager.fill(1);
        QCOMPARE(manager.DownloadSettings("control", false), 2);
        QVERIFY(manager.m_commands.isEmpty());
        manager.sent.clear();
        QCOMPARE(manager.DownloadSettings("control", false), 1);
        QCOMPARE(manager.sent, QStringList { "control|updateSettingCmd0|setting k0:0 " });
    }

    void lineAddedDuringADownloadIsSent()
    {
        Manager manager;
        manager.AddCommand("first");
        manager.onSend = [&] {
            if (manager.sent.size() == 1)
                manager.AddCommand("second");
        };
        QCOMPARE(manager.DownloadSettings("control", false), 2);
        QCOMPARE(manager.sent, (QStringList { "control|updateSettingCmd0|first", "control|updateSettingCmd1|second" }));
    }

    void downloadEscapesNothing()
    {
        Manager manager;
        manager.SetSettingValue("a b", "c:d e");
        manager.DownloadSettings("control", false);
        QCOMPARE(manager.sent, QStringList { "control|updateSettingCmd0|setting a b:c:d e " });
    }

    void downloadLogsABlock()
    {
        Manager manager;
        const LogFile log;
        manager.DownloadSettings("control", true);
        manager.DownloadSettings("other", false);
        QCOMPARE(log.messages(),
            (QStringList { "BLCK Tarnis::DownloadSettings(sessionId[control], bSave[true])",
                "BLCK Tarnis::DownloadSettings(sessionId[other], bSave[false])" }));
    }

    void downloadAgreesWithTheOracle()
    {
        auto generator = seededGenerator(5);
        std::uniform_int_distribution<int> count(0, 23);
        std::uniform_int_distribution<int> letter('a', 'f');
        for (int round = 0; round < 300; ++round) {
            Manager manager;
            std::map<std::string, std::string> pairs;
            for (int i = count(generator); i > 0; --i) {
                std::string key(1 + std::size_t(i % 3), 'x');
                for (char& c : key)
                    c = static_cast<char>(letter(generator));
                pairs[key] = std::to_string(i);
                manager.SetSettingValue(QString::fromStdString(key), QString::number(i));
            }
            const std::vector<std::string> lines = oracle::settingLines({ pairs.begin(), pairs.end() });
            QCOMPARE(manager.DownloadSettings("s", false), int(lines.size()));
            QCOMPARE(manager.sent.size(), qsizetype(lines.size()));
            for (qsizetype i = 0; i < manager.sent.size(); ++i)
                QCOMPARE(manager.sent.at(i),
                    QStringLiteral("s|updateSettingCmd%1|").arg(i) + QString::fromStdString(lines[std::size_t(i)]));
        }
    }

    void settingsComeFromAnyThread()
    {
        constexpr int rounds = 300;
        Manager manager;
        {
            std::vector<std::jthread> threads;
            for (int t = 0; t < 3; ++t) {
                threads.emplace_back([&manager, t] {
                    QString ip = QStringLiteral("10.0.0.%1").arg(t);
                    for (int i = 0; i < rounds; ++i) {
                        manager.SetSettingValue(QString::number(t), QString::number(i));
                        manager.SetReadoutAddress(t, ip, 1, 2);
                        manager.CopySettings();
                        manager.DownloadSettings("s", true);
                    }
                });
            }
        }
        for (int t = 0; t < 3; ++t)
            QCOMPARE(manager.GetSettingValue(QString::number(t), QString()), QString::number(rounds - 1));
        QCOMPARE(manager.sent.count("s|savesettingCmd|savesetting"), 3 * rounds);
    }
};

QTEST_GUILESS_MAIN(TestTarnisSettings)
#include "tst_tarnissettings.moc"
