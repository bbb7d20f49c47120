// The chooser of paths on the server's side, against a scripted server.
#include "dialogs/chooser.h"
#include "dialogs/servertree.h"
#include "support/cases.h"
#include "support/messageboxwatcher.h"
#include "support/wait.h"

#include <QTest>

using namespace tarnis::testing;

class TestSelectPathDialog : public QObject {
    Q_OBJECT
private Q_SLOTS:

    // --- paths

    void startsAtTheGivenFolder()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        QVERIFY(!chooser.list().isEnabled());
        QVERIFY(!chooser.combo().isEnabled());
        QVERIFY(chooser.shows({ "empty/", "run/" })); // without extensions: folders only
        QCOMPARE(chooser.ancestors(), QStringList({ "/", "/data" }));
        QCOMPARE(chooser.dialog->getDir(), "/data");
        QCOMPARE(chooser.dialog->getNames(), QList<QString>({ "empty/", "run/" }));
    }

    void startsAtTheServersFolder()
    {
        TreeServer server;
        PathChooser chooser(server, QString());
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        QCOMPARE(server.requests(), QList<QByteArray>({ "pwd", "ls-F \"/data\"" }));
    }

    void missingFolderFallsBackToTheServers()
    {
        TreeServer server;
        PathChooser chooser(server, "/gone");
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        QCOMPARE(chooser.dialog->getDir(), "/data");
    }

    void serversFolderCannotBeListed()
    {
        TreeServer server;
        server.answer("pwd", listing("/locked\n"));
        PathChooser chooser(server, "/gone");
        QVERIFY(server.waitForRequests(3));
        QVERIFY(chooser.settles());
        QVERIFY(eventually([&] { return chooser.dialog->getDir() == "/locked" && chooser.list().isEnabled(); }));
        QCOMPARE(server.requests(), QList<QByteArray>({ "ls-F \"/gone\"", "pwd", "ls-F \"/locked\"" }));
        QVERIFY(chooser.names().isEmpty());
        // The next step of the user may fall back again.
        chooser.combo().setCurrentIndex(0);
        QVERIFY(chooser.shows({ "data/" }));
    }

    void eachStepOfTheHostMayFallBackAgain()
    {
        TreeServer server;
        server.answer("pwd", listing("/locked\n"));
        PathChooser chooser(server, "/locked"); // refused; so is the server's own folder, which is the same
        QVERIFY(server.waitForRequests(2));
        QVERIFY(chooser.settles());
        chooser.dialog->setDir("/gone");
        QVERIFY(server.waitForRequests(5));
        QVERIFY(chooser.settles());
        chooser.dialog->requestLs();
        QVERIFY(server.waitForRequests(7));
        QVERIFY(chooser.settles());
        QCOMPARE(server.requests(),
            QList<QByteArray>(
                { "ls-F \"/locked\"", "pwd", "ls-F \"/gone\"", "pwd", "ls-F \"/locked\"", "ls-F \"/locked\"", "pwd" }));
        server.answer("pwd", { Step::text("NG: unknown\n") });
        chooser.dialog->setDir("/gone");
        QVERIFY(server.waitForRequests(9));
        QVERIFY(chooser.settles());
        QCOMPARE(chooser.dialog->getDir(), "/gone");
        chooser.dialog->setDir("/lost");
        QVERIFY(server.waitForRequests(11));
        QCOMPARE(server.requests().mid(7), QList<QByteArray>({ "ls-F \"/gone\"", "pwd", "ls-F \"/lost\"", "pwd" }));
    }

    void failingPwdLeavesTheDialogEmptyAndEnabled()
    {
        ScriptedServer server;
        server.answer("pwd", { Step::text("NG: unknown\n/data\n") });
        PathChooser chooser(server, QString());
        QVERIFY(chooser.settles());
        QVERIFY(chooser.ancestors().isEmpty());
        QCOMPARE(server.requests(), QList<QByteArray>({ "pwd" }));
        DirectoryChooser twin(server, QString());
        QVERIFY(twin.settles());
        QVERIFY(twin.ancestors().isEmpty() && twin.names().isEmpty());
        QCOMPARE(server.requests(), QList<QByteArray>({ "pwd", "pwd" }));
    }

    void quotesAreEscaped()
    {
        TreeServer server;
        PathChooser chooser(server, "/a \"b\" %1/\\c");
        QVERIFY(server.waitForRequest("ls-F \"/a \\\"b\\\" %1/\\c\""));
    }

    void trimDirRemovesSlashesAtTheEnd_data()
    {
        addColumns<QString, QString>("path", "trimmed");
        addCase("root", "/", "");
        addCase("many", "/a//", "/a");
        addCase("none", "/a", "/a");
        addCase("empty", "", "");
    }

    void trimDirRemovesSlashesAtTheEnd()
    {
        QFETCH(QString, path);
        QFETCH(QString, trimmed);
        ScriptedServer server;
        PathChooser chooser(server, "/");
        DirectoryChooser twin(server, "/");
        QString text = path;
        chooser.dialog->trimDir(text);
        QCOMPARE(text, trimmed);
        text = path;
        twin.dialog->trimDir(text);
        QCOMPARE(text, trimmed);
    }

    void setDirListsAncestors_data()
    {
        addColumns<QString, QStringList>("dir", "shown");
        QTest::newRow("two levels") << "/a/b" << QStringList({ "/", "/a", "/a/b" });
        QTest::newRow("ends with a slash") << "/a/b/" << QStringList({ "/", "/a", "/a/b" });
        QTest::newRow("root") << "/" << QStringList({ "/" });
        QTest::newRow("relative") << "a/b" << QStringList({ "a", "a/b" });
    }

    void setDirListsAncestors()
    {
        QFETCH(QString, dir);
        QFETCH(QStringList, shown);
        ScriptedServer server;
        PathChooser chooser(server, dir);
        QCOMPARE(chooser.ancestors(), shown);
        QCOMPARE(chooser.combo().currentIndex(), int(shown.size()) - 1);
    }

    void setDirToTheCurrentFolderSendsNothing()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        chooser.dialog->setDir("/data");
        QVERIFY(chooser.list().isEnabled());
        QCOMPARE(server.requests().size(), 1);
    }

    void browsesByDoubleClickAndComboBox()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "txt" }, false, false);
        QVERIFY(chooser.shows({ "A.TXT", "b.txt", "empty/", "run/" }));
        chooser.doubleClick("run/");
        QVERIFY(chooser.shows({ "one.txt" }));
        QCOMPARE(chooser.dialog->getDir(), "/data/run");
        chooser.combo().setCurrentIndex(0);
        QVERIFY(chooser.shows({ "data/" }));
        QCOMPARE(lastRequest(server), "ls-F \"/\"");
        chooser.doubleClick("data/");
        QVERIFY(eventually([&] { return chooser.dialog->getDir() == "/data"; }));
    }

    void sortsBeforeItFilters()
    {
        ScriptedServer server;
        server.answer("ls-F \"/data\"", listing("zeta/\nb.txt\nalpha/\na.txt\nbeta/\nlink@\n\n"));
        DirectoryChooser chooser(server, "/data");
        chooser.dialog->setExt({ ".txt" }, true, QString());
        QStringList sorted { "zeta/", "b.txt", "alpha/", "a.txt", "beta/" };
        std::sort(sorted.begin(), sorted.end(),
            [](const QString& a, const QString& b) { return QString::localeAwareCompare(a, b) < 0; });
        QVERIFY(chooser.shows(sorted));
    }

    void extensionsOfAPath_data()
    {
        addColumns<QStringList, QString, bool>("exts", "name", "matches");
        QTest::newRow("dot added") << QStringList({ "csv" }) << "a.csv" << true;
        QTest::newRow("dot given") << QStringList({ ".csv" }) << "a.csv" << true;
        QTest::newRow("case folded") << QStringList({ "CsV" }) << "a.cSv" << true;
        QTest::newRow("no dot in the name") << QStringList({ "csv" }) << "acsv" << false;
        QTest::newRow("second one") << QStringList({ "csv", "txt" }) << "a.txt" << true;
        QTest::newRow("folder") << QStringList({ "d/" }) << "a.d/" << false;
        QTest::newRow("star matches no ordinary file") << QStringList({ "*" }) << "a.txt" << false;
        QTest::newRow("star drives out the others") << QStringList({ "txt", "*" }) << "a.txt" << false;
        QTest::newRow("star as the end of a name") << QStringList({ "*" }) << "a.*" << true;
        QTest::newRow("none") << QStringList() << "a.txt" << false;
        QTest::newRow("empty name") << QStringList({ "txt" }) << "" << false;
    }

    void extensionsOfAPath()
    {
        QFETCH(QStringList, exts);
        QFETCH(QString, name);
        QFETCH(bool, matches);
        ScriptedServer server;
        PathChooser chooser(server, "/");
        chooser.dialog->setExt(exts, false, false);
        QCOMPARE(chooser.dialog->matchExt(name), matches);
        QVERIFY(!chooser.ok().isEnabled());
        QVERIFY(chooser.edit().isVisible());
    }

    void selectionFillsTheName()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "txt" }, false, false);
        QVERIFY(eventually([&] { return chooser.list().count() == 4; }));
        chooser.list().setCurrentItem(chooser.item("b.txt"));
        QCOMPARE(chooser.edit().text(), "b.txt");
        QVERIFY(chooser.ok().isEnabled());
        chooser.list().setCurrentItem(chooser.item("run/"));
        QCOMPARE(chooser.edit().text(), "b.txt");
        QVERIFY(!chooser.ok().isEnabled());
        chooser.edit().setText("x");
        QVERIFY(chooser.ok().isEnabled());
        chooser.edit().clear();
        QVERIFY(!chooser.ok().isEnabled());
    }

    void choosesAFolder()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        QVERIFY(chooser.settles());
        chooser.ok().click();
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/data");
        QCOMPARE(chooser.dialog->QDialog::result(), int(QDialog::Accepted));
    }

    void choosesAFile_data()
    {
        addColumns<QString, QString>("typed", "path");
        addCase("with extension", "new.txt", "/data/new.txt");
        addCase("without", "new", "/data/new.dat");
        addCase("other extension", "new.csv", "/data/new.csv.dat");
        addCase("second extension", "new.TXT", "/data/new.TXT");
        addCase("empty", "", "");
        addCase("with a slash", "a/new.txt", "");
    }

    void choosesAFile()
    {
        QFETCH(QString, typed);
        QFETCH(QString, path);
        TreeServer server;
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "dat", "txt" }, false, false);
        QVERIFY(chooser.settles());
        chooser.edit().setText(typed);
        chooser.dialog->onAccepted();
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), path);
        QCOMPARE(chooser.dialog->isVisible(), path.isEmpty());
    }

    void joinsAtTheRoot()
    {
        TreeServer server;
        PathChooser chooser(server, "/");
        chooser.dialog->setExt({ "txt" }, false, false);
        QVERIFY(chooser.settles());
        chooser.edit().setText("x");
        chooser.ok().click();
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/x.txt");
    }

    void fileMustExist()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "txt" }, true, false);
        QVERIFY(eventually([&] { return chooser.list().count() == 4; }));
        chooser.edit().setText("new");
        const MessageBoxWatcher box(QMessageBox::Ok);
        chooser.ok().click();
        QCOMPARE(box.texts, QStringList("File not found: new.txt"));
        QCOMPARE(box.titles.value(0), QCoreApplication::applicationName());
        QVERIFY(chooser.accepted.isEmpty() && chooser.dialog->isVisible());
        chooser.edit().setText("b.txt");
        chooser.ok().click();
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/data/b.txt");
    }

    void namesAreLookedUpAsTheyAreListed()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "txt" }, true, true);
        QVERIFY(eventually([&] { return chooser.list().count() == 4; }));
        // Names are case-sensitive.
        chooser.edit().setText("B.TXT");
        {
            const MessageBoxWatcher otherCase;
            chooser.ok().click();
            QCOMPARE(otherCase.texts, QStringList("File not found: B.TXT"));
        }
        // Both flags: the file exists, so the dialog asks.
        chooser.edit().setText("b.txt");
        const MessageBoxWatcher question(QMessageBox::Cancel);
        chooser.ok().click();
        QCOMPARE(question.texts, QStringList("'b.txt' already exists. Do you want to overwrite it?"));
        QVERIFY(question.defaultButtons.value(0) != QMessageBox::Cancel); // unlike the twin's
        QVERIFY(chooser.accepted.isEmpty());
    }

    void filesThatAreNotListedDoNotExist()
    {
        TreeServer server;
        PathChooser chooser(server, "/data"); // lists folders only
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        chooser.dialog->setExt({ "txt" }, false, true); // and does not filter again
        QCOMPARE(chooser.names(), QStringList({ "empty/", "run/" }));
        chooser.edit().setText("b.txt");
        chooser.ok().click(); // no question
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/data/b.txt");
    }

    void asksBeforeOverwriting_data()
    {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::newRow("ok") << QMessageBox::Ok;
        QTest::newRow("cancel") << QMessageBox::Cancel;
    }

    void asksBeforeOverwriting()
    {
        QFETCH(QMessageBox::StandardButton, answer);
        TreeServer server;
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "txt" }, false, true);
        QVERIFY(eventually([&] { return chooser.list().count() == 4; }));
        chooser.edit().setText("b");
        const MessageBoxWatcher box(answer);
        chooser.ok().click();
        QCOMPARE(box.texts, QStringList("'b.txt' already exists. Do you want to overwrite it?"));
        QCOMPARE(chooser.accepted.count(), answer == QMessageBox::Ok ? 1 : 0);
    }

    void doubleClickOnAFileUsesTheTypedName()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "txt" }, false, false);
        QVERIFY(eventually([&] { return chooser.list().count() == 4; }));
        chooser.edit().setText("typed");
        chooser.doubleClick("b.txt");
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/data/typed.txt");
    }
};

QTEST_MAIN(TestSelectPathDialog)
#include "tst_selectpathdialog.moc"
