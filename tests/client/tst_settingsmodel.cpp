// The table of settings: sent, refused and kept values.
#include "support/cases.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/settingsmodel.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

/// A server with settings, a client on it, and a model that has them.
struct Table {
    explicit Table(const QByteArray& settings = "OK:\nbeam: on\nempty:\nrate: 1000\n")
    {
        server.answer("setting", { Step::text(settings) });
        client.connectTo(server.host(), server.port());
        model.refresh();
        if (!eventually([this] { return !refreshed.isEmpty(); }))
            QTest::qFail("no settings", __FILE__, __LINE__);
    }
    bool send()
    {
        model.send();
        return eventually([this] { return !model.isSending(); });
    }
    QStringList sentLines() const
    {
        QStringList lines;
        for (const QByteArray& request : server.requests()) {
            if (request != "setting")
                lines.append(QString::fromLatin1(request));
        }
        return lines;
    }

    ScriptedServer server;
    Client client;
    SettingsModel model { client };
    QAbstractItemModelTester tester { &model, QAbstractItemModelTester::FailureReportingMode::QtTest };
    QSignalSpy refreshed { &model, &SettingsModel::refreshed };
    QSignalSpy sent { &model, &SettingsModel::sent };
    QSignalSpy refused { &model, &SettingsModel::refused };
    QSignalSpy failed { &model, &SettingsModel::failed };
};

} // namespace

