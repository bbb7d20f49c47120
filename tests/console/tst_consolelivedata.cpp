// Data of the console's live windows: their age, a server that hangs or comes back, the range chosen by the user, the
// tools, filtered maps.
#include "console/consolefixture.h"
#include "console/livedataserver.h"
#include "histograms/histogramchooser.h"
#include "histograms/lastdatabar.h"
#include "histograms/livewindows.h"
#include "support/cases.h"
#include "support/payload.h"
#include "support/wait.h"
#include "tables/ratewindow.h"

#include <tarnis/export/exportdialog.h>
#include <tarnis/peak/peaksearchdialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include "app/language.h"
#include "histograms/serverhistograms.h"
#include "windows/openwindows.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTcpServer>
#include <QTcpSocket>

#include <cmath>
#include <limits>

using namespace console;
using namespace tarnis::testing;

namespace {

QString ageOf(const QWidget& window)
{
    const auto* const label = window.findChild<QLabel*>(QStringLiteral("dataAgeLabel"));
    return label && label->isVisible() ? label->text() : QString();
}

/// A proxy to a server, which can be closed and opened again at the same port.
class ServerProxy : public QTcpServer {
public:
    explicit ServerProxy(quint16 target)
        : m_target(target)
    {
    }
    bool open() { return listen(QHostAddress::LocalHost, m_port) && (m_port = serverPort()) != 0; }
    void shutDown()
    {
        close();
        for (QTcpSocket* const socket : findChildren<QTcpSocket*>())
            socket->abort();
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto* const client = new QTcpSocket(this);
        auto* const server = new QTcpSocket(this);
        client->setSocketDescriptor(descriptor);
        server->connectToHost(QHostAddress::LocalHost, m_target);
        join(*client, *server);
        join(*server, *client);
    }

private:
    void join(QTcpSocket& from, QTcpSocket& to)
    {
        connect(&from, &QTcpSocket::readyRead, &to, [&from, &to] { to.write(from.readAll()); });
        connect(&from, &QTcpSocket::disconnected, &to, &QTcpSocket::disconnectFromHost);
    }

    quint16 m_target;
    quint16 m_port = 0;
};

void setLimit(QWidget& window, int limitMs)
{
    if (auto* const curves = qobject_cast<LiveCurves*>(&window))
        curves->dataAge().m_limitMs = limitMs;
    else if (auto* const map = qobject_cast<LiveMap*>(&window))
        map->dataAge().m_limitMs = limitMs;
    else if (auto* const rate = qobject_cast<RateWindow*>(&window))
        rate->dataAge().m_limitMs = limitMs;
    else
        dynamic_cast<LiveStatistics&>(window).dataAge().m_limitMs = limitMs;
}

} // namespace

