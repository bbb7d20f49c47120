// The table of settings, over a manager without a server.
#include "settings/settingsmodel.h"
#include "support/cases.h"

#include <tarnis/server/tarnis.h>

#include <QAbstractItemModelTester>
#include <QFont>
#include <QSignalSpy>
#include <QTest>

using namespace console;
using namespace tarnis::testing;

class TestConsoleSettings : public QObject {
    Q_OBJECT

    /// A manager and its table, checked for the rules of models at every change.
    struct Table {
        Tarnis server { nullptr };
        SettingsModel model { server, nullptr };
        QAbstractItemModelTester tester { &model, QAbstractItemModelTester::FailureReportingMode::QtTest };
        QSignalSpy refusals { &model, &SettingsModel::refused };

        QString at(const QString& name, SettingsModel::Column column)
        {
            return model.index(model.rowOf(name), column).data().toString();
        }
        bool edit(const QString& name, const QString& value)
        {
            return model.setData(model.index(model.rowOf(name), SettingsModel::Value), value, Qt::EditRole);
        }
    };

private Q_SLOTS:
    void adoptsTheServersValues()
    {
        Table table;
        table.model.setServerValues({ { "rate", "10" }, { "inst", "A" } });
        QCOMPARE(table.model.rowCount(), 2);
        QCOMPARE(table.model.rowOf(QStringLiteral("inst")), 0);
        QCOMPARE(table.at("rate", SettingsModel::Value), QStringLiteral("10"));
        QCOMPARE(table.at("rate", SettingsModel::OnServer), QStringLiteral("10"));
        QCOMPARE(table.server.GetSettingValue("rate", QString()), QStringLiteral("10"));
        QVERIFY(table.model.changedNames().isEmpty());
    }

    void storesAnEditedValueInTheManagerAndMarksIt()
    {
        Table table;
        table.model.setServerValues({ { "rate", "10" } });
        QSignalSpy edited(&table.model, &SettingsModel::edited);
        QVERIFY(table.edit("rate", " 20 "));
        QCOMPARE(edited.size(), 1);
        QCOMPARE(table.server.GetSettingValue("rate", QString()), QStringLiteral("20"));
        QCOMPARE(table.model.changedNames(), QStringList { "rate" });
        const QModelIndex index = table.model.index(0, SettingsModel::Value);
        QVERIFY(index.data(SettingsModel::ChangedRole).toBool());
        QVERIFY(index.data(Qt::FontRole).value<QFont>().bold());
        QVERIFY(index.data(Qt::ToolTipRole).toString().contains(QStringLiteral("10")));
    }

    void explainsItsSettings()
    {
        Table table;
        table.model.setServerValues({ { "bcp12", "5002" }, { "ipx", "1" }, { "rate", "10" } });
        const auto tip = [&](int row, int column) {
            return table.model.index(row, column).data(Qt::ToolTipRole).toString();
        };
        QVERIFY(tip(0, SettingsModel::Name).contains(QStringLiteral("control commands")));
        QVERIFY(tip(1, SettingsModel::Name).contains(QStringLiteral("setting of the server: ipx")));
        QVERIFY(tip(2, SettingsModel::Name).contains(QStringLiteral("rate")));
        QCOMPARE(tip(0, SettingsModel::Value), QStringLiteral("5002")); // the cell may be elided
    }

    void keepsAnEditedValueAfterTheNextReading()
    {
        Table table;
        table.model.setServerValues({ { "rate", "10" }, { "seed", "1" } });
        QVERIFY(table.edit("rate", "20"));
        table.model.setServerValues({ { "rate", "11" }, { "seed", "2" } });
        QCOMPARE(table.at("rate", SettingsModel::Value), QStringLiteral("20"));
        QCOMPARE(table.at("rate", SettingsModel::OnServer), QStringLiteral("11"));
        QCOMPARE(table.at("seed", SettingsModel::Value), QStringLiteral("2"));
        table.model.setServerValues({ { "rate", "20" }, { "seed", "2" } });
        QVERIFY(table.model.changedNames().isEmpty());
    }

