// The GUI thread's share of what the choosers and tables of the server do: a folder of 10,000 entries from the reply to
// the painted list (limit: usable within a second), and the statistics of 1,000 names from the reply to the table
// (limit: less than 5 ms of every second). The counters are medians in milliseconds of the thread, beside them the
// parts that the dialogs call: the sort by the language's rules, the list widget alone, the items of the table alone.
// The same folder on the simulated server is timed on the wall clock, from the request to the painted list.
#include "headless.h"
#include "measure.h"

#include <tarnis/dialogs/selectdirectorydialog.h>
#include <tarnis/dialogs/selectpathdialog.h>
#include <tarnis/dialogs/statdialog.h>
#include <tarnis/foundation/helpers.h>
#include <tarnis/server/tarnissession.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QListWidget>
#include <QProcess>
#include <QTableWidget>
#include <QTemporaryDir>

#include <algorithm>
#include <random>
#include <vector>

namespace {

/// No server listens there: the replies are passed to the dialogs' slots.
TarnisSession* newSession()
{
    static const QByteArray prompt("> ");
    return new TarnisSession(QStringLiteral("127.0.0.1"), 1, &prompt, nullptr);
}

/// Names of run folders and files in no order, as a server lists them.
QStringList entries(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i) {
        names.append(i % 2 == 0 ? QStringLiteral("Lauf %1_20240%2/").arg(i, 6, 10, QLatin1Char('0')).arg(i % 9 + 1)
                                : QStringLiteral("Zählrate \"%1\" µs.txt").arg(i * 7919 % 100003));
    }
    std::shuffle(names.begin(), names.end(), std::mt19937_64(1));
    return names;
}

PTarnisCmd reply(const char* name)
{
    PTarnisCmd command(new TarnisCmd(QString()));
    command->m_cmdName = QLatin1String(name);
    return command;
}

template <typename Dialog> void listFolder(benchmark::State& state, const char* lsName)
{
    const QStringList names = entries(static_cast<int>(state.range(0)));
    const QByteArray payload = "OK:\n" + names.join(QLatin1Char('\n')).toUtf8() + '\n';
    TarnisSession* const model = newSession();
    Dialog dialog(QStringLiteral("/data"), model, nullptr);
    if constexpr (std::is_same_v<Dialog, SelectPathDialog>)
        dialog.setExt({ "txt" }, false, false);
    else
        dialog.setExt({ "*" }, false, QString());
    dialog.show();
    QApplication::processEvents();
    QListWidget& list = *dialog.template findChild<QListWidget*>();
    QListWidget bare;
    bare.resize(list.size());
    bare.show();
    QApplication::processEvents();
    std::vector<double> taken;
    std::vector<double> painted;
    std::vector<double> whole;
    std::vector<double> sorted;
    std::vector<double> filled;
    for ([[maybe_unused]] auto unused : state) {
        const PTarnisCmd command = reply(lsName);
        taken.push_back(millisecondsOf([&] { dialog.result(command, payload); }));
        painted.push_back(millisecondsOf([&] {
            QApplication::processEvents();
            list.viewport()->repaint();
        }));
        if (list.count() != names.size())
            std::abort();
        whole.push_back(taken.back() + painted.back());
        QStringList copy = names;
        sorted.push_back(millisecondsOf([&] { localeAwareSort(copy); }));
        filled.push_back(millisecondsOf([&] {
            bare.clear();
            bare.addItems(copy);
            QApplication::processEvents();
            bare.viewport()->repaint();
        }));
        state.SetIterationTime(whole.back() / 1000.0);
    }
    delete model;
    state.counters["take_ms"] = median(taken);
    state.counters["paint_ms"] = median(painted);
    state.counters["gui_ms"] = median(whole);
    state.counters["sort_ms"] = median(sorted);
    state.counters["list_ms"] = median(filled);
}

void pathListing(benchmark::State& state)
{
    listFolder<SelectPathDialog>(state, "pathSelectLs");
}
BENCHMARK(pathListing)->Arg(1000)->Arg(10000)->UseManualTime()->Iterations(21)->Unit(benchmark::kMillisecond);

