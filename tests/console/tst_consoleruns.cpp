// The window of the run directories: recognition, sorting, filtering, and use of a run.
#include "browse/runswindow.h"
#include "console/consolefixture.h"
#include "support/cases.h"
#include "support/wait.h"

#include <QComboBox>
#include <QPointer>
#include <QPushButton>
#include <QTableView>

using namespace console;
using namespace tarnis::testing;

namespace {

const QByteArray folder("OK:\nbeam000010_20260102/\nbeam000009_20260103/\nalpha000011_20260101/\nnotes.txt\nold/\n"
                        "beam000012_20261399/\nbeam000013_20260101\n");

/// A server with runs in its own directory, and other folders.
class RunServer : public ScriptedServer {
public:
    RunServer()
    {
        answer("pwd", { Step::text("OK:\n/data\n") });
        answer("ls-F \"/data\"", { Step::text(folder) });
        answer("ls-F \"/other \\\"x\\\"\"", { Step::text("OK:\nrun000001_20250101/\n") });
        answer("ls-F \"/none\"", { Step::text("NG:cannot list '/none': No such file or directory\n") });
    }
};

struct RunsWindowDriver {
    explicit RunsWindowDriver(ConsoleFixture& fixture)
        : window(&fixture.opened<RunsWindow>("runs"))
    {
    }
    template <typename Object> Object& widget(const char* name) const { return child<Object>(*window, name); }
    QStringList names() const
    {
        const QAbstractItemModel& model = *widget<QTableView>("table").model();
        QStringList all;
        for (int row = 0; row < model.rowCount(); ++row)
            all.append(model.index(row, RunTable::Name).data().toString());
        return all;
    }
    bool lists(qsizetype count) const
    {
        return eventually([&] { return names().size() == count; });
    }
    bool shows(const QString& text) const
    {
        return eventually([&] { return state().contains(text); });
    }
    QString state() const { return widget<QLabel>("stateLabel").text(); }
    void goTo(const QString& path) const
    {
        auto& edit = widget<QLineEdit>("folderEdit");
        edit.clear();
        QTest::keyClicks(&edit, path);
        QTest::keyClick(&edit, Qt::Key_Return);
    }
    void sortBy(int column, Qt::SortOrder order = Qt::AscendingOrder) const
    {
        widget<QTableView>("table").sortByColumn(column, order);
    }

    QPointer<RunsWindow> window;
};

} // namespace

