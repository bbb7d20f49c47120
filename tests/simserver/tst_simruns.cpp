// Settings and runs by commands: what is accepted, saved, counted and recorded. No socket.
#include "simserver/commandfixture.h"
#include "support/cases.h"
#include "support/payload.h"

#include <tarnis/version.h>

#include <QDir>
#include <QtTest>

#include <memory>

using namespace simserver;
using namespace tarnis::testing;
using namespace simtest;

class TestSimRuns : public simtest::CommandFixture {
    Q_OBJECT
private Q_SLOTS:
    void init() { makeServer(); }

    void settingsAreReported()
    {
        QCOMPARE(value("setting", "rate"), QStringLiteral("1000"));
        QCOMPARE(value("setting", "modules"), QStringLiteral("8"));
        QCOMPARE(value("setting", "basepath"), QStringLiteral("/"));
        QCOMPARE(value("setting", "ip"), QStringLiteral("127.0.0.1"));
    }

    void settingsAreTaken_data()
    {
        addColumns<QByteArray, QString, QString>("line", "name", "expected");
        const auto row = [](const char* name, const QByteArray& line, const char* setting, const char* expected) {
            QTest::newRow(name) << line << QString::fromLatin1(setting) << QString::fromUtf8(expected);
        };
        row("a number", "setting rate:2.5", "rate", "2.5");
        row("a number with an exponent", "setting rate:1e3", "rate", "1000");
        row("a blank at the end", "setting rate:5 ", "rate", "5");
        row("several, the first", "setting rate:5 run:7 peaks:2", "rate", "5");
        row("several, the last", "setting rate:5 run:7 peaks:2", "peaks", "2");
        row("the same twice", "setting run:5 run:6", "run", "6");
        row("the largest seed", "setting seed:18446744073709551615", "seed", "18446744073709551615");
        row("a base path", "setting basepath:/data/", "basepath", "/data");
        row("a base path with a blank", "setting inst:X basepath:/data/a b", "basepath", "/data/a b");
        row("a base path with a blank before another", "setting basepath:/data/a b run:5", "basepath", "/data/a b");
        row("a base path in Latin-1", "setting basepath:/data/M\xfcller", "basepath", "/data/M\u00fcller");
        row("an instrument", "setting inst:HRC_2-b.x", "inst", "HRC_2-b.x");
        row("no instrument", "setting inst: basepath:/data", "inst", "SIM");
        row("an address", "setting ip:10.0.0.5", "ip", "10.0.0.5");
        row("an address with an index", "setting ip12:fe80::1 tcp12:24000", "ip12", "fe80::1");
        row("a port", "setting tcp:65535", "tcp", "65535");
        row("a host's own", "setting user.note:hello: world 5", "user.note", "hello: world 5");
    }
    void settingsAreTaken()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, name);
        QCOMPARE(ask(line), QStringLiteral("OK:\n"));
        QTEST(value("setting", name), "expected");
    }

    void settingsChangeARunAtOnce()
    {
        ask("setting rate:100 modules:3 run:41 maxtime:50 background:0");
        QCOMPARE(ask("start"), QStringLiteral("OK:\nrun: 41\n"));
        pass(20.0);
        ask("setting rate:0");
        const double events = value("stat", "events").toDouble();
        QVERIFY(events > 1800.0 && events < 2200.0);
        pass(20.0);
        QCOMPARE(value("stat", "events").toDouble(), events);
        pass(20.0);
        QCOMPARE(value("stat", "state"), QStringLiteral("STOPPED"));
        QCOMPARE(value("stat", "live time"), QStringLiteral("50"));
        QCOMPARE(value("stat", "modules"), QStringLiteral("3"));
        QCOMPARE(value("stat", "histogram time"), QStringLiteral("3 x 16384"));
    }

    void settingsDuringARun_data()
    {
        addColumns<QByteArray, QString>("line", "answer");
        addCase("rate", QByteArray("setting rate:5"), QStringLiteral("OK:\n"));
        addCase("presets", QByteArray("setting maxevents:500000 maxtime:500"), QStringLiteral("OK:\n"));
        addCase("the same modules", QByteArray("setting modules:8"), QStringLiteral("OK:\n"));
        addCase("an address", QByteArray("setting ip:10.0.0.5"), QStringLiteral("OK:\n"));
        for (const char* const pair :
            { "modules:4", "seed:5", "run:5", "peaks:1", "background:1", "record:on", "inst:A", "basepath:/data" }) {
            const QString name = QString::fromLatin1(pair).section(':', 0, 0);
            addCase(
                pair, "setting " + QByteArray(pair), QStringLiteral("NG:%1 cannot change during a run\n").arg(name));
        }
    }
    void settingsDuringARun()
    {
        QFETCH(QByteArray, line);
        ask("start");
        QTEST(ask(line), "answer");
        ask("stop");
        QCOMPARE(ask(line), QStringLiteral("OK:\n"));
    }

    void settingsAreSavedAndLoaded()
    {
        ask("setting rate:77 basepath:/data/a b seed:9 tcp3:99 user.note:a: b");
        QCOMPARE(ask("savesetting"), QStringLiteral("OK:\nfile: /simserver.settings\n"));
        Settings loaded;
        QCOMPARE(loaded.load(local("simserver.settings"), {}), QString());
        m_simulation = std::make_unique<Simulation>(loaded, m_root->path(), QString());
        QCOMPARE(value("setting", "rate"), QStringLiteral("77"));
        QCOMPARE(value("setting", "basepath"), QStringLiteral("/data/a b"));
        QCOMPARE(value("setting", "tcp3"), QStringLiteral("99"));
        QCOMPARE(value("setting", "user.note"), QStringLiteral("a: b"));

        m_simulation = std::make_unique<Simulation>(loaded, m_root->path(), "/nowhere/file");
        QCOMPARE(ask("savesetting"), QStringLiteral("NG:cannot write '/nowhere/file': No such file or directory\n"));
    }

    void badSettingsFileIsRefused_data()
    {
        addColumns<QByteArray, QString>("text", "error");
        addCase("no colon", QByteArray("# fine\nrate 5\n"), QStringLiteral("line 2 is not of the form name: value"));
        addCase("unknown name", QByteArray("colour: red\n"), QStringLiteral("unknown setting 'colour'"));
        addCase("bad value", QByteArray("rate: 5\nmodules: 0\n"),
            QStringLiteral("modules must be a whole number from 1 to 256"));
        addCase("absent base path", QByteArray("basepath: /nowhere\n"),
            QStringLiteral("basepath '/nowhere' is not a directory below the root"));
    }
    void badSettingsFileIsRefused()
    {
        QFETCH(QByteArray, text);
        writeFile(local("bad"), text);
        Settings settings;
        const Settings::Context context { .running = false, .isDirectory = [](const QString&) { return false; } };
        QTEST(settings.load(local("bad"), context), "error");
        QCOMPARE(settings.values().rate, 1000.0);
    }

    void runsCountUp()
    {
        QCOMPARE(ask("start"), QStringLiteral("OK:\nrun: 1\n"));
        QCOMPARE(ask("start"), QStringLiteral("NG:run 1 is under way\n"));
        pass(1.0);
        const QString events = value("stat", "events");
        QCOMPARE(ask("stop"), QStringLiteral("OK:\nrun: 1\nevents: %1\n").arg(events));
        QCOMPARE(value("stat", "events"), events); // they are kept until the next start
        QCOMPARE(ask("start"), QStringLiteral("OK:\nrun: 2\n"));
        QCOMPARE(value("stat", "events"), QStringLiteral("0"));
        ask("stop");
        ask("setting run:999999");
        QCOMPARE(ask("start"), QStringLiteral("OK:\nrun: 999999\n"));
        QCOMPARE(value("setting", "run"), QStringLiteral("0"));
    }

    void clearZeroesEverything()
    {
        ask("start");
        pass(1.0);
        QCOMPARE(ask("clear"), QStringLiteral("OK:\n"));
        QCOMPARE(value("stat", "events"), QStringLiteral("0"));
        QCOMPARE(value("stat", "state"), QStringLiteral("RUNNING"));
        for (const double count : doublesOf(reply("hist1d counts").payload))
            QCOMPARE(count, 0.0);
    }

    void recordedRunLeavesADirectory()
    {
        ask("setting record:on inst:TST run:12 basepath:/data/a b");
        QCOMPARE(ask("start"), QStringLiteral("OK:\nrun: 12\n"));
        const QString directory = value("stat", "run directory");
        QVERIFY(directory.startsWith("/data/a b/TST000012_"));
        QVERIFY(QDir(local(directory.mid(1))).exists());
        pass(1.0);
        ask("stop");
        QVERIFY(readFile(local(directory.mid(1) + "/run.txt")).startsWith("run: 12\nevents: "));
        const SpectrumResult spectrum = readSpectrum(local(directory.mid(1) + "/total.spe"));
        QCOMPARE(spectrum.error, QString());
        QCOMPARE(spectrum.spectrum.counts, m_simulation->acquisition().histograms().find1D("total")->counts);
    }

    void recordedRunDoesNotOverwrite()
    {
        ask("setting record:on run:12");
        ask("start");
        ask("stop");
        ask("setting run:12");
        const QString refusal = ask("start");
        QVERIFY(refusal.startsWith("NG:cannot make the run directory '/SIM000012_"));
        QVERIFY(refusal.endsWith(": it exists\n"));
        QCOMPARE(value("stat", "state"), QStringLiteral("STOPPED"));
    }

    void runThatEndsByItselfIsRecorded()
    {
        ask("setting record:on maxevents:100");
        ask("start");
        const QString directory = value("stat", "run directory");
        pass(100.0);
        QCOMPARE(value("stat", "state"), QStringLiteral("STOPPED"));
        QVERIFY(readFile(local(directory.mid(1) + "/run.txt")).startsWith("run: 1\nevents: 100\n"));
    }

    void modulesAreAddressed()
    {
        QCOMPARE(ask("broadcast stat").count("--module "), 8);
        QCOMPARE(ask("mc orsino stat").count("--module "), 4);
        QCOMPARE(ask("mc orsino stat").count("family: orsino"), 4);
        QCOMPARE(ask("unicast 3 stat"),
            QStringLiteral("OK:\n--module 3\nfamily: plain\nstate: STOPPED\ncounts: 0\nrate: 0\n"));
        ask("start");
        QCOMPARE(value("unicast 3 stat", "state"), QStringLiteral("RUNNING"));
        QCOMPARE(ask("unicast 3 setting enabled:off threshold:7"),
            QStringLiteral("OK:\n--module 3\nenabled: off\nthreshold: 7\n"));
        QCOMPARE(value("unicast 3 stat", "state"), QStringLiteral("OFF"));
        QCOMPARE(value("stat", "module 3 enabled"), QStringLiteral("off"));
        QCOMPARE(value("unicast 4 setting", "threshold"), QStringLiteral("0"));
        QCOMPARE(ask("unicast 3 reset"), QStringLiteral("OK:\n--module 3\nenabled: on\nthreshold: 0\n"));
    }

    void moduleSettingsAct()
    {
        ask("mc orsino setting enabled:off");
        ask("unicast 1 setting threshold:512");
        ask("start");
        pass(20.0);
        const std::vector<double> counts = doublesOf(reply("hist1d counts").payload);
        for (const std::size_t even : { 0U, 2U, 4U, 6U })
            QCOMPARE(counts[even], 0.0);
        QVERIFY(counts[1] > 0.0);
        QVERIFY(counts[1] < 0.5 * counts[7]);
        QVERIFY(value("stat", "rejected").toDouble() > 0.0);
    }

    void sleepHasSteps()
    {
        const Reply plain = reply("sleep 250");
        QCOMPARE(plain.delayedTexts.size(), std::size_t { 1 });
        QCOMPARE(plain.delayedTexts[0].pauseMs, 250);
        QCOMPARE(plain.text, QByteArray("OK:\n"));
        const Reply steps = reply("sleep 1000 3");
        QByteArray text;
        int pauses = 0;
        for (const Reply::DelayedText& delayed : steps.delayedTexts) {
            pauses += delayed.pauseMs;
            text += delayed.text;
        }
        QCOMPARE(pauses, 1000);
        QCOMPARE(text + steps.text, QByteArray("OK:\nstep 1 of 3\nstep 2 of 3\nstep 3 of 3\n"));
    }
};

QTEST_GUILESS_MAIN(TestSimRuns)
#include "tst_simruns.moc"
