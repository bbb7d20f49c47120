// The two choosers of paths on the server's side, against a scripted server.
#include "dialogs/chooser.h"
#include "dialogs/servertree.h"
#include "support/cases.h"
#include "support/messageboxwatcher.h"
#include "support/metamethods.h"
#include "support/wait.h"

#include <QEvent>
#include <QPointer>
#include <QTest>

using namespace tarnis::testing;

class TestServerPaths : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void methodOrder()
    {
        QCOMPARE(ownMethods(SelectPathDialog::staticMetaObject),
            QStringList({ "signal accepted(QString)", "slot onDirComboIndexChanged(QString)",
                "slot onCurDirListItemDoubleClicked(QListWidgetItem*)", "slot onAccepted()",
                "slot onFileNameChanged(QString)", "slot onCurDirListChanged(QString)",
                "slot result(PTarnisCmd,QByteArray)" }));
        QCOMPARE(ownMethods(SelectDirectoryDialog::staticMetaObject),
            QStringList({ "signal accepted(QString)", "slot onDirComboIndexChanged(QString)",
                "slot onCurDirListItemDoubleClicked(QListWidgetItem*)", "slot onAccepted()",
                "slot onFileNameChanged(QString)", "slot onCurDirListItemSelectioChanged()",
                "slot result(PTarnisCmd,QByteArray)" }));
    }

    void formsKeepTheirSizeAndTitle()
    {
        ScriptedServer server;
        PathChooser path(server, "/");
        DirectoryChooser directory(server, "/");
        for (QDialog* const dialog :
            { static_cast<QDialog*>(path.dialog.get()), static_cast<QDialog*>(directory.dialog.get()) }) {
            QCOMPARE(dialog->size(), QSize(320, 299));
            QCOMPARE(dialog->windowTitle(), "Dialog");
            dialog->setWindowTitle("other");
            QEvent event(QEvent::LanguageChange);
            QApplication::sendEvent(dialog, &event);
            QCOMPARE(dialog->windowTitle(), "Dialog");
        }
        QVERIFY(!path.edit().isVisible());
        QVERIFY(!directory.edit().isVisible());
    }

    // --- directories

    void directoryStarts_data()
    {
        addColumns<QString, QList<QByteArray>>("dir", "requests");
        QTest::newRow("given") << "/data" << QList<QByteArray>({ "ls-F \"/data\"" });
        QTest::newRow("trimmed") << "/data//" << QList<QByteArray>({ "ls-F \"/data\"" });
        QTest::newRow("none") << "" << QList<QByteArray>({ "pwd", "ls-F \"/data\"" });
        QTest::newRow("the root is trimmed away") << "/" << QList<QByteArray>({ "pwd", "ls-F \"/data\"" });
    }

    void directoryStarts()
    {
        QFETCH(QString, dir);
        QFETCH(QList<QByteArray>, requests);
        TreeServer server;
        DirectoryChooser chooser(server, dir);
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        QCOMPARE(server.requests(), requests);
        QCOMPARE(chooser.ancestors(), QStringList({ "/", "/data" }));
    }

    void directoryFallsBackOnce()
    {
        TreeServer server;
        server.answer("pwd", listing("/locked\n"));
        DirectoryChooser chooser(server, "/gone");
        QVERIFY(server.waitForRequests(3));
        QVERIFY(eventually([&] { return chooser.list().isEnabled(); }));
        QCOMPARE(server.requests(), QList<QByteArray>({ "ls-F \"/gone\"", "pwd", "ls-F \"/locked\"" }));
    }

    void directoryBrowses()
    {
        TreeServer server;
        DirectoryChooser chooser(server, "/data");
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        chooser.doubleClick("run/");
        QVERIFY(eventually([&] { return chooser.ancestors() == QStringList({ "/", "/data", "/data/run" }); }));
        chooser.combo().setCurrentIndex(1);
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        QCOMPARE(chooser.ancestors(), QStringList({ "/", "/data" }));
        QCOMPARE(server.requests().size(), 3);
    }

    void extensionsOfADirectory_data()
    {
        addColumns<QStringList, QString, bool>("exts", "name", "matches");
        QTest::newRow("as given") << QStringList({ "csv" }) << "acsv" << true;
        QTest::newRow("exact case") << QStringList({ ".csv" }) << "a.CSV" << false;
        QTest::newRow("folder by its slash") << QStringList({ ".d/" }) << "a.d/" << true;
        QTest::newRow("star") << QStringList({ "*" }) << "anything" << true;
        QTest::newRow("star is no folder") << QStringList({ "*" }) << "folder/" << false;
        QTest::newRow("none") << QStringList() << "a" << false;
    }

    void extensionsOfADirectory()
    {
        QFETCH(QStringList, exts);
        QFETCH(QString, name);
        QFETCH(bool, matches);
        ScriptedServer server;
        DirectoryChooser chooser(server, "/data");
        chooser.dialog->setExt(exts, false, QString());
        QCOMPARE(chooser.dialog->matchExt(name), matches);
        QVERIFY(!chooser.ok().isEnabled());
        QVERIFY(!chooser.edit().isVisible());
    }

    void starListsAllFilesButNoEmptyEntry()
    {
        ScriptedServer server;
        server.answer("ls-F \"/data\"", listing("b\nrun/\n\n"));
        DirectoryChooser chooser(server, "/data");
        chooser.dialog->setExt({ "*" }, false, QString());
        QVERIFY(chooser.shows({ "b", "run/" }));
    }

    void aFolderIsItsOwnChoice()
    {
        TreeServer server;
        DirectoryChooser chooser(server, "/data");
        chooser.ok().click();
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/data");
        QCOMPARE(chooser.dialog->QDialog::result(), int(QDialog::Accepted));
    }

    void directoryChoosesTheSelectedEntry()
    {
        TreeServer server;
        DirectoryChooser chooser(server, "/data");
        chooser.dialog->setExt({ ".txt" }, false, QString());
        QVERIFY(chooser.shows({ "b.txt", "empty/", "run/" }));
        chooser.dialog->onAccepted();
        QVERIFY(chooser.accepted.isEmpty() && chooser.dialog->isVisible());
        chooser.item("run/")->setSelected(true);
        QVERIFY(!chooser.ok().isEnabled());
        chooser.list().clearSelection();
        QVERIFY(!chooser.ok().isEnabled());
        chooser.item("b.txt")->setSelected(true);
        QVERIFY(chooser.ok().isEnabled());
        QCOMPARE(chooser.edit().text(), "b.txt");
        chooser.ok().click();
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/data/b.txt");
    }

    void directoryAcceptsATypedName_data()
    {
        addColumns<QStringList, QString, QString>("exts", "typed", "path");
        addCase("first extension added", QStringList({ ".csv", ".txt" }), "x.txt", "/data/x.txt.csv");
        addCase("has it", QStringList({ ".csv" }), "x.csv", "/data/x.csv");
        addCase("star is added too", QStringList({ "*" }), "x", "/data/x*");
        addCase("no extensions", QStringList(), "x", "/data/x");
        addCase("slash passed on", QStringList(), "a/x", "/data/a/x");
        addCase("empty", QStringList(), "", "");
    }

    void directoryAcceptsATypedName()
    {
        QFETCH(QStringList, exts);
        QFETCH(QString, typed);
        QFETCH(QString, path);
        TreeServer server;
        DirectoryChooser chooser(server, "/data");
        chooser.dialog->setExt(exts, true, ".none");
        QVERIFY(chooser.settles());
        chooser.edit().setText(typed);
        chooser.dialog->onAccepted();
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), path);
        QCOMPARE(chooser.dialog->isVisible(), path.isEmpty());
    }

    void directoryAsksAboutNameAndSuffix()
    {
        ScriptedServer server;
        server.answer("ls-F \"/data\"", listing("x_0001/\nother\n"));
        DirectoryChooser chooser(server, "/data");
        chooser.dialog->setExt({}, true, "_0001/");
        QVERIFY(chooser.shows({ "x_0001/" }));
        chooser.edit().setText("x");
        {
            const MessageBoxWatcher box(QMessageBox::Cancel);
            chooser.ok().click();
            QCOMPARE(box.texts, QStringList("'x' already exists. Do you want to overwrite it?"));
            QCOMPARE(box.defaultButtons.value(0), QMessageBox::Cancel);
        }
        QVERIFY(chooser.accepted.isEmpty());
        // A name that is not displayed is looked up too.
        chooser.dialog->setExt({}, true, QString());
        chooser.edit().setText("other");
        const MessageBoxWatcher second(QMessageBox::Ok);
        chooser.ok().click();
        QCOMPARE(second.texts, QStringList("'other' already exists. Do you want to overwrite it?"));
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/data/other");
    }

    void directoryEntersAFolderOfTheRoot()
    {
        TreeServer server;
        server.answer("pwd", listing("/\n"));
        DirectoryChooser chooser(server, QString());
        QVERIFY(chooser.shows({ "data/" }));
        chooser.doubleClick("data/");
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        QCOMPARE(lastRequest(server), "ls-F \"/data\"");
    }

    void rootOfTheServerGivesTwoSlashes()
    {
        TreeServer server;
        server.answer("pwd", listing("/\n"));
        DirectoryChooser chooser(server, QString());
        chooser.dialog->setExt({}, true, QString());
        QVERIFY(chooser.shows({ "data/" }));
        QCOMPARE(chooser.ancestors(), QStringList({ "/" }));
        chooser.edit().setText("name");
        chooser.ok().click();
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "//name");
    }

    // --- both

    void requestsCarryTheirNames()
    {
        // The returned commands are exactly those that were sent.
        class Path : public SelectPathDialog {
        public:
            using SelectPathDialog::SelectPathDialog;
            using SelectPathDialog::session;
        };
        class Directory : public SelectDirectoryDialog {
        public:
            using SelectDirectoryDialog::SelectDirectoryDialog;
            using SelectDirectoryDialog::session;
        };
        TreeServer server;
        server.answer("pwd", { Step::hold("pwd"), Step::text("OK:\n/data\n") });
        TarnisSession model(ScriptedServer::host(), server.port(), server.prompt(), nullptr);
        Path path(QString(), &model, nullptr);
        QList<PTarnisCmd> commands;
        QObject receiver;
        const auto keep = [&](const PTarnisCmd& command, const QByteArray&) { commands.append(command); };
        connect(path.session, &TarnisSession::result, &receiver, keep);
        server.open("pwd");
        QVERIFY(eventually([&] { return commands.size() == 2; }));
        server.answer("pwd", { Step::hold("twin"), Step::text("OK:\n/data\n") });
        Directory directory(QString(), &model, nullptr);
        connect(directory.session, &TarnisSession::result, &receiver, keep);
        server.open("twin");
        QVERIFY(eventually([&] { return commands.size() == 4; }));
        QStringList names;
        for (const PTarnisCmd& command : std::as_const(commands)) {
            QVERIFY(command->m_bUser1 && command->m_bUser2 && !command->m_bBinary);
            names.append(command->m_cmdName);
        }
        QCOMPARE(names, QStringList({ "pathSelectPwd", "pathSelectLs", "pwd", "ls" }));
    }

    void comboBoxOrArgument()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        QVERIFY(chooser.settles());
        chooser.dialog->onDirComboIndexChanged("/other");
        QVERIFY(server.waitForRequests(2));
        QCOMPARE(lastRequest(server), "ls-F \"/data\"");
        DirectoryChooser twin(server, "/data");
        QVERIFY(server.waitForRequests(3));
        QVERIFY(twin.settles());
        twin.dialog->onDirComboIndexChanged("/data/run");
        QVERIFY(server.waitForRequests(4));
        QCOMPARE(lastRequest(server), "ls-F \"/data/run\"");
    }

    void entersAFolderByTheKeyboard()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        DirectoryChooser twin(server, "/data");
        chooser.dialog->setExt({ "txt" }, false, false);
        QVERIFY(chooser.settles() && twin.shows({ "empty/", "run/" }));
        chooser.list().setFocus();
        chooser.list().setCurrentItem(chooser.item("run/"));
        QTest::keyClick(&chooser.list(), Qt::Key_Return);
        QVERIFY(eventually([&] { return chooser.dialog->getDir() == "/data/run"; }));
        QVERIFY(chooser.settles());
        QVERIFY(chooser.dialog->isVisible());
        QCOMPARE(chooser.dialog->focusWidget(), &chooser.list()); // as before the request
        twin.list().setFocus();
        twin.list().setCurrentItem(twin.item("run/"));
        QTest::keyClick(&twin.list(), Qt::Key_Enter, Qt::KeypadModifier);
        QVERIFY(eventually([&] { return twin.ancestors().size() == 3; }));
        QCOMPARE(twin.dialog->focusWidget(), &twin.list());
        // On a file, and without a current item, Enter presses Ok as everywhere in the dialog.
        QVERIFY(chooser.shows({ "one.txt" }));
        chooser.list().setCurrentRow(0);
        QTest::keyClick(&chooser.list(), Qt::Key_Return);
        QCOMPARE(chooser.accepted.value(0).value(0).toString(), "/data/run/one.txt");
        twin.list().setCurrentItem(nullptr);
        QTest::keyClick(&twin.list(), Qt::Key_Return);
        QCOMPARE(twin.accepted.value(0).value(0).toString(), "/data/run");
    }

    void focusStaysWhereTheUserPutsIt()
    {
        TreeServer server;
        server.answer("ls-F \"/data/run\"", { Step::hold("ls"), Step::text("OK:\none.txt\n") });
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "txt" }, false, false);
        QVERIFY(chooser.settles());
        chooser.combo().setFocus();
        chooser.dialog->setDir("/data/run");
        QVERIFY(!chooser.combo().hasFocus());
        QWidget* const cancel = chooser.dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel);
        cancel->setFocus();
        server.open("ls");
        QVERIFY(chooser.settles());
        QCOMPARE(chooser.dialog->focusWidget(), cancel);
    }

    void focusThatComesBackChoosesNothing()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        chooser.dialog->setExt({ "txt" }, false, false);
        QVERIFY(eventually([&] { return chooser.list().count() == 4; }));
        chooser.list().setFocus();
        chooser.list().setCurrentItem(nullptr);
        chooser.edit().setText("typed");
        chooser.dialog->requestLs();
        QVERIFY(chooser.settles());
        QCOMPARE(chooser.dialog->focusWidget(), &chooser.list());
        QVERIFY(!chooser.list().currentItem());
        QCOMPARE(chooser.edit().text(), "typed");
        QVERIFY(chooser.ok().isEnabled());
    }

    void cancelRejects()
    {
        ScriptedServer server;
        PathChooser chooser(server, "/");
        chooser.dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
        QCOMPARE(chooser.dialog->QDialog::result(), int(QDialog::Rejected));
        QVERIFY(chooser.accepted.isEmpty());
    }

    void closingEndsTheSession()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        DirectoryChooser twin(server, "/data");
        QVERIFY(chooser.settles() && twin.settles());
        chooser.dialog->close();
        twin.dialog->close();
        QVERIFY(server.waitForFarewells(2));
        chooser.dialog->requestLs(); // harmless
        twin.dialog->requestPwd();
        QVERIFY(chooser.list().isEnabled());
    }

    void closingInMidReply()
    {
        ScriptedServer server;
        server.answer("ls-F \"/data\"", { Step::raw("OK:\nrun/\n"), Step::hold("rest"), Step::text("end/\n") });
        PathChooser chooser(server, "/data");
        DirectoryChooser twin(server, "/data");
        QVERIFY(server.waitForHold("rest", 2));
        chooser.dialog->close();
        twin.dialog->close();
        server.open("rest");
        QVERIFY(server.waitUntilDeserted());
        QVERIFY(chooser.names().isEmpty() && twin.names().isEmpty());
        QVERIFY(!chooser.dialog->isVisible() && !twin.dialog->isVisible());
    }

    void acceptingKeepsTheSessionUntilDestruction()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        QVERIFY(chooser.settles());
        chooser.ok().click();
        QCOMPARE(server.farewells(), 0);
        chooser.dialog->requestLs();
        QVERIFY(server.waitForRequests(2));
        chooser.dialog.reset();
        QVERIFY(server.waitForFarewells(1));
    }

    void otherRepliesAreIgnored()
    {
        TreeServer server;
        PathChooser chooser(server, "/data");
        QVERIFY(chooser.shows({ "empty/", "run/" }));
        PTarnisCmd command(new TarnisCmd("ls"));
        command->m_cmdName = "ls"; // the name used by the other chooser
        chooser.dialog->result(command, "OK:\nother/\n");
        QCOMPARE(chooser.names(), QStringList({ "empty/", "run/" }));
    }

    void destroyedWhileAReplyIsUnderWay()
    {
        ScriptedServer server;
        server.answer("ls-F \"/data\"", { Step::hold("ls"), Step::text("OK:\n") });
        auto chooser = std::make_unique<PathChooser>(server, "/data");
        QVERIFY(server.waitForHold("ls"));
        server.open("ls");
        chooser.reset();
        QVERIFY(server.waitUntilDeserted());
    }

    void receiverMayDeleteTheDialog()
    {
        TreeServer server;
        TarnisSession model(ScriptedServer::host(), server.port(), server.prompt(), nullptr);
        const QPointer dialog = new SelectPathDialog("/data", &model, nullptr);
        connect(dialog, qOverload<const QString&>(&SelectPathDialog::accepted), this, [&] { delete dialog; });
        dialog->onAccepted();
        QVERIFY(dialog.isNull());
        const QPointer twin = new SelectDirectoryDialog("/data", &model, nullptr);
        connect(twin, qOverload<const QString&>(&SelectDirectoryDialog::accepted), this, [&] { delete twin; });
        twin->onAccepted();
        QVERIFY(twin.isNull());
    }

    void manyOddNames()
    {
        ScriptedServer server;
        QStringList names;
        for (int i = 0; i < 10000; ++i)
            names.append(QStringLiteral("Lauf äöü 😀 \"%1\"/").arg(i, 5, 10, QLatin1Char('0')));
        server.answer("ls-F \"/data\"", listing(names.join('\n').toUtf8()));
        PathChooser chooser(server, "/data");
        QVERIFY(eventually([&] { return chooser.list().count() == 10000; }));
        QCOMPARE(chooser.names(), names);
    }
};

QTEST_MAIN(TestServerPaths)
#include "tst_serverpaths.moc"
