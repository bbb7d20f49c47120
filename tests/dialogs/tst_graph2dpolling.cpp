// The live 2D window against a scripted server: polls, refusals, errors, and its end.
#include "dialogs/graph2dwindow.h"
#include "dialogs/livewindow.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph2ddialog.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

using namespace tarnis::testing;

namespace {

/// A catalogue for one context.
class Catalogue : public QTranslator {
public:
    explicit Catalogue(const char* context)
        : m_context(context)
    {
    }
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return m_context == context && QLatin1String(source) == ">>> %1\n<<< %2" ? "sent %1, received %2" : QString();
    }

private:
    QByteArray m_context;
};

} // namespace

class TestGraph2DPolling : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QCoreApplication::setApplicationName("map test"); }

    // --- polling

    void pollsAgainAndAgain()
    {
        ScriptedServer server;
        server.answerInTurn("map",
            { { Step::binary(bytesOf(ramp(6)), "OK: exported 3 x 2 y\n") },
                { Step::binary(bytesOf({ 9, 8 }), "OK: exported 2 x 1 y\n") } });
        Model model(server);
        const WindowPointer window = shown(&model);
        QVERIFY(eventually([&] { return window->rows() == QList<QList<double>>({ { 1, 2, 3 }, { 4, 5, 6 } }); }));
        QVERIFY(window->timer->isActive());
        // The shape changes between two polls; upper rows of the previous reply stay.
        QVERIFY(eventually([&] { return window->rows() == QList<QList<double>>({ { 9, 8 }, { 4, 5, 6 } }); }));
        QCOMPARE(server.connectionCount(), 1);
    }

    void callsTheVirtualCommandForEachPoll()
    {
        class Counting : public Window {
        public:
            using Window::Window;
            QString getCmd() const override { return "map two"; }
        };
        ScriptedServer server;
        Model model(server);
        Counting window(&model);
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.show();
        QVERIFY(server.waitForRequest("map two"));
    }

    void autoUpdateOffStopsTheTimer()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        window->reply("OK: exported 3 x 2 y", bytesOf(ramp(6)));
        QVERIFY(window->timer->isActive());
        window->child<QCheckBox>("autoUpdateCheckBox").click();
        QVERIFY(!window->timer->isActive());
        window->onAutoUpdateToggled(true); // the box is not checked: nothing is sent
        window->onTimeout();
        server.answer("map", { Step::binary(QByteArray(), "OK:\n") });
        window->child<QCheckBox>("autoUpdateCheckBox").click();
        QVERIFY(eventually([&] { return window->timer->isActive(); }));
    }

    void refusedInitialCommandClosesTheWindow()
    {
        MessageBoxWatcher boxes;
        const ConnectedWindow window;
        window->result(answered("start", false, QString()), "NG: no");
        QCOMPARE(boxes.texts, QStringList(">>> start\n<<< NG: no"));
        QCOMPARE(boxes.titles, QStringList("map test"));
        QCOMPARE(boxes.icons.value(0), QMessageBox::Warning);
        QVERIFY(!window->isVisible() && !window->session && !window->timer->isActive());
    }

    void showsRejectionsInTheWindowsLanguage()
    {
        MessageBoxWatcher boxes;
        const ConnectedWindow window;
        Catalogue catalogue("Graph2DDialog"); // removed from the application by its destructor
        QCoreApplication::installTranslator(&catalogue);
        window->result(answered("start", false, QString()), "NG: no");
        QCOMPARE(boxes.texts, QStringList("sent start, received NG: no"));
    }

    void initialCommandsGoFirst()
    {
        ScriptedServer server;
        server.answer("map", { Step::binary(QByteArray(), "OK:\n") });
        Model model(server);
        const WindowPointer window = shown(&model, { "setting rate:1", "clear" });
        QVERIFY(hasRequests(server, 2)); // connected() would poll, and drop queued commands
        QVERIFY(server.waitForRequest("map"));
        QCOMPARE(server.requests().first(3), QList<QByteArray>({ "setting rate:1", "clear", "map" }));
    }

    void serverRefusesAnInitialCommand()
    {
        ScriptedServer server;
        server.answer("start", { Step::text("NG: is running\n") });
        Model model(server);
        MessageBoxWatcher boxes;
        QPointer<Window> window = new Window(&model, { "start" });
        window->show();
        QVERIFY(hasRequests(server, 1));
        QVERIFY(eventually([&] { return window.isNull(); }));
        QCOMPARE(boxes.texts, QStringList(">>> start\n<<< NG: is running\n"));
    }

    void serverDiesWhileTheRefusalIsShown()
    {
        ScriptedServer server;
        server.answer("start", { Step::text("NG: no\n") });
        server.answer("map", { Step::drop() });
        Model model(server);
        MessageBoxWatcher boxes;
        boxes.leaveOpen = [](const QMessageBox& box) { return box.text().startsWith(">>> "); };
        QPointer<Window> window = new Window(&model, { "start" });
        window->show();
        QVERIFY(hasRequests(server, 1));
        // The error's box is on top; its Ok closes the window, which deletes itself and the box below.
        QVERIFY(eventually([&] { return window.isNull(); }));
        QCOMPARE(boxes.texts.value(0), ">>> start\n<<< NG: no\n");
        QVERIFY(boxes.texts.size() >= 2);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void secondErrorWhileTheFirstIsShown()
    {
        ScriptedServer server;
        Model model(server);
        MessageBoxWatcher boxes;
        QPointer<Window> window = new Window(&model);
        window->show();
        boxes.leaveOpen = [&](const QMessageBox&) { return boxes.texts.size() == 1; };
        boxes.whileOpen = [&] {
            boxes.whileOpen = nullptr;
            QTimer::singleShot(0, window, [&] { window->error(1, "second"); });
        };
        window->error(1, "first");
        QCOMPARE(boxes.texts, QStringList({ "first.", "second." }));
        QVERIFY(eventually([&] { return window.isNull(); }));
    }

    void updateButtonPollsOnce()
    {
        ScriptedServer server;
        server.answer("map", { Step::binary(bytesOf(ramp(6)), "OK:\n") });
        Model model(server);
        const WindowPointer window = shown(&model);
        window->setAutoUpdate(false);
        window->child<QPushButton>("updatePushButton").click();
        QVERIFY(eventually([&] { return window->timer->isActive(); }));
        QVERIFY(eventually([&] { return !window->timer->isActive(); })); // and polls no more
        QCOMPARE(server.requests().size(), 1);
        window->child<QCheckBox>("autoUpdateCheckBox").setChecked(true); // a round at once
        QVERIFY(server.waitForRequests(2));
        QVERIFY(eventually([&] { return window->timer->isActive(); }));
        window->timer->stop();
        window->child<QPushButton>("updatePushButton").click();
        QVERIFY(server.waitForRequests(4)); // polling continues automatically
    }

    void autoUpdateOffCancelsWhatIsQueued()
    {
        ScriptedServer server;
        server.answerInTurn(
            "map", { { Step::hold("reply"), Step::binary(QByteArray(), "OK:\n") }, { Step::binary(QByteArray()) } });
        Model model(server);
        const WindowPointer window = shown(&model);
        QVERIFY(server.waitForHold("reply"));
        window->update(); // waits for the reply
        window->child<QCheckBox>("autoUpdateCheckBox").click();
        window->session->send(new TarnisCmd("marker"));
        server.open("reply");
        QVERIFY(server.waitForRequest("marker"));
        QCOMPARE(server.requests(), QList<QByteArray>({ "map", "marker" }));
    }

    void setAutoUpdateAndSetCmd()
    {
        ScriptedServer server;
        server.answer("map", { Step::binary(QByteArray(), "OK:\n") });
        Model model(server);
        const WindowPointer window = shown(&model);
        window->setAutoUpdate(false);
        QVERIFY(!window->isAutoUpdate());
        window->setAutoUpdate(true);
        QVERIFY(window->isAutoUpdate());
        QVERIFY(server.waitForRequest("map"));
        window->setAutoUpdate(false);
        window->setCmd("map"); // unchanged: nothing is sent
        window->setCmd("other map"); // sent although the box is not checked
        QCOMPARE(window->getCmd(), "other map");
        QVERIFY(server.waitForRequest("other map"));
        QCOMPARE(server.requests(), QList<QByteArray>({ "map", "other map" }));
    }

    void nextUpdateRestartsABrokenChain_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::newRow("reply while hidden") << true;
        QTest::newRow("size mismatch") << false;
    }

    void nextUpdateRestartsABrokenChain()
    {
        QFETCH(bool, hidden);
        ScriptedServer server;
        server.answerInTurn("map",
            { { Step::hold("first"), Step::binary(bytesOf(ramp(hidden ? 6 : 5)), "OK:\n") },
                { Step::binary(bytesOf(ramp(6)), "OK:\n") } });
        Model model(server);
        MessageBoxWatcher boxes;
        const WindowPointer window = shown(&model);
        QVERIFY(server.waitForHold("first"));
        window->setVisible(!hidden);
        int replies = 0;
        QObject receiver; // on this thread, after the window's own slot
        connect(window->session, &TarnisSession::result, &receiver, [&] { ++replies; });
        server.open("first");
        QVERIFY(eventually([&] { return replies == 1 && (hidden || boxes.texts.size() == 1); }));
        QVERIFY(window->rows().isEmpty() && !window->timer->isActive());
        window->show();
        window->update();
        QVERIFY(eventually([&] { return window->rows().size() == 2 && window->timer->isActive(); }));
        QVERIFY(server.waitForRequests(3)); // and on
    }

    void acceptedInitialCommandChangesNothing()
    {
        const ConnectedWindow window;
        window->result(answered("start", false, QString()), "OK:");
        QVERIFY(window->isVisible() && !window->timer->isActive());
    }

    void hiddenWindowDropsTheReply()
    {
        const ConnectedWindow window;
        window->hide();
        window->reply("OK: exported 3 x 2 y", bytesOf(ramp(6)));
        QVERIFY(window->rows().isEmpty() && !window->timer->isActive());
    }

    void subclassMayRefuseTheReply()
    {
        const ConnectedWindow window;
        window->drawReplies = false;
        window->reply("OK: exported 3 x 2 y", bytesOf(ramp(6)));
        QVERIFY(window->rows().isEmpty() && window->timer->isActive());
        window->timer->stop();
        window->result(answered("start", false, QString()), "NG: no"); // checked before text replies: no message box
        QVERIFY(window->isVisible() && window->timer->isActive());
    }

    void refusedPollClearsThePlotAndShowsItsComplaint()
    {
        const ConnectedWindow window;
        window->reply("OK: exported 3 x 2 y", bytesOf(ramp(6)));
        window->reply(" NG: no map\n", QByteArray());
        QVERIFY(window->rows().isEmpty());
        QCOMPARE(window->child<QLabel>("infoLabel").text(), "NG: no map");
        QVERIFY(window->child<QLabel>("infoLabel").isVisible());
        QVERIFY(window->timer->isActive());
    }

    void reportsASocketErrorAndClosesTheWindow()
    {
        ScriptedServer server({ Step::drop() });
        Model model(server);
        MessageBoxWatcher boxes;
        QPointer<Window> window = new Window(&model);
        window->show();
        QVERIFY(eventually([&] { return window.isNull(); }));
        QVERIFY(!boxes.texts.isEmpty());
    }

    void closingWhileGreeting() { closeWhileGreeting<Window>(); }

    void closingInMidReply() { closeInMidReply<Window>("map"); }

    void mayBeDeletedWhileItsBoxIsOpen_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("refusal") << 0;
        QTest::newRow("mismatch") << 1;
        QTest::newRow("socket error") << 2;
    }

    void mayBeDeletedWhileItsBoxIsOpen()
    {
        QFETCH(int, kind);
        ScriptedServer server;
        Model model(server);
        QPointer<Window> window = new Window(&model);
        window->show();
        MessageBoxWatcher boxes;
        boxes.whileOpen = [&] { delete window; };
        if (kind == 0)
            window->result(answered("start", false, QString()), "NG: no");
        else if (kind == 1)
            window->result(answered("map", true, "OK:"), bytesOf(ramp(5)));
        else
            window->error(1, "gone");
        QCOMPARE(boxes.texts.size(), 1);
        QVERIFY(window.isNull());
        QVERIFY(!QApplication::activeModalWidget());
    }
};

QTEST_MAIN(TestGraph2DPolling)
#include "tst_graph2dpolling.moc"
