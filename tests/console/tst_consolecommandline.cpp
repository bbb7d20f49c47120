// The command line of tarnis-console.
#include "app/commandline.h"
#include "support/cases.h"

#include <QTest>

using namespace console;
using namespace tarnis::testing;

class TestConsoleCommandLine : public QObject {
    Q_OBJECT

    static CommandLine parse(const QStringList& arguments)
    {
        return parseCommandLine(QStringList { QStringLiteral("tarnis-console") } + arguments);
    }

private Q_SLOTS:
    void acceptsNoArguments()
    {
        const CommandLine commandLine = parse({});
        QCOMPARE(commandLine.action, CommandLine::Action::Run);
        QVERIFY(!commandLine.options.server);
        QVERIFY(!commandLine.options.prompt);
        QVERIFY(commandLine.options.logFile.isEmpty());
        QVERIFY(commandLine.options.tourDirectory.isEmpty());
    }

    void acceptsAllOptions()
    {
        const CommandLine commandLine =
            parse({ "--remote", "daq:5000", "--prompt", "\\n# ", "--log=a.log", "--tour", "pictures" });
        QCOMPARE(commandLine.action, CommandLine::Action::Run);
        const ServerChoice wanted { ServerChoice::Kind::Remote, {}, QStringLiteral("daq"), 5000 };
        QVERIFY(commandLine.options.server == wanted);
        QCOMPARE(commandLine.options.prompt, QByteArray("\n# "));
        QCOMPARE(commandLine.options.logFile, QStringLiteral("a.log"));
        QCOMPARE(commandLine.options.tourDirectory, QStringLiteral("pictures"));
    }

    void acceptsALocalProgram()
    {
        const CommandLine commandLine = parse({ "--local", "/opt/daq/server" });
        const ServerChoice wanted { ServerChoice::Kind::Local, QStringLiteral("/opt/daq/server"), {}, 0 };
        QVERIFY(commandLine.options.server == wanted);
    }

    void acceptsARepeatedOptionWithTheSameValue()
    {
        QCOMPARE(parse({ "--log", "a", "--log", "a" }).options.logFile, QStringLiteral("a"));
    }

    void passesOverQtsOptions()
    {
        const CommandLine commandLine =
            parse({ "-platform", "offscreen", "--style", "fusion", "-reverse", "--log", "a" });
        QCOMPARE(commandLine.action, CommandLine::Action::Run);
        QCOMPARE(commandLine.options.logFile, QStringLiteral("a"));
    }

    void answersHelpAndVersion()
    {
        const CommandLine help = parse({ "--help" });
        QCOMPARE(help.action, CommandLine::Action::Help);
        for (const char* option : { "--local", "--remote", "--prompt", "--log", "--tour", "--help", "--version" })
            QVERIFY2(help.text.contains(QLatin1String(option)), option);
        for (const QString& line : help.text.split(u'\n'))
            QVERIFY2(line.size() <= 120, qPrintable(line));
        const CommandLine version = parse({ "--version" });
        QCOMPARE(version.action, CommandLine::Action::Version);
        QCOMPARE(version.text, QStringLiteral("tarnis-console " TARNIS_CONSOLE_VERSION "\n"));
    }

