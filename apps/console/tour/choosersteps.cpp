// The chooser of the server's histograms, and the log file.
#include "histograms/histogramchooser.h"
#include "mainwindow.h"
#include "tour/uidriver.h"
#include "tour/windowsteps.h"
#include "windows/openwindows.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>

namespace console {

void driveHistograms(UiDriver& driver, QWidget& window)
{
    auto& chooser = static_cast<HistogramChooser&>(window);
    driver.waitUntil(QStringLiteral("the histograms are listed"), [&] { return chooser.count() > 0; });
    driver.click(driver.find<QPushButton>(window, "buttonCheckAll"));
    driver.screenshot(window, QStringLiteral("checked"));
    auto& windows = *window.parentWidget()->findChild<OpenWindows*>();
    const int chosen = chooser.count();
    driver.click(*driver.find<QDialogButtonBox>(window, "buttonBox").button(QDialogButtonBox::Ok));
    driver.waitUntil(
        QStringLiteral("a window opens for each of them"), [&] { return windows.onScreen().size() == chosen; });
    auto& console = *qobject_cast<MainWindow*>(windows.parent());
    driver.wait(300); // the window manager adds the frames
    driver.choose(console, "tileAction");
    driver.wait(1200); // the first polls
    driver.screenshotOf(windows.onScreen(), QStringLiteral("tiled"));
    driver.choose(console, "cascadeAction");
    driver.screenshotOf(windows.onScreen(), QStringLiteral("cascaded"));
    driver.choose(console, "closeWindowsAction");
    driver.waitUntil(QStringLiteral("all of them close"), [&] { return windows.onScreen().isEmpty(); });
}

void driveLog(UiDriver& driver, QWidget& window)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("server.log")));
    auto& view = driver.find<QPlainTextEdit>(window, "view");
    auto& edit = driver.find<QLineEdit>(window, "fileEdit");
    const auto write = [&](const QByteArray& text) {
        driver.expect(file.open(QIODevice::Append) && file.write(text) == text.size(),
            QStringLiteral("a log file can be written"));
        file.close();
    };
    for (int i = 0; i < 200; ++i)
        write("12:00:00 line " + QByteArray::number(i) + '\n');
    driver.clearText(edit);
    driver.type(edit, file.fileName());
    driver.key(edit, Qt::Key_Return);
    driver.expect(view.toPlainText().contains(u"line 199"), QStringLiteral("the file is on show"));
    write("12:00:01 the newest line\n");
    driver.waitUntil(QStringLiteral("its growth is followed"), [&] { return view.toPlainText().contains(u"newest"); });
    driver.screenshot(window, QStringLiteral("followed"));
    driver.type(driver.find<QLineEdit>(window, "findEdit"), QStringLiteral("line 42"));
    driver.click(driver.find<QPushButton>(window, "nextButton"));
    driver.expect(view.textCursor().hasSelection(), QStringLiteral("text is found in it"));
    driver.screenshot(window, QStringLiteral("found"));
}

} // namespace console
