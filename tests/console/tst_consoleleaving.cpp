// Leaving the console and ending its server: asks first if data would be lost, and only then.
#include "browse/pathwindows.h"
#include "browse/servertext.h"
#include "console/consolefixture.h"
#include "server/connectdialog.h"
#include "support/cases.h"
#include "support/wait.h"

#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>

using namespace console;
using namespace tarnis::testing;

namespace {

const Script unsavedEvents { Step::text("OK:\n--run\nstate: STOPPED\nrun: 1\nrun directory: none\nevents: 1234\n") };

/// A console with a local server, which may be in a run.
class LeavingConsole : public ConsoleFixture {
public:
    explicit LeavingConsole(ScriptedServer& server)
        : program(FakeServer::wellBehaved(server.port()))
    {
        use(program);
        if (!reaches(ServerState::Up))
            qFatal("no server");
    }
    void beginRun() { window->controller().tarnis().SetStatus(Tarnis::RUNNING); }
    QMessageBox* question() { return window->findChild<QMessageBox*>(QStringLiteral("runBox")); }
    void answerYes()
    {
        if (!eventually([this] { return question() && question()->isVisible(); }))
            qFatal("nothing is asked about the run");
        for (QAbstractButton* const button : question()->buttons()) {
            if (question()->buttonRole(button) == QMessageBox::AcceptRole)
                return tarnis::testing::press(*button);
        }
        qFatal("nothing to end the run with");
    }
    void answerNo() { answer(*window, "runBox", QMessageBox::Cancel); }
    /// Answers with the default, which is no; true if server and window stay.
    bool staysAfterNo()
    {
        if (question()->defaultButton() != question()->button(QMessageBox::Cancel))
            return false;
        answerNo();
        return eventually([this] { return !question(); }) && isUp() && window->isVisible();
    }
    bool knowsEvents()
    {
        return eventually([this] {
            window->statusPoller().request();
            return window->statusPoller().runStatus().events.value_or(0) > 0;
        });
    }
    bool isUp() const { return window->controller().state() == ServerState::Up; }
    /// Waits for the state Off and processes all pending events.
    bool isLeft()
    {
        return eventually([this] { return !window->isVisible(); });
    }

    ServerTextWindow* typeText(const QString& text)
    {
        auto* const found = open<ServerTextWindow>("server-text");
        found->findChild<QPlainTextEdit*>(QStringLiteral("edit"))->insertPlainText(text);
        return found;
    }
    static QMessageBox* changesOf(const QWidget& text)
    {
        return text.findChild<QMessageBox*>(QStringLiteral("changesBox"));
    }

    const FakeServer program;
};

} // namespace