void directoryListing(benchmark::State& state)
{
    listFolder<SelectDirectoryDialog>(state, "ls");
}
BENCHMARK(directoryListing)->Arg(1000)->Arg(10000)->UseManualTime()->Iterations(21)->Unit(benchmark::kMillisecond);

#ifdef SIMSERVER_PATH
void listingFromTheServer(benchmark::State& state)
{
    const QTemporaryDir root;
    const int count = static_cast<int>(state.range(0));
    if (!QDir(root.path()).mkdir(QStringLiteral("many")))
        std::abort();
    for (int i = 0; i < count; ++i) {
        QFile file(QStringLiteral("%1/many/Zählrate %2.txt").arg(root.path()).arg(i * 7919 % 100003));
        if (!file.open(QIODevice::WriteOnly))
            std::abort();
    }
    QProcess server;
    server.start(QStringLiteral(SIMSERVER_PATH), { QStringLiteral("--root"), root.path() });
    QByteArray line;
    while (!line.endsWith('\n') && server.waitForReadyRead(10000))
        line += server.readLine();
    const QByteArray prompt("> ");
    TarnisSession model(
        QStringLiteral("127.0.0.1"), line.mid(line.lastIndexOf(' ') + 1).trimmed().toUShort(), &prompt, nullptr);
    SelectPathDialog dialog(QStringLiteral("/"), &model, nullptr);
    dialog.setExt({ "txt" }, false, false);
    dialog.show();
    QListWidget& list = *dialog.findChild<QListWidget*>();
    const auto waitFor = [&](int entries) {
        while (list.count() != entries || !list.isEnabled())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    waitFor(1);
    std::vector<double> times;
    for ([[maybe_unused]] auto unused : state) {
        QElapsedTimer elapsed;
        elapsed.start();
        dialog.setDir(QStringLiteral("/many"));
        waitFor(count);
        QApplication::processEvents();
        list.viewport()->repaint();
        times.push_back(static_cast<double>(elapsed.nsecsElapsed()) * 1e-6);
        state.SetIterationTime(times.back() / 1000.0);
        dialog.setDir(QStringLiteral("/"));
        waitFor(1);
    }
    state.counters["wall_ms"] = median(times);
    server.closeWriteChannel();
    server.waitForFinished(5000);
}
BENCHMARK(listingFromTheServer)->Arg(10000)->UseManualTime()->Iterations(11)->Unit(benchmark::kMillisecond);
#endif

void statistics(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    TarnisSession* const session = newSession();
    StatDialog dialog(session, QStringLiteral("Statistics"), QString(), nullptr);
    session->wait();
    QApplication::processEvents(); // the refused connection clears the table once
    QTableWidget& table = *dialog.table();
    std::vector<double> taken;
    std::vector<double> painted;
    std::vector<double> whole;
    std::vector<double> bare;
    int round = 0;
    for ([[maybe_unused]] auto unused : state) {
        QByteArray payload = "OK:\n";
        ++round;
        for (int i = 0; i < count; ++i)
            payload += "module" + QByteArray::number(i / 10) + ".rate" + QByteArray::number(i % 10) + ": "
                + QByteArray::number(i * round) + '\n';
        const PTarnisCmd command = reply("");
        taken.push_back(millisecondsOf([&] { dialog.result(command, payload); }));
        painted.push_back(millisecondsOf([&] { QApplication::processEvents(); }));
        whole.push_back(taken.back() + painted.back());
        if (table.rowCount() != count)
            std::abort();
        bare.push_back(millisecondsOf([&] {
            for (int row = 0; row < count; ++row) {
                table.setItem(row, 0, new QTableWidgetItem(QStringLiteral("name")));
                table.setItem(row, 1, new QTableWidgetItem(QStringLiteral("value")));
            }
        }));
        QApplication::processEvents();
        state.SetIterationTime(whole.back() / 1000.0);
    }
    state.counters["take_ms"] = median(taken);
    state.counters["paint_ms"] = median(painted);
    state.counters["gui_ms"] = median(whole);
    state.counters["items_ms"] = median(bare);
}
BENCHMARK(statistics)->Arg(100)->Arg(1000)->Arg(10000)->UseManualTime()->Iterations(51)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
