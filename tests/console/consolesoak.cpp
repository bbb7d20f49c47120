// consolesoak [--seconds N] [--calm]: a long day of the console in a short time. Every window is open on the simulated
// server while faults come and go (none with --calm), the server dies and is started again, windows close and open,
// language and colours change. Prints numbers and what was wrong; exits 0 if nothing was.
//
// What is checked: each poll of a live window is answered, or the window says that it was not; no window is silent for
// longer than a session needs to notice a silence; no box stops the work; the heap is flat after the first minute; at
// the end no thread is left.
#include "app/language.h"
#include "command/commandpanel.h"
#include "console/soakload.h"
#include "console/soakwindows.h"
#include "mainwindow.h"
#include "notices/messagelist.h"
#include "server/servercontroller.h"
#include "support/wait.h"
#include "windows/openwindows.h"

#include <tarnis/foundation/log.h>
#include <tarnis/server/sessionend.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFont>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QPixmapCache>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <malloc.h>
#include <memory>
#include <unistd.h>

using namespace console;
using namespace soak;

namespace {

constexpr int faultMs = 6000; // how long a fault lasts
constexpr int calmMs = 4000; // time without a fault
constexpr int minuteMs = 60000;
constexpr int briefly = 5; // factor by which faults and pauses are shorter until each fault has occurred once
constexpr int closingMs = 3000; // until the sessions of closed windows have ended
constexpr int silenceLimitMs = 60000; // a session notices silence after 41 s and connects again after 1 s
constexpr int settleMs = 70000; // after the last fault every poll is answered or cancelled within this time
constexpr int heapJudgedFrom = 240; // seconds: a shorter run has no plateau to evaluate

class Soak {
public:
    Soak(MainWindow& window, QSettings& store, const QString& logFile)
        : m_window(window)
        , m_log(logFile)
        , m_context { window.controller(), &window, window.commandPanel(), window.windows(), store, window.histograms(),
            window.windowUpdater(), window.statusPoller() }
    {
    }

    int run(int seconds);
    void beCalm() { m_isCalm = true; }

private:
    void start();
    void openEverything();
    void openCounted();
    void fault(bool isOn);
    void work();
    void changeLook(int round);
    void everyMinute();
    void sample();
    void watch();
    bool becomeCalm(const std::function<bool()>& isSettled = {});
    void settle();
    void wrong(const QString& text);
    void closeBoxes();
    QAction& action(const char* name) { return *m_window.findChild<QAction*>(QLatin1String(name)); }
    void report(int seconds);
    void judgeHeap(const char* what, const QList<std::size_t>& minutes);