class TestConsoleRuns : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void onlyRunDirectoriesAreRuns()
    {
        const auto runs = runDirectoriesOf({ "a000001_20260101/", "a000001_20260101", "a00001_20260101/", "a/", "x.txt",
            "", "000001_20260101/", "a0000001_20260101/", "a000001_20260101x/" });
        QCOMPARE(runs.size(), 2);
        QCOMPARE(runs.at(0).name, "a000001_20260101");
        QCOMPARE(runs.at(1).prefix, "a0"); // the last six digits are the run
    }

    void runsAreSortedByPrefixRunAndDate()
    {
        RunServer server;
        ConsoleFixture fixture(server);
        const RunsWindowDriver runs(fixture);
        QVERIFY(runs.lists(4));
        QCOMPARE(runs.names(),
            (QStringList {
                "alpha000011_20260101", "beam000009_20260103", "beam000010_20260102", "beam000012_20261399" }));
        QCOMPARE(runs.state(), "4 runs in /data, and 3 other entries");
        const QAbstractItemModel& model = *runs.widget<QTableView>("table").model();
        QCOMPARE(model.index(1, RunTable::Run).data().toInt(), 9);
        QCOMPARE(model.index(1, RunTable::Date).data().toString(), "2026-01-03");
        QCOMPARE(model.index(3, RunTable::Date).data().toString(), "20261399"); // not a valid date
    }

    void columnsSort_data()
    {
        addColumns<int, QString, QString>("column", "first", "last");
        addCase("run", int(RunTable::Run), "beam000009_20260103", "beam000012_20261399");
        addCase("date", int(RunTable::Date), "alpha000011_20260101", "beam000012_20261399");
        addCase("name", int(RunTable::Name), "alpha000011_20260101", "beam000012_20261399");
    }
    void columnsSort()
    {
        QFETCH(int, column);
        QFETCH(QString, first);
        QFETCH(QString, last);
        RunServer server;
        ConsoleFixture fixture(server);
        const RunsWindowDriver runs(fixture);
        QVERIFY(runs.lists(4));
        runs.sortBy(column);
        QCOMPARE(runs.names().constFirst(), first);
        QCOMPARE(runs.names().constLast(), last);
        runs.sortBy(column, Qt::DescendingOrder);
        QCOMPARE(runs.names().constFirst(), last);
    }

    void prefixAndPartFilter()
    {
        RunServer server;
        ConsoleFixture fixture(server);
        const RunsWindowDriver runs(fixture);
        QVERIFY(runs.lists(4));
        auto& prefixes = runs.widget<QComboBox>("prefixCombo");
        QCOMPARE(prefixes.count(), 3);
        prefixes.setCurrentText(QStringLiteral("beam"));
        QCOMPARE(runs.names().size(), 3);
        QCOMPARE(runs.state(), "3 of 4 runs in /data, and 3 other entries");
        QTest::keyClicks(&runs.widget<QLineEdit>("partEdit"), "00010");
        QCOMPARE(runs.names(), QStringList { "beam000010_20260102" });
        // A refresh keeps both.
        server.answer("ls-F \"/data\"", { Step::text(folder + "beam100010_20260102/\n") });
        press(runs.widget<QPushButton>("refreshButton"));
        QVERIFY(runs.lists(2));
        QCOMPARE(prefixes.currentText(), "beam");
        prefixes.setCurrentIndex(0);
        QCOMPARE(runs.names().size(), 2);
    }

    void anotherFolderIsTyped()
    {
        RunServer server;
        ConsoleFixture fixture(server);
        const RunsWindowDriver runs(fixture);
        QVERIFY(runs.lists(4));
        runs.goTo(QStringLiteral("/other \"x\""));
        QVERIFY(runs.lists(1));
        QCOMPARE(runs.state(), "1 run in /other \"x\"");
        runs.goTo(QStringLiteral("/none"));
        QVERIFY(runs.shows(QStringLiteral("NG:cannot list '/none'")));
        QCOMPARE(runs.names().size(), 1); // the previous ones
        runs.window->setFolder(QString::fromUtf8("/\u03b1"));
        QVERIFY(runs.shows(QStringLiteral("Latin-1")));
    }

    void insertsAChosenRunIntoTheCommandLine()
    {
        RunServer server;
        ConsoleFixture fixture(server);
        const RunsWindowDriver runs(fixture);
        QVERIFY(runs.lists(4));
        auto& button = runs.widget<QPushButton>("insertButton");
        QVERIFY(!button.isEnabled());
        runs.widget<QTableView>("table").selectRow(1);
        press(button);
        QCOMPARE(fixture.edit().text(), "\"/data/beam000009_20260103\"");
    }

    void aLostServerLeavesTheRunsOnShow()
    {
        RunServer server;
        ConsoleFixture fixture(server);
        const RunsWindowDriver runs(fixture);
        QVERIFY(runs.lists(4));
        server.answer("pwd", { Step::drop() });
        press(runs.widget<QPushButton>("refreshButton"));
        QVERIFY(runs.shows(QStringLiteral("No reply")));
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QVERIFY(!runs.widget<QPushButton>("refreshButton").isEnabled());
        QCOMPARE(runs.names().size(), 4);
    }

    void tenThousandEntries()
    {
        QByteArray many("OK:\n");
        for (int i = 0; i < 10000; ++i)
            many += "run" + QByteArray::number(i).rightJustified(6, '0') + "_20260101/\n";
        RunServer server;
        server.answer("ls-F \"/data\"", { Step::text(many) });
        ConsoleFixture fixture(server);
        const RunsWindowDriver runs(fixture);
        QVERIFY(runs.lists(10000));
        runs.sortBy(RunTable::Run, Qt::DescendingOrder);
        QCOMPARE(runs.names().constFirst(), "run009999_20260101");
    }
};

QTEST_MAIN(TestConsoleRuns)
#include "tst_consoleruns.moc"
