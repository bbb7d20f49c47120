// The command language: the reply of each command, and every rejection. No socket.
#include "commands.h"
#include "console/payload.h"
#include "settings.h"
#include "simulation.h"
#include "support/cases.h"

#include <tarnis/version.h>

#include <QDate>
#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace simserver;
using namespace tarnis::testing;
using simtest::doublesOf;

namespace {

bool always()
{
    return true;
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot read");
}

} // namespace

class TestSimCommands : public QObject {
    Q_OBJECT
private:
    // Verbs
    Reply reply(const QByteArray& line)
    {
        return answer(*m_simulation, { .kind = Request::Kind::Line, .bytes = line });
    }
    /// The reply's text: "OK:" and what follows, or "NG:" and the reason.
    QString ask(const QByteArray& line) { return QString::fromUtf8(reply(line).text); }
    /// The value after "name: " in a reply.
    QString value(const QByteArray& line, const QString& name)
    {
        for (const QString& text : ask(line).split('\n')) {
            if (text.startsWith(name + ": "))
                return text.mid(name.size() + 2);
        }
        return QStringLiteral("absent");
    }
    QString upload(const QByteArray& bytes)
    {
        return QString::fromUtf8(answer(*m_simulation, { .kind = Request::Kind::Upload, .bytes = bytes }).text);
    }
    void pass(double seconds) { m_simulation->advance(seconds, always); }
    QString local(const QString& path) const { return m_root->filePath(path); }

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<Simulation> m_simulation;

private Q_SLOTS:
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        const QDir root(m_root->path());
        for (const char* const name : { "data", "data/a b", "data/q\"uote", "data/M\u00fcller", "empty", ".hidden" })
            QVERIFY(root.mkpath(QString::fromUtf8(name)));
        writeFile(local("data/run.txt"), "x");
        writeFile(local("data/Zebra.csv"), "x");
        writeFile(local("data/.secret"), "x");
        m_simulation = std::make_unique<Simulation>(Settings(), m_root->path(), QString());
    }

    void refusals_data()
    {
        addColumns<QByteArray, QString>("line", "reason");
        const auto row = [](const char* name, const QByteArray& line, const char* reason) {
            QTest::newRow(name) << line << QString::fromUtf8(reason);
        };
        row("unknown command", "frobnicate", "unknown command 'frobnicate'; help lists the commands");
        row("command in capitals", "STAT", "unknown command 'STAT'; help lists the commands");
        row("close with more", "close now", "unknown command 'close'; help lists the commands");
        row("control character", "sta\x01t", "the command contains a control character");
        row("zero byte", QByteArray("stat\0x", 6), "the command contains a control character");
        row("help on nothing known", "help me", "unknown command 'me'; help lists the commands");
        row("stat with more", "stat all", "unexpected 'all': the command stands alone");
        row("savesetting with more", "savesetting x", "unexpected 'x': the command stands alone");
        row("start with more", "start x", "unexpected 'x': the command stands alone");
        row("stop with more", "stop x", "unexpected 'x': the command stands alone");
        row("clear with more", "clear x", "unexpected 'x': the command stands alone");
        row("hists with more", "hists x", "unexpected 'x': the command stands alone");
        row("pwd with more", "pwd x", "unexpected 'x': the command stands alone");
        row("stop without a run", "stop", "no run is under way");

        row("setting without a value", "setting rate", "'rate' is not of the form key:value");
        row("setting without a name", "setting :5", "':5' is not of the form key:value");
        row("unknown setting", "setting colour:red", "unknown setting 'colour'");
        row("rate that is no number", "setting rate:fast", "rate must be 0, or a number from 0.001 to 1e+07");
        row("rate below the least", "setting rate:1e-9", "rate must be 0, or a number from 0.001 to 1e+07");
        row("rate above the most", "setting rate:1e8", "rate must be 0, or a number from 0.001 to 1e+07");
        row("rate of not a number", "setting rate:nan", "rate must be 0, or a number from 0.001 to 1e+07");
        row("no modules", "setting modules:0", "modules must be a whole number from 1 to 256");
        row("too many modules", "setting modules:257", "modules must be a whole number from 1 to 256");
        row("half a module", "setting modules:1.5", "modules must be a whole number from 1 to 256");
        row("negative seed", "setting seed:-1", "seed must be a whole number from 0 to 18446744073709551615");
        row("run number of seven digits", "setting run:1000000", "run must be a whole number from 0 to 999999");
        row("negative preset", "setting maxevents:-1", "maxevents must be a whole number from 0 to 9007199254740992");
        row("endless preset", "setting maxtime:inf", "maxtime must be a number from 0 to 1e+09");
        row("too many peaks", "setting peaks:13", "peaks must be a whole number from 0 to 12");
        row("background above 1", "setting background:1.1", "background must be a number from 0 to 1");
        row("record maybe", "setting record:maybe", "record must be on or off");
        row("inst with a slash", "setting inst:a/b",
            "inst must be up to 32 letters, digits, '_', '-' and '.', not beginning with '.'");
        row("empty base path", "setting basepath:", "basepath must be a directory");
        row("absent base path", "setting basepath:/nowhere", "basepath '/nowhere' is not a directory below the root");
        row("base path of a file", "setting basepath:/data/run.txt",
            "basepath '/data/run.txt' is not a directory below the root");
        row("TCP port beyond the range", "setting tcp:65536", "tcp must be a whole number from 0 to 65535");
        row("BCP port that is no number", "setting bcp12:x", "bcp12 must be a whole number from 0 to 65535");

        row("hist1d alone", "hist1d", "hist1d needs the name of a histogram; hists lists them");
        row("hist1d of nothing known", "hist1d abc", "no 1D histogram 'abc'; hists lists them");
        row("hist1d of a map", "hist1d image", "no 1D histogram 'image'; hists lists them");
        row("row that is no number", "hist1d time first", "'first' is not a row");
        row("row beyond the last", "hist1d time 8", "no row 8: 'time' has rows 0 to 7");
        row("last row beyond the last", "hist1d time 0 8", "no row 8: 'time' has rows 0 to 7");
        row("negative row", "hist1d time -1", "no row -1: 'time' has rows 0 to 7");
        row("rows reversed", "hist1d time 3 2", "the last row stands before the first");
        row("three rows", "hist1d time 1 2 3", "unexpected '3'");
        row("two rows with pairs", "hist1d time 1 2 pairs", "unexpected '2'");
        row("all without pairs", "hist1d time all", "'all' is not a row");
        row("no bins", "hist1d time bins:0", "'0' is not a number of bins");
        row("bins without a number", "hist1d time bins:", "'' is not a number of bins");
        row("bins that do not divide", "hist1d time bins:1000", "16384 bins do not divide into 1000");
        row("more bins than there are", "hist1d time bins:32768", "16384 bins do not divide into 32768");
        row("hist2d alone", "hist2d", "hist2d needs the name of a map; hists lists them");
        row("hist2d of rows", "hist2d time", "no map 'time'; hists lists them");
        row("hist2d with more", "hist2d image 5", "unexpected '5'");
        row("map bins of one axis missing", "hist2d image bins:64x", "'' is not a number of bins");
        row("map bins that do not divide", "hist2d image bins:64x100", "1024 bins do not divide into 100");

        row("broadcast alone", "broadcast", "a module command is missing: stat, setting or reset");
        row("unknown module command", "broadcast dance",
            "unknown module command 'dance': stat, setting and reset are known");
        row("module stat with more", "broadcast stat x", "unexpected 'x': the command stands alone");
        row("unknown module setting", "broadcast setting colour:red",
            "unknown module setting 'colour': enabled and threshold are known");
        row("threshold beyond the range", "broadcast setting threshold:1024",
            "threshold must be a whole number from 0 to 1023");
        row("half enabled", "broadcast setting enabled:maybe", "enabled must be on or off");
        row("unicast alone", "unicast", "no module '': there are 0 to 7");
        row("unicast to nobody", "unicast 8 stat", "no module '8': there are 0 to 7");
        row("unicast to a word", "unicast three stat", "no module 'three': there are 0 to 7");
        row("unicast without a command", "unicast 3", "a module command is missing: stat, setting or reset");
        row("mc alone", "mc", "unknown family '': orsino is known");
        row("mc to another family", "mc viola stat", "unknown family 'viola': orsino is known");
        row("mc without a command", "mc orsino", "a module command is missing: stat, setting or reset");

        row("absent directory", "ls-F \"/nowhere\"", "cannot list '/nowhere': No such file or directory");
        row("directory that is a file", "ls-F \"/data/run.txt\"", "cannot list '/data/run.txt': Not a directory");
        row("txfile as a line", "txfil", "unknown command 'txfil'; help lists the commands");
        row("sleep alone", "sleep", "sleep needs a time of 0 to 600000 milliseconds");
        row("sleep backwards", "sleep -1", "sleep needs a time of 0 to 600000 milliseconds");
        row("sleep too long", "sleep 600001", "sleep needs a time of 0 to 600000 milliseconds");
        row("sleep with more", "sleep 1 2 3", "sleep needs a time of 0 to 600000 milliseconds");
        row("sleep without steps", "sleep 1 0", "the steps must be from 1 to 10000");
        row("sleep with a word for steps", "sleep 1 x", "the steps must be from 1 to 10000");
        row("unknown fault", "fault gremlin", "unknown fault 'gremlin'; fault lists them");
        row("fault of the start", "fault port-zero", "'port-zero' acts when the server starts: use --fault");
        row("fault every zeroth time", "fault silent every:0",
            "'every:0' is neither every:N (from 1) nor delay:MILLISECONDS (0 to 600000)");
        row("fault with an unknown option", "fault slow much",
            "'much' is neither every:N (from 1) nor delay:MILLISECONDS (0 to 600000)");
    }
    void refusals()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, reason);
        QCOMPARE(ask(line), "NG:" + reason + '\n');
    }

    void refusalChangesNothing()
    {
        const QString before = ask("setting");
        QCOMPARE(
            ask("setting rate:5 modules:3 user.note:x colour:red"), QStringLiteral("NG:unknown setting 'colour'\n"));
        QCOMPARE(ask("setting"), before);
        QVERIFY(ask("broadcast setting threshold:5 enabled:maybe").startsWith("NG:"));
        QCOMPARE(value("unicast 0 setting", "threshold"), QStringLiteral("0"));
    }

    void refusalsOfBinaryCommandsAreBinary()
    {
        for (const char* const line : { "hist1d", "hist1d abc", "hist2d abc", "hist1d time 99 pairs" }) {
            const Reply refused = reply(line);
            QVERIFY(refused.isBinary());
            QVERIFY(refused.payload.isEmpty());
            QVERIFY(refused.text.startsWith("NG:"));
        }
    }

    void emptyLineDrawsAnEmptyReply()
    {
        QCOMPARE(ask(""), QString());
        QCOMPARE(ask("  \r"), QString());
    }

    void tooLongRequestIsRefused()
    {
        const Reply refused = answer(*m_simulation, { .kind = Request::Kind::TooLong, .bytes = {} });
        QCOMPARE(refused.text, QByteArray("NG:longer than 65536 bytes, or 16777216 for txfile\n"));
    }

    void helpListsEveryCommand()
    {
        const QString help = ask("help");
        QVERIFY(help.startsWith("OK:\n"));
        for (const char* const name :
            { "help", "stat", "setting", "savesetting", "start", "stop", "clear", "hists", "hist1d", "hist2d", "pwd",
                "ls-F", "txfile", "rxfile", "broadcast", "unicast", "mc", "sleep", "fault", "close" })
            QVERIFY2(help.contains(QStringLiteral("\n  %1 ").arg(name)), name);
    }

    void helpOnOneCommand()
    {
        QVERIFY(ask("help stat").startsWith("OK:\nstat\n"));
        QVERIFY(ask("help setting").contains("\n  maxevents "));
        QVERIFY(ask("help fault").contains("\n  bytewise "));
        QVERIFY(ask("help mc").contains("threshold"));
        QVERIFY(ask("help close").startsWith("OK:\nclose\n"));
    }

    void statReportsTheState()
    {
        QCOMPARE(value("stat", "state"), QStringLiteral("STOPPED"));
        QCOMPARE(value("stat", "run"), QStringLiteral("none"));
        ask("start");
        pass(2.0);
        QCOMPARE(value("stat", "state"), QStringLiteral("RUNNING"));
        QCOMPARE(value("stat", "run"), QStringLiteral("1"));
        QCOMPARE(value("stat", "next run"), QStringLiteral("2"));
        QCOMPARE(value("stat", "live time"), QStringLiteral("2"));
        const double events = value("stat", "events").toDouble();
        QVERIFY(events > 1700.0 && events < 2300.0);
        QCOMPARE(value("stat", "rate").toDouble(), events / 2.0);
        double counts = 0.0;
        for (int module = 0; module < 8; ++module)
            counts += value("stat", QStringLiteral("module %1 counts").arg(module)).toDouble();
        QCOMPARE(counts, events);
    }

    void statHasAllSections()
    {
        const QStringList lines = ask("stat").split('\n');
        for (const char* const section : { "--server", "--run", "--modules", "--histograms" })
            QVERIFY(lines.contains(section));
        QCOMPARE(lines.first(), QStringLiteral("OK:"));
        QCOMPARE(value("stat", "histogram time"), QStringLiteral("8 x 16384"));
        QCOMPARE(value("stat", "histogram image"), QStringLiteral("map 1024 x 1024"));
        QCOMPARE(value("stat", "fault"), QStringLiteral("none"));
        QCOMPARE(value("stat", "version"), QStringLiteral(TARNIS_VERSION_STRING));
    }

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

    void settingsAct()
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

    void histogramsAreListed()
    {
        Spectrum spectrum;
        spectrum.counts = { 1.0, 2.0 };
        m_simulation->setSpectrum(spectrum);
        QCOMPARE(
            value("hists", "time"), QStringLiteral("kind=1d rows=8 bins=16384 min=0 max=40000 label=Time unit=us"));
        QCOMPARE(
            value("hists", "counts"), QStringLiteral("kind=1d rows=1 bins=8 min=0 max=8 label=Module unit=number"));
        QCOMPARE(
            value("hists", "sampled"), QStringLiteral("kind=1d rows=1 bins=2 min=0 max=2 label=Channel unit=channel"));
        QCOMPARE(value("hists", "timemap"),
            QStringLiteral("kind=2d binsx=1024 minx=0 maxx=40000 labelx=Time unitx=us binsy=1024 miny=0 maxy=1000 "
                           "labely=Horizontal unity=mm"));
        QCOMPARE(ask("hists").count('\n'), 9);
    }

    void rowsAreServed()
    {
        ask("start");
        pass(5.0);
        const Reply rows = reply("hist1d time 2 5 bins:64");
        QVERIFY(rows.kind == Reply::Kind::Rows);
        QCOMPARE(rows.payload.size(), 4 * 64 * 8);
        QVERIFY(rows.text.startsWith("OK: time rows 2 to 5, run 1, live 5.000 s, "));
        QVERIFY(rows.text.endsWith(" (0 40000 64)\n"));
        const std::vector<double> values = doublesOf(rows.payload);
        const HistogramSet& histograms = m_simulation->acquisition().histograms();
        for (int row = 2; row <= 5; ++row) {
            const std::vector<double> expected = rebinned(histograms.find1D("time")->row(row), 64);
            for (std::size_t i = 0; i < expected.size(); ++i)
                QCOMPARE(values[static_cast<std::size_t>(row - 2) + i * 4], expected[i]);
        }
        QCOMPARE(reply("hist1d time").payload.size(), 8 * 16384 * 8);
    }

    void singleRowIsServed()
    {
        ask("start");
        pass(5.0);
        for (const char* const line : { "hist1d time 3", "hist1d time 3 3", "hist1d total", "hist1d total 0" })
            QCOMPARE(reply(line).payload.size(), 16384 * 8);
        const std::vector<double> counts = doublesOf(reply("hist1d counts").payload);
        QCOMPARE(counts, m_simulation->acquisition().histograms().find1D("counts")->counts);
    }

    void pairsAreServed()
    {
        ask("start");
        pass(5.0);
        const Reply filled = reply("hist1d time 3 pairs bins:1024");
        QVERIFY(filled.kind == Reply::Kind::Pairs);
        // Like a client: min, max and bins follow the first "(".
        QByteArray axis = filled.text.mid(filled.text.indexOf('(') + 1);
        QVERIFY(axis.endsWith(")\n"));
        axis.chop(2);
        QCOMPARE(axis, QByteArray("0 40000 1024"));
        const std::vector<double> pairs = doublesOf(filled.payload);
        double sum = 0.0;
        for (std::size_t p = 0; p < pairs.size(); p += 2) {
            QVERIFY(pairs[p] >= 0.0 && pairs[p] < 40000.0);
            QVERIFY(pairs[p + 1] > 0.0);
            sum += pairs[p + 1];
        }
        QCOMPARE(sum, static_cast<double>(m_simulation->acquisition().modules()[3].counts));
        QCOMPARE(reply("hist1d time 3 pairs all bins:1024").payload.size(), 1024 * 16);
        QCOMPARE(reply("hist1d total pairs all").payload.size(), 16384 * 16);
    }

    void mapsAreServed()
    {
        ask("start");
        pass(5.0);
        const Reply map = reply("hist2d image bins:64x32");
        QVERIFY(map.kind == Reply::Kind::Map);
        QCOMPARE(map.payload.size(), 64 * 32 * 8);
        // Like a client: the fourth word after "exported" and one further character.
        const qsizetype word = map.text.indexOf("exported");
        QVERIFY(word >= 1);
        const QList<QByteArray> tokens = map.text.mid(word + 9).chopped(1).split(' ');
        QCOMPARE(tokens, (QList<QByteArray> { "64", "x", "32", "y" }));
        QCOMPARE(reply("hist2d timemap bins:128").payload.size(), 128 * 128 * 8);
        QCOMPARE(reply("hist2d timemap").payload.size(), 1024 * 1024 * 8);
        double sum = 0.0;
        for (const double value : doublesOf(map.payload))
            sum += value;
        QCOMPARE(sum, static_cast<double>(m_simulation->acquisition().events()));
    }

    void largeRepliesAreRefused()
    {
        ask("setting modules:256");
        const Reply refused = reply("hist1d time");
        QCOMPARE(
            refused.text, QByteArray("NG:the reply would be larger than 16777216 bytes: ask for fewer rows or bins\n"));
        QCOMPARE(reply("hist1d time 0 127").payload.size(), 16777216);
        QCOMPARE(reply("hist1d time bins:1024").payload.size(), 256 * 1024 * 8);
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

    void directoriesAreListed()
    {
        QCOMPARE(ask("ls-F \"/\""), QStringLiteral("OK:\ndata/\nempty/\n"));
        QCOMPARE(ask("ls-F \"/data\""), QStringLiteral("OK:\nM\u00fcller/\nZebra.csv\na b/\nq\"uote/\nrun.txt\n"));
        QCOMPARE(ask("ls-F \"/empty\""), QStringLiteral("OK:\n"));
        QCOMPARE(ask("ls-F \"/data/a b\""), QStringLiteral("OK:\n"));
        QCOMPARE(ask("ls-F /data/a b"), QStringLiteral("OK:\n"));
        QCOMPARE(ask("ls-F \"/data/q\\\"uote\""), QStringLiteral("OK:\n"));
        QCOMPARE(ask("ls-F \"/data/M\xfcller/\""), QStringLiteral("OK:\n"));
        QCOMPARE(ask("ls-F"), QStringLiteral("OK:\ndata/\nempty/\n"));
        writeFile(local("empty/two\nlines"), "x");
        writeFile(local(QStringLiteral("empty/\U0001F600.txt")), "x");
        QVERIFY(QFile::link("/absent", local("empty/dangling")));
        QCOMPARE(ask("ls-F \"/empty\""), QStringLiteral("OK:\ndangling\n\U0001F600.txt\n"));
    }

    void pathsStayBelowTheRoot()
    {
        const QTemporaryDir outside;
        QVERIFY(QDir(outside.path()).mkpath("inner"));
        QVERIFY(QFile::link(outside.path(), local("way out")));
        QVERIFY(QFile::link(local("data"), local("way in")));
        QCOMPARE(ask("ls-F \"/../..\""), ask("ls-F \"/\""));
        QCOMPARE(ask("ls-F \"/way out\""), QStringLiteral("NG:cannot list '/way out': it lies outside of the root\n"));
        QCOMPARE(ask("ls-F \"/way out/inner\""),
            QStringLiteral("NG:cannot list '/way out/inner': it lies outside of the root\n"));
        QCOMPARE(ask("ls-F \"/way in\""), ask("ls-F \"/data\""));
        QVERIFY(ask("setting basepath:/way out").startsWith("NG:"));
        QCOMPARE(upload("txfile /way out/x\ny"),
            QStringLiteral("NG:cannot write '/way out/x': it lies outside of the root\n"));
        QVERIFY(QFile::link(outside.filePath("target"), local("link")));
        QCOMPARE(upload("txfile /link\ny"), QStringLiteral("NG:cannot write '/link': not an ordinary file\n"));
        QCOMPARE(QDir(outside.path()).entryList(QDir::Files).size(), 0);
        // A sibling whose name begins like the root's is outside too.
        const QString neighbour = m_root->path() + "x";
        QVERIFY(QDir().mkpath(neighbour));
        QVERIFY(QFile::link(neighbour, local("neighbour")));
        QVERIFY(ask("ls-F \"/neighbour\"").startsWith("NG:"));
        QVERIFY(QDir(neighbour).removeRecursively());
    }

    void currentDirectoryIsTheBasePath()
    {
        QCOMPARE(ask("pwd"), QStringLiteral("OK:\n/\n"));
        ask("setting basepath:/data");
        QCOMPARE(ask("pwd"), QStringLiteral("OK:\n/data\n"));
        QCOMPARE(ask("ls-F"), ask("ls-F \"/data\""));
        QCOMPARE(ask("ls-F \"a b\""), QStringLiteral("OK:\n"));
        QCOMPARE(ask("ls-F \"..\""), ask("ls-F \"/\""));
        // It is reported even after it was removed: a client then sees that it cannot be listed.
        QVERIFY(QDir(local("data")).removeRecursively());
        QCOMPARE(ask("pwd"), QStringLiteral("OK:\n/data\n"));
        QVERIFY(ask("ls-F").startsWith("NG:"));
    }

    void filesAreUploaded()
    {
        QCOMPARE(
            upload("txfile /data/new.txt\nline 1\nline 2\n"), QStringLiteral("OK:\nfile: /data/new.txt\nbytes: 14\n"));
        QCOMPARE(readFile(local("data/new.txt")), QByteArray("line 1\nline 2\n"));
        QCOMPARE(upload("txfile /data/new.txt\n"), QStringLiteral("OK:\nfile: /data/new.txt\nbytes: 0\n"));
        QCOMPARE(readFile(local("data/new.txt")), QByteArray());
        ask("setting basepath:/data");
        QCOMPARE(upload("txfile \"a b/M\xfc.txt\"\n\xe4\xff\r\n"),
            QStringLiteral("OK:\nfile: /data/a b/M\u00fc.txt\nbytes: 4\n"));
        QCOMPARE(readFile(local(QStringLiteral("data/a b/M\u00fc.txt"))), QByteArray("\xe4\xff\r\n"));
    }

    void filesAreRead()
    {
        upload("txfile \"/data/a \"b\".bin\"\n\x01\xff\r\n> x");
        const Reply read = reply("rxfile \"/data/a \\\"b\\\".bin\"");
        QVERIFY(read.isBinary());
        QCOMPARE(read.payload, QByteArray("\x01\xff\r\n> x"));
        QCOMPARE(read.text, QByteArray("OK: /data/a \"b\".bin, 7 bytes\n"));
        ask("setting basepath:/data");
        upload("txfile empty\n");
        QCOMPARE(ask("rxfile empty"), QStringLiteral("OK: /data/empty, 0 bytes\n"));
    }

    void readingIsRefused_data()
    {
        addColumns<QByteArray, QString>("line", "reason");
        addCase("no name", QByteArray("rxfile"), "rxfile needs the name of a file");
        addCase("a directory", QByteArray("rxfile /data"), "cannot read '/data': not an ordinary file");
        addCase("absent", QByteArray("rxfile /no"), "cannot read '/no': No such file or directory");
        addCase(
            "outside", QByteArray("rxfile \"/way out/x\""), "cannot read '/way out/x': it lies outside of the root");
        addCase("too large", QByteArray("rxfile /large"), "cannot read '/large': larger than 16777216 bytes");
    }
    void readingIsRefused()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, reason);
        const QTemporaryDir outside;
        QFile secret(outside.filePath("x"));
        QVERIFY(secret.open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(outside.path(), local("way out")));
        QFile large(local("large"));
        QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(16777217));
        const Reply refused = reply(line);
        QVERIFY(refused.isBinary());
        QCOMPARE(refused.payload, QByteArray());
        QCOMPARE(QString::fromUtf8(refused.text), "NG:" + reason + '\n');
    }

    void uploadsAreRefused_data()
    {
        addColumns<QByteArray, QString>("bytes", "reason");
        addCase("no line feed", QByteArray("txfile a"), "txfile needs a line feed between the name and the content");
        addCase("no name", QByteArray("txfile\nx"), "txfile needs the name of a file");
        addCase("a directory's name", QByteArray("txfile a/\nx"), "txfile needs the name of a file");
        addCase("another command", QByteArray("txfiles a\nx"), "unknown command 'txfiles'; help lists the commands");
        addCase("a control character", QByteArray("txfile a\x01\nx"), "the name contains a control character");
        addCase("a directory", QByteArray("txfile /data\nx"), "cannot write '/data': not an ordinary file");
        addCase("the root", QByteArray("txfile ..\nx"), "cannot write '/': not an ordinary file");
        addCase("absent directory", QByteArray("txfile /no/x\ny"), "cannot write '/no/x': No such file or directory");
        addCase(
            "below a file", QByteArray("txfile /data/run.txt/x\ny"), "cannot write '/data/run.txt/x': Not a directory");
    }
    void uploadsAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        QCOMPARE(upload(bytes), "NG:" + reason + '\n');
    }

    void sleepHasSteps()
    {
        const Reply plain = reply("sleep 250");
        QCOMPARE(plain.leads.size(), std::size_t { 1 });
        QCOMPARE(plain.leads[0].pauseMs, 250);
        QCOMPARE(plain.text, QByteArray("OK:\n"));
        const Reply steps = reply("sleep 1000 3");
        QByteArray text;
        int pauses = 0;
        for (const Reply::Lead& lead : steps.leads) {
            pauses += lead.pauseMs;
            text += lead.text;
        }
        QCOMPARE(pauses, 1000);
        QCOMPARE(text + steps.text, QByteArray("OK:\nstep 1 of 3\nstep 2 of 3\nstep 3 of 3\n"));
    }

    void faultIsSetAndReported()
    {
        QVERIFY(ask("fault").startsWith("OK:\nfault: none\nevery: 1\ndelay: 0\n--faults\n"));
        QCOMPARE(ask("fault slow every:3"), QStringLiteral("OK:\n"));
        QVERIFY(ask("fault").startsWith("OK:\nfault: slow\nevery: 3\ndelay: 2000\n"));
        QCOMPARE(value("stat", "fault"), QStringLiteral("slow"));
        QCOMPARE(ask("fault slow delay:5"), QStringLiteral("OK:\n"));
        QVERIFY(ask("fault").startsWith("OK:\nfault: slow\nevery: 1\ndelay: 5\n"));
        QVERIFY(reply("fault").exempt);
        QVERIFY(!reply("stat").exempt);
        ask("fault none");
        QCOMPARE(value("stat", "fault"), QStringLiteral("none"));
    }

    void refuseFaultCarriesNothingOut()
    {
        ask("fault refuse");
        for (const char* const line : { "start", "setting rate:5", "gibberish", "close now", "pwd" })
            QCOMPARE(ask(line), QStringLiteral("NG:refused on demand\n"));
        QCOMPARE(upload("txfile /x\ny"), QStringLiteral("NG:refused on demand\n"));
        for (const char* const line : { "hist1d time", "hist2d image" }) {
            QVERIFY(reply(line).isBinary());
            QCOMPARE(ask(line), QStringLiteral("NG:refused on demand\n"));
        }
        QCOMPARE(ask(""), QString());
        ask("fault none");
        QCOMPARE(value("stat", "state"), QStringLiteral("STOPPED"));
        QCOMPARE(value("setting", "rate"), QStringLiteral("1000"));
        QVERIFY(!QFile::exists(local("x")));
    }
};

QTEST_GUILESS_MAIN(TestSimCommands)
#include "tst_simcommands.moc"