class TestConsoleLeaving : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    // A run.

    void aRunIsNotEndedWithoutAQuestion_data()
    {
        addColumns<QString, ServerState>("action", "afterwards");
        QTest::newRow("Shut Down") << "shutDownAction" << ServerState::Off;
        QTest::newRow("Restart") << "restartAction" << ServerState::Stopping;
        QTest::newRow("End by Force") << "forceAction" << ServerState::Failed;
        QTest::newRow("Quit") << "quitAction" << ServerState::Off;
    }
    void aRunIsNotEndedWithoutAQuestion()
    {
        QFETCH(QString, action);
        QFETCH(ServerState, afterwards);
        ScriptedServer server;
        LeavingConsole fixture(server);
        fixture.beginRun();
        fixture.choose(qPrintable(action));
        QVERIFY(fixture.question());
        QVERIFY(fixture.question()->text().contains(QStringLiteral("server")));
        QVERIFY(fixture.staysAfterNo());
        fixture.choose(qPrintable(action));
        fixture.answerYes();
        QVERIFY(fixture.reaches(afterwards));
        if (action == u"quitAction")
            QVERIFY(fixture.isLeft());
    }

    void aRunIsNotEndedByAnotherServerWithoutAQuestion()
    {
        ScriptedServer server;
        ScriptedServer other;
        LeavingConsole fixture(server);
        fixture.beginRun();
        const auto chooseOther = [&] {
            fixture.choose("chooseAction");
            auto* const dialog = fixture.window->findChild<ConnectDialog*>();
            dialog->findChild<QAbstractButton*>(QStringLiteral("remoteRadio"))->click();
            dialog->findChild<QLineEdit*>(QStringLiteral("hostEdit"))->setText(ScriptedServer::host());
            dialog->findChild<QSpinBox*>(QStringLiteral("portSpin"))->setValue(other.port());
            acceptChoice(*dialog);
        };
        chooseOther();
        TRY_VERIFY(!fixture.window->findChild<ConnectDialog*>());
        QVERIFY(fixture.question());
        fixture.answerNo();
        TRY_VERIFY(!fixture.question());
        QVERIFY(fixture.isUp() && fixture.window->controller().isLocal());
        // The choice is not lost.
        const auto* const dialog = fixture.window->findChild<ConnectDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->choice().kind, ServerChoice::Kind::Remote);
        QCOMPARE(dialog->choice().host, ScriptedServer::host());
        QCOMPARE(dialog->choice().port, other.port());
        acceptChoice(*dialog);
        fixture.answerYes();
        TRY_VERIFY(fixture.isUp() && !fixture.window->controller().isLocal());
    }

    void unsavedEventsAreNotLostWithoutAQuestion_data()
    {
        addColumns<QString, ServerState>("action", "afterwards");
        QTest::newRow("Shut Down") << "shutDownAction" << ServerState::Off;
        QTest::newRow("Restart") << "restartAction" << ServerState::Stopping;
        QTest::newRow("Quit") << "quitAction" << ServerState::Off;
    }
    void unsavedEventsAreNotLostWithoutAQuestion()
    {
        QFETCH(QString, action);
        QFETCH(ServerState, afterwards);
        ScriptedServer server;
        server.answer("stat", unsavedEvents);
        LeavingConsole fixture(server);
        QVERIFY(fixture.knowsEvents());
        fixture.choose(qPrintable(action));
        QVERIFY(fixture.question());
        QVERIFY2(fixture.question()->text().contains(QStringLiteral("1,234 events")),
            qPrintable(fixture.question()->text()));
        QVERIFY(fixture.staysAfterNo());
        fixture.window->statusPoller().noteSaved();
        fixture.choose(qPrintable(action));
        QVERIFY(!fixture.question());
        QVERIFY(fixture.reaches(afterwards));
        if (action == u"quitAction")
            QVERIFY(fixture.isLeft());
    }

    void eventsOfARemoteServerStayThere()
    {
        ScriptedServer server;
        server.answer("stat", unsavedEvents);
        ConsoleFixture fixture(server);
        fixture.window->statusPoller().request();
        TRY_COMPARE(fixture.window->statusPoller().runStatus().events.value_or(0), 1234);
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
    }

    void asksNothingWithoutARun()
    {
        ScriptedServer server;
        LeavingConsole fixture(server);
        fixture.choose("restartAction");
        QVERIFY(!fixture.question());
        TRY_VERIFY(fixture.isUp());
        fixture.window->close();
        QVERIFY(!fixture.question());
        QVERIFY(fixture.isLeft());
    }

    void aRemoteRunContinuesAfterLeaving()
    {
        ScriptedServer server;
        ConsoleFixture fixture(server);
        fixture.window->controller().tarnis().SetStatus(Tarnis::RUNNING);
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
    }

    void theEndOfTheProgramFromOutsideIsNotHeldUpByARun()
    {
        ScriptedServer server;
        LeavingConsole fixture(server);
        fixture.beginRun();
        fixture.window->leave();
        QVERIFY(!fixture.question());
        QVERIFY(fixture.isLeft());
    }

    void storesThePlacesBeforeTheServerEnds()
    {
        ScriptedServer server;
        LeavingConsole fixture(server);
        const QPointer<QWidget> rate = fixture.find("rate");
        QVERIFY(!rate.isNull());
        const QSize chosen = rate->size();
        fixture.window->close();
        QVERIFY(!rate.isNull()); // until the server has ended
        rate->resize(chosen + QSize(0, 50)); // as a window that reports this in a line of its own
        QVERIFY(fixture.isLeft());
        QCOMPARE(fixture.store.value("windows/rate/place").toRect().size(), chosen);
    }

    // A text with changes.

    void asksAboutChangesBeforeTheServerEnds()
    {
        ScriptedServer server;
        LeavingConsole fixture(server);
        const QPointer<ServerTextWindow> text = fixture.typeText(QStringLiteral("x"));
        fixture.window->close();
        QVERIFY(LeavingConsole::changesOf(*text));
        QVERIFY(fixture.isUp());
        answer(*text, "changesBox", QMessageBox::Cancel);
        TRY_VERIFY(!LeavingConsole::changesOf(*text));
        QVERIFY(fixture.isUp() && fixture.window->isVisible() && text->isVisible());
        // A later answer does not resume a cancelled action.
        text->close();
        answer(*text, "changesBox", QMessageBox::Discard);
        TRY_VERIFY(text.isNull());
        QCoreApplication::processEvents();
        QVERIFY(fixture.isUp() && fixture.window->isVisible());
    }

    void closesAfterDiscardingChanges()
    {
        ScriptedServer server;
        LeavingConsole fixture(server);
        const auto* const text = fixture.typeText(QStringLiteral("x"));
        fixture.window->close();
        answer(*text, "changesBox", QMessageBox::Discard);
        QVERIFY(fixture.isLeft());
    }

    void closesAfterSavingChanges()
    {
        ScriptedServer server;
        server.answer("rxfile \"/notes\"", { Step::binary("one\n", "OK: /notes, 4 bytes\n") });
        server.answer("txfile \"/notes\"\nxone\n", { Step::text("OK:\n") });
        LeavingConsole fixture(server);
        auto* const text = fixture.open<ServerTextWindow>("server-text");
        text->openFile(QStringLiteral("/notes"));
        auto* const edit = text->findChild<QPlainTextEdit*>(QStringLiteral("edit"));
        TRY_COMPARE(edit->toPlainText(), QStringLiteral("one\n"));
        fixture.typeText(QStringLiteral("x"));
        fixture.window->close();
        answer(*text, "changesBox", QMessageBox::Save);
        QVERIFY(fixture.isLeft());
        QVERIFY(server.requests().contains("txfile \"/notes\"\nxone\n"));
    }

    void changesThatCannotBeSavedKeepTheConsole()
    {
        ScriptedServer server;
        server.answer("rxfile \"/notes\"", { Step::binary("one\n", "OK: /notes, 4 bytes\n") });
        server.answer("txfile \"/notes\"\nxone\n", { Step::text("NG:full\n") });
        LeavingConsole fixture(server);
        const QPointer<ServerTextWindow> text = fixture.open<ServerTextWindow>("server-text");
        text->openFile(QStringLiteral("/notes"));
        const auto* const state = text->findChild<QLabel*>(QStringLiteral("stateLabel"));
        TRY_VERIFY(state->text().startsWith(QStringLiteral("Opened")));
        fixture.typeText(QStringLiteral("x"));
        fixture.window->close();
        answer(*text, "changesBox", QMessageBox::Save);
        TRY_VERIFY(state->text().contains(QStringLiteral("NG:full")));
        QVERIFY(fixture.isUp() && fixture.window->isVisible());
        text->close();
        answer(*text, "changesBox", QMessageBox::Discard);
        TRY_VERIFY(text.isNull());
        QCoreApplication::processEvents();
        QVERIFY(fixture.isUp() && fixture.window->isVisible());
    }

    void savingThatIsGivenUpKeepsTheConsole_data()
    {
        addColumns<bool, bool>("isRunning", "isByKey");
        QTest::newRow("by the frame of the chooser") << false << false;
        QTest::newRow("by the frame of the chooser during a run") << true << false;
        QTest::newRow("by Escape") << false << true;
    }
    void savingThatIsGivenUpKeepsTheConsole()
    {
        QFETCH(bool, isRunning);
        QFETCH(bool, isByKey);
        ScriptedServer server;
        server.answer("pwd", { Step::text("OK:\n/data\n") });
        server.answer("ls-F \"/data\"", { Step::text("OK:\nold/\n") });
        server.answer("txfile \"/data/new\"\nx", { Step::text("OK:\n") });
        LeavingConsole fixture(server);
        const QPointer<ServerTextWindow> text = fixture.typeText(QStringLiteral("x"));
        if (isRunning)
            fixture.beginRun();
        fixture.window->close();
        if (isRunning)
            fixture.answerYes();
        answer(*text, "changesBox", QMessageBox::Save);
        const QPointer<FolderChooser> chooser = text->findChild<FolderChooser*>();
        QVERIFY(chooser && chooser->isVisible());
        int rejections = 0;
        connect(chooser, &QDialog::rejected, text, [&] { ++rejections; });
        if (isByKey)
            QTest::keyClick(chooser, Qt::Key_Escape);
        else
            chooser->close(); // as the frame of the window does
        TRY_VERIFY(chooser.isNull());
        QCOMPARE(rejections, 1);
        TRY_VERIFY(!LeavingConsole::changesOf(*text));
        TRY_VERIFY(!fixture.question());
        // A later save does nothing else.
        text->saveTo(QStringLiteral("/data/new"));
        const auto* const state = text->findChild<QLabel*>(QStringLiteral("stateLabel"));
        TRY_COMPARE(state->text(), QStringLiteral("Saved."));
        QCoreApplication::processEvents();
        QVERIFY(text && text->isVisible());
        QVERIFY(fixture.isUp() && fixture.window->isVisible());
        if (isRunning) {
            fixture.window->close();
            QVERIFY(fixture.question()); // the previous answer counted once
        }
    }

    void aRunThatBeginsWhileSavingKeepsTheConsole()
    {
        ScriptedServer server;
        server.answer("pwd", { Step::text("OK:\n/data\n") });
        server.answer("ls-F \"/data\"", { Step::text("OK:\nold/\n") });
        server.answer("txfile \"/data/new\"\nx", { Step::text("OK:\n") });
        LeavingConsole fixture(server);
        const QPointer<ServerTextWindow> text = fixture.typeText(QStringLiteral("x"));
        fixture.window->close();
        answer(*text, "changesBox", QMessageBox::Save);
        QVERIFY(text->findChild<FolderChooser*>());
        fixture.beginRun();
        fixture.window->close();
        fixture.answerNo();
        TRY_VERIFY(!fixture.question());
        // The text closes when it is saved, but nothing else does.
        text->saveTo(QStringLiteral("/data/new"));
        TRY_VERIFY(text.isNull());
        QCoreApplication::processEvents();
        QVERIFY(!fixture.question());
        QVERIFY(fixture.isUp() && fixture.window->isVisible());
    }

    void withoutAServerNothingCanBeSaved()
    {
        ScriptedServer server;
        LeavingConsole fixture(server);
        const auto* const text = fixture.typeText(QStringLiteral("x"));
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        fixture.window->close();
        QVERIFY(LeavingConsole::changesOf(*text));
        QVERIFY(!LeavingConsole::changesOf(*text)->button(QMessageBox::Save));
        QVERIFY(!LeavingConsole::changesOf(*text)->informativeText().isEmpty());
        answer(*text, "changesBox", QMessageBox::Discard);
        QVERIFY(fixture.isLeft());
    }

    void asksAboutTheRunFirst()
    {
        ScriptedServer server;
        LeavingConsole fixture(server);
        const auto* const text = fixture.typeText(QStringLiteral("x"));
        fixture.beginRun();
        fixture.window->close();
        QVERIFY(!LeavingConsole::changesOf(*text));
        fixture.answerYes();
        QVERIFY(LeavingConsole::changesOf(*text));
        answer(*text, "changesBox", QMessageBox::Cancel);
        TRY_VERIFY(!LeavingConsole::changesOf(*text));
        TRY_VERIFY(!fixture.question());
        fixture.window->close();
        QVERIFY(fixture.question()); // the previous answer counted once
        fixture.answerYes();
        answer(*text, "changesBox", QMessageBox::Discard);
        QVERIFY(fixture.isLeft());
    }
};

QTEST_MAIN(TestConsoleLeaving)
#include "tst_consoleleaving.moc"
