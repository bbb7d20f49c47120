// tarnis-console as a program: exit statuses, displays, signals, and tours that cannot go well.
#include "support/cases.h"
#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace tarnis::testing;

namespace {

/// The console, started with a separate home directory.
class Program {
public:
    explicit Program(const QStringList& arguments, const QString& path = QStringLiteral(CONSOLE_PATH),
        const QMap<QString, QString>& environment = { { "QT_QPA_PLATFORM", "offscreen" } })
    {
        QProcessEnvironment clean = QProcessEnvironment::systemEnvironment();
        for (const char* name :
            { "QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY", "LD_LIBRARY_PATH", "TARNIS_SIMSERVER_OPTIONS" })
            clean.remove(QLatin1String(name));
        clean.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.path());
        for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable)
            clean.insert(variable.key(), variable.value());
        m_process.setProcessEnvironment(clean);
        m_process.start(path, arguments);
    }
    ~Program()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void terminate() { m_process.terminate(); }
    /// "exit 0", "crash": how it ended.
    QString end()
    {
        if (!m_process.waitForFinished(timeoutMs))
            return QStringLiteral("runs on");
        return m_process.exitStatus() == QProcess::CrashExit ? QStringLiteral("crash")
                                                             : QStringLiteral("exit %1").arg(m_process.exitCode());
    }
    QString errors() { return QString::fromLocal8Bit(m_process.readAllStandardError()); }
    QString output() { return QString::fromLocal8Bit(m_process.readAllStandardOutput()); }

private:
    QTemporaryDir m_home;
    QProcess m_process;
};

QString textOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList tourTo(const QString& directory, quint16 port)
{
    return { QStringLiteral("--remote"), QStringLiteral("127.0.0.1:%1").arg(port), QStringLiteral("--tour"),
        directory };
}

} // namespace

class TestConsoleTour : public QObject {
    Q_OBJECT

