// The statistics window against a scripted server.
#include "support/cases.h"
#include "support/metamethods.h"
#include "support/scriptedserver.h"
#include "support/virtualorder.h"
#include "support/wait.h"

#include <tarnis/dialogs/namevalue.h>
#include <tarnis/dialogs/statdialog.h>
#include <tarnis/server/tarnissession.h>

#include <QMetaMethod>
#include <QTableWidget>
#include <QTest>

using namespace tarnis::testing;

namespace {

TarnisSession* newSession(const ScriptedServer& server)
{
    return new TarnisSession(ScriptedServer::host(), server.port(), server.prompt(), nullptr);
}

QStringList rowsOf(StatDialog& dialog)
{
    QStringList rows;
    for (int row = 0; row < dialog.table()->rowCount(); ++row)
        rows.append(dialog.table()->item(row, 0)->text() + "=" + dialog.table()->item(row, 1)->text());
    return rows;
}

} // namespace

class TestStatDialog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QCoreApplication::setApplicationName("statistics test"); }

    void methodOrder()
    {
        QCOMPARE(tarnis::testing::ownMethods(StatDialog::staticMetaObject),
            QStringList({ "slot result(PTarnisCmd,QByteArray)", "slot error(int,QString)" }));
    }

    void virtualOrder()
    {
        const std::ptrdiff_t first = virtualIndex(&StatDialog::result);
        QVERIFY(first > virtualIndex(&QDialog::reject));
        QCOMPARE(virtualIndex(&StatDialog::error), first + 1);
    }

    void titleAndCommand()
    {
        ScriptedServer server;
        StatDialog standard(newSession(server), QString(), QString(), nullptr);
        QCOMPARE(standard.windowTitle(), "statistics test");
        QCOMPARE(standard.table()->horizontalHeaderItem(0)->text(), "Name");
        QVERIFY(server.waitForRequest("stat"));
        StatDialog other(newSession(server), "Rates", "rates all", nullptr);
        QCOMPARE(other.windowTitle(), "Rates");
        QVERIFY(server.waitForRequest("rates all"));
    }

    void showsTheValuesOfAReply_data()
    {
        addColumns<QByteArray, QStringList>("reply", "rows");
        addCase("values untrimmed", QByteArray("a: 1\nb:2 \n"), QStringList({ "a= 1", "b=2 " }));
        addCase("value with colons", QByteArray("time:12:30:00\n"), QStringList({ "time=12:30:00" }));
        addCase("lines without a name", QByteArray("a:1\n:2\nnothing\n\n"), QStringList({ "a=1" }));
        addCase("status lines", QByteArray("OK: fine\nNG: bad\nOK :x\nok:y\n"), QStringList({ "OK =x", "ok=y" }));
        addCase("repeated name keeps place, takes value", QByteArray("a:1\nb:2\na:3\n"), QStringList({ "a=3", "b=2" }));
        addCase("beyond ASCII", QByteArray("R\xc3\xa4te:5 \xc2\xb5s"), QStringList({ "Räte=5 µs" }));
    }

    void showsTheValuesOfAReply()
    {
        QFETCH(QByteArray, reply);
        QFETCH(QStringList, rows);
        ScriptedServer server;
        server.answer("stat", { Step::text(reply) });
        StatDialog dialog(newSession(server), QString(), QString(), nullptr);
        QVERIFY(eventually([&] { return rowsOf(dialog) == rows; }));
    }

    void eachReplyIsAWholeTable()
    {
        ScriptedServer server;
        server.answerInTurn(
            "stat", { { Step::text("a:1\nb:2\n") }, { Step::text("NG: busy\n") }, { Step::text("b:3\n") } });
        StatDialog dialog(newSession(server), QString(), QString(), nullptr);
        QVERIFY(eventually([&] { return rowsOf(dialog) == QStringList({ "a=1", "b=2" }); }));
        QVERIFY(eventually([&] { return rowsOf(dialog).isEmpty(); })); // a refusal shows nothing and does not stop
                                                                       // polling
        QVERIFY(eventually([&] { return rowsOf(dialog) == QStringList({ "b=3" }); }));
    }

    void errorEmptiesTheTableAndEndsThePolling()
    {
        ScriptedServer server;
        server.answerInTurn("stat", { { Step::text("a:1\n") }, { Step::drop() } });
        StatDialog dialog(newSession(server), QString(), QString(), nullptr);
        QVERIFY(eventually([&] { return rowsOf(dialog).size() == 1; }));
        QVERIFY(eventually([&] { return rowsOf(dialog).isEmpty(); }));
        QCOMPARE(server.requests().size(), 2);
    }

    void pollsWhileClosed()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("a:1\n") });
        StatDialog dialog(newSession(server), QString(), QString(), nullptr);
        QVERIFY(server.waitForRequests(1));
        dialog.close();
        QVERIFY(server.waitForRequests(2));
    }

    void destructionEndsTheSession()
    {
        ScriptedServer server;
        {
            StatDialog dialog(newSession(server), QString(), QString(), nullptr);
            QVERIFY(server.waitForRequests(1));
        }
        QVERIFY(server.waitForFarewells(1));
    }

    void destroyedInMidReply()
    {
        ScriptedServer server;
        server.answer("stat", { Step::raw("a:1\n"), Step::hold("rest"), Step::text("") });
        auto dialog = std::make_unique<StatDialog>(newSession(server), QString(), QString(), nullptr);
        QVERIFY(server.waitForHold("rest"));
        dialog.reset();
        server.open("rest");
        QVERIFY(server.waitUntilDeserted());
    }

    void refusedConnection()
    {
        StatDialog dialog(new TarnisSession(ScriptedServer::host(), ScriptedServer::closedPort(), nullptr, nullptr),
            QString(), QString(), nullptr);
        dialog.updateList(QList<NameValue> { { "left", "over" } });
        QVERIFY(eventually([&] { return rowsOf(dialog).isEmpty(); }));
    }
};

QTEST_MAIN(TestStatDialog)
#include "tst_statdialog.moc"