    void removesSettingsThatTheServerNoLongerHas()
    {
        Table table;
        table.model.setServerValues({ { "a", "1" }, { "b", "1" }, { "c", "1" } });
        QVERIFY(table.edit("b", "2"));
        table.model.setServerValues({ { "a", "1" } });
        QCOMPARE(table.server.CopySettings().keys(), (QStringList { "a", "b" })); // b was edited
        QCOMPARE(table.model.changedNames(), QStringList { "b" });
    }

    void revertsToTheServer()
    {
        Table table;
        table.model.setServerValues({ { "rate", "10" } });
        QVERIFY(table.edit("rate", "20"));
        QVERIFY(table.model.add("own", "1"));
        QCOMPARE(table.model.changedNames(), (QStringList { "own", "rate" }));
        table.model.takeServerValues();
        QCOMPARE(table.server.CopySettings(), (QMap<QString, QString> { { "rate", "10" } }));
        QVERIFY(table.model.changedNames().isEmpty());
    }

    void anEditorThatIsLeftKeepsTheEditsBefore()
    {
        Table table;
        table.model.setServerValues({ { "rate", "10" } });
        QVERIFY(table.edit("rate", "20"));
        static_cast<QAbstractItemModel&>(table.model).revert(); // what a view calls on Escape
        QCOMPARE(table.at("rate", SettingsModel::Value), QStringLiteral("20"));
    }

    void addsAndRemoves()
    {
        Table table;
        QVERIFY(table.model.add("b", "1"));
        QVERIFY(table.model.add("a", "1"));
        QVERIFY(table.model.add("a", "2"));
        QCOMPARE(table.model.rowCount(), 2);
        QCOMPARE(table.at("a", SettingsModel::Value), QStringLiteral("2"));
        table.model.remove(table.model.rowOf("a"));
        table.model.remove(7);
        table.model.remove(-1);
        QCOMPARE(table.server.CopySettings().keys(), QStringList { "b" });
    }

    void refusesWithAReason_data()
    {
        addColumns<QString, QString, QString>("name", "value", "named");
        addCase("no name", "", "1", "name");
        addCase("colon in the name", "a:b", "1", "colon");
        addCase("blank in the name", "a b", "1", "space");
        addCase("colon in the value", "a", "1:2", "colon");
        addCase("blank in the value", "a", "1 2", "space");
        addCase("line feed in the value", "a", "1\n2", "space");
        addCase("control character", "a", QString(QChar(4)), "control");
        addCase("beyond Latin-1", "a", QString::fromUtf8("\u03b1"), "Latin-1");
        addCase("port that is no number", "tcp", "abc", "integer");
    }
    void refusesWithAReason()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(QString, named);
        Table table;
        QVERIFY(!table.model.add(name, value));
        QCOMPARE(table.refusals.size(), 1);
        QVERIFY(table.refusals.first().first().toString().contains(named));
        QVERIFY(table.server.CopySettings().isEmpty());
    }

    void aRefusedEditKeepsTheValue()
    {
        Table table;
        table.model.setServerValues({ { "bcp", "5" } });
        QVERIFY(!table.edit("bcp", "five"));
        QCOMPARE(table.at("bcp", SettingsModel::Value), QStringLiteral("5"));
        QCOMPARE(table.refusals.size(), 1);
    }

    void onlyTheValueCanBeEdited()
    {
        Table table;
        table.model.setServerValues({ { "rate", "10" } });
        QVERIFY(!(table.model.flags(table.model.index(0, SettingsModel::Name)) & Qt::ItemIsEditable));
        QVERIFY(table.model.flags(table.model.index(0, SettingsModel::Value)) & Qt::ItemIsEditable);
        QVERIFY(!table.model.setData(table.model.index(0, SettingsModel::Name), "x", Qt::EditRole));
        QVERIFY(!table.model.setData(QModelIndex(), "x", Qt::EditRole));
    }

    void followsTheManagerOnReload()
    {
        Table table;
        QString ip = QStringLiteral("10.0.0.1");
        table.server.SetReadoutAddress(ip, 24, 4660);
        QCOMPARE(table.model.rowCount(), 0);
        table.model.reload();
        QCOMPARE(table.at("ip", SettingsModel::Value), ip);
        QCOMPARE(table.at("bcp", SettingsModel::Value), QStringLiteral("4660"));
        QVERIFY(table.at("ip", SettingsModel::OnServer).isEmpty());
    }
};

QTEST_MAIN(TestConsoleSettings)
#include "tst_consolesettings.moc"
