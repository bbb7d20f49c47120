// The live 2D window against a scripted server, and its filter.
#include "dialogs/livewindow.h"
#include "support/cases.h"
#include "support/metamethods.h"
#include "support/virtualorder.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

using namespace tarnis::testing;

namespace {

QList<QList<double>> rowsOf(const Graph2DDialog& window)
{
    QList<QList<double>> rows;
    window.getGraphWidget()->getData(rows);
    return rows;
}

/// A window with access to its members: 3 by 2 bins, X from 0 to 30, Y from 5 to 7.
class Window : public Graph2DDialog {
public:
    explicit Window(TarnisSession* model, const QStringList& initCmds = {})
        : Graph2DDialog(model, "Title", "East", 3, 0, 30, 1, 1, "North", 2, 5, 7, 1, 2, initCmds, "map", nullptr)
    {
    }
    using Graph2DDialog::binsX;
    using Graph2DDialog::binsY;
    using Graph2DDialog::filterDialogs;
    using Graph2DDialog::session;
    using Graph2DDialog::timer;

    bool drawReplies = true;

    bool onResultExInfo(const QList<QString>& lines) override
    {
        return Graph2DDialog::onResultExInfo(lines) && drawReplies;
    }
    template <typename Widget> Widget& part(const char* name) { return *findChild<Widget*>(QLatin1String(name)); }
    QList<QList<double>> rows() { return rowsOf(*this); }
    void reply(const QString& text, const QByteArray& payload)
    {
        timer->stop();
        PTarnisCmd command = answered("map", true, text);
        result(command, payload);
    }
};

using WindowPointer = std::unique_ptr<Window>;

WindowPointer shown(TarnisSession* model, const QStringList& initCmds = {})
{
    auto window = std::make_unique<Window>(model, initCmds);
    window->setAttribute(Qt::WA_DeleteOnClose, false); // the test deletes it
    window->show();
    return window;
}

Graph2DFilterDialog* openFilter(Graph2DDialog& window)
{
    window.findChild<QPushButton*>("filterPushButton")->click();
    return window.findChild<Graph2DFilterDialog*>();
}

QList<Graph2DDialog*> filteredWindows(Graph2DDialog& window)
{
    return window.findChildren<Graph2DDialog*>(QString(), Qt::FindDirectChildrenOnly);
}

/// Access to the plot's protected members.
class PlotInside : public XY2DGraphWidget {
public:
    static QList<double> rowMaxima(XY2DGraphWidget& plot) { return plot.*(&PlotInside::m_rowMax); }
    static QAction* cutAction(XY2DGraphWidget& plot) { return plot.*(&PlotInside::m_act1dCut); }
};

class BarInside : public ColorBarWidget {
public:
    static int ticks(ColorBarWidget& bar) { return bar.*(&BarInside::m_ticks); }
};

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
        return m_context == context && QLatin1String(source) == ">>> %1\n<<< %2" ? "asked %1, told %2" : QString();
    }

private:
    QByteArray m_context;
};

/// The windows of the two cuts, which the plot opens.
QList<QWidget*> cutWindows(Graph2DDialog& window)
{
    QList<QWidget*> windows;
    for (VectorGraphWidget* const plot : window.getGraphWidget()->findChildren<VectorGraphWidget*>())
        windows.append(plot->window());
    return windows;
}

QList<double> ramp(int count)
{
    QList<double> values;
    for (int i = 1; i <= count; ++i)
        values.append(i);
    return values;
}

} // namespace

