// The snapshots, the commands to the readout modules and the event rate.
#include "app/language.h"
#include "console/consolefixture.h"
#include "support/cases.h"
#include "support/modalwatchdog.h"
#include "support/wait.h"
#include "tables/moduleswindow.h"
#include "tables/ratewindow.h"
#include "tables/snapshotwindow.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTableWidget>

using namespace console;
using namespace tarnis::testing;

namespace {

using Values = QList<NameValue>;
using Row = QStringList;

Row rowOf(const NameValues& row)
{
    return Row { row.name } + row.values;
}

/// A record after these snapshots.
SnapshotRecord after(const QList<Values>& snapshots)
{
    SnapshotRecord record;
    for (const Values& values : snapshots)
        record.take(values);
    return record;
}

Row cells(QTableWidget* table, int row)
{
    Row texts;
    for (int column = 0; column < table->columnCount(); ++column)
        texts.append(table->item(row, column) ? table->item(row, column)->text() : QStringLiteral("no cell"));
    return texts;
}

/// The window for module commands, in a connected console.
struct Modules {
    explicit Modules(const ScriptedServer& server)
        : fixture(server)
        , window(&fixture.opened<ModulesWindow>("modules"))
    {
    }
    void aim(ModulesWindow::Target target, const QString& modules, const QString& command) const
    {
        child<QComboBox>(*window, "targetBox").setCurrentIndex(int(target));
        child<QLineEdit>(*window, "modulesEdit").setText(modules);
        child<QComboBox>(*window, "commandBox").setEditText(command);
    }
    QPushButton& sendButton() const { return child<QPushButton>(*window, "sendButton"); }
    void send(ModulesWindow::Target target, const QString& modules, const QString& command) const
    {
        aim(target, modules, command);
        press(sendButton());
    }
    bool isAnswered() const
    {
        return eventually([&] { return !child<QPushButton>(*window, "giveUpButton").isEnabled(); });
    }
    QString state() const { return child<QLabel>(*window, "stateLabel").text(); }
    Row row(int number) const { return cells(window->table(), number); }

    ConsoleFixture fixture;
    ModulesWindow* window;
};

} // namespace