    QTemporaryDir m_scratch;
    QString scratch(const QString& name) const { return m_scratch.filePath(name); }
    static void write(const QString& directory, const QStringList& names, const QByteArray& text = {})
    {
        QVERIFY(QDir().mkpath(directory));
        for (const QString& name : names) {
            QFile file(directory + u'/' + name);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        }
    }
    QString report(const QString& name) const { return textOf(scratch(name + QStringLiteral("/report.txt"))); }

private Q_SLOTS:
    void theExitStatusDependsOnTheError_data()
    {
        addColumns<QStringList, QString, QString>("arguments", "end", "text");
        addCase("help", QStringList { "--help" }, "exit 0", "--tour");
        addCase("version", QStringList { "--version" }, "exit 0", "tarnis-console");
        addCase("an option that does not exist", QStringList { "--nonsense" }, "exit 2", "nonsense");
        addCase("a tour to nowhere", QStringList { "--tour" }, "exit 2", "--tour");
        addCase("a tour into what is no directory", QStringList { "--tour", "/dev/null/pictures" }, "exit 2",
            "/dev/null/pictures");
        addCase("a log that cannot be written", QStringList { "--log", "/dev/null/log" }, "exit 2", "/dev/null/log");
    }
    void theExitStatusDependsOnTheError()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, end);
        QFETCH(QString, text);
        Program console(arguments);
        QCOMPARE(console.end(), end);
        const QString said = end == u"exit 0" ? console.output() : console.errors();
        QVERIFY2(said.contains(text), qPrintable(said));
    }

    void aTourOfARefusedServerFailsWithAReason()
    {
        Program console(tourTo(scratch(QStringLiteral("refused")), ScriptedServer::closedPort()));
        QCOMPARE(console.end(), QStringLiteral("exit 1"));
        const QString errors = console.errors();
        QVERIFY2(errors.contains(QStringLiteral("the connection was refused")), qPrintable(errors));
        const QString report = this->report(QStringLiteral("refused"));
        QVERIFY2(report.startsWith(QStringLiteral("FAIL  start")), qPrintable(report));
        QVERIFY2(report.contains(QStringLiteral("the connection was refused")), qPrintable(report));
        QVERIFY2(!report.contains(QStringLiteral("in vain")), qPrintable(report));
        QVERIFY2(report.contains(QStringLiteral("steps were not tried")), qPrintable(report));
    }

    void aTourOfAServerThatEndsAtOnceFailsWithAReason()
    {
        const FakeServer program({ QStringLiteral("exit 3") });
        Program console(
            { QStringLiteral("--local"), program.path(), QStringLiteral("--tour"), scratch(QStringLiteral("ended")) });
        QCOMPARE(console.end(), QStringLiteral("exit 1"));
        QVERIFY(report(QStringLiteral("ended")).contains(QStringLiteral("exit code 3")));
    }

    void removesTheFilesOfAPreviousTour()
    {
        const QString directory = scratch(QStringLiteral("again"));
        write(directory,
            { "01-start-1-connected.png", "11-curves-curves.csv", "02-photo.jpg", "03-tour-1-mine.png", "mine.png" });
        write(directory, { "report.txt" },
            "ok    start  0.1 s  01-start-1-connected.png\n"
            "FAIL  curves  1.0 s  11-curves-curves.csv ../outside.png mine.png\n      03-tour-1-mine.png\n");
        write(scratch(QString()), { "outside.png" });
        Program console(tourTo(directory, ScriptedServer::closedPort()));
        QCOMPARE(console.end(), QStringLiteral("exit 1"));
        QCOMPARE(QDir(directory).entryList(QDir::Files),
            (QStringList { "02-photo.jpg", "03-tour-1-mine.png", "mine.png", "report.txt" }));
        QVERIFY(QFile::exists(scratch(QStringLiteral("outside.png"))));
    }

    void aFolderOfSomethingElseIsRefused_data()
    {
        addColumns<QStringList, QByteArray, bool>("files", "text", "isRefused");
        addCase("numbered photos", QStringList { "01-beach.jpg", "02-harbour.jpg" }, QByteArray(), true);
        addCase("a report of something else", QStringList { "report.txt" },
            QByteArray("Minutes of the meeting\n01-beach.jpg\n"), true);
        addCase("a hidden file", QStringList { ".keep" }, QByteArray(), true);
        addCase("a tour that was ended before its first step", QStringList { "report.txt" }, QByteArray(), false);
    }
    void aFolderOfSomethingElseIsRefused()
    {
        QFETCH(QStringList, files);
        QFETCH(QByteArray, text);
        QFETCH(bool, isRefused);
        const QString directory = scratch(QLatin1String(QTest::currentDataTag()));
        write(directory, files, text);
        Program console(tourTo(directory, ScriptedServer::closedPort()));
        QCOMPARE(console.end(), isRefused ? QStringLiteral("exit 2") : QStringLiteral("exit 1"));
        QCOMPARE(QDir(directory).entryList(QDir::Files | QDir::Hidden), files);
        if (isRefused)
            QVERIFY(console.errors().contains(QStringLiteral("choose an empty folder")));
    }

    void withoutADisplayThereIsATourOnly()
    {
        Program console({}, QStringLiteral(CONSOLE_PATH), {});
        QCOMPARE(console.end(), QStringLiteral("exit 1"));
        QVERIFY(console.errors().contains(QStringLiteral("--tour DIR works without one")));

        Program tour(
            tourTo(scratch(QStringLiteral("dark")), ScriptedServer::closedPort()), QStringLiteral(CONSOLE_PATH), {});
        QCOMPARE(tour.end(), QStringLiteral("exit 1"));
        QVERIFY(report(QStringLiteral("dark")).startsWith(QStringLiteral("FAIL  start"))); // it has run
    }

    void aSignalEndsTheConsoleAndItsServer()
    {
        ScriptedServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        Program console({ QStringLiteral("--local"), program.path() });
        QVERIFY(server.waitForRequest("setting"));
        console.terminate();
        QCOMPARE(console.end(), QStringLiteral("exit 0"));
        QVERIFY(!console.errors().contains(QStringLiteral("tarnis-console:")));
        QVERIFY(server.waitUntilDeserted());
        QVERIFY(eventually([&] { return program.hasNoted(QStringLiteral("end")); }));
    }

    void aSignalEndsATourAndItsServer()
    {
        ScriptedServer server;
        server.answer("help", { Step::silence() });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        server.answer("setting", { Step::text("OK:\nrate: 10\n") });
        Program console({ QStringLiteral("--local"), program.path(), QStringLiteral("--tour"),
            scratch(QStringLiteral("interrupted")) });
        QVERIFY(server.waitForRequest("help"));
        console.terminate();
        QCOMPARE(console.end(), QStringLiteral("exit 1"));
        const QString report = this->report(QStringLiteral("interrupted"));
        QVERIFY2(report.contains(QStringLiteral("the tour is not interrupted")), qPrintable(report));
        QVERIFY2(report.contains(QStringLiteral("steps were not tried")), qPrintable(report));
        QVERIFY(server.waitUntilDeserted());
        QVERIFY(eventually([&] { return program.hasNoted(QStringLiteral("end")); }));
    }

    void theInstalledConsoleStarts()
    {
        const QString prefix = scratch(QStringLiteral("prefix"));
        QProcess install;
        install.start(QStringLiteral(CMAKE_PROGRAM),
            { QStringLiteral("--install"), QStringLiteral(BUILD_DIRECTORY), QStringLiteral("--prefix"), prefix,
                QStringLiteral("--component"), QStringLiteral("runtime") });
        QVERIFY(install.waitForFinished(timeoutMs));
        QVERIFY2(install.exitCode() == 0, install.readAllStandardError().constData());
        const QString path = prefix + QStringLiteral("/bin/tarnis-console");
        Program console({ QStringLiteral("--version") }, path);
        QCOMPARE(console.end(), QStringLiteral("exit 0"));

        // With the installed simulator in its folder, which is visible in a tour that is interrupted early.
        Program tour({ QStringLiteral("--tour"), scratch(QStringLiteral("installed")) }, path);
        const QString picture = scratch(QStringLiteral("installed/01-start-1-connected.png"));
        QVERIFY(eventually([&] { return QFile::exists(picture); }));
        tour.terminate();
        QCOMPARE(tour.end(), QStringLiteral("exit 1"));
        QVERIFY(report(QStringLiteral("installed")).startsWith(QStringLiteral("ok    start")));
    }
};

QTEST_MAIN(TestConsoleTour)
#include "tst_consoletour.moc"
