// Transferring files by the command line: every byte, the exact name, nothing overwritten without confirmation.
#include "console/consolefixture.h"
#include "server/replytext.h"
#include "support/wait.h"

#include <QCheckBox>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>

using namespace console;
using namespace tarnis::testing;

namespace {

/// A server with a folder.
class FolderServer : public ScriptedServer {
public:
    FolderServer()
    {
        answer("pwd", { Step::text("OK:\n/data\n") });
        answer("ls-F \"/data\"", { Step::text("OK:\nnotes.txt\nold/\n") });
    }
};

/// Files on this machine, in a temporary folder.
class LocalFiles {
public:
    QString file(const QString& name, const QByteArray& content = "text") const
    {
        QString path = m_directory.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no scratch file");
        return path;
    }

private:
    QTemporaryDir m_directory;
};

QMessageBox* questionOf(ConsoleFixture& fixture)
{
    return fixture.window->findChild<QMessageBox*>(QStringLiteral("sendFileBox"));
}

bool isAsked(ConsoleFixture& fixture)
{
    return eventually([&] { return questionOf(fixture) != nullptr; });
}

void answer(ConsoleFixture& fixture, QMessageBox::StandardButton button)
{
    tarnis::testing::answer(*fixture.window, "sendFileBox", button);
}

} // namespace

class TestConsoleSendFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void everyByteOfAFileIsSent()
    {
        QByteArray content;
        for (int value = 0; value < 256; ++value) {
            if (value != 4)
                content += char(value);
        }
        const LocalFiles files;
        FolderServer server;
        ConsoleFixture fixture(server);
        fixture.window->commandPanel().sendFile(files.file(QStringLiteral("all.bin"), content));
        QVERIFY(fixture.shows(QStringLiteral("txfile all.bin  (255 bytes)")));
        QVERIFY(fixture.isFree());
        QVERIFY(server.requests().contains("txfile all.bin\n" + content));
        QVERIFY(!questionOf(fixture));
    }

    void namesComeThroughAsTheyAre_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("request");
        QTest::newRow("plain") << "a-1.txt" << QByteArray("txfile a-1.txt\ntext");
        QTest::newRow("blank") << "a b" << QByteArray("txfile \"a b\"\ntext");
        QTest::newRow("blanks at the ends") << " a " << QByteArray("txfile \" a \"\ntext");
        QTest::newRow("in quotation marks") << "\"a\"" << QByteArray("txfile \"\\\"a\\\"\"\ntext");
    }
    void namesComeThroughAsTheyAre()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, request);
        const LocalFiles files;
        FolderServer server;
        ConsoleFixture fixture(server);
        fixture.window->commandPanel().sendFile(files.file(name));
        QVERIFY(server.waitForRequest(request));
    }

    void overwritesAServerFileOnlyAfterConfirmation()
    {
        const QByteArray request("txfile notes.txt\ntext");
        const LocalFiles files;
        FolderServer server;
        ConsoleFixture fixture(server);
        fixture.window->commandPanel().sendFile(files.file(QStringLiteral("notes.txt")));
        QVERIFY(isAsked(fixture));
        QVERIFY(questionOf(fixture)->text().contains(QStringLiteral("already exists in /data")));
        QCOMPARE(questionOf(fixture)->defaultButton(), questionOf(fixture)->button(QMessageBox::Cancel));
        // Another one waits for the answer to this one.
        fixture.window->commandPanel().sendFile(files.file(QStringLiteral("other.txt")));
        QVERIFY(fixture.alert().text.contains(QStringLiteral("is being sent")));
        answer(fixture, QMessageBox::Cancel);
        TRY_VERIFY(!questionOf(fixture));
        fixture.send(QStringLiteral("stat"));
        QVERIFY(fixture.isFree());
        QVERIFY(!server.requests().contains(request));
        fixture.window->commandPanel().sendFile(files.file(QStringLiteral("notes.txt")));
        QVERIFY(isAsked(fixture));
        answer(fixture, QMessageBox::Ok);
        QVERIFY(server.waitForRequest(request));
    }

    void aServerThatDoesNotListIsNoReasonToOverwrite()
    {
        const LocalFiles files;
        FolderServer server;
        server.answer("ls-F \"/data\"", { Step::text("NG:no permission\n") });
        ConsoleFixture fixture(server);
        fixture.window->commandPanel().sendFile(files.file(QStringLiteral("new.txt")));
        QVERIFY(isAsked(fixture));
        QVERIFY(questionOf(fixture)->text().contains(QStringLiteral("does not report")));
        QVERIFY(questionOf(fixture)->text().contains(QStringLiteral("NG:no permission")));
        answer(fixture, QMessageBox::Ok);
        QVERIFY(server.waitForRequest("txfile new.txt\ntext"));
    }

    void reportsALostServer()
    {
        const LocalFiles files;
        FolderServer server;
        server.answer("pwd", { Step::hold("pwd") });
        ConsoleFixture fixture(server);
        fixture.window->commandPanel().sendFile(files.file(QStringLiteral("new.txt")));
        QVERIFY(server.waitForHold("pwd"));
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QVERIFY(fixture.record().contains(QStringLiteral("is not sent: the server was stopped.")));
        fixture.window->commandPanel().sendFile(files.file(QStringLiteral("new.txt")));
        QVERIFY(fixture.alert().text.contains(QStringLiteral("there is no connection")));
    }

    void aFileThatCannotBeSentIsRefusedWithAReason()
    {
        const LocalFiles files;
        FolderServer server;
        ConsoleFixture fixture(server);
        fixture.window->commandPanel().sendFile(QStringLiteral("/no/such/file"));
        QVERIFY(fixture.alert().text.contains(QStringLiteral("cannot be read")));
        fixture.window->commandPanel().sendFile(files.file(QString::fromUtf8("\u03b1.txt")));
        QVERIFY(fixture.alert().text.contains(QStringLiteral("its name cannot be sent")));
        fixture.window->commandPanel().sendFile(files.file(QStringLiteral("eot.txt"), "a\x04z"));
        QVERIFY(fixture.shows(QStringLiteral("NG:File contains EOT(0x04) char.")));
    }

    void aFileOfTheServerIsShownAsTextOrSize()
    {
        FolderServer server;
        server.answer("rxfile notes.txt", { Step::binary("one\ntwo\n", "OK: /data/notes.txt, 8 bytes\n") });
        server.answer("rxfile image", { Step::binary(QByteArray("a\0b", 3), "OK: /data/image, 3 bytes\n") });
        server.answer("rxfile none", { Step::binary("", "NG:cannot read\n") });
        ConsoleFixture fixture(server);
        fixture.type(QStringLiteral("rxfile notes.txt"));
        QVERIFY(fixture.widget<QCheckBox>("binaryCheck").isChecked());
        fixture.enter();
        QVERIFY(fixture.shows(QStringLiteral("8 bytes\none\ntwo\ntext: OK: /data/notes.txt")));
        fixture.send(QStringLiteral("rxfile image"));
        QVERIFY(fixture.shows(QStringLiteral("3 bytes, which are not text")));
        fixture.send(QStringLiteral("rxfile none"));
        QVERIFY(fixture.shows(QStringLiteral("NG:cannot read")));
        fixture.send(QStringLiteral("stat"));
        QVERIFY(fixture.isFree());
    }

    void filesAsText()
    {
        QCOMPARE(fileText(""), "0 bytes");
        QCOMPARE(fileText("a\n"), "2 bytes\na");
        QCOMPARE(fileText("M\xfcller"), QString::fromUtf8("6 bytes\nMüller"));
        QCOMPARE(fileText("M\xc3\xbcller"), QString::fromUtf8("7 bytes\nMüller"));
    }
};

QTEST_MAIN(TestConsoleSendFile)
#include "tst_consolesendfile.moc"
