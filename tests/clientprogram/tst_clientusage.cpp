// The command line of tarnis: help, options, and arguments that are refused before anything is done.
#include "clientprogram.h"

#include <QTest>

using clienttest::Run;
using clienttest::runTarnis;

class TestClientUsage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void helpsAtEveryLevel_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("program") << QStringList { "--help" } << QByteArray("usage: tarnis COMMAND");
        QTest::newRow("program -h") << QStringList { "-h" } << QByteArray("usage: tarnis COMMAND");
        for (const char* const name :
            { "send", "hist", "plot", "watch", "put", "get", "stats", "fit", "peaks", "calibrate", "completion" }) {
            QTest::addRow("%s -h", name) << QStringList { name, "-h" } << QByteArray("usage: tarnis ") + name;
            QTest::addRow("%s --help", name) << QStringList { name, "--help" } << QByteArray("usage: tarnis ") + name;
            QTest::addRow("help %s", name) << QStringList { "help", name } << QByteArray("usage: tarnis ") + name;
        }
        QTest::newRow("version") << QStringList { "--version" } << QByteArray("tarnis 0.");
    }
    void helpsAtEveryLevel()
    {
        QFETCH(QStringList, words);
        QFETCH(QByteArray, text);
        const Run run = runTarnis(words);
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.output.startsWith(text));
        QCOMPARE(run.errors, QByteArray());
    }

    void refusesWrongUsage_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QByteArray>("text");
        const auto row = [](const char* name, const QStringList& words, const QByteArray& text) {
            QTest::newRow(name) << words << text;
        };
        row("nothing", {}, "no command");
        row("unknown command", { "frobnicate" }, "unknown command 'frobnicate'");
        row("unknown option", { "send", "--colour", "stat" }, "unknown option '--colour'");
        row("value missing", { "send", "stat", "--server" }, "--server needs HOST:PORT");
        row("value of a switch", { "send", "--json=1", "stat" }, "--json has no value");
        row("no server", { "send", "stat" }, "no server: give --server HOST:PORT or --local PROGRAM");
        row("two servers", { "send", "--server", "a:1", "--local", "b", "stat" },
            "--server and --local exclude each other");
        row("no port", { "send", "--server", "localhost", "stat" }, "'localhost' is not of the form HOST:PORT");
        row("port 0", { "send", "--server", "localhost:0", "stat" }, "'localhost:0' is not of the form");
        row("large port", { "send", "--server", "localhost:65536", "stat" }, "is not of the form");
        row("timeout", { "send", "--server", "a:1", "--timeout", "soon", "stat" },
            "--timeout 'soon' is not a number from");
        row("timeout 0", { "send", "--server", "a:1", "--timeout", "0", "stat" }, "--timeout '0' is not a number from");
        row("empty prompt", { "send", "--server", "a:1", "--prompt", "", "stat" }, "--prompt needs a text");
        row("no words", { "send", "--server", "a:1" }, "usage: tarnis send");
        row("hist without output", { "hist", "--server", "a:1", "total" }, "no output: give -o FILE");
        row("hist of two names", { "hist", "a", "b", "-o", "c.csv" }, "unexpected 'b'");
        row("hist to another format", { "hist", "--server", "a:1", "a", "-o", "c.xls" }, "'c.xls' does not end in");
        row("hist format", { "hist", "--server", "a:1", "a", "-o", "-", "--format", "xls" }, "--format 'xls' is not");
        row("hist rows", { "hist", "--server", "a:1", "a", "-o", "c.csv", "--rows", "3:1" },
            "--rows '3:1' is not a range");
        row("json and output", { "hist", "--server", "a:1", "a", "-o", "-", "--json" }, "both use standard output");
        row("watch every", { "watch", "--server", "a:1", "--every", "-1" }, "--every '-1' is not a number from");
        row("put without remote", { "put", "--server", "a:1", "file" }, "usage: tarnis put");
        row("put of a bad name", { "put", "--server", "a:1", "-", "a\nb" }, "is not the name of a file on the server");
        row("completion", { "completion", "fish" }, "no completion for 'fish'");
        row("empty command", { "send", "--server", "a:1", "" }, "the command is empty");
        row("blank command", { "send", "--server", "a:1", " " }, "the command is empty");
        row("no command in the input", { "send", "--server", "a:1", "-" }, "standard input holds no command");
        row("command of two lines", { "send", "--server", "a:1", "stat\nstop" }, "a command must be on one line");
        row("command outside of Latin-1", { "send", "--server", "a:1", QString::fromUtf8("txfile €") },
            "characters outside of Latin-1");
        row("put to a name outside of Latin-1", { "put", "--server", "a:1", "/dev/null", QString::fromUtf8("€.txt") },
            "is not the name of a file on the server");
        row("hist of a bad name", { "hist", "--server", "a:1", "a\nb", "-o", "c.csv" },
            "'a b' is not the name of a histogram on the server");
        row("get of a bad name", { "get", "--server", "a:1", "a\nb", "c" }, "is not the name of a file on the server");
        row("plot of a bad name", { "plot", "--server", "a:1", "a\nb", "-o", "c.png" },
            "is not the name of a histogram on the server");
        row("hist without a name", { "hist", "--server", "a:1", "", "-o", "c.csv" }, "is not the name of a histogram");
        row("suffix alone", { "hist", "--server", "a:1", "a", "-o", ".csv" }, "has nothing in front of the '.csv'");
        row("suffix alone in a folder", { "plot", "a.csv", "-o", "/tmp/.PNG" }, "has nothing in front of the '.PNG'");
        row("suffix alone of a calibration", { "calibrate", "a.csv", "--lines", "co60", "-o", ".json" },
            "has nothing in front of the '.json'");
        row("suffix alone of a fit", { "fit", "a.csv", "--range", "1:2", "--plot", ".svg" },
            "has nothing in front of the '.svg'");
        row("empty output", { "hist", "--server", "a:1", "a", "-o", "" }, "the name of the output is empty");
        row("get to no name", { "get", "--server", "a:1", "a", "" }, "the name of the local file is empty");
        row("theme", { "plot", "a.csv", "-o", "a.png", "--theme", "pink" },
            "--theme 'pink' is not print, light, dark, high-contrast or classic");
        row("theme of no figure", { "fit", "a.csv", "--range", "1:2", "--theme", "dark" }, "--theme is for --plot");
        row("long spelling of a letter", { "hist", "--server", "a:1", "a", "--o", "c.csv" }, "unknown option '--o'");
        row("half a line", { "watch", "--server", "a:1", "--count", "1.5" }, "--count '1.5' is not a whole number");
        row("half a degree", { "calibrate", "a.csv", "--lines", "co60", "-o", "c", "--degree", "1.5" },
            "--degree '1.5' is not a whole number");
        row("help of two", { "help", "send", "hist" }, "unexpected 'hist'");
        row("logarithm of 0", { "plot", "a.csv", "-o", "a.png", "--log", "--yrange", "0:10" },
            "a logarithmic axis begins above 0");
    }
    void refusesWrongUsage()
    {
        QFETCH(QStringList, words);
        QFETCH(QByteArray, text);
        const Run run = runTarnis(words);
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.hasOneLineOfError() && run.errors.contains(text), run.errors.constData());
        QVERIFY(run.output.isEmpty() || words.contains("--json"));
    }

    void printsUsageOnOneLineWithoutGaps()
    {
        for (const char* const name : { "send", "hist", "plot", "put", "get", "stats", "fit", "peaks", "calibrate" }) {
            const Run run = runTarnis({ name });
            QCOMPARE(run.exitCode, 2);
            QVERIFY2(run.hasOneLineOfError() && !run.errors.contains("  "), run.errors.constData());
        }
    }

    void reportsErrorsAsJsonToo()
    {
        const Run run = runTarnis({ "send", "--json", "stat" });
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.output,
            QByteArray("{\"error\":\"no server: give --server HOST:PORT or --local PROGRAM\",\"exitCode\":2}\n"));
        QVERIFY(run.hasOneLineOfError());
    }

    void completesInBash()
    {
        const QString complete = QStringLiteral(
            "source <($TARNIS completion bash); COMP_WORDS=(tarnis %1); COMP_CWORD=%2; _tarnis; echo ${COMPREPLY[*]}");
        QCOMPARE(clienttest::shell(complete.arg("se").arg(1)).output, QByteArray("send\n"));
        QCOMPARE(clienttest::shell(complete.arg("hist --ro").arg(2)).output, QByteArray("--rows\n"));
        QCOMPARE(clienttest::shell(complete.arg("completion b").arg(2)).output, QByteArray("bash\n"));
        QCOMPARE(clienttest::shell("cd /; " + complete.arg("plot de").arg(2)).output, QByteArray("dev\n"));
        QCOMPARE(clienttest::shell("cd $(mktemp -d); touch 'a b.csv'; " + complete.arg("plot a").arg(2)
                     + "; echo ${#COMPREPLY[@]}; rm 'a b.csv'; rmdir $PWD")
                     .output,
            QByteArray("a b.csv\n1\n"));
    }
};

QTEST_GUILESS_MAIN(TestClientUsage)
#include "tst_clientusage.moc"