    void refusesInvalidArguments_data()
    {
        addColumns<QStringList, QString>("arguments", "named");
        QTest::newRow("unknown option") << QStringList { "--bogus" } << "bogus";
        QTest::newRow("a word") << QStringList { "server" } << "'server'";
        QTest::newRow("missing value") << QStringList { "--log" } << "log";
        QTest::newRow("empty value") << QStringList { "--log", "" } << "--log";
        QTest::newRow("two servers") << QStringList { "--local", "a", "--remote", "b:1" } << "--local and --remote";
        QTest::newRow("twice") << QStringList { "--log", "a", "--log", "b" } << "twice";
        QTest::newRow("no port") << QStringList { "--remote", "daq" } << "'daq'";
        QTest::newRow("bad escape") << QStringList { "--prompt", "\\q" } << "escape";
    }
    void refusesInvalidArguments()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, named);
        const CommandLine commandLine = parse(arguments);
        QCOMPARE(commandLine.action, CommandLine::Action::Mistake);
        QVERIFY2(commandLine.text.contains(named), qPrintable(commandLine.text));
    }

    void readsAddresses_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("host"); // empty: refused
        QTest::addColumn<int>("port");
        addCase("name", "daq:5000", "daq", 5000);
        addCase("IPv4", "10.0.0.1:1", "10.0.0.1", 1);
        addCase("IPv6 in brackets", "[::1]:65535", "::1", 65535);
        addCase("IPv6 without brackets", "::1:5000", "", 0);
        addCase("port 0", "daq:0", "", 0);
        addCase("port too large", "daq:65536", "", 0);
        addCase("negative port", "daq:-1", "", 0);
        addCase("port in letters", "daq:http", "", 0);
        addCase("no host", ":5000", "", 0);
        addCase("empty brackets", "[]:5000", "", 0);
        addCase("blank in the host", "a b:5000", "", 0);
        addCase("empty", "", "", 0);
    }
    void readsAddresses()
    {
        QFETCH(QString, text);
        QFETCH(QString, host);
        QFETCH(int, port);
        const std::optional<ServerChoice> choice = remoteFromText(text);
        QCOMPARE(choice.has_value(), !host.isEmpty());
        if (choice) {
            QCOMPARE(choice->kind, ServerChoice::Kind::Remote);
            QCOMPARE(choice->host, host);
            QCOMPARE(int(choice->port), port);
        }
    }

    void readsPrompts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes"); // empty: refused
        QTest::newRow("plain") << "> " << QByteArray("> ");
        QTest::newRow("line feed in front") << "\\n> " << QByteArray("\n> ");
        QTest::newRow("all escapes") << "\\n\\r\\t\\e\\\\\\x00\\xfF" << QByteArray("\n\r\t\x1b\\\0\xff", 7);
        QTest::newRow("not in ASCII") << QString::fromUtf8("\xc2\xbb") << QByteArray("\xc2\xbb");
        QTest::newRow("empty") << "" << QByteArray();
        QTest::newRow("backslash at the end") << "a\\" << QByteArray();
        QTest::newRow("unknown escape") << "\\q" << QByteArray();
        QTest::newRow("short hex") << "\\x4" << QByteArray();
        QTest::newRow("no hex") << "\\xgg" << QByteArray();
    }
    void readsPrompts()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QCOMPARE(promptFromText(text).value_or(QByteArray()), bytes);
    }

    void writesPromptsSoThatTheyReadBack_data()
    {
        addColumns<QByteArray, QString>("bytes", "text");
        QTest::newRow("blank at the end") << QByteArray("> ") << ">\\x20";
        QTest::newRow("blank inside") << QByteArray("a >") << "a >";
        QTest::newRow("line feed") << QByteArray("\n>") << "\\n>";
        QTest::newRow("backslash") << QByteArray("\\") << "\\\\";
        QTest::newRow("UTF-8") << QByteArray("\xc2\xbb") << QString::fromUtf8("\xc2\xbb");
        QTest::newRow("no UTF-8") << QByteArray("\xff\x01>") << "\\xff\\x01>";
    }
    void writesPromptsSoThatTheyReadBack()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(promptToText(bytes), text);
        QCOMPARE(promptFromText(text).value_or(QByteArray()), bytes);
    }

    void everyByteOfAPromptComesBack()
    {
        for (int value = 0; value < 256; ++value) {
            const QByteArray bytes = '<' + QByteArray(1, char(value)) + '>';
            QCOMPARE(promptFromText(promptToText(bytes)).value_or(QByteArray()), bytes);
        }
    }
};

QTEST_GUILESS_MAIN(TestConsoleCommandLine)
#include "tst_consolecommandline.moc"