class TestConsoleLiveData : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    // The age of the data.

    void reportsAHungServer_data()
    {
        addColumns<QByteArray, QByteArray>("id", "command");
        QTest::newRow("curves") << QByteArray("curves") << curvesCommand;
        QTest::newRow("pairs") << QByteArray("pairs") << pairsCommand;
        QTest::newRow("map") << QByteArray("map") << mapCommand;
        QTest::newRow("statistics") << QByteArray("statistics") << QByteArray("stat");
        QTest::newRow("rate") << QByteArray("rate") << QByteArray("stat");
    }
    void reportsAHungServer()
    {
        QFETCH(QByteArray, id);
        QFETCH(QByteArray, command);
        LiveServer server;
        ConsoleFixture fixture(server);
        auto* const window = fixture.find(id.constData());
        QVERIFY(window);
        TRY_VERIFY(ageOf(*window).startsWith(QStringLiteral("Last data: ")));
        QVERIFY(QRegularExpression(QStringLiteral("\\d\\d:\\d\\d:\\d\\d")).match(ageOf(*window)).hasMatch());
        QVERIFY(!ageOf(*window).contains(QStringLiteral("waits")));
        server.answer(command, { Step::hold("hung"), Step::text("NG:late\n") });
        setLimit(*window, 0); // rather than three polls
        QVERIFY(server.waitForHold("hung"));
        TRY_VERIFY(ageOf(*window).contains(QStringLiteral("waits")));
        QVERIFY(ageOf(*window).startsWith(QStringLiteral("Last data: ")));
        setLimit(*window, 1 << 30);
        server.open("hung");
        TRY_VERIFY(!ageOf(*window).contains(QStringLiteral("waits")));
    }

    void statisticsCanBeSavedWhenThereAreSome()
    {
        LiveServer server;
        ConsoleFixture fixture(server);
        server.answer("stat", { Step::hold("statistics"), Step::text("OK:\nevents: 1\n") });
        const auto* const window = fixture.find("statistics");
        const auto* const save = window->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
        QVERIFY(!save->isEnabled());
        QCOMPARE(save->toolTip(), "No data yet");
        server.open("statistics");
        TRY_VERIFY(save->isEnabled());
        QCOMPARE(save->toolTip(), "Save to a file");
    }

    void reportsThatThereAreNoDataYet()
    {
        LiveServer server;
        server.answer(curvesCommand, { Step::silence() });
        ConsoleFixture fixture(server);
        auto* const window = fixture.find("curves");
        setLimit(*window, 0);
        TRY_VERIFY(ageOf(*window).contains(QStringLiteral("waits")));
        QVERIFY(ageOf(*window).startsWith(QStringLiteral("No data yet")));
    }

    void aWindowThatDoesNotPollDoesNotWait()
    {
        LiveServer server;
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        window->setAutoUpdate(false);
        const auto polls = server.requests().count(curvesCommand);
        server.answer(curvesCommand, { Step::hold("hung"), Step::text("NG:late\n") });
        bool isExpected = false;
        DataAge age(*window, [&] { return isExpected; });
        age.m_limitMs = 0;
        window->dataAge().m_limitMs = 0;
        isExpected = true; // a waiting line shows that this one was checked too
        TRY_VERIFY(age.label()->text().contains(QStringLiteral("waits")));
        QVERIFY(!ageOf(*window).contains(QStringLiteral("waits")));
        QCOMPARE(server.requests().count(curvesCommand), polls);
        // Until the user requests an update.
        press(*window->findChild<QPushButton*>(QStringLiteral("updatePushButton")));
        TRY_VERIFY(ageOf(*window).contains(QStringLiteral("waits")));
    }

    void threePollsMayBeMissed()
    {
        QWidget window;
        const DataAge age(window, [] { return true; });
        QCOMPARE(age.m_limitMs, 3000);
    }

    // Servers that come back.

    void aRemoteServerThatIsStartedAgainIsConnectedByItself()
    {
        LiveServer server;
        ServerProxy proxy(server.port());
        QVERIFY(proxy.open());
        ConsoleFixture fixture;
        fixture.window->controller().m_againMs = 20;
        fixture.start({ ServerChoice::Kind::Remote, {}, ScriptedServer::host(), proxy.serverPort() });
        QVERIFY(fixture.reaches(ServerState::Up));
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        proxy.shutDown();
        QVERIFY(fixture.reaches(ServerState::Failed));
        QVERIFY2(fixture.alert().text.contains(QStringLiteral("automatically")), qPrintable(fixture.alert().text));
        const auto* const info = window->findChild<QLabel*>(QStringLiteral("infoLabel"));
        QVERIFY(info->text().contains(QStringLiteral("resumes when it is back")));
        server.answer(curvesCommand, curvesOf(7));
        QVERIFY(proxy.open());
        QVERIFY(fixture.reaches(ServerState::Up));
        TRY_COMPARE(window->getGraphWidget()->getMaxValue(), 7.0);
        QVERIFY(!info->isVisible());
        QVERIFY(fixture.alert().text.isEmpty());
    }

    void showsWhatToDoAfterALocalServerEnded()
    {
        LiveServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ConsoleFixture fixture(program);
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        fixture.window->controller().endByForce();
        QVERIFY(fixture.reaches(ServerState::Failed));
        const auto* const info = window->findChild<QLabel*>(QStringLiteral("infoLabel"));
        TRY_VERIFY(info->text().contains(QStringLiteral("started again")));
    }

    void resumesWhenAHungLocalServerAnswersAgain()
    {
        const LiveServer server;
        ServerProxy proxy(server.port());
        QVERIFY(proxy.open());
        const FakeServer program(FakeServer::wellBehaved(proxy.serverPort()));
        ConsoleFixture fixture;
        fixture.window->controller().m_againMs = 10;
        fixture.use(program);
        QVERIFY(fixture.reaches(ServerState::Up));
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        const qint64 process = fixture.window->controller().tarnis().process()->processId();
        proxy.shutDown();
        QVERIFY(fixture.reaches(ServerState::Failed));
        QVERIFY2(
            fixture.alert().text.contains(QStringLiteral("connects automatically")), qPrintable(fixture.alert().text));
        QVERIFY(proxy.open());
        QVERIFY(fixture.reaches(ServerState::Up));
        QCOMPARE(fixture.window->controller().tarnis().process()->processId(), process);
        QVERIFY(fixture.alert().text.isEmpty());
        const auto* const info = window->findChild<QLabel*>(QStringLiteral("infoLabel"));
        TRY_VERIFY(!info->isVisible());
    }

    // Data of a lost server.

    void thePictureStaysUntilTheNewServerHasData_data()
    {
        addColumns<QByteArray, QByteArray, QList<double>, QList<double>, QByteArray>(
            "id", "command", "nothing", "something", "text");
        addCase("curves", QByteArray("curves"), curvesCommand, QList<double>(8, 0.0), QList<double>(8, 1.0),
            QByteArray("OK:\n"));
        addCase("pairs", QByteArray("pairs"), pairsCommand, QList<double> { 0, 0, 39, 0 },
            QList<double> { 0, 0, 39, 1 }, QByteArray("OK: (0 40000 1024)\n"));
        addCase("map", QByteArray("map"), mapCommand, QList<double>(4, 0.0), QList<double>(4, 1.0),
            QByteArray("OK: exported 2 x 2 y\n"));
    }
    void thePictureStaysUntilTheNewServerHasData()
    {
        QFETCH(QByteArray, id);
        QFETCH(QByteArray, command);
        QFETCH(QList<double>, nothing);
        QFETCH(QList<double>, something);
        QFETCH(QByteArray, text);
        LiveServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ConsoleFixture fixture(program);
        auto* const window = fixture.find(id.constData());
        const auto largest = [window] {
            const auto* const curves = qobject_cast<LiveCurves*>(window);
            return curves ? curves->getGraphWidget()->getMaxValue()
                          : dynamic_cast<LiveMap&>(*window).getGraphWidget()->getMaxValue();
        };
        TRY_VERIFY(largest() > 1.0);
        auto& bar = *window->findChild<LastDataBar*>();
        QVERIFY(!bar.isVisible());
        const double kept = largest();

        fixture.window->controller().endByForce(); // as a crash
        QVERIFY(fixture.reaches(ServerState::Failed));
        QVERIFY(bar.isVisible());
        QVERIFY(!bar.findChild<QPushButton*>(QStringLiteral("keptReleaseButton"))->isVisible());
        // The displayed data can be saved before anything else happens.
        for (const char* const name : { "keptPictureButton", "keptValuesButton" }) {
            press(*bar.findChild<QPushButton*>(QLatin1String(name)));
            auto* const dialog = window->findChild<tarnis::ExportDialog*>();
            QVERIFY(dialog && dialog->isVisible());
            delete dialog;
        }
        server.answerInTurn(command,
            { { Step::doubles(nothing, text) }, { Step::hold("empty"), Step::doubles(nothing, text) },
                { Step::doubles(something, text) } });
        fixture.window->controller().restart();
        QVERIFY(fixture.reaches(ServerState::Up));
        QVERIFY(server.waitForHold("empty")); // the first empty reply has been handled
        QCOMPARE(largest(), kept);
        QVERIFY(bar.isVisible());
        server.open("empty");
        TRY_COMPARE(largest(), 1.0);
        QVERIFY(!bar.isVisible());
    }

    void theUserMayDiscardTheOldData()
    {
        LiveServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ConsoleFixture fixture(program);
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        fixture.window->controller().endByForce();
        QVERIFY(fixture.reaches(ServerState::Failed));
        server.answer(curvesCommand, curvesOf(0));
        fixture.window->controller().restart();
        QVERIFY(fixture.reaches(ServerState::Up));
        press(*window->findChild<QPushButton*>(QStringLiteral("keptReleaseButton")));
        TRY_COMPARE(window->getGraphWidget()->getMaxValue(), 0.0);
        QVERIFY(!window->findChild<LastDataBar*>()->isVisible());
    }

    void dataThatAreClearedOnTheSameServerGoAtOnce()
    {
        LiveServer server;
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        server.answer(curvesCommand, curvesOf(0));
        TRY_COMPARE(window->getGraphWidget()->getMaxValue(), 0.0);
        QVERIFY(!window->findChild<LastDataBar*>()->isVisible());
    }

    void zerosAreFoundInRowsAndPairs()
    {
        QVERIFY(isAllZero({}, false));
        QVERIFY(isAllZero(bytesOf({ 0, -0.0 }), false));
        QVERIFY(!isAllZero(bytesOf({ 0, 1 }), false));
        QVERIFY(!isAllZero(bytesOf({ 0, std::nan("") }), false));
        QVERIFY(isAllZero(bytesOf({ 5, 0, 6, 0 }), true));
        QVERIFY(!isAllZero(bytesOf({ 5, 0, 6, 1 }), true));
        QVERIFY(isAllZero(bytesOf({ 5 }), true)); // half a pair
    }

    void reportsWhatAReplyLacks_data()
    {
        const double nan = std::nan("");
        const double infinity = std::numeric_limits<double>::infinity();
        addColumns<QByteArray, QByteArray, QByteArray, QByteArray, QString>(
            "id", "command", "payload", "text", "expected");
        const QByteArray values = bytesOf({ 1, 2, 3, 4, 5, 6, 7, 8 });
        addCase("rows", QByteArray("curves"), curvesCommand, values.chopped(3), QByteArray("OK:\n"),
            QString("The reply is incomplete: its last bin is not shown."));
        addCase("pairs", QByteArray("pairs"), pairsCommand, values.chopped(8), QByteArray("OK: (0 40000 1024)\n"),
            QString("The reply is incomplete: its last bin is not shown."));
        addCase("no values", QByteArray("curves"), curvesCommand, QByteArray(), QByteArray("OK:\n"),
            QString("The reply contains no values."));
        addCase("not finite", QByteArray("curves"), curvesCommand, bytesOf({ nan, 2, 3, 4, 5, 6, infinity, 8 }),
            QByteArray("OK:\n"), QString("2 of 8 values are not finite."));
        addCase("map", QByteArray("map"), mapCommand, bytesOf({ 1, nan, 3, 4 }), QByteArray("OK: exported 2 x 2 y\n"),
            QString("1 of 4 values are not finite."));
    }
    void reportsWhatAReplyLacks()
    {
        QFETCH(QByteArray, id);
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, payload);
        QFETCH(QByteArray, text);
        QFETCH(QString, expected);
        LiveServer server;
        ConsoleFixture fixture(server);
        const auto* const window = fixture.find(id.constData());
        const auto* const label = window->findChild<QLabel*>(QStringLiteral("infoLabel"));
        TRY_VERIFY(label->text().isEmpty() && !ageOf(*window).isEmpty());
        server.answer(command, { Step::binary(payload, text) });
        TRY_COMPARE(label->text(), expected);
    }

    // Choices of the user.

    void aZoomInThePairFormatStaysUntilReset()
    {
        LiveServer server;
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<LiveCurves>("pairs");
        auto& plot = *window->getGraphWidget();
        QVERIFY(isFilled(*window));
        double min = 0.0;
        double max = 0.0;
        const auto isShown = [&](double expectedMin, double expectedMax) {
            plot.getMinMaxX(min, max);
            return min == expectedMin && max == expectedMax;
        };
        QVERIFY(isShown(0, 40000));
        plot.setFocus();
        QTest::keyClick(&plot, Qt::Key_Plus);
        plot.getMinMaxX(min, max);
        const double zoomedMin = min;
        const double zoomedMax = max;
        QVERIFY(zoomedMin > 0 && zoomedMax < 40000);
        server.answer(pairsCommand, { Step::doubles({ 0, 9 }, "OK: (0 40000 1024)\n") });
        TRY_COMPARE(plot.getMaxValue(), 9.0);
        QVERIFY(isShown(zoomedMin, zoomedMax));
        plot.onReset();
        QVERIFY(isShown(0, 40000));
        server.answer(pairsCommand, { Step::doubles({ 0, 8 }, "OK: (0 50000 1024)\n") });
        TRY_COMPARE(plot.getMaxValue(), 8.0);
        QVERIFY(isShown(0, 50000)); // again according to the server
    }

    void histogramsWithFewBinsOpenAsColumns_data()
    {
        addColumns<int, bool>("bins", "areColumns");
        QTest::newRow("8 bins") << 8 << true;
        QTest::newRow("64 bins") << 64 << true;
        QTest::newRow("65 bins") << 65 << false;
    }
    void histogramsWithFewBinsOpenAsColumns()
    {
        QFETCH(int, bins);
        QFETCH(bool, areColumns);
        LiveServer server;
        server.answer(curvesCommand, { Step::doubles(QList<double>(8 * qsizetype { bins }, 2.0), "OK:\n") });
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        QAction* const columns = entryOf(*window->getGraphWidget(), QStringLiteral("Column Chart"));
        QCOMPARE(columns->isChecked(), areColumns);
        columns->setChecked(!areColumns); // the user's choice stays
        const qsizetype polls = server.requests().count(QByteArray(curvesCommand));
        TRY_VERIFY(server.requests().count(QByteArray(curvesCommand)) > polls + 1);
        QCOMPARE(columns->isChecked(), !areColumns);
    }

    void thePeakTableShowsEveryColumn()
    {
        const LiveServer server;
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        window->getGraphWidget()->onPeakSearch();
        const auto* const dialog = window->getGraphWidget()->findChild<PeakSearchDialog*>();
        QVERIFY(dialog);
        const auto* const table = dialog->findChild<QTableWidget*>();
        TRY_VERIFY(table->isVisible() && table->viewport()->width() > 0);
        TRY_VERIFY(table->horizontalHeader()->length() <= table->viewport()->width());
    }

    void theCaptionNamesTheVisibleRows()
    {
        const LiveServer server;
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<LiveCurves>("curves");
        QVERIFY(isFilled(*window));
        const auto* const caption = window->findChild<QLabel*>(QStringLiteral("descLabel"));
        TRY_COMPARE(caption->text(), QStringLiteral("Module 0-7"));
        window->getGraphWidget()->setEnable(3, false);
        window->getGraphWidget()->refreshPixmap();
        TRY_COMPARE(caption->text(), QStringLiteral("Module 0-2, 4-7 of 8"));
    }
};

QTEST_MAIN(TestConsoleLiveData)
#include "tst_consolelivedata.moc"
