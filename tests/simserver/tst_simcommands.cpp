// The command language: the reply of each command, and every refusal. No socket.
#include "simserver/commandfixture.h"
#include "support/cases.h"
#include "support/payload.h"

#include <tarnis/version.h>

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace simserver;
using namespace tarnis::testing;
using namespace simtest;

class TestSimCommands : public simtest::CommandFixture {
    Q_OBJECT
private Q_SLOTS:
    void init() { makeServer(); }

    void refusesWithAReason_data()
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
        row("stat with more", "stat all", "unexpected 'all': the command has no arguments");
        row("savesetting with more", "savesetting x", "unexpected 'x': the command has no arguments");
        row("start with more", "start x", "unexpected 'x': the command has no arguments");
        row("stop with more", "stop x", "unexpected 'x': the command has no arguments");
        row("clear with more", "clear x", "unexpected 'x': the command has no arguments");
        row("hists with more", "hists x", "unexpected 'x': the command has no arguments");
        row("pwd with more", "pwd x", "unexpected 'x': the command has no arguments");
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
        row("rows reversed", "hist1d time 3 2", "the last row is before the first");
        row("three rows", "hist1d time 1 2 3", "unexpected '3'");
        row("two rows with pairs", "hist1d time 1 2 pairs", "unexpected '2'");
        row("all without pairs", "hist1d time all", "'all' is not a row");
        row("no bins", "hist1d time bins:0", "'0' is not a number of bins");
        row("bins without a number", "hist1d time bins:", "'' is not a number of bins");
        row("bins that do not divide", "hist1d time bins:1000", "16384 bins do not divide into 1000");
        row("bins that leave one", "hist1d time bins:3", "16384 bins do not divide into 3");
        row("more bins than there are", "hist1d time bins:32768", "16384 bins do not divide into 32768");
        row("hist2d alone", "hist2d", "hist2d needs the name of a map; hists lists them");
        row("hist2d of rows", "hist2d time", "no map 'time'; hists lists them");
        row("hist2d with more", "hist2d image 5", "unexpected '5'");
        row("map bins of one axis missing", "hist2d image bins:64x", "'' is not a number of bins");
        row("map bins that do not divide", "hist2d image bins:64x100", "1024 bins do not divide into 100");

        row("broadcast alone", "broadcast", "a module command is missing: stat, setting or reset");
        row("unknown module command", "broadcast dance",
            "unknown module command 'dance': stat, setting and reset are known");
        row("module stat with more", "broadcast stat x", "unexpected 'x': the command has no arguments");
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
    void refusesWithAReason()
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