    MainWindow& m_window;
    LogWriter m_log;
    WindowContext m_context;
    FaultSwitch m_switch;
    QElapsedTimer m_clock;
    Counts m_counts[3]; ///< for curves, map and statistics, over all windows of the kind
    QStringList m_wrong;
    qsizetype m_nextFault = 0;
    int m_faultsSet = 0;
    int m_starts = 0; ///< restarts of a lost server
    int m_rounds = 0; ///< rounds of closing and opening everything
    int m_commands = 0;
    bool m_isCalm = false;
    bool m_isOpeningDue = false;
    qsizetype m_maxWindows = 0;
    QSize m_size; ///< size of the console before windows are tiled
    QList<std::size_t> m_heap; ///< minimum of each minute
    QList<std::size_t> m_closedHeap; ///< after each minute, with all windows closed
    std::size_t m_leastHeap = 0;
    std::size_t m_letters = 0; ///< part of the heap that Qt uses for glyphs during the soak
};

void Soak::wrong(const QString& text)
{
    if (m_wrong.contains(text))
        return;
    m_wrong.append(text);
    std::printf("%6.0f s  WRONG: %s\n", double(m_clock.elapsed()) / 1000.0, qPrintable(text));
    std::fflush(stdout);
}

void Soak::start()
{
    Options options;
    options.server = ServerChoice { ServerChoice::Kind::Local, QStringLiteral(SIMSERVER_PATH), {}, 0 };
    options.prompt = "> ";
    m_window.startServer(options);
    if (!tarnis::testing::eventually([&] { return m_window.controller().state() == ServerState::Up; }))
        qFatal("the server does not come up");
}

void Soak::openCounted()
{
    CurvesRequest curves;
    curves.command = QStringLiteral("hist1d time 0 7 bins:1024");
    curves.xMax = 40000.0;
    curves.last = 7;
    MapRequest map;
    map.command = QStringLiteral("hist2d image bins:16"); // small enough to be sent byte by byte
    map.bins = 16;
    OpenWindows& windows = m_window.windows();
    const auto title = [] { return QStringLiteral("soak"); };
    windows.show(
        QStringLiteral("soak curves"), [&] { return new CountedCurves(m_context, curves, m_counts[0]); }, title);
    windows.show(
        QStringLiteral("soak map"), [&] { return new CountedMap(m_context, map, m_counts[1]); }, title);
    windows.show(
        QStringLiteral("soak statistics"), [&] { return new CountedStatistics(m_context, m_counts[2]); }, title);
}

void Soak::openEverything()
{
    m_isOpeningDue = false;
    for (const WindowEntry& entry : m_window.entries())
        m_window.openWindow(entry);
    openCounted();
    m_window.windows().tile();
    m_maxWindows = std::max(m_maxWindows, m_window.windows().onScreen().size());
}

void Soak::fault(bool isOn)
{
    if (m_window.controller().state() != ServerState::Up)
        return;
    const QByteArray name = isOn ? faults().at(m_nextFault++ % faults().size()) : QByteArray("none");
    if (m_switch.set(m_window.controller().tarnis().port(), name))
        m_faultsSet += isOn ? 1 : 0;
}

/// Actions of the user: starts a lost server, sends commands, cancels what takes too long.
void Soak::work()
{
    const ServerState state = m_window.controller().state();
    if ((state == ServerState::Failed || state == ServerState::Off) && action("startAction").isEnabled()) {
        action("startAction").trigger();
        ++m_starts;
        m_isOpeningDue = true;
        return;
    }
    if (state != ServerState::Up)
        return;
    if (m_isOpeningDue) // after a start, and after everything was closed
        openEverything();
    if (m_window.commandPanel().isBusy()) {
        m_window.commandPanel().giveUp();
        return;
    }
    m_window.findChild<QLineEdit*>(QStringLiteral("commandEdit"))->setText(QStringLiteral("stat"));
    m_window.commandPanel().sendTyped();
    ++m_commands;
}

/// Alternates four looks. Qt caches glyphs and controls of each.
void Soak::changeLook(int round)
{
    setLanguage(round % 2 == 0 ? QStringLiteral("en") : QStringLiteral("de"));
    action("darkAction").setChecked(round % 4 >= 2);
}

void Soak::everyMinute()
{
    ++m_rounds;
    becomeCalm(); // the connections of the console itself count
    m_window.windows().closeAll();
    m_window.resize(m_size); // its picture is included
    action("clearRecordAction").trigger();
    QTest::qWait(closingMs);
    ::malloc_trim(0);
    m_closedHeap.append(heapInUse() - m_letters);
    m_isOpeningDue = true;
    changeLook(m_rounds);
    m_log.rotate();
    if (m_rounds % 3 == 0 && action("restartAction").isEnabled())
        action("restartAction").trigger();
}

void Soak::closeBoxes()
{
    QWidget* const box = QApplication::activeModalWidget();
    if (auto* const question = qobject_cast<QMessageBox*>(box); question && box->objectName() == u"runBox") {
        for (QAbstractButton* const button : question->buttons()) {
            if (question->buttonRole(button) == QMessageBox::AcceptRole)
                return button->click(); // the soak's own run
        }
    }
    if (box) {
        wrong(QStringLiteral("a box stood in the way: %1").arg(box->property("text").toString().left(100)));
        box->close();
    }
}

void Soak::watch()
{
    for (const Counts& counts : m_counts) {
        if (counts.longestSilenceMs() > silenceLimitMs)
            wrong(QStringLiteral("a window was silent for more than %1 s").arg(silenceLimitMs / 1000));
    }
}

void Soak::sample()
{
    ::malloc_trim(0);
    const std::size_t heap = heapInUse() - m_letters;
    m_leastHeap = m_leastHeap == 0 ? heap : std::min(m_leastHeap, heap);
    const auto minute = qsizetype(m_clock.elapsed() / minuteMs);
    if (minute < m_heap.size() + 1)
        return;
    m_heap.append(m_leastHeap);
    std::printf("%6.0f s  heap %.2f MiB, with all windows closed %.2f MiB, %lld threads, %d faults, %d starts\n",
        double(m_clock.elapsed()) / 1000.0, megabytes(m_leastHeap),
        megabytes(m_closedHeap.isEmpty() ? 0 : m_closedHeap.constLast()), static_cast<long long>(threadNames().size()),
        m_faultsSet, m_starts);
    std::fflush(stdout);
    m_leastHeap = 0;
}

/// Without faults: the server comes up again.
bool Soak::becomeCalm(const std::function<bool()>& isSettled)
{
    const auto isCalm = [&] {
        work();
        fault(false);
        return m_window.controller().state() == ServerState::Up && (!isSettled || isSettled());
    };
    return QTest::qWaitFor(isCalm, settleMs);
}

/// Without faults: everything recovers, and each poll is answered or cancelled.
void Soak::settle()
{
    for (Counts& counts : m_counts)
        counts.expectFresh();
    const auto isSettled = [this] {
        return std::all_of(
            std::begin(m_counts), std::end(m_counts), [](const Counts& counts) { return counts.isFresh(); });
    };
    if (!becomeCalm(isSettled))
        wrong(QStringLiteral("not every window is live again %1 s after the last fault").arg(settleMs / 1000));
}

int Soak::run(int seconds)
{
    const qsizetype threadsBefore = threadNames().size();
    m_size = m_window.size();
    m_clock.start();
    QTimer boxes; // they block everything else
    QObject::connect(&boxes, &QTimer::timeout, &boxes, [this] { closeBoxes(); });
    boxes.start(200);
    start();
    openEverything();
    for (int look = 0; look < 4; ++look) {
        changeLook(look);
        QTest::qWait(closingMs);
    }
    changeLook(0);
    const std::size_t before = heapInUse();
    const QList<QFont> fonts = loadLetters(fontsInUse());
    m_letters = heapInUse() - before;
    qint64 lastFault = 0;
    qint64 lastMinute = 0;
    qint64 lastWork = 0;
    bool isFaulty = false;
    while (m_clock.elapsed() < seconds * 1000LL) {
        QTest::qWait(50);
        const qint64 now = m_clock.elapsed();
        const int part = m_nextFault < faults().size() ? briefly : 1; // makes Qt allocate its caches for faults early
        if (!m_isCalm && now - lastFault > (isFaulty ? faultMs : calmMs) / part) {
            isFaulty = !isFaulty;
            fault(isFaulty);
            lastFault = now;
        }
        if (now - lastWork > 1000) {
            m_log.write(100);
            work();
            sample();
            lastWork = now;
        }
        if (now - lastMinute > minuteMs) {
            everyMinute();
            lastMinute = now;
        }
        watch();
    }
    settle();
    report(seconds);

    m_window.windows().closeAll();
    m_window.close();
    if (!tarnis::testing::eventually([&] { return !m_window.isVisible(); }))
        wrong(QStringLiteral("the console does not close"));
    if (!tarnis::testing::eventually([&] { return threadNames().size() <= threadsBefore; }))
        wrong(QStringLiteral("threads are left: %1").arg(threadNames().join(u' ')));
    std::printf("threads         %lld before, %lld after\n", static_cast<long long>(threadsBefore),
        static_cast<long long>(threadNames().size()));
    std::printf("%s\n", m_wrong.isEmpty() ? "all is well" : qPrintable(m_wrong.join(u'\n')));
    return m_wrong.isEmpty() ? 0 : 1;
}

void Soak::report(int seconds)
{
    static const char* const kinds[] = { "curves", "map", "statistics" };
    std::printf("time            %d s\n", seconds);
    std::printf(
        "windows         %lld at a time, closed and opened %d times\n", static_cast<long long>(m_maxWindows), m_rounds);
    std::printf("faults          %d set, server started again %d times\n", m_faultsSet, m_starts);
    std::printf("commands typed  %d\n", m_commands);
    for (int i = 0; i < 3; ++i) {
        const Counts& counts = m_counts[i];
        std::printf("%-15s %d polls: %d answered, %d shown as failed, %d closed with the window; longest wait %.1f s\n",
            kinds[i], counts.asked, counts.answered, counts.failed, counts.closed,
            double(counts.longestSilenceMs()) / 1000.0);
        if (counts.unaccounted() != 0)
            wrong(QStringLiteral("%1: %2 polls neither answered nor shown as failed")
                      .arg(QLatin1String(kinds[i]))
                      .arg(counts.unaccounted()));
        if (counts.answered == 0)
            wrong(QStringLiteral("%1: no poll was answered").arg(QLatin1String(kinds[i])));
    }
    if (seconds < heapJudgedFrom)
        return;
    judgeHeap("heap", m_heap);
    judgeHeap("heap, closed", m_closedHeap);
}

/// The first minute fills caches; after that the memory must not grow.
void Soak::judgeHeap(const char* what, const QList<std::size_t>& minutes)
{
    const std::size_t plateau = std::max(minutes.at(0), minutes.at(1));
    const std::size_t end = minutes.constLast();
    std::printf("%-15s %.2f MiB after 1 minute, at most %.2f MiB after 1 or 2, %.2f MiB at the end\n", what,
        megabytes(minutes.constFirst()), megabytes(plateau), megabytes(end));
    if (end > plateau + plateau / 20)
        wrong(QStringLiteral("the heap grows"));
}

/// Drops warnings about missing features of the offscreen platform.
void printMessage(QtMsgType, const QMessageLogContext&, const QString& text)
{
    if (!text.startsWith(u"This plugin does not support") && !text.contains(u"OpenType support missing"))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

int main(int argc, char** argv)
{
    int seconds = 600;
    bool isCalm = false;
    for (int i = 1; i < argc; ++i)
        isCalm = isCalm || qstrcmp(argv[i], "--calm") == 0;
    for (int i = 1; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], "--seconds") == 0)
            seconds = qMax(1, QByteArray(argv[i + 1]).toInt());
    }
    // The C library's caches per thread would count as allocated.
    if (!qEnvironmentVariableIsSet("GLIBC_TUNABLES")) {
        qputenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0");
        ::execv("/proc/self/exe", argv);
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TARNIS_SIMSERVER_OPTIONS", "--start --rate 20000");
    QLoggingCategory::setFilterRules(QStringLiteral("tarnis.*.debug=false\nqt.qpa.*=false"));
    qInstallMessageHandler(printMessage);
    const QTemporaryDir scratch;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // Disables Qt's cache of painted controls (up to 10 MiB), which colours and languages fill over a quarter of an
    // hour.
    QPixmapCache::setCacheLimit(0);
    initlog(scratch.filePath(QStringLiteral("console.log")).toStdString(), 0);
    QSettings store(scratch.filePath(QStringLiteral("console.ini")), QSettings::IniFormat);
    const QString logFile = scratch.filePath(QStringLiteral("server.log"));
    store.setValue(QStringLiteral("log/file"), logFile);
    int status = 1;
    {
        MainWindow window(store);
        // The console keeps the last 2000 messages, which faults fill over a day.
        window.findChild<MessageList*>()->setMaximumBlockCount(20);
        window.show();
        Soak soak(window, store, logFile);
        if (isCalm)
            soak.beCalm();
        status = soak.run(seconds);
    }
    tarnis::waitForEndingSessions();
    closelog();
    return status;
}
