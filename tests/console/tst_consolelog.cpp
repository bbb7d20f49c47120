// The log viewer with a file that grows, is truncated, replaced, huge or missing.
#include "app/language.h"
#include "log/logtail.h"
#include "log/logwindow.h"
#include "support/children.h"
#include "support/wait.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace console;

namespace {

/// A log file that another program writes.
class LogFileWriter {
public:
    QString path() const { return m_directory.filePath(QStringLiteral("server.log")); }
    void append(const QByteArray& bytes) { put(bytes, QIODevice::Append); }
    void rewrite(const QByteArray& bytes) { put(bytes, QIODevice::Truncate); }
    void rename() { QVERIFY(QFile::rename(path(), path() + QStringLiteral(".1"))); }
    void appendToRenamed(const QByteArray& bytes)
    {
        QFile file(path() + QStringLiteral(".1"));
        QVERIFY(file.open(QIODevice::Append));
        file.write(bytes);
    }
    void remove() { QVERIFY(QFile::remove(path())); }
    QSettings& store() { return m_store; }

private:
    void put(const QByteArray& bytes, QIODevice::OpenMode mode)
    {
        QFile file(path());
        QVERIFY(file.open(mode | QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }

    QTemporaryDir m_directory;
    QSettings m_store { m_directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat };
};

/// One call as text: text unchanged, events in angle brackets.
QString polled(LogTail& tail)
{
    QString all;
    for (const LogChange& change : tail.poll()) {
        switch (change.kind) {
        case LogChange::Kind::Text:
            all += change.text;
            break;
        case LogChange::Kind::Skipped:
            all += QStringLiteral("<skipped %1>").arg(change.bytes);
            break;
        case LogChange::Kind::Emptied:
            all += QStringLiteral("<emptied>");
            break;
        case LogChange::Kind::Replaced:
            all += QStringLiteral("<replaced>");
            break;
        case LogChange::Kind::Missing:
            all += QStringLiteral("<missing>");
            break;
        }
    }
    return all;
}

/// The window and the actions of its user.
class LogWindowDriver {
public:
    explicit LogWindowDriver(LogFileWriter& writer)
        : window(writer.store(), nullptr)
    {
        window.resize(600, 300);
        window.show();
    }
    template <typename Object> Object& widget(const char* name) { return tarnis::testing::child<Object>(window, name); }
    QPlainTextEdit& view() { return widget<QPlainTextEdit>("view"); }
    QScrollBar& bar() { return *view().verticalScrollBar(); }
    QString text() { return view().toPlainText(); }
    QString state() { return widget<QLabel>("stateLabel").text(); }
    bool isAtEnd() { return bar().value() == bar().maximum(); }
    void press(const char* name) { QTest::mouseClick(&widget<QAbstractButton>(name), Qt::LeftButton, {}, { 8, 8 }); }
    void openByName(const QString& path)
    {
        auto& edit = widget<QLineEdit>("fileEdit");
        edit.clear();
        QTest::keyClicks(&edit, path);
        QTest::keyClick(&edit, Qt::Key_Return);
    }

    LogWindow window;
};

QByteArray lines(int first, int count)
{
    QByteArray text;
    for (int i = first; i < first + count; ++i)
        text += "line " + QByteArray::number(i) + '\n';
    return text;
}

} // namespace

class TestConsoleLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(setLanguage(QStringLiteral("en"))); }

    // The file.

    void growthComesAsItIsWritten()
    {
        LogFileWriter writer;
        writer.append("one\n");
        LogTail tail(writer.path());
        QCOMPARE(polled(tail), "one\n");
        QCOMPARE(polled(tail), "");
        writer.append("two\nthr");
        QCOMPARE(tail.pending(), 7);
        QCOMPARE(polled(tail), "two\nthr");
        writer.append("ee\n");
        QCOMPARE(polled(tail), "ee\n");
        QCOMPARE(tail.pending(), 0);
    }

    void aCharacterMayComeInTwoParts()
    {
        LogFileWriter writer;
        writer.append("\xc3");
        LogTail tail(writer.path());
        QCOMPARE(polled(tail), "");
        writer.append("\xa4\n");
        QCOMPARE(polled(tail), QString::fromUtf8("ä\n"));
        writer.append("\xff\n");
        QCOMPARE(polled(tail), QString(QChar::ReplacementCharacter) + u'\n');
    }