class TestConsoleOperator : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { setLanguage(QStringLiteral("en")); }

    // Snapshots.

    void aChangeIsADifferenceOrAWord_data()
    {
        addColumns<QString, QString, QString>("before", "now", "change");
        addCase("the same", "7", "7", "");
        addCase("more", "7", "19", "+12");
        addCase("less", "2.5", "1", "-1.5");
        addCase("the same number in other digits", "1.0", "1", "0");
        addCase("texts", "RUNNING", "STOPPED", "changed");
        addCase("a number that becomes a text", "7", "none", "changed");
        addCase("no number to reckon with", "nan", "7", "changed");
    }
    void aChangeIsADifferenceOrAWord()
    {
        QFETCH(QString, before);
        QFETCH(QString, now);
        QTEST(changeText(before, now), "change");
    }

    void theFirstSnapshotHasNothingBefore()
    {
        const SnapshotRecord record = after({ { { "a", "1" }, { "b", "2" }, { "a", "3" } } });
        QCOMPARE(record.count(), 2);
        QCOMPARE(record.changes(), 0);
        QCOMPARE(rowOf(record.rows().at(0)), (Row { "a", "3", "", "" }));
        QCOMPARE(rowOf(record.rows().at(1)), (Row { "b", "2", "", "" }));
    }

    void theSecondSnapshotShowsNewChangedAndRemovedValues()
    {
        SnapshotRecord record = after({ { { "a", "1" }, { "b", "2" } }, { { "c", "5" }, { "a", "4" } } });
        QCOMPARE(record.changes(), 3);
        QCOMPARE(record.rows().size(), 3);
        QCOMPARE(rowOf(record.rows().at(0)), (Row { "a", "4", "1", "+3" }));
        QCOMPARE(rowOf(record.rows().at(1)), (Row { "b", "", "2", "gone" }));
        QCOMPARE(rowOf(record.rows().at(2)), (Row { "c", "5", "", "new" }));

        record.take({ { "a", "4" }, { "c", "5" } });
        QCOMPARE(record.changes(), 0);
        QCOMPARE(record.rows().size(), 2);
        QCOMPARE(rowOf(record.rows().at(1)), (Row { "c", "5", "5", "" }));
    }

    void aSnapshotIsATableThatCanBeSaved()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("OK:\nevents: 12\nstate: RUNNING\n") });
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<NameValueListDialog>("stat-snapshot");
        QVERIFY(window);
        TRY_COMPARE(window->table()->rowCount(), 2);
        server.answer("stat", { Step::text("OK:\nevents: 20\nstate: RUNNING\n") });
        press(child<QPushButton>(*window, "refreshButton"));
        TRY_COMPARE(cells(window->table(), 0), (Row { "events", "20", "12", "+8" }));
        QCOMPARE(cells(window->table(), 1), (Row { "state", "RUNNING", "RUNNING", "" }));
        QVERIFY(child<QLabel>(*window, "stateLabel").text().startsWith(u"2 values, 1 of them changed"));

        child<QLineEdit>(*window, "filterEdit").setText(QStringLiteral("eve"));
        QCOMPARE(window->table()->rowCount(), 1);
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("snapshot.csv"));
        ModalWatchdog watchdog({ acceptFile(path) });
        press(*child<QDialogButtonBox>(*window, "buttonBox").button(QDialogButtonBox::Save));
        QVERIFY(watchdog.isContent());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("Name,Value,Before,Change\nevents,20,12,+8\n"));
    }

    void aRefusedSnapshotKeepsTheValuesOfBefore()
    {
        ScriptedServer server;
        server.answer("setting", { Step::text("OK:\nrate: 12\n") });
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<NameValueListDialog>("setting-snapshot");
        TRY_COMPARE(window->table()->rowCount(), 1);
        server.answer("setting", { Step::text("NG:not now\n") });
        press(child<QPushButton>(*window, "refreshButton"));
        TRY_COMPARE(child<QLabel>(*window, "stateLabel").text(), QStringLiteral("NG:not now"));
        QCOMPARE(window->table()->rowCount(), 1);
    }

    // Ids and answers of modules.

    void parsesIdsAndRanges_data()
    {
        addColumns<QString, QStringList, bool>("text", "ids", "isRight");
        QTest::newRow("one") << "3" << QStringList { "3" } << true;
        QTest::newRow("several") << " 0, 2;4  6," << QStringList { "0", "2", "4", "6" } << true;
        QTest::newRow("a range") << "0,4-6" << QStringList { "0", "4", "5", "6" } << true;
        QTest::newRow("each once") << "3 2-4" << QStringList { "3", "2", "4" } << true;
        QTest::newRow("a word") << "north-3" << QStringList { "north-3" } << true;
        QTest::newRow("nothing") << " , " << QStringList {} << false;
        QTest::newRow("a range backwards") << "6-4" << QStringList {} << false;
        QTest::newRow("a range without end") << "0-999999999" << QStringList {} << false;
    }
    void parsesIdsAndRanges()
    {
        QFETCH(QString, text);
        QFETCH(bool, isRight);
        QString problem;
        const QStringList ids = moduleIds(text, problem);
        QCOMPARE(problem.isEmpty(), isRight);
        if (isRight)
            QTEST(ids, "ids");
    }

    void showsAnswersByModule()
    {
        const QList<ModuleAnswer> answers =
            moduleAnswers(QStringLiteral("all"), QStringLiteral("OK:\n--module 10\na: 1\n--module 9\na: 2\nb: x:y\n"));
        QCOMPARE(answers.size(), 2);
        QCOMPARE(answers.at(0).module, QStringLiteral("module 9"));
        QCOMPARE(answers.at(0).text, QStringLiteral("done"));
        QCOMPARE(answers.at(0).values.value("b"), QStringLiteral("x:y"));
        QCOMPARE(answers.at(1).values.value("a"), QStringLiteral("1"));
    }

    void anAnswerWithoutSectionsIsThatOfTheAddressee_data()
    {
        addColumns<QString, QString>("reply", "text");
        addCase("a refusal", "NG:no module '8'\n", "refused: no module '8'");
        addCase("accepted", "OK:\n", "done");
        addCase("nothing", "", "done");
        addCase("a text", "OK:as you wish\n", "as you wish");
        addCase("values", "OK:\nthreshold: 5\n", "done");
    }
    void anAnswerWithoutSectionsIsThatOfTheAddressee()
    {
        QFETCH(QString, reply);
        const QList<ModuleAnswer> answers = moduleAnswers(QStringLiteral("module 8"), reply);
        QCOMPARE(answers.size(), 1);
        QCOMPARE(answers.at(0).module, QStringLiteral("module 8"));
        QTEST(answers.at(0).text, "text");
    }

    // The window that sends.

    void itSendsInEachWay_data()
    {
        addColumns<ModulesWindow::Target, QByteArray>("target", "line");
        QTest::newRow("all") << ModulesWindow::Target::All << QByteArray("broadcast stat");
        QTest::newRow("the family") << ModulesWindow::Target::Family << QByteArray("mc orsino stat");
        QTest::newRow("one") << ModulesWindow::Target::One << QByteArray("unicast 3 stat");
        QTest::newRow("several") << ModulesWindow::Target::Several << QByteArray("unicast 3 stat");
    }
    void itSendsInEachWay()
    {
        QFETCH(ModulesWindow::Target, target);
        QFETCH(QByteArray, line);
        ScriptedServer server;
        server.answer(line, { Step::text("OK:\n--module 3\nstate: OFF\n") });
        const Modules modules(server);
        modules.send(target, QStringLiteral("3"), QStringLiteral(" stat "));
        QVERIFY(server.waitForRequest(line));
        QVERIFY(modules.isAnswered());
        QCOMPARE(modules.window->table()->rowCount(), 1);
        QCOMPARE(modules.row(0), (Row { "module 3", "done", "OFF" }));
        QCOMPARE(modules.window->table()->horizontalHeaderItem(2)->text(), QStringLiteral("state"));
    }

    void eachOfSeveralHasItsRow()
    {
        ScriptedServer server;
        server.answer("unicast 4 setting", { Step::text("OK:\n--module 4\nthreshold: 5\n") });
        server.answer("unicast 9 setting", { Step::text("NG:no module '9'\n") });
        server.answer("unicast 1 setting", { Step::text("OK:\n--module 1\nenabled: on\n") });
        const Modules modules(server);
        modules.send(ModulesWindow::Target::Several, QStringLiteral("4, 9, 1"), QStringLiteral("setting"));
        QVERIFY(modules.isAnswered());
        QCOMPARE(modules.row(0), (Row { "module 4", "done", "5", "" }));
        QCOMPARE(modules.row(1), (Row { "module 9", "refused: no module '9'", "", "" }));
        QCOMPARE(modules.row(2), (Row { "module 1", "done", "", "on" }));
    }

    void showsWhyACommandCannotBeSent()
    {
        ScriptedServer server;
        const Modules modules(server);
        modules.aim(ModulesWindow::Target::One, QString(), QStringLiteral("stat"));
        QVERIFY(!modules.sendButton().isEnabled());
        QVERIFY(modules.sendButton().toolTip().contains(u"number of a module"));
        modules.aim(ModulesWindow::Target::One, QStringLiteral("1 2"), QStringLiteral("stat"));
        QVERIFY(modules.sendButton().toolTip().contains(u"several modules"));
        modules.aim(ModulesWindow::Target::All, QString(), QStringLiteral("  "));
        QVERIFY(modules.sendButton().toolTip().contains(u"Type a command"));
        QVERIFY(!child<QLineEdit>(*modules.window, "modulesEdit").isEnabled());
        modules.aim(ModulesWindow::Target::Several, QStringLiteral("1 2"), QStringLiteral("stat"));
        QVERIFY(modules.sendButton().isEnabled());
        QVERIFY(modules.sendButton().toolTip().contains(u"unicast 1 stat"));
    }

    void aSilentModuleCanBeGivenUp()
    {
        ScriptedServer server;
        server.answer("unicast 1 stat", { Step::text("OK:\n--module 1\nstate: OFF\n") });
        server.answer("unicast 2 stat", { Step::silence() });
        const Modules modules(server);
        modules.send(ModulesWindow::Target::Several, QStringLiteral("1 2 3"), QStringLiteral("stat"));
        QVERIFY(server.waitForRequest("unicast 2 stat"));
        TRY_COMPARE(modules.row(0), (Row { "module 1", "done", "OFF" }));
        QCOMPARE(modules.row(2).at(1), QStringLiteral("waiting..."));
        press(child<QPushButton>(*modules.window, "giveUpButton"));
        QCOMPARE(modules.row(0).at(1), QStringLiteral("done"));
        QCOMPARE(modules.row(1).at(1), QStringLiteral("given up"));
        QCOMPARE(modules.row(2).at(1), QStringLiteral("given up"));
        QVERIFY(modules.sendButton().isEnabled());
    }

    void showsALostConnectionInEachRow()
    {
        ScriptedServer server;
        server.answer("unicast 1 stat", { Step::drop() });
        const Modules modules(server);
        modules.send(ModulesWindow::Target::Several, QStringLiteral("1 2"), QStringLiteral("stat"));
        TRY_COMPARE(modules.row(0).at(1), QStringLiteral("no reply"));
        QCOMPARE(modules.row(1).at(1), QStringLiteral("no reply"));
        QVERIFY(modules.state().startsWith(u"No reply: "));
    }

    // The rate.

    void aRateIsTheServersOwn_data()
    {
        addColumns<QString, double>("reply", "rate");
        QTest::newRow("among others") << "OK:\nmean rate: 5\nrate: 12.5\n" << 12.5;
        QTest::newRow("none") << "OK:\nmean rate: 5\n" << -1.0;
        QTest::newRow("no number") << "rate: fast\n" << -1.0;
        QTest::newRow("not finite") << "rate: inf\n" << -1.0;
        QTest::newRow("empty") << "" << -1.0;
    }
    void aRateIsTheServersOwn()
    {
        QFETCH(QString, reply);
        QTEST(rateOf(reply).value_or(-1.0), "rate");
    }

    void theRateIsDrawnReplyByReply()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("OK:\nrate: 400\n") });
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<RateWindow>("rate");
        QVERIFY(window);
        TRY_COMPARE(window->count(), 1);
        server.answer("stat", { Step::text("OK:\nrate: 600\n") });
        TRY_VERIFY(window->count() >= 2);
        auto* const plot = window->findChild<VectorGraphWidget*>();
        double least = 0.0;
        double largest = 0.0;
        QVERIFY(plot->getMinMaxY(least, largest));
        QVERIFY(largest >= 600.0 && largest < 1000.0);
        QVERIFY(child<QLabel>(*window, "infoLabel").text().startsWith(u"600 /s now"));
        press(child<QPushButton>(*window, "clearButton"));
        QCOMPARE(window->count(), 0);
        TRY_VERIFY(window->count() >= 1);
    }

    void theRatesPlotHasATitle()
    {
        struct Plot : VectorGraphWidget {
            static QString titleOf(const VectorGraphWidget& plot) { return plot.*(&Plot::m_title); }
        };
        ConsoleFixture fixture;
        const RateWindow window(fixture.window->controller(), fixture.window->statusPoller(), nullptr);
        const auto* const plot = window.findChild<VectorGraphWidget*>();
        QCOMPARE(Plot::titleOf(*plot), QStringLiteral("Event Rate"));
        setLanguage(QStringLiteral("de"));
        TRY_COMPARE(Plot::titleOf(*plot), QStringLiteral("Ereignisrate"));
    }

    void reportsAServerWithoutARate()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("OK:\nevents: 4\n") });
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<RateWindow>("rate");
        TRY_VERIFY(child<QLabel>(*window, "infoLabel").text().contains(u"reports no rate"));
    }

    void continuesTheCurveWhenTheServerIsBack()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("OK:\nrate: 400\n") });
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<RateWindow>("rate");
        TRY_COMPARE(window->count(), 1);
        fixture.window->controller().stop();
        TRY_VERIFY(child<QLabel>(*window, "infoLabel").text().contains(u"continues when"));
        const qsizetype before = window->count();
        fixture.use(server);
        TRY_VERIFY(window->count() > before);
    }
};

QTEST_MAIN(TestConsoleOperator)
#include "tst_consoleoperator.moc"
