#include "tour/tour.h"

#include "mainwindow.h"
#include "server/servercontroller.h"
#include "tour/windowsteps.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>

#include <algorithm>
#include <iterator>

namespace console {

namespace {

/// The step of one window of the menu: open, drive, close.
TourStep windowStep(const WindowEntry& entry)
{
    return { entry.id, [&entry](UiDriver& driver, MainWindow& window) {
                const QString refusal = window.refusal(entry);
                if (!entry.histogram.isEmpty() && !refusal.isEmpty()) {
                    driver.expect(!window.openWindow(entry), QStringLiteral("what is refused does not open"));
                    driver.remark(refusal);
                    return;
                }
                const QPointer<QWidget> opened = window.openWindow(entry);
                driver.expect(opened != nullptr && opened->isVisible(), QStringLiteral("the window opens"));
                driver.expect(
                    window.openWindow(entry) == opened, QStringLiteral("a second request shows the same window"));
                try {
                    const WindowScript script = windowScripts().value(entry.id);
                    driver.expect(bool(script), QStringLiteral("the tour knows what to do with the window"));
                    script(driver, *opened);
                } catch (const TourFailure&) {
                    // The following steps need unobstructed windows.
                    if (opened)
                        driver.close(*opened);
                    throw;
                }
                if (opened)
                    driver.close(*opened);
                driver.waitUntil(QStringLiteral("the window is gone"), [&] { return opened.isNull(); });
            } };
}

/// The files of a previous tour according to its report, and the report itself. Empty if there is no such report.
QStringList filesOf(const QString& report)
{
    static const QRegularExpression step(QStringLiteral("^(?:ok    |FAIL  )\\S+  [\\d.]+ s  (.*)$"));
    static const QRegularExpression name(QStringLiteral("^\\d\\d-[\\w.-]+$"));
    QFile file(report);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QStringList files;
    while (!file.atEnd()) {
        const QRegularExpressionMatch match = step.match(QString::fromUtf8(file.readLine()));
        if (files.isEmpty() && !match.hasMatch())
            return {};
        if (files.isEmpty())
            files.append(QFileInfo(report).fileName());
        const QStringList names = match.captured(1).trimmed().split(u' ');
        std::copy_if(names.cbegin(), names.cend(), std::back_inserter(files),
            [](const QString& text) { return name.match(text).hasMatch(); });
    }
    return files;
}

/// Closes unexpected boxes, which would block all further steps. Returns their texts for the report.
QString closeStrayBoxes()
{
    QString text;
    while (QWidget* box = QApplication::activeModalWidget()) {
        text += QStringLiteral(" [left open: %1]").arg(box->windowTitle());
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->close();
        if (QApplication::activeModalWidget() == box)
            break;
    }
    return text;
}

} // namespace

Tour::Tour(MainWindow& window, const QString& directory)
    : m_window(window)
    , m_directory(directory)
{
    if (!m_directory.mkpath(QStringLiteral("."))) {
        m_problem = QStringLiteral("it cannot be made");
        return;
    }
    const QString report = m_directory.filePath(QStringLiteral("report.txt"));
    const QStringList earlier = filesOf(report);
    QStringList others = m_directory.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (QFileInfo(report).size() == 0)
        others.removeAll(QFileInfo(report).fileName()); // left by a tour that ended before its first step
    if (earlier.isEmpty() && !others.isEmpty()) {
        m_problem = QStringLiteral("it holds other files and no report of a tour; choose an empty folder");
        return;
    }
    for (const QString& file : earlier)
        m_directory.remove(file);
    QFile file(report);
    if (!file.open(QIODevice::WriteOnly))
        m_problem = QStringLiteral("it cannot be written to");
}

bool Tour::runStep(const TourStep& step, int number, QTextStream& report)
{
    UiDriver driver(
        m_directory, QStringLiteral("%1-%2").arg(number, 2, 10, QLatin1Char('0')).arg(step.name), m_isInterrupted);
    QElapsedTimer elapsed;
    elapsed.start();
    QString failure;
    try {
        step.act(driver, m_window);
    } catch (const TourFailure& caught) {
        failure = caught.text();
    }
    failure += closeStrayBoxes();
    report << (failure.isEmpty() ? "ok    " : "FAIL  ") << step.name << "  "
           << QString::number(double(elapsed.elapsed()) / 1000.0, 'f', 1) << " s  " << driver.files().join(u' ');
    for (const QString& remark : driver.remarks())
        report << "\n      " << remark;
    if (!failure.isEmpty()) {
        report << "\n      " << failure;
        m_failures.append(QStringLiteral("%1: %2").arg(step.name, failure));
    }
    report << Qt::endl;
    return failure.isEmpty();
}

QString Tour::summary() const
{
    return QStringLiteral("the tour failed\n%1\nThe report is %2.")
        .arg(m_failures.join(u'\n'), m_directory.filePath(QStringLiteral("report.txt")));
}

void Tour::leaveServer()
{
    constexpr int limitMs = 5000;
    ServerController& controller = m_window.controller();
    controller.stop();
    QEventLoop loop;
    QObject::connect(&controller, &ServerController::stateChanged, &loop, [&] {
        if (controller.state() == ServerState::Off)
            loop.quit();
    });
    QTimer::singleShot(limitMs, &loop, &QEventLoop::quit); // after that the server is killed
    if (controller.state() != ServerState::Off)
        loop.exec();
}

int Tour::run()
{
    QFile file(m_directory.filePath(QStringLiteral("report.txt")));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return 1;
    QTextStream report(&file);
    QList<TourStep> steps = openingSteps();
    for (const WindowEntry& entry : m_window.entries())
        steps.append(windowStep(entry));
    steps.append(closingSteps());

    int failed = 0;
    int number = 0;
    for (const TourStep& step : std::as_const(steps)) {
        if (runStep(step, ++number, report))
            continue;
        ++failed;
        if (step.isNeeded || m_isInterrupted)
            break;
    }
    if (number < steps.size())
        report << QStringLiteral("%1 steps were not tried.").arg(steps.size() - number) << Qt::endl;
    report << (failed == 0 ? QStringLiteral("The tour went well: %1 steps.").arg(steps.size())
                           : QStringLiteral("%1 of %2 steps failed.").arg(failed).arg(steps.size()))
           << Qt::endl;
    leaveServer();
    report.flush();
    const bool isReported = report.status() == QTextStream::Ok && file.flush(); // a full disk is detected by the flush
    return failed == 0 && isReported ? 0 : 1;
}

} // namespace console
