// Further features of the live windows: hostile texts, replies that are not drawn, stopped polling, new sessions.
#include "dialogs/livewindow.h"
#include "support/cases.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/namevalue.h>
#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/server/sessionend.h>

#include <QCheckBox>
#include <QLabel>
#include <QSemaphore>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTest>

#include <limits>

using namespace tarnis::testing;

namespace {

tarnis::ServerAddress addressOf(const ScriptedServer& server)
{
    return { ScriptedServer::host(), server.port(), server.prompt() };
}

class Curves : public Graph1DDialog {
public:
    explicit Curves(const tarnis::ServerAddress& server, bool pairs = false)
        : Graph1DDialog(server, "Title", "Time", 0.0, pairs ? 0.0 : 4.0, 1, 0, "", {}, "hist", 0, 0, nullptr)
    {
        setAttribute(Qt::WA_DeleteOnClose, false);
        show();
    }
    using Graph1DDialog::hooks;
    using Graph1DDialog::session;
    using Graph1DDialog::timer;

    QString infoText() const { return label("infoLabel") ? label("infoLabel")->text() : QString(); }
    QLabel* label(const char* name) const { return findChild<QLabel*>(QLatin1String(name)); }
    bool showsStopped() const { return label("stateLabel") && label("stateLabel")->isVisible(); }
    QList<double> data()
    {
        QList<double> values;
        getGraphWidget()->getData(0, values);
        return values;
    }
};

class Map : public Graph2DDialog {
public:
    explicit Map(const tarnis::ServerAddress& server)
        : Graph2DDialog(server, "Title", "X", 2, 0.0, 2.0, 1, 0, "Y", 4, 0.0, 4.0, 1, 0, {}, "hist", nullptr)
    {
        setAttribute(Qt::WA_DeleteOnClose, false);
        show();
    }
    using Graph2DDialog::binsX;
    using Graph2DDialog::binsY;
    using Graph2DDialog::hooks;
};

/// A server that does not answer the window's first poll, so that the test provides all replies.
struct SilentServer : ScriptedServer {
    SilentServer() { answer("hist", { Step::silence() }); }
};

} // namespace

class TestLiveWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Texts

    void serverTextNeitherIsMarkupNorWidensTheWindow_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("markup") << "NG:<h1>" + QString(5000, u'x') + "</h1><img src=\"file:/etc/hostname\">";
        QTest::newRow("one long word") << "NG:" + QString(650, u'x');
        QTest::newRow("many lines") << "NG:" + QString("a line\n").repeated(2000).trimmed();
    }
    void serverTextNeitherIsMarkupNorWidensTheWindow()
    {
        QFETCH(QString, text);
        const SilentServer server;
        Curves window(addressOf(server));
        const QSize before = window.size();
        window.setInfoText(text);
        QVERIFY(eventually([&] { return window.label("infoLabel")->isVisible(); }));
        QCoreApplication::processEvents();
        QCOMPARE(window.infoText(), text); // whole for those who ask
        QCOMPARE(window.label("infoLabel")->textFormat(), Qt::PlainText);
        QCOMPARE(window.size(), before);
        QVERIFY(window.minimumSizeHint().width() <= before.width());
        const int lines = window.label("infoLabel")->height() / window.fontMetrics().lineSpacing();
        QVERIFY2(lines >= 1 && lines <= 5, qPrintable(QString::number(lines)));
    }

    void boxQuotesTheBeginningOfAReply()
    {
        const SilentServer server;
        Curves window(addressOf(server), true);
        MessageBoxWatcher boxes;
        QList<Qt::TextFormat> formats;
        QList<QSize> sizes;
        boxes.whileOpen = [&] {
            const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            formats.append(box->textFormat());
            sizes.append(box->size());
        };
        const QString reply = "<b>x</b>" + QString("0 1 ").repeated(5000000);
        window.result(answered("hist", true, reply), bytesOf({ 1, 2 }));
        QCOMPARE(boxes.texts.size(), 1);
        QVERIFY(boxes.texts.at(0).startsWith("failed to parse information - '<b>x</b>0 1 "));
        QVERIFY(boxes.texts.at(0).size() < 2000);
        QCOMPARE(formats, QList<Qt::TextFormat>({ Qt::PlainText }));
        QVERIFY(sizes.at(0).width() < 1200 && sizes.at(0).height() < 700);
    }

    void tablesShowTheFullTextOnlyWhereItIsLonger_data()
    {
        addColumns<int, bool>("size", "isShown");
        QTest::newRow("as much as is shown") << 500 << false;
        QTest::newRow("one character more") << 501 << true;
    }
    void tablesShowTheFullTextOnlyWhereItIsLonger()
    {
        QFETCH(int, size);
        NameValueListDialog dialog(QList<NameValue> { NameValue { "name", QString(size, u'x') } }, nullptr, "Name");
        QTableWidget& table = *dialog.table();
        Q_EMIT table.doubleClicked(table.model()->index(0, 1));
        QCoreApplication::processEvents();
        QTEST(dialog.findChild<QDialog*>("fullText") != nullptr, "isShown");
    }

    void tablesShowTheBeginningOfAText()
    {
        const QString value = "<b>" + QString(100000, u'x');
        NameValueListDialog dialog(QList<NameValue> { NameValue { "name", value } }, nullptr, "Name");
        QTableWidget& table = *dialog.table();
        QCOMPARE(table.item(0, 1)->text(), value);
        const auto* const delegate = qobject_cast<QStyledItemDelegate*>(table.itemDelegate());
        QVERIFY(delegate);
        QCOMPARE(delegate->displayText(value, {}).size(), 501);
        QCOMPARE(delegate->displayText("short", {}), "short");
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, table.visualItemRect(table.item(0, 1)).center());
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, table.visualItemRect(table.item(0, 1)).center());
        QVERIFY(eventually([&] { return dialog.findChild<QDialog*>("fullText") != nullptr; }));
    }

    // Replies that are not drawn

    void pairsThatDoNotFit_data()
    {
        addColumns<QString, double, int>("text", "x", "reason");
        using Reason = tarnis::UndrawnReply::Reason;
        constexpr int drawn = -1;
        QTest::newRow("inside") << "OK: total (0 10 5)\n" << 2.0 << drawn;
        QTest::newRow("at the upper end") << "OK: total (0 10 5)\n" << 10.0 << int(Reason::OutsideAxis);
        QTest::newRow("below") << "OK: total (0 10 5)\n" << -3.0 << int(Reason::OutsideAxis);
        QTest::newRow("no number") << "OK: total (0 10 5)\n" << qQNaN() << int(Reason::OutsideAxis);
        QTest::newRow("no axis") << "OK: total\n" << 2.0 << int(Reason::NoAxis);
        QTest::newRow("axis first") << "(0 10 5)\n" << 2.0 << int(Reason::NoAxis);
        QTest::newRow("two numbers") << "OK: total (0 10)\n" << 2.0 << int(Reason::NoAxis);
        QTest::newRow("too many bins") << "OK: total (0 10 2097153)\n" << 2.0 << int(Reason::TooLarge);
        QTest::newRow("no bins") << "OK: total (0 10 0)\n" << 2.0 << int(Reason::OutsideAxis);
        QTest::newRow("no range") << "OK: total (0 0 5)\n" << 2.0 << int(Reason::OutsideAxis);
    }
    void pairsThatDoNotFit()
    {
        QFETCH(QString, text);
        QFETCH(double, x);
        const SilentServer server;
        Curves window(addressOf(server), true);
        const MessageBoxWatcher boxes;
        int reason = -1;
        window.hooks.onUndrawn = [&](const tarnis::UndrawnReply& reply) {
            reason = int(reply.reason);
            return true;
        };
        window.result(answered("hist", true, text), bytesOf({ x, 1.0 }));
        QTEST(reason, "reason");
        QVERIFY(window.timer->isActive()); // polling continues
        QVERIFY(!window.showsStopped() && boxes.texts.isEmpty());
    }

    void mapsThatDoNotFit_data()
    {
        addColumns<QString, int, bool>("text", "values", "fits");
        QTest::newRow("the window's own bins") << "OK:\n" << 8 << true;
        QTest::newRow("bins of the reply") << "OK: exported 2 x 3 y\n" << 6 << true;
        QTest::newRow("no data") << "OK: exported 2 x 3 y\n" << 0 << true;
        QTest::newRow("too few") << "OK: exported 2 x 3 y\n" << 5 << false;
        QTest::newRow("negative") << "OK: exported -2 x -3 y\n" << 6 << false;
        QTest::newRow("huge") << "OK: exported 2147483647 x 2147483647 y\n" << 6 << false;
    }
    void mapsThatDoNotFit()
    {
        QFETCH(QString, text);
        QFETCH(int, values);
        QFETCH(bool, fits);
        const SilentServer server;
        Map window(addressOf(server));
        const MessageBoxWatcher boxes;
        QList<tarnis::UndrawnReply> undrawn;
        window.hooks.onUndrawn = [&](const tarnis::UndrawnReply& reply) {
            undrawn.append(reply);
            return true;
        };
        window.result(answered("hist", true, text), QByteArray(values * 8, '\0'));
        QCOMPARE(undrawn.isEmpty(), fits);
        QVERIFY(boxes.texts.isEmpty());
        if (fits)
            return;
        QCOMPARE(int(undrawn.at(0).reason), int(tarnis::UndrawnReply::Reason::SizeMismatch));
        QCOMPARE(undrawn.at(0).values, values);
        QCOMPARE(window.binsX, 2); // as before: those of the displayed data
        QCOMPARE(window.binsY, 4);
    }

    void doesNotDecodeWhatItsBinsCannotHold()
    {
        const SilentServer server;
        Curves window(addressOf(server));
        MessageBoxWatcher boxes;
        window.result(answered("hist", true, "OK:"), QByteArray((qsizetype(1 << 22) + 1) * 8, '\0'));
        QCOMPARE(boxes.texts.size(), 1);
        QVERIFY(boxes.texts.at(0).contains("4194305 values"));
        QVERIFY(window.data().isEmpty());
        window.result(answered("hist", true, "OK:"), QByteArray(qsizetype(1 << 22) * 8, '\0'));
        QCOMPARE(window.data().size(), 1 << 22);
    }

    void countsWhatIsNotShown()
    {
        const double infinity = std::numeric_limits<double>::infinity();
        const SilentServer server;
        Curves curves(addressOf(server));
        Map map(addressOf(server));
        QList<qint64> counts;
        const auto count = [&](const tarnis::DrawnReply& reply) {
            counts += { reply.values, reply.notFinite, reply.unusedBytes };
        };
        curves.result(answered("hist", true, "OK:"), bytesOf({ 1, qQNaN() })); // without a hook there is no report
        curves.hooks.onDrawn = count;
        map.hooks.onDrawn = count;
        curves.result(answered("hist", true, "OK:"), bytesOf({ 1, qQNaN(), infinity, 2 }));
        map.result(answered("hist", true, "OK: exported 2 x 1 y\n"), bytesOf({ 1, -infinity }));
        curves.result(answered("hist", true, "OK:"), bytesOf({ 1, 2 }).chopped(3));
        QCOMPARE(counts, QList<qint64>({ 4, 2, 0, 2, 1, 0, 1, 0, 5 }));
        QVERIFY(curves.infoText().isEmpty());
    }

    // Stopped polling and new sessions

    void reportsThatPollingHasStoppedAndRestarts()
    {
        ScriptedServer server;
        server.answerInTurn("hist", { { Step::drop() }, { Step::binary(bytesOf({ 7 }), "OK:\n") } });
        MessageBoxWatcher boxes;
        Curves window(addressOf(server));
        QCOMPARE(window.stopReason(), "");
        QVERIFY(eventually([&] { return boxes.texts.size() == 1; }));
        QVERIFY(eventually([&] { return window.showsStopped(); }));
        QVERIFY(!window.stopReason().isEmpty());
        QVERIFY(window.label("stateLabel")->text().contains(window.stopReason()));
        window.findChild<QPushButton*>("updatePushButton")->click();
        QVERIFY(eventually([&] { return window.data() == QList<double>({ 7 }); }));
        QCOMPARE(server.connectionCount(), 2);
        QCOMPARE(window.stopReason(), "");
        QVERIFY(!window.showsStopped());
        QCOMPARE(boxes.texts.size(), 1);
    }

    void reportsThatAReplyStoppedPolling()
    {
        const SilentServer server;
        Curves window(addressOf(server), true);
        QVERIFY(server.waitForRequests(1)); // no first poll comes while the box is open
        const MessageBoxWatcher boxes;
        window.result(answered("hist", true, "OK: a\n"), bytesOf({ 1, 2 }));
        QCOMPARE(boxes.texts.size(), 1);
        QCOMPARE(window.stopReason(), "failed to parse information - 'OK: a\n'");
        QVERIFY(window.showsStopped());
        QVERIFY(window.label("stateLabel")->text().endsWith("- 'OK: a '")); // a line of its own for a quote is odd
        window.update();
        QVERIFY(!window.showsStopped());
    }

    void reportsThatItWasHidden()
    {
        const SilentServer server;
        Curves window(addressOf(server));
        window.hide();
        window.result(answered("hist", true, "OK:"), bytesOf({ 1 }));
        window.show();
        QVERIFY(window.showsStopped());
    }

    void pollsAnotherServerOnANewSession()
    {
        auto first = std::make_unique<ScriptedServer>();
        first->answer("hist", { Step::binary(bytesOf({ 1 }), "OK:\n") });
        ScriptedServer second;
        second.answer("hist", { Step::binary(bytesOf({ 2 }), "OK:\n") });
        Curves window(addressOf(*first));
        QVERIFY(eventually([&] { return window.data() == QList<double>({ 1 }); }));
        const MessageBoxWatcher boxes;
        window.renewSession(addressOf(second));
        tarnis::waitForEndingSessions(); // the first server's prompt is destroyed with it
        first.reset();
        QVERIFY(eventually([&] { return window.data() == QList<double>({ 2 }); }));
        QCOMPARE(boxes.texts, QStringList());
    }

    void dropsWhatAnEarlierSessionHasQueued()
    {
        ScriptedServer first;
        first.answer("hist", { Step::hold("gate"), Step::drop() });
        const SilentServer second;
        Curves window(addressOf(first));
        const MessageBoxWatcher boxes;
        QVERIFY(first.waitForHold("gate"));
        first.release("gate");
        QVERIFY(window.session->wait(timeoutMs)); // its error is queued, and no event is delivered
        window.renewSession(addressOf(second));
        QCoreApplication::processEvents();
        QCOMPARE(boxes.texts, QStringList());
        QCOMPARE(window.stopReason(), "");
    }

    void closingDoesNotWaitForTheSession()
    {
        ScriptedServer server;
        server.answer("hist", { Step::hold("first"), Step::binary(bytesOf({ 1 }), "OK:\n") });
        Curves window(addressOf(server));
        QVERIFY(server.waitForHold("first"));
        QSemaphore inSlot;
        QSemaphore gate;
        QObject::connect(
            window.session, &TarnisSession::result, window.session,
            [&] {
                inSlot.release();
                gate.acquire();
            },
            Qt::DirectConnection);
        server.release("first");
        inSlot.acquire(); // the worker is where nothing can interrupt it
        window.close();
        QVERIFY(!window.session);
        gate.release();
        tarnis::waitForEndingSessions();
    }
};

QTEST_MAIN(TestLiveWindow)
#include "tst_livewindow.moc"
