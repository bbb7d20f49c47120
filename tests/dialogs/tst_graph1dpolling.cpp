// The live 1D window against a scripted server: polls, refusals, errors, and its end.
#include "dialogs/graph1dwindow.h"
#include "dialogs/livewindow.h"
#include "support/cases.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph1ddialog.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace tarnis::testing;

namespace {

/// Collects the debug lines of its lifetime, without source, line and thread.
class Traces {
public:
    Traces()
        : m_previous(qInstallMessageHandler(collect))
    {
        lines().clear();
    }
    ~Traces() { qInstallMessageHandler(m_previous); }
    Q_DISABLE_COPY_MOVE(Traces)

    static QStringList texts() { return lines(); }

private:
    static QStringList& lines()
    {
        static QStringList collected;
        return collected;
    }
    static void collect(QtMsgType type, const QMessageLogContext&, const QString& text)
    {
        const qsizetype bar = text.indexOf("| ");
        // Sessions trace too, on their own threads.
        if (type == QtDebugMsg && QThread::currentThread() == QCoreApplication::instance()->thread())
            lines().append(text.mid(bar + 2));
    }
    QtMessageHandler m_previous;
};

} // namespace

class TestGraph1DPolling : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QCoreApplication::setApplicationName("live test"); }

    // --- polling

    void pollsAgainAndAgain()
    {
        ScriptedServer server;
        server.answer("hist", { Step::binary(bytesOf({ 1, 2, 3, 4 }), "OK:\n") });
        Model model(server);
        const WindowPointer window = shown(&model);
        QSignalSpy updated(window.get(), &Graph1DDialog::onGraphUpdated);
        QVERIFY(eventually([&] { return updated.count() == 1; }));
        QVERIFY(window->timer->isActive());
        QCOMPARE(window->series(0), QList<double>({ 1, 3 }));
        QCOMPARE(window->series(1), QList<double>({ 2, 4 }));
        QVERIFY(eventually([&] { return updated.count() == 3; }));
        QCOMPARE(server.connectionCount(), 1);
    }

    void initialCommandsGoFirst()
    {
        ScriptedServer server;
        server.answer("hist", { Step::binary(QByteArray(), "OK:\n") });
        Model model(server);
        Options options;
        options.initCmds = { "setting rate:1", "clear" };
        const WindowPointer window = shown(&model, options);
        // Without events: connected() would poll, and drop what is queued.
        QVERIFY(hasRequests(server, 2));
        QVERIFY(server.waitForRequest("hist"));
        QCOMPARE(server.requests().first(3), QList<QByteArray>({ "setting rate:1", "clear", "hist" }));
    }

    void connectingPollsInsteadOfWhatIsStillQueued()
    {
        ScriptedServer server({ Step::hold("greeting"), Step::text("hello"), Step::serve() });
        server.answer("hist", { Step::binary(QByteArray(), "OK:\n") });
        Model model(server);
        Options options;
        options.initCmds = { "a", "b" };
        const WindowPointer window = shown(&model, options);
        QVERIFY(server.waitForHold("greeting"));
        server.open("greeting");
        QVERIFY(server.waitForRequest("hist"));
        const QList<QByteArray> before = server.requests().first(server.requests().indexOf("hist"));
        QCOMPARE(before, QList<QByteArray>({ "a", "b" }).first(before.size()));
    }

    void refusedInitialCommandClosesTheWindow()
    {
        MessageBoxWatcher boxes;
        const ConnectedWindow window;
        window->result(answered("start %1", false, QString()), "NG: n\xc3\xb6 %2");
        QCOMPARE(boxes.texts, QStringList(QStringLiteral(">>> start %1\n<<< NG: nö %2")));
        QCOMPARE(boxes.titles, QStringList("live test"));
        QCOMPARE(boxes.icons.value(0), QMessageBox::Warning);
        QVERIFY(!window->isVisible());
        QVERIFY(!window->session);
        QVERIFY(!window->timer->isActive());
    }

    void acceptedInitialCommandChangesNothing()
    {
        const ConnectedWindow window;
        window->setInfoText("old");
        window->result(answered("start", false, QString()), "OK:");
        QVERIFY(window->isVisible() && !window->timer->isActive());
        QVERIFY(!window->child<QLabel>("infoLabel").isVisible()); // a text reply clears the complaints too
    }

    void refusedPollShowsItsComplaint()
    {
        ScriptedServer server;
        server.answerInTurn("hist",
            { { Step::binary(QByteArray(), "note\n  NG: no such histogram\n NG: really\n") },
                { Step::binary(bytesOf({ 1, 2 }), "OK:\n") } });
        Model model(server);
        const WindowPointer window = shown(&model);
        auto& label = window->child<QLabel>("infoLabel");
        QVERIFY(eventually([&] { return label.text() == "NG: no such histogram\nNG: really"; }));
        QVERIFY(label.isVisible());
        QVERIFY(eventually([&] { return label.text().isEmpty() && !label.isVisible(); })); // the next reply clears it
        QCOMPARE(window->seenLines.value(0), QStringList({ "note", "NG: no such histogram", "NG: really" }));
    }

    void subclassMayRefuseTheReply()
    {
        const ConnectedWindow window;
        window->drawReplies = false;
        QSignalSpy updated(window.get(), &Graph1DDialog::onGraphUpdated);
        window->result(answered("hist", true, "OK:"), bytesOf({ 1, 2 }));
        QVERIFY(window->timer->isActive());
        QVERIFY(updated.isEmpty());
        window->timer->stop();
        window->result(answered("start", false, QString()), "NG: no"); // checked before text replies: no message box
        QVERIFY(window->timer->isActive() && window->isVisible());
    }

    void stoppedPollingContinuesWithTheNextUpdate_data()
    {
        addColumns<bool, QString, QList<double>>("hidden", "text", "payload");
        QTest::newRow("after a reply to a hidden window") << true << "a (0 10 5)" << QList<double>({ 1, 1 });
        QTest::newRow("after a parse failure") << false << "nothing" << QList<double>();
        QTest::newRow("after an invalid index") << false << "a (0 10 5)" << QList<double>({ 50, 1 });
    }

    void stoppedPollingContinuesWithTheNextUpdate()
    {
        QFETCH(bool, hidden);
        QFETCH(QString, text);
        QFETCH(QList<double>, payload);
        ScriptedServer server;
        server.answerInTurn("hist",
            { { Step::hold("first"), Step::binary(bytesOf(payload), text.toLatin1()) },
                { Step::doubles({ 2, 7 }, "a (0 10 5)") } });
        Model model(server);
        MessageBoxWatcher boxes;
        const WindowPointer window = shown(&model, pairs());
        QSignalSpy updated(window.get(), &Graph1DDialog::onGraphUpdated);
        QVERIFY(server.waitForHold("first"));
        window->setVisible(!hidden);
        server.open("first");
        if (hidden)
            QVERIFY(eventually([&] { return window->resultCalls == 1; }));
        else
            QVERIFY(eventually([&] { return boxes.texts.size() == 1; }));
        QVERIFY(!window->timer->isActive());
        QCOMPARE(server.requests().size(), 1);
        window->show();
        window->child<QPushButton>("updatePushButton").click();
        QVERIFY(eventually([&] { return updated.count() >= 1; }));
        QCOMPARE(window->series(0), QList<double>({ 0, 7, 0, 0, 0 }));
        QVERIFY(eventually([&] { return updated.count() >= 2; })); // auto update is on: polling continues
    }

    void hiddenWindowDropsTheReply()
    {
        const ConnectedWindow window;
        window->hide();
        window->result(answered("hist", true, "OK:"), bytesOf({ 1, 2 }));
        QVERIFY(!window->timer->isActive());
        QVERIFY(window->seenLines.isEmpty());
        QVERIFY(window->series(0).isEmpty());
    }

    void autoUpdateOffEndsTheChainAndOnRestartsIt()
    {
        ScriptedServer server;
        server.answer("hist", { Step::binary(bytesOf({ 1, 2 }), "OK:\n") });
        Model model(server);
        const WindowPointer window = shown(&model);
        QVERIFY(eventually([&] { return window->timer->isActive(); }));
        window->child<QCheckBox>("autoUpdateCheckBox").click();
        QVERIFY(window->timer->isActive()); // runs out, and onTimeout() then sends nothing
        QVERIFY(eventually([&] { return !window->timer->isActive(); }));
        const auto sent = server.requests().size();
        window->onTimeout();
        QCOMPARE(server.requests().size(), sent);
        window->child<QCheckBox>("autoUpdateCheckBox").click();
        QVERIFY(server.waitForRequests(int(sent) + 1));
    }

    void updateButtonPollsOnce()
    {
        ScriptedServer server;
        server.answer("hist", { Step::binary(bytesOf({ 1, 2 }), "OK:\n") });
        Model model(server);
        const WindowPointer window = shown(&model);
        window->setAutoUpdate(false);
        window->child<QPushButton>("updatePushButton").click();
        QVERIFY(eventually([&] { return window->series(0) == QList<double>({ 1 }); }));
    }

    void setCmdPollsTheNewCommand()
    {
        ScriptedServer server;
        server.answerOthers([](const std::string&) { return Script { Step::binary(QByteArray(), "OK:\n") }; });
        Model model(server);
        const WindowPointer window = shown(&model);
        QVERIFY(server.waitForRequest("hist"));
        window->setCmd("other");
        QVERIFY(server.waitForRequest("other"));
        window->setAutoUpdate(false);
    }

    void sameCmdPollsNothing()
    {
        const ConnectedWindow window;
        const Traces traces;
        window->setCmd("hist");
        QVERIFY(traces.texts().isEmpty());
        window->setCmd("other");
        QCOMPARE(traces.texts(), QStringList(">>>other"));
    }

    // The second poll cancels the first.
    void autoUpdateSetByCodeSendsTwice()
    {
        ScriptedServer server;
        server.answer("hist", { Step::hold("reply"), Step::binary(bytesOf({ 1, 2 }), "OK:\n") });
        Model model(server);
        const WindowPointer window = shown(&model);
        QVERIFY(server.waitForHold("reply"));
        window->setAutoUpdate(false);
        {
            const Traces traces;
            window->setAutoUpdate(true);
            QCOMPARE(traces.texts(), QStringList({ ">>>hist", ">>>hist" }));
            window->setAutoUpdate(true); // no change of the box: once
            QCOMPARE(traces.texts().size(), 3);
        }
        server.open("reply");
        QVERIFY(server.waitForRequests(2));
        QCOMPARE(server.requests().size(), 2); // only the last of the three waiting ones
    }

    void tracesWhatItSendsAndReads()
    {
        ScriptedServer server;
        Model model(server);
        Options options = pairs();
        options.initCmds = { "start" };
        const Traces traces;
        const WindowPointer window = shown(&model, options);
        window->setObjectName("live");
        window->setAutoUpdate(false);
        window->update();
        window->result(answered("hist", true, "OK: (0 10 10)\n"), bytesOf({ 2, 7 }));
        window->result(answered("start", false, QString()), "started");
        window->close();
        const QStringList wanted { ">>>start", ">>>hist", "OK: (0 10 10)\n", "[2] 2,7", "started", "live: closeEvent" };
        QCOMPARE(traces.texts(), wanted);
    }

    void onePollOnlyIsUnderWay()
    {
        ScriptedServer server;
        server.answer("hist", { Step::hold("reply"), Step::binary(bytesOf({ 1, 2 }), "OK:\n") });
        Model model(server);
        const WindowPointer window = shown(&model);
        QVERIFY(server.waitForHold("reply"));
        for (int i = 0; i < 20; ++i)
            window->update();
        window->setAutoUpdate(false); // cancels queued commands
        server.open("reply");
        QVERIFY(eventually([&] { return window->series(0) == QList<double>({ 1 }); }));
        QCOMPARE(server.requests().size(), 1);
    }

    void closingInMidReply() { closeInMidReply<Window>("hist"); }

    void closingWhileGreeting() { closeWhileGreeting<Window>(); }

    void reportsASocketErrorAndKeepsTheWindow()
    {
        ScriptedServer server({ Step::drop() });
        Model model(server);
        MessageBoxWatcher boxes;
        const WindowPointer window = shown(&model);
        QVERIFY(eventually([&] { return !boxes.texts.isEmpty(); }));
        QCOMPARE(boxes.icons.value(0), QMessageBox::Information);
        QVERIFY(window->isVisible());
        QVERIFY(!window->timer->isActive());
    }

    void ignoresAnErrorQueuedBeforeClosing()
    {
        MessageBoxWatcher boxes;
        const ConnectedWindow window;
        QMetaObject::invokeMethod(window.get(), "error", Qt::QueuedConnection, Q_ARG(int, 1), Q_ARG(QString, "gone"));
        window->close();
        QCoreApplication::processEvents();
        QVERIFY(boxes.texts.isEmpty());
    }

    void mayBeDeletedWhileItsBoxIsOpen_data()
    {
        addColumns<bool, bool, QByteArray, bool>("pairMode", "binary", "payload", "closed");
        QTest::newRow("deleted at a refusal") << false << false << QByteArray("NG: no") << false;
        QTest::newRow("deleted at a parse failure") << true << true << QByteArray() << false;
        QTest::newRow("deleted at an invalid index") << true << true << bytesOf({ 50, 1 }) << false;
        QTest::newRow("closed at a refusal") << false << false << QByteArray("NG: no") << true;
        QTest::newRow("closed at a parse failure") << true << true << QByteArray() << true;
        QTest::newRow("closed at an invalid index") << true << true << bytesOf({ 50, 1 }) << true;
    }

    void mayBeDeletedWhileItsBoxIsOpen()
    {
        QFETCH(bool, pairMode);
        QFETCH(bool, binary);
        QFETCH(QByteArray, payload);
        QFETCH(bool, closed);
        ScriptedServer server;
        Model model(server);
        QPointer<Window> window = new Window(&model, pairMode ? pairs() : Options());
        window->show();
        MessageBoxWatcher boxes;
        boxes.answers = false; // the box is deleted with its window
        if (closed)
            boxes.whileOpen = [&] { window->close(); };
        else
            boxes.whileOpen = [&] { delete window; };
        window->result(answered("hist", binary, payload.isEmpty() ? "nothing" : "a (0 10 5)"), payload);
        QCOMPARE(boxes.texts.size(), 1);
        QVERIFY(window.isNull());
    }
};

QTEST_MAIN(TestGraph1DPolling)
#include "tst_graph1dpolling.moc"
