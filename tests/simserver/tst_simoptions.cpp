// The command line: the effect of each option, and refused arguments.
#include "options.h"

#include <tarnis/version.h>

#include <QtTest>

using namespace simserver;

namespace {

Options parsed(const QStringList& words, const QString& environment = {})
{
    return parseOptions(QStringList { "tarnis-simserver" } + words, environment);
}

QString settingOf(const Options& options, const QString& name)
{
    for (const Settings::Pair& pair : options.settings) {
        if (pair.key == name)
            return pair.value;
    }
    return QStringLiteral("absent");
}

} // namespace

class TestSimOptions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void defaultsApplyWithoutOptions()
    {
        const Options options = parsed({});
        QVERIFY(options.action == Options::Action::Run);
        QCOMPARE(options.port, quint16 { 0 });
        QCOMPARE(options.prompt, QByteArray("> "));
        QVERIFY(options.root.isEmpty());
        QVERIFY(options.fault == Fault::None);
        QVERIFY(options.settings.isEmpty());
        QVERIFY(!options.start);
        QVERIFY(options.useStandardInput);
    }

    void everyOptionIsRead()
    {
        const Options options = parsed({ "--port", "5000", "--prompt=# ", "--root", "/tmp", "--settings", "s",
            "--modules", "3", "--rate", "1e4", "--seed", "9", "--maxevents", "5", "--maxtime", "6.5", "--start",
            "--spectrum", "x.spe", "--fault", "bytewise", "--fault-every", "7", "--fault-delay", "8", "--max-clients",
            "11", "--log", "l", "--log-level", "10", "--no-stdin" });
        QVERIFY(options.action == Options::Action::Run);
        QCOMPARE(options.port, quint16 { 5000 });
        QCOMPARE(options.prompt, QByteArray("# "));
        QCOMPARE(options.root, QStringLiteral("/tmp"));
        QCOMPARE(options.settingsFile, QStringLiteral("s"));
        QCOMPARE(settingOf(options, "modules"), QStringLiteral("3"));
        QCOMPARE(settingOf(options, "rate"), QStringLiteral("1e4"));
        QCOMPARE(settingOf(options, "seed"), QStringLiteral("9"));
        QCOMPARE(settingOf(options, "maxevents"), QStringLiteral("5"));
        QCOMPARE(settingOf(options, "maxtime"), QStringLiteral("6.5"));
        QVERIFY(options.start);
        QCOMPARE(options.spectrumFile, QStringLiteral("x.spe"));
        QVERIFY(options.fault == Fault::Bytewise);
        QCOMPARE(options.faultEvery, 7);
        QCOMPARE(options.faultDelayMs, 8);
        QCOMPARE(options.maxClients, 11);
        QCOMPARE(options.logFile, QStringLiteral("l"));
        QCOMPARE(options.logLevel, 10);
        QVERIFY(!options.useStandardInput);
    }

    void helpListsEverything()
    {
        const Options options = parsed({ "--help" });
        QVERIFY(options.action == Options::Action::Help);
        for (const char* const name : { "--port", "--prompt", "--root", "--settings", "--modules", "--rate", "--seed",
                 "--maxevents", "--maxtime", "--start", "--spectrum", "--fault", "--fault-every", "--fault-delay",
                 "--max-clients", "--log", "--log-level", "--no-stdin", "TARNIS_SIMSERVER_OPTIONS", "Exit codes" })
            QVERIFY2(options.message.contains(name), name);
        for (const FaultInfo& info : allFaults())
            QVERIFY2(options.message.contains(QStringLiteral("\n  %1 ").arg(info.name)), info.name);
    }

    void versionIsPrinted()
    {
        const Options options = parsed({ "--version" });
        QVERIFY(options.action == Options::Action::Version);
        QCOMPARE(options.message, QStringLiteral("tarnis-simserver " TARNIS_VERSION_STRING "\n"));
    }

    void wrongLinesAreRefused_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("error");
        const auto row = [](const char* name, const QStringList& words, const char* error) {
            QTest::newRow(name) << words << QString::fromLatin1(error);
        };
        row("unknown option", { "--colour" }, "Unknown option 'colour'.");
        row("missing value", { "--port" }, "Missing value after '--port'.");
        row("stray word", { "5000" }, "unexpected '5000'");
        row("port beyond the range", { "--port", "65536" }, "--port must be a whole number from 0 to 65535");
        row("port that is no number", { "--port", "http" }, "--port must be a whole number from 0 to 65535");
        row("empty prompt", { "--prompt", "" }, "--prompt must be 1 to 64 bytes long");
        row("long prompt", { "--prompt", QString(65, 'x') }, "--prompt must be 1 to 64 bytes long");
        row("empty root", { "--root", "" }, "--root needs a value");
        row("no modules", { "--modules", "0" }, "--modules must be a whole number from 1 to 256");
        row("negative rate", { "--rate=-1" }, "--rate must be 0, or a number from 0.001 to 1e+07");
        row("word for a seed", { "--seed", "x" }, "--seed must be a whole number from 0 to 18446744073709551615");
        row("unknown fault", { "--fault", "gremlin" }, "unknown fault 'gremlin'; --help lists them");
        row("fault every zeroth time", { "--fault-every", "0" },
            "--fault-every must be a whole number from 1 to 2147483647");
        row("negative delay", { "--fault-delay=-1" }, "--fault-delay must be a whole number from 0 to 600000");
        row("no clients", { "--max-clients", "0" }, "--max-clients must be a whole number from 1 to 10000");
        row("word for a level", { "--log-level", "all" }, "--log-level must be a whole number from 0 to 1000");
    }
    void wrongLinesAreRefused()
    {
        QFETCH(QStringList, words);
        const Options options = parsed(words);
        QVERIFY(options.action == Options::Action::Fail);
        QTEST(options.message, "error");
    }

    void environmentPrecedesTheCommandLine()
    {
        const Options options = parsed({ "--port", "6000" }, "--port 5000 --prompt \"a b> \" --start");
        QCOMPARE(options.port, quint16 { 6000 });
        QCOMPARE(options.prompt, QByteArray("a b> "));
        QVERIFY(options.start);
        QVERIFY(parsed({}, "--colour").action == Options::Action::Fail);
    }
};

QTEST_APPLESS_MAIN(TestSimOptions)
#include "tst_simoptions.moc"