class TestGraph2DDialog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QCoreApplication::setApplicationName("map test"); }

    void methodOrder()
    {
        const QMetaObject& meta = Graph2DDialog::staticMetaObject;
        QCOMPARE(ownMethods(meta),
            QStringList({ "slot update()", "slot result(PTarnisCmd,QByteArray)", "slot error(int,QString)",
                "slot onAutoUpdateToggled(bool)", "slot onFilterAccepted(Graph2DFilter)", "slot onFilter()",
                "slot onTimeout()" }));
        const int first = meta.methodOffset();
        QCOMPARE(meta.method(first + 1).parameterNames(), QList<QByteArray>({ "cmd", "" }));
        QCOMPARE(meta.method(first + 2).parameterNames(), QList<QByteArray>({ "socketError", "message" }));
        QCOMPARE(meta.method(first + 3).parameterNames(), QList<QByteArray>({ "checked" }));
        QCOMPARE(meta.method(first + 4).parameterNames(), QList<QByteArray>({ "filter" }));
    }

    void virtualOrder()
    {
        using D = Graph2DDialog;
        const std::ptrdiff_t first = virtualIndex(&D::setCmd);
        QVERIFY(first > virtualIndex(&QDialog::reject));
        QCOMPARE(virtualIndex(&D::getCmd), first + 1);
        QCOMPARE(virtualIndex(&D::update), first + 2);
        QCOMPARE(virtualIndex(&D::result), first + 3);
        QCOMPARE(virtualIndex(&D::error), first + 4);
        QCOMPARE(virtualIndex(&D::onAutoUpdateToggled), first + 5);
        QCOMPARE(virtualIndex(&D::onResultExInfo), first + 6);
    }

    void form()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        QCOMPARE(window->windowTitle(), "Title");
        QCOMPARE(window->size(), QSize(467, 440));
        QVERIFY(Window(nullptr).testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(window->part<QPushButton>("updatePushButton").text(), "Update");
        QCOMPARE(window->part<QPushButton>("updatePushButton").focusPolicy(), Qt::NoFocus);
        QCOMPARE(window->part<QCheckBox>("autoUpdateCheckBox").text(), "AutoUpdate");
        QCOMPARE(window->part<QPushButton>("filterPushButton").text(), "Filter");
        QVERIFY(!window->part<QProgressBar>("progressBar").isVisible());
        QVERIFY(!window->part<QLabel>("infoLabel").isVisible());
        QVERIFY(window->isAutoUpdate() && Graph2DDialog::initialAutoUpdate);
        XY2DGraphWidget& plot = window->part<XY2DGraphWidget>("graphWidget");
        QCOMPARE(plot.getNameX(), "East");
        QCOMPARE(plot.getNameY(), "North");
        QCOMPARE(plot.getDecimalX(), 1);
        QCOMPARE(plot.getDecimalY(), 2);
        QVERIFY(plot.m_doubleBuffered);
        double min = 0;
        double max = 0;
        plot.getMinMaxX(min, max);
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 30.0);
        plot.getMinMaxY(min, max);
        QCOMPARE(min, 5.0);
        QCOMPARE(max, 7.0);
        QCOMPARE(window->timer->interval(), 1000);
        QVERIFY(window->timer->isSingleShot() && !window->timer->isActive());
    }

    void staticWindowHasNoUpdateControls()
    {
        const WindowPointer window = shown(nullptr);
        QVERIFY(!window->part<QPushButton>("updatePushButton").isVisible());
        QVERIFY(!window->part<QCheckBox>("autoUpdateCheckBox").isVisible());
        QVERIFY(window->part<QPushButton>("filterPushButton").isVisible());
        QVERIFY(!window->timer && !window->session);
        window->update(); // harmless
        window->onAutoUpdateToggled(false);
        window->setCmd("other");
        QCOMPARE(window->getCmd(), "other");
    }

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
        window->part<QCheckBox>("autoUpdateCheckBox").click();
        QVERIFY(!window->timer->isActive());
        window->onAutoUpdateToggled(true); // the box is not checked: nothing is sent
        window->onTimeout();
        server.answer("map", { Step::binary(QByteArray(), "OK:\n") });
        window->part<QCheckBox>("autoUpdateCheckBox").click();
        QVERIFY(eventually([&] { return window->timer->isActive(); }));
    }

    void refusedInitialCommandClosesTheWindow()
    {
        ScriptedServer server;
        Model model(server);
        BoxWatch boxes;
        const WindowPointer window = shown(&model);
        window->result(answered("start", false, QString()), "NG: no");
        QCOMPARE(boxes.texts, QStringList(">>> start\n<<< NG: no"));
        QCOMPARE(boxes.titles, QStringList("map test"));
        QCOMPARE(boxes.icons.value(0), QMessageBox::Warning);
        QVERIFY(!window->isVisible() && !window->session && !window->timer->isActive());
    }

    void showsRejectionsInTheWindowsLanguage()
    {
        ScriptedServer server;
        Model model(server);
        BoxWatch boxes;
        const WindowPointer window = shown(&model);
        Catalogue catalogue("Graph2DDialog"); // removed from the application by its destructor
        QCoreApplication::installTranslator(&catalogue);
        window->result(answered("start", false, QString()), "NG: no");
        QCOMPARE(boxes.texts, QStringList("asked start, told NG: no"));
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
        BoxWatch boxes;
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
        BoxWatch boxes;
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
        BoxWatch boxes;
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
        window->part<QPushButton>("updatePushButton").click();
        QVERIFY(eventually([&] { return window->timer->isActive(); }));
        QVERIFY(eventually([&] { return !window->timer->isActive(); })); // and polls no more
        QCOMPARE(server.requests().size(), 1);
        window->part<QCheckBox>("autoUpdateCheckBox").setChecked(true); // a round at once
        QVERIFY(server.waitForRequests(2));
        QVERIFY(eventually([&] { return window->timer->isActive(); }));
        window->timer->stop();
        window->part<QPushButton>("updatePushButton").click();
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
        window->part<QCheckBox>("autoUpdateCheckBox").click();
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
        BoxWatch boxes;
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
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        window->result(answered("start", false, QString()), "OK:");
        QVERIFY(window->isVisible() && !window->timer->isActive());
    }

    void hiddenWindowDropsTheReply()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        window->hide();
        window->reply("OK: exported 3 x 2 y", bytesOf(ramp(6)));
        QVERIFY(window->rows().isEmpty() && !window->timer->isActive());
    }

    void subclassMayRefuseTheReply()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        window->drawReplies = false;
        window->reply("OK: exported 3 x 2 y", bytesOf(ramp(6)));
        QVERIFY(window->rows().isEmpty() && window->timer->isActive());
        window->timer->stop();
        window->result(answered("start", false, QString()), "NG: no"); // checked before text replies: no message box
        QVERIFY(window->isVisible() && window->timer->isActive());
    }

    void refusedPollClearsThePlotAndShowsItsComplaint()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        window->reply("OK: exported 3 x 2 y", bytesOf(ramp(6)));
        window->reply(" NG: no map\n", QByteArray());
        QVERIFY(window->rows().isEmpty());
        QCOMPARE(window->part<QLabel>("infoLabel").text(), "NG: no map");
        QVERIFY(window->part<QLabel>("infoLabel").isVisible());
        QVERIFY(window->timer->isActive());
    }

    void reportsASocketErrorAndClosesTheWindow()
    {
        ScriptedServer server({ Step::drop() });
        Model model(server);
        BoxWatch boxes;
        QPointer<Window> window = new Window(&model);
        window->show();
        QVERIFY(eventually([&] { return window.isNull(); }));
        QVERIFY(!boxes.texts.isEmpty());
    }

    void closingWhileGreeting()
    {
        ScriptedServer server({ Step::silence() });
        Model model(server);
        BoxWatch boxes;
        QPointer<Window> window = new Window(&model);
        window->show();
        QVERIFY(server.waitForConnections(1));
        window->close();
        QVERIFY(eventually([&] { return window.isNull(); }));
        QVERIFY(boxes.texts.isEmpty());
    }

    void closingInMidReply()
    {
        ScriptedServer server;
        server.answer("map", { Step::raw(QByteArray("\x10\0\0\0", 4)), Step::hold("rest"), Step::raw("12345678") });
        Model model(server);
        QPointer<Window> window = new Window(&model);
        window->show();
        QVERIFY(server.waitForHold("rest"));
        window->close();
        server.open("rest");
        QVERIFY(eventually([&] { return window.isNull(); }));
        QVERIFY(server.waitUntilDeserted());
    }

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
        BoxWatch boxes;
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

    // --- replies

    void shapes_data()
    {
        addColumns<QString, QByteArray, QString, int>("text", "payload", "box", "rows");
        addCase("as constructed", "OK:", bytesOf(ramp(6)), "", 2);
        addCase("map announced twice", "OK: exported 2 x 3 y\n", bytesOf(ramp(6)), "", 3);
        addCase("told first: not read", "exported 2 x 3 y", bytesOf(ramp(6)), "", 2);
        addCase("spare bytes", "OK:", bytesOf(ramp(6)) + "1234567", "", 2);
        addCase("too short", "OK:", bytesOf(ramp(5)), "graph data size mismatched! 10 != 6 ( 3 * 2 )", 0);
        addCase("cut short", "OK:", bytesOf(ramp(6)).chopped(1), "graph data size mismatched! 11 != 6 ( 3 * 2 )", 0);
        addCase("no rows, but data", "OK: exported 3 x 0 y", bytesOf(ramp(1)),
            "graph data size mismatched! 2 != 0 ( 3 * 0 )", 0);
        addCase("both negative", "OK: exported -2 x -3 y", bytesOf(ramp(6)),
            "graph data size mismatched! 12 != 6 ( -2 * -3 )", 0);
        addCase("product beyond 32 bits", "OK: exported 65536 x 65536 y", bytesOf(ramp(6)),
            "graph data size mismatched! 12 != 4294967296 ( 65536 * 65536 )", 0);
        addCase("no columns, many rows", "OK: exported 0 x 2000000000 y", QByteArray("1234567"),
            "graph data size mismatched! 1 != 0 ( 0 * 2000000000 )", 0);
        addCase("empty", "OK: exported 3 x 0 y", QByteArray(), "", 0);
    }

    void shapes()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, payload);
        QFETCH(QString, box);
        QFETCH(int, rows);
        ScriptedServer server;
        Model model(server);
        BoxWatch boxes;
        const WindowPointer window = shown(&model);
        window->reply(text, payload);
        QCOMPARE(boxes.texts.value(0), box);
        QCOMPARE(boxes.texts.size(), box.isEmpty() ? 0 : 1);
        if (!box.isEmpty())
            QCOMPARE(boxes.icons.value(0), QMessageBox::Information);
        QCOMPARE(window->rows().size(), rows);
        QCOMPARE(window->timer->isActive(), box.isEmpty());
        window->grab(); // paints with the current shape
    }

    void mismatchKeepsThePicture()
    {
        ScriptedServer server;
        Model model(server);
        BoxWatch boxes;
        const WindowPointer window = shown(&model);
        window->reply("OK:", bytesOf(ramp(6)));
        window->reply("OK:", bytesOf({ 9, 9 }));
        QCOMPARE(window->rows(), QList<QList<double>>({ { 1, 2, 3 }, { 4, 5, 6 } }));
        QVERIFY(!window->timer->isActive());
    }

    void countsStayAfterTheyWereTold()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        window->reply("OK: exported 6 x 1 y", bytesOf(ramp(6)));
        QCOMPARE(window->binsX, 6);
        QCOMPARE(window->binsY, 1);
        window->reply("OK:", bytesOf(ramp(6)));
        QCOMPARE(window->binsX, 6);
    }

    void emptyReplyClearsThePlot()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        window->reply("OK:", bytesOf(ramp(6)));
        window->reply("OK: exported 3 x 0 y\n", QByteArray());
        QVERIFY(window->rows().isEmpty());
        QVERIFY(PlotInside::rowMaxima(*window->getGraphWidget()).isEmpty());
        QCOMPARE(window->binsY, 0);
        QVERIFY(window->timer->isActive());
    }

    void rowPeaksStandByRow()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        XY2DGraphWidget& plot = *window->getGraphWidget();
        window->reply("OK:", bytesOf({ -3, -1, -2, 4, 6, 5 }));
        QCOMPARE(PlotInside::rowMaxima(plot), QList<double>({ -1, 6 }));
        // One row now: the upper one keeps its values and its peak.
        window->reply("OK: exported 2 x 1 y", bytesOf({ -7, -8 }));
        QCOMPARE(PlotInside::rowMaxima(plot), QList<double>({ -7, 6 }));
        QCOMPARE(plot.getMaxValue(), 6.0);
        window->reply("OK: exported 1 x 3 y", bytesOf({ 1, 2, 3 }));
        QCOMPARE(PlotInside::rowMaxima(plot), QList<double>({ 1, 2, 3 }));
    }

    void aMillionRows()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        constexpr int count = 1000000;
        // Rows are set one by one; a scan of all rows for each would take minutes.
        window->reply(QStringLiteral("OK: exported 1 x %1 y").arg(count), bytesOf(ramp(count)));
        QCOMPARE(window->rows().size(), count);
        QCOMPARE(window->rows().constLast(), QList<double>({ double(count) }));
        double min = 0;
        double max = 0;
        window->getGraphWidget()->getMinMaxX(min, max);
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 30.0);
        window->grab();
    }

    void staticWindowMayBeFed()
    {
        const WindowPointer window = shown(nullptr);
        window->result(answered("map", true, "OK:"), bytesOf(ramp(6)));
        QCOMPARE(window->rows(), QList<QList<double>>({ { 1, 2, 3 }, { 4, 5, 6 } }));
        window->drawReplies = false;
        window->result(answered("map", true, "OK:"), bytesOf({ 6, 5, 4, 3, 2, 1 }));
        QCOMPARE(window->rows().first(), QList<double>({ 1, 2, 3 }));
        window->drawReplies = true;
        window->result(answered("map", true, "OK:"), QByteArray());
        QVERIFY(window->rows().isEmpty());
    }

    // --- the filter

    void filterOpensOnce()
    {
        const WindowPointer window = shown(nullptr);
        Graph2DFilterDialog* const dialog = openFilter(*window);
        QVERIFY(dialog && dialog->isVisible() && dialog->testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(window->filterDialogs.map.value(window.get()), static_cast<QWidget*>(dialog));
        dialog->hide();
        window->onFilter();
        QVERIFY(dialog->isVisible());
        QCOMPARE(window->findChildren<Graph2DFilterDialog*>().size(), 1);
        dialog->close();
        QVERIFY(eventually([&] { return window->filterDialogs.map.isEmpty(); }));
        QVERIFY(openFilter(*window));
    }

    void filterOfNothingOpensNothing()
    {
        const WindowPointer window = shown(nullptr);
        window->onFilterAccepted(Graph2DFilter());
        QVERIFY(filteredWindows(*window).isEmpty());
    }

    void filteredMapIsAStaticWindow()
    {
        ScriptedServer server;
        Model model(server);
        const WindowPointer window = shown(&model);
        window->reply("OK: exported 5 x 5 y", bytesOf(ramp(25)));
        Graph2DFilterDialog* const dialog = openFilter(*window);
        dialog->findChild<QLineEdit*>("matrix33LineEdit")->setText("4");
        dialog->findChild<QLineEdit*>("divisorLineEdit")->setText("2");
        dialog->findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Ok)->click();
        Graph2DDialog* const result = filteredWindows(*window).value(0);
        QVERIFY(result && result->isVisible());
        QCOMPARE(result->windowTitle(), "Title");
        QList<QList<double>> expected = window->rows();
        QCOMPARE(expected[2][2], 13.0);
        expected[2][2] = 26.0;
        QCOMPARE(rowsOf(*result), expected);
        QCOMPARE(window->rows()[2][2], 13.0);
        QCOMPARE(result->getGraphWidget()->getNameX(), "East");
        QCOMPARE(result->getGraphWidget()->getNameY(), "North");
        QCOMPARE(result->getGraphWidget()->getDecimalX(), 1);
        QCOMPARE(result->getGraphWidget()->getDecimalY(), 2);
        double min = 0;
        double max = 0;
        result->getGraphWidget()->getInitMinMaxY(min, max); // the X range of the first window
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 30.0);
        // A filter of a filter.
        result->onFilterAccepted(Graph2DFilter());
        QCOMPARE(rowsOf(*filteredWindows(*result).value(0)), expected);
    }

    void unchangedFieldsAreTheIdentity()
    {
        const WindowPointer window = shown(nullptr);
        for (int row = 0; row < 6; ++row)
            window->getGraphWidget()->setData(row, { -1.5, 2, row * 0.1, 4, -5, 6e300 }, 6e300, row == 5);
        Graph2DFilterDialog* const dialog = openFilter(*window);
        for (int field = 0; field < 25; ++field)
            dialog->findChild<QLineEdit*>(QStringLiteral("matrix%1%2LineEdit").arg(field / 5 + 1).arg(field % 5 + 1))
                ->setText(field == 12 ? "1" : "0");
        dialog->findChild<QLineEdit*>("divisorLineEdit")->setText("1");
        dialog->findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Ok)->click();
        Graph2DFilterDialog* const again = openFilter(*window);
        again->onAccepted(); // as it was opened
        QCOMPARE(filteredWindows(*window).size(), 2);
        for (Graph2DDialog* const result : filteredWindows(*window))
            QCOMPARE(rowsOf(*result), window->rows());
    }

    void peaksOfTheFilteredRows_data()
    {
        addColumns<int, QList<double>>("firstRow", "peaks");
        QTest::newRow("negative rows") << 0 << QList<double>({ -1, -1, -1, -1 });
        QTest::newRow("no columns: row 0 has none") << 3 << QList<double>({ 0, 0, 0, 0 });
    }

    void peaksOfTheFilteredRows()
    {
        QFETCH(int, firstRow);
        QFETCH(QList<double>, peaks);
        const WindowPointer window = shown(nullptr);
        for (int row = firstRow; row < 4; ++row)
            window->getGraphWidget()->setData(row, firstRow == 0 ? QList<double>({ -2, -1 }) : ramp(9), 9, row == 3);
        window->onFilterAccepted(Graph2DFilter());
        QCOMPARE(PlotInside::rowMaxima(*filteredWindows(*window).value(0)->getGraphWidget()), peaks);
    }

    void filterOnFourRowsShowsTheSame()
    {
        const WindowPointer window = shown(nullptr);
        for (int row = 0; row < 4; ++row)
            window->getGraphWidget()->setData(row, ramp(9), 9, row == 3);
        window->onFilterAccepted(Graph2DFilter());
        QCOMPARE(rowsOf(*filteredWindows(*window).value(0)), window->rows());
    }

    // --- controls

    void progressAndInformation()
    {
        const WindowPointer window = shown(nullptr);
        auto& bar = window->part<QProgressBar>("progressBar");
        window->setProgressInfo(true, 29, 100);
        QVERIFY(bar.isVisible());
        QCOMPARE(bar.value(), 28);
        window->setProgressInfo(false, 0, 0);
        QVERIFY(!bar.isVisible());
        window->setInfoText("  words \n");
        QCOMPARE(window->part<QLabel>("infoLabel").text(), "words");
        window->setVisibleUpdateControls(true);
        QVERIFY(window->part<QPushButton>("updatePushButton").isVisible());
        window->setEnabledUpdateControls(false);
        QVERIFY(!window->part<QCheckBox>("autoUpdateCheckBox").isEnabled());
        QVERIFY(window->part<QPushButton>("filterPushButton").isEnabled());
    }

    void stepsAndTicksGoToThePlot()
    {
        const WindowPointer window = shown(nullptr);
        window->setStep(2.5, 7);
        QCOMPARE(window->getGraphWidget()->getStepX(), 2.5);
        QCOMPARE(window->getGraphWidget()->getStepY(), 7.0);
        window->setColorBarTicks(4);
        QCOMPARE(BarInside::ticks(*window->getGraphWidget()->findChild<ColorBarWidget*>()), 4);
    }

    void cutWindowsFollowTheWindow()
    {
        const WindowPointer window = shown(nullptr);
        window->move(100, 100);
        for (int row = 0; row < 5; ++row)
            window->getGraphWidget()->setData(row, ramp(5), 5, row == 4);
        PlotInside::cutAction(*window->getGraphWidget())->trigger();
        const QList<QWidget*> cuts = cutWindows(*window);
        QCOMPARE(cuts.size(), 2);
        const auto places = [&] { return QList<QRect>({ cuts[0]->geometry(), cuts[1]->geometry() }); };
        const QList<QRect> before = places();
        window->move(160, 140);
        QVERIFY(eventually([&] {
            return places() == QList<QRect>({ before[0].translated(60, 40), before[1].translated(60, 40) });
        }));
        window->resize(window->width() + 50, window->height() + 30);
        QVERIFY(eventually(
            [&] { return places()[0].size() != before[0].size() && places()[1].size() != before[1].size(); }));
        window->activateWindow();
        QEvent activation(QEvent::ActivationChange);
        QApplication::sendEvent(window.get(), &activation); // raises them; harmless where they are up
        QCOMPARE(cutWindows(*window), cuts);
    }

    void languageChangePutsThePlaceholdersBack()
    {
        const WindowPointer window = shown(nullptr);
        QEvent event(QEvent::LanguageChange);
        QApplication::sendEvent(window.get(), &event);
        QCOMPARE(window->windowTitle(), "Dialog");
        QCOMPARE(window->part<QLabel>("infoLabel").text(), "infoLabel");
    }
};

QTEST_MAIN(TestGraph2DDialog)
#include "tst_graph2ddialog.moc"