class TestSettingsModel : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void showsTheServersSettings()
    {
        const Table table;
        QCOMPARE(table.model.names(), QStringList({ "beam", "empty", "rate" }));
        QCOMPARE(table.model.value("rate"), QStringLiteral("1000"));
        QVERIFY(table.model.changedNames().isEmpty());
        const QModelIndex index = table.model.index(2, SettingsModel::OnServer);
        QCOMPARE(index.data().toString(), QStringLiteral("1000"));
        QCOMPARE(index.data(SettingsModel::ChangedRole).toBool(), false);
        QVERIFY(!table.model.flags(index).testFlag(Qt::ItemIsEditable));
        QVERIFY(table.model.flags(table.model.index(2, SettingsModel::Value)).testFlag(Qt::ItemIsEditable));
    }

    void sendsOnlyWhatChanged()
    {
        Table table;
        QVERIFY(table.model.setData(table.model.index(2, SettingsModel::Value), " 2000 ", Qt::EditRole));
        QVERIFY(table.model.setValue("user.x", "a b"));
        QVERIFY(table.model.setValue("beam", "on"));
        QCOMPARE(table.model.changedNames(), QStringList({ "rate", "user.x" }));
        table.server.answer("setting", { Step::text("OK:\nbeam: on\nempty:\nrate: 2e3\nuser.x: a b\n") });
        QVERIFY(table.send());
        QCOMPARE(table.sentLines(), QStringList({ "setting rate:2000", "setting user.x:a b" }));
        QCOMPARE(table.sent.first(), QVariantList({ 2, 0 }));
        // The server's format of an accepted value is adopted.
        QCOMPARE(table.model.value("rate"), QStringLiteral("2e3"));
        QVERIFY(table.model.changedNames().isEmpty());
    }

    void reportsEachRefusalByName()
    {
        Table table;
        table.server.answer("setting rate:-1", { Step::text("NG:rate must not be negative\n") });
        table.model.setValue("rate", "-1");
        table.model.setValue("beam", "off");
        table.server.answer("setting", { Step::text("OK:\nbeam: off\nempty:\nrate: 1000\n") });
        QVERIFY(table.send());
        QCOMPARE(table.sent.first(), QVariantList({ 1, 1 }));
        QCOMPARE(table.refused.size(), 1);
        QCOMPARE(table.refused.first(), QVariantList({ "rate", "rate must not be negative" }));
        QCOMPARE(table.model.value("rate"), QStringLiteral("-1"));
        QCOMPARE(table.model.refusal("rate"), QStringLiteral("rate must not be negative"));
        QCOMPARE(table.model.changedNames(), QStringList("rate"));
        table.model.setValue("rate", "5");
        QVERIFY(table.model.refusal("rate").isEmpty());
        // What a view calls on Escape in an editor: that must not drop the other values.
        static_cast<QAbstractItemModel&>(table.model).revert();
        QVERIFY(!table.model.changedNames().isEmpty());
        table.model.discardChanges();
        QCOMPARE(table.model.value("rate"), QStringLiteral("1000"));
    }

    void toolTipsShowNoMarkup()
    {
        Table table;
        table.model.setValue("rate", "2000");
        table.server.answer("setting rate:2000", { Step::text("NG:<b>no</b> & none\n") });
        QVERIFY(table.send());
        QCOMPARE(table.model.index(2, SettingsModel::Value).data(Qt::ToolTipRole).toString(),
            QStringLiteral("<qt>&lt;b&gt;no&lt;/b&gt; &amp; none"));
    }

    void refusesEndlessSettings()
    {
        Table table;
        table.server.answer("setting", { Step::text(QByteArray(2 << 20, '\n')) });
        table.model.refresh();
        QVERIFY(eventually([&] { return !table.failed.isEmpty(); }));
        QVERIFY2(table.failed.first().first().toString().contains("larger"),
            qPrintable(table.failed.first().first().toString()));
        QCOMPARE(table.model.value("rate"), QStringLiteral("1000"));
    }

    void anEarlierRefreshDoesNotEndASend()
    {
        Table table;
        table.model.setValue("rate", "7");
        table.model.refresh();
        QVERIFY(table.send());
        QCOMPARE(table.sentLines(), QStringList("setting rate:7"));
        QCOMPARE(table.sent.size(), 1);
        QCOMPARE(table.sent.first(), QVariantList({ 1, 0 }));
    }

    void editedValuesStayAtARefresh()
    {
        Table table;
        table.model.setValue("rate", "7");
        table.server.answer("setting", { Step::text("OK:\nbeam: off\nrate: 8\n") });
        table.model.refresh();
        QVERIFY(eventually([&] { return table.refreshed.size() == 2; }));
        QCOMPARE(table.model.value("rate"), QStringLiteral("7"));
        QCOMPARE(table.model.serverValue("rate"), QStringLiteral("8"));
        QCOMPARE(table.model.value("beam"), QStringLiteral("off"));
        QCOMPARE(table.model.names(), QStringList({ "beam", "rate" }));
    }

    void reportsALostConnection()
    {
        Table table;
        table.server.answer("setting rate:7", { Step::drop() });
        table.model.setValue("rate", "7");
        QVERIFY(table.send());
        QCOMPARE(table.failed.size(), 1);
        QVERIFY(table.sent.isEmpty());
        QCOMPARE(table.model.changedNames(), QStringList("rate"));
    }

    void refusesWhatCannotBeSent_data()
    {
        addColumns<QString, QString>("name", "value");
        addCase("no name", "", "1");
        addCase("two words", "a b", "1");
        addCase("colon in the name", "a:b", "1");
        addCase("colon in the value", "a", "1:2");
        addCase("line feed", "a", "1\n2");
        addCase("two spaces", "a", "1  2");
        addCase("outside of Latin-1", "a", QString(QChar(0x20ac)));
    }
    void refusesWhatCannotBeSent()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        Client client;
        SettingsModel model(client);
        QSignalSpy invalid(&model, &SettingsModel::invalidValue);
        QVERIFY(!model.setValue(name, value));
        QCOMPARE(invalid.size(), 1);
        QCOMPARE(model.rowCount(), 0);
    }

    void outlivesItsClient()
    {
        auto client = std::make_unique<Client>();
        SettingsModel model(*client);
        QSignalSpy failed(&model, &SettingsModel::failed);
        client.reset();
        model.setValue("a", "1");
        model.send();
        QCOMPARE(failed.size(), 1);
        QVERIFY(!model.isSending());
    }

    void deletedInItsSignals()
    {
        ScriptedServer server;
        server.answer("setting", { Step::text("OK:\na: 1\n") });
        server.answer("setting a:2", { Step::text("NG:no\n") });
        Client client;
        client.connectTo(server.host(), server.port());
        auto* model = new SettingsModel(client);
        connect(model, &SettingsModel::refused, this, [&] { delete std::exchange(model, nullptr); });
        model->setValue("a", "2");
        model->send();
        QVERIFY(eventually([&] { return !model; }));
    }
};

QTEST_GUILESS_MAIN(TestSettingsModel)
#include "tst_settingsmodel.moc"