    void reportsAMissingFileOnce()
    {
        LogFileWriter writer;
        LogTail tail(writer.path());
        QCOMPARE(polled(tail), "<missing>");
        QCOMPARE(polled(tail), "");
        QVERIFY(!tail.isGone());
        writer.append("here\n");
        QCOMPARE(polled(tail), "here\n");
    }

    void aFolderIsNoLog()
    {
        LogTail tail(QDir::tempPath());
        QCOMPARE(polled(tail), "<missing>");
    }

    void restartsAfterTheFileWasTruncated_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("shown");
        QTest::newRow("emptied") << QByteArray() << QStringLiteral("<emptied>");
        QTest::newRow("shorter") << QByteArray("new\n") << QStringLiteral("<emptied>new\n");
        QTest::newRow("longer than before") << QByteArray("something else that is longer\n")
                                            << QStringLiteral("<emptied>something else that is longer\n");
    }
    void restartsAfterTheFileWasTruncated()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, shown);
        LogFileWriter writer;
        writer.append("old lines\n");
        LogTail tail(writer.path());
        tail.poll();
        writer.rewrite(content);
        QCOMPARE(polled(tail), shown);
        writer.append("after\n");
        QCOMPARE(polled(tail), "after\n");
    }

    void theEndOfARotatedFileIsNotLost()
    {
        LogFileWriter writer;
        writer.append("old\n");
        LogTail tail(writer.path());
        QCOMPARE(polled(tail), "old\n");
        writer.rename();
        QVERIFY(tail.isGone());
        writer.appendToRenamed("its end\n");
        QCOMPARE(polled(tail), "its end\n");
        writer.appendToRenamed("its very end\n");
        writer.append("new\n");
        QCOMPARE(polled(tail), "its very end\n<replaced>new\n");
        QVERIFY(!tail.isGone());
        writer.append("more\n");
        QCOMPARE(polled(tail), "more\n");
    }

    void anUnreadableSuccessorIsWaitedFor()
    {
        LogFileWriter writer;
        writer.append("old\n");
        LogTail tail(writer.path());
        QCOMPARE(polled(tail), "old\n");
        writer.remove();
        QVERIFY(QDir().mkdir(writer.path()));
        QCOMPARE(polled(tail), "<missing>");
        QVERIFY(QDir().rmdir(writer.path()));
        writer.append("new\n");
        QCOMPARE(polled(tail), "new\n");
    }

    void aHugeFileIsReadFromNearItsEnd()
    {
        LogFileWriter writer;
        QFile file(writer.path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(qint64 { 40 } * 1024 * 1024 * 1024)); // sparse
        QVERIFY(file.seek(file.size()));
        const QByteArray end = '\n' + lines(0, 200000);
        QCOMPARE(file.write(end), end.size());
        file.close();
        LogTail tail(writer.path());
        const QList<LogChange> changes = tail.poll();
        QCOMPARE(changes.size(), 2);
        QCOMPARE(changes.at(0).kind, LogChange::Kind::Skipped);
        QVERIFY(changes.at(1).text.size() <= LogTail::windowBytes);
        QVERIFY(changes.at(1).text.startsWith(u"line ")); // a whole line
        QVERIFY(changes.at(1).text.endsWith(u"line 199999\n"));
        QCOMPARE(changes.at(0).bytes + changes.at(1).text.size(), QFile(writer.path()).size());
    }

    void longLinesAreBroken()
    {
        LogFileWriter writer;
        writer.append(QByteArray(10000, 'x') + "\nshort\n");
        LogTail tail(writer.path());
        const QStringList shown = polled(tail).split(u'\n');
        QCOMPARE(shown.size(), 5);
        QCOMPARE(shown.at(0).size(), LogTail::lineLimit);
        QCOMPARE(shown.at(0).size() + shown.at(1).size() + shown.at(2).size(), 10000);
        QCOMPARE(shown.at(3), "short");
    }

    // The window.

    void theFileIsTypedAndFollowed()
    {
        LogFileWriter writer;
        writer.append(lines(0, 300));
        LogWindowDriver viewer(writer);
        QVERIFY(viewer.state().startsWith(u"Choose a log file"));
        viewer.openByName(writer.path());
        QVERIFY(viewer.text().endsWith(u"line 299\n"));
        QVERIFY(viewer.isAtEnd());
        writer.append(lines(300, 100));
        TRY_VERIFY(viewer.text().endsWith(u"line 399\n"));
        QVERIFY(viewer.isAtEnd());
        QCOMPARE(viewer.state(), "Following the file.");
        viewer.window.resize(600, 500);
        TRY_VERIFY(viewer.isAtEnd());
        QVERIFY(viewer.window.isFollowing());
    }

    void storesTheFile()
    {
        LogFileWriter writer;
        writer.append("here\n");
        writer.store().setValue(QStringLiteral("log/file"), writer.path());
        LogWindowDriver viewer(writer);
        QCOMPARE(viewer.text(), "here\n");
    }

    void scrollingUpPausesAndScrollingDownResumes()
    {
        LogFileWriter writer;
        writer.append(lines(0, 300));
        LogWindowDriver viewer(writer);
        viewer.openByName(writer.path());
        QTest::keyClick(&viewer.view(), Qt::Key_PageUp);
        TRY_VERIFY(!viewer.window.isFollowing());
        const int place = viewer.bar().value();
        writer.append(lines(300, 10));
        TRY_VERIFY(viewer.state().contains(QStringLiteral("90 bytes more")));
        QVERIFY(!viewer.text().contains(QStringLiteral("line 300")));
        QCOMPARE(viewer.bar().value(), place);
        viewer.bar().triggerAction(QAbstractSlider::SliderToMaximum);
        QVERIFY(viewer.window.isFollowing());
        TRY_VERIFY(viewer.text().endsWith(u"line 309\n"));
        QVERIFY(viewer.isAtEnd());
        viewer.bar().triggerAction(QAbstractSlider::SliderSingleStepSub); // with the mouse on the bar
        QVERIFY(!viewer.window.isFollowing());
        QTest::keyClick(&viewer.view(), Qt::Key_End, Qt::ControlModifier);
        TRY_VERIFY(viewer.window.isFollowing());
    }

    void theCheckBoxPausesToo()
    {
        LogFileWriter writer;
        writer.append("one\n");
        LogWindowDriver viewer(writer);
        viewer.openByName(writer.path());
        viewer.press("followCheck");
        QVERIFY(!viewer.window.isFollowing());
        QCOMPARE(viewer.state(), "Paused; nothing new in the file.");
        writer.append("two\n");
        writer.rename();
        writer.append("three\n");
        viewer.press("followCheck");
        QCOMPARE(viewer.text(), "one\ntwo\n(the file was replaced by another one)\nthree\n");
    }

    void theOldestLinesGo()
    {
        LogFileWriter writer;
        writer.append(lines(0, 10));
        LogWindowDriver viewer(writer);
        viewer.openByName(writer.path());
        writer.append(lines(10, LogWindow::maxLines));
        TRY_VERIFY(viewer.text().endsWith(QStringLiteral("line %1\n").arg(LogWindow::maxLines + 9)));
        QCOMPARE(viewer.view().blockCount(), LogWindow::maxLines);
        QVERIFY(viewer.isAtEnd());
    }

    void reportsAMissingFileAndShowsItLater()
    {
        LogFileWriter writer;
        LogWindowDriver viewer(writer);
        viewer.openByName(writer.path());
        QVERIFY(viewer.state().contains(QStringLiteral("cannot be read")));
        writer.append("there\n");
        TRY_COMPARE(viewer.text(), "there\n");
        TRY_COMPARE(viewer.state(), "Following the file.");
        writer.remove();
        TRY_VERIFY(viewer.state().startsWith(u"The file was removed"));
    }

    void textIsFoundUpAndDown()
    {
        LogFileWriter writer;
        writer.append("alpha\nbeta\ngamma\nbeta\n");
        LogWindowDriver viewer(writer);
        viewer.openByName(writer.path());
        QVERIFY(!viewer.widget<QPushButton>("nextButton").isEnabled());
        QTest::keyClicks(&viewer.widget<QLineEdit>("findEdit"), "beta");
        const auto line = [&] { return viewer.view().textCursor().blockNumber(); };
        viewer.press("nextButton");
        QCOMPARE(line(), 1);
        QVERIFY(!viewer.window.isFollowing());
        viewer.press("nextButton");
        QCOMPARE(line(), 3);
        viewer.press("nextButton");
        QCOMPARE(line(), 1);
        viewer.press("previousButton");
        QCOMPARE(line(), 3);
        QTest::keyClicks(&viewer.widget<QLineEdit>("findEdit"), "x");
        QTest::keyClick(&viewer.widget<QLineEdit>("findEdit"), Qt::Key_Return);
        QVERIFY(viewer.state().contains(QStringLiteral("was not found in the shown lines")));
        QCOMPARE(line(), 3);
    }
};

QTEST_MAIN(TestConsoleLog)
#include "tst_consolelog.moc"
