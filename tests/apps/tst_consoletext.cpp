// The window of a text on the server: opened and saved through the choosers, in the form that it had, with changes that
// nobody loses.
#include "apps/desk.h"
#include "windows/servertext.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>

using namespace console;
using namespace tarnis::testing;

namespace {

/// A server with a file.
class Archive : public ScriptedServer {
public:
    Archive()
    {
        answer("pwd", { Step::text("OK:\n/data\n") });
        answer("ls-F \"/data\"", { Step::text("OK:\nnotes.txt\nold/\n") });
        answer("rxfile \"/data/notes.txt\"", { Step::binary("one\ntwo\n", "OK: /data/notes.txt, 8 bytes\n") });
        answer("rxfile \"/none\"", { Step::binary("", "NG:cannot read '/none': No such file or directory\n") });
        answer("rxfile \"/binary\"", { Step::binary(QByteArray("a\0b", 3), "OK: /binary, 3 bytes\n") });
    }
};

struct OpenText {
    OpenText(ScriptedServer& server, Desk& desk)
    {
        desk.use(server);
        if (!desk.reaches(ServerState::Up))
            qFatal("no server");
        window = desk.open<ServerTextWindow>("server-text");
    }
    template <typename Object> Object& widget(const char* name) const { return in<Object>(*window, name); }
    template <typename Object> static Object& in(QWidget& dialog, const char* name)
    {
        auto* const object = dialog.findChild<Object*>(QLatin1String(name));
        if (!object)
            qFatal("no %s", name);
        return *object;
    }
    QPlainTextEdit& edit() const { return widget<QPlainTextEdit>("edit"); }
    QString state() const { return widget<QLabel>("stateLabel").text(); }
    QString path() const { return widget<QLabel>("pathLabel").text(); }
    bool says(const QString& text) const
    {
        return QTest::qWaitFor([&] { return state().contains(text); }, patienceMs);
    }
    void press(const char* name) const { QTest::mouseClick(&widget<QPushButton>(name), Qt::LeftButton); }
    void openNotes() const
    {
        window->openFile(QStringLiteral("/data/notes.txt"));
        if (!says(QStringLiteral("Opened")))
            qFatal("%s", qPrintable(state()));
    }
    /// The chooser in front of the window, as soon as it has listed the folder.
    QWidget* chooser() const
    {
        QWidget* found = nullptr;
        const bool isListed = QTest::qWaitFor(
            [&] {
                found = QApplication::activeModalWidget();
                auto* const list = found ? found->findChild<QListWidget*>() : nullptr;
                return list && list->isEnabled() && list->count() > 0;
            },
            patienceMs);
        return isListed ? found : nullptr;
    }
    QMessageBox* question() const { return window->findChild<QMessageBox*>(QStringLiteral("changesBox")); }
    void answer(QMessageBox::StandardButton button) const { question()->button(button)->click(); }

    QPointer<ServerTextWindow> window;
};

} // namespace

class TestConsoleText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void bytesComeBackAsTheyWere_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("plain") << QByteArray("a\nb\n") << QStringLiteral("a\nb\n");
        QTest::newRow("UTF-8") << QByteArray("\xc3\xa4\n") << QString::fromUtf8("ä\n");
        QTest::newRow("Latin-1") << QByteArray("M\xfcller\n") << QString::fromUtf8("Müller\n");
        QTest::newRow("carriage returns") << QByteArray("a\r\nb\r\n") << QStringLiteral("a\nb\n");
    }
    void bytesComeBackAsTheyWere()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        TextForm form;
        QCOMPARE(textOfFile(bytes, form).value_or(QStringLiteral("nothing")), text);
        QCOMPARE(bytesOfText(text, form).value_or("nothing"), bytes);
    }

    void whatIsNoText()
    {
        TextForm form;
        QVERIFY(!textOfFile(QByteArray("a\0b", 3), form));
        QVERIFY(!textOfFile("a\r\nb\n", form));
        QVERIFY(!textOfFile("a\rb", form));
        QVERIFY(textOfFile("M\xfcller", form));
        QVERIFY(!bytesOfText(QString::fromUtf8("\u03b1"), form)); // Latin-1 has no alpha
    }

    void aFileIsChosenAndOpened()
    {
        Archive server;
        Desk desk;
        const OpenText text(server, desk);
        text.press("openButton");
        QWidget* const chooser = text.chooser();
        QVERIFY(chooser);
        auto& list = OpenText::in<QListWidget>(*chooser, "curDirListWidget");
        const auto found = list.findItems(QStringLiteral("notes.txt"), Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        list.setCurrentItem(found.first());
        QTest::mouseClick(
            OpenText::in<QDialogButtonBox>(*chooser, "buttonBox").button(QDialogButtonBox::Ok), Qt::LeftButton);
        QVERIFY(text.says(QStringLiteral("Opened, 8 bytes")));
        QCOMPARE(text.edit().toPlainText(), "one\ntwo\n");
        QCOMPARE(text.path(), "/data/notes.txt");
        QVERIFY(!text.widget<QPushButton>("saveButton").isEnabled());
    }

    void changesAreSavedInPlace()
    {
        Archive server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nthree", { Step::text("OK:\nfile: /data/notes.txt\n") });
        Desk desk;
        const OpenText text(server, desk);
        text.openNotes();
        text.edit().moveCursor(QTextCursor::End);
        QTest::keyClicks(&text.edit(), "three");
        QVERIFY(text.window->isWindowModified());
        text.press("saveButton");
        QVERIFY(text.says(QStringLiteral("Saved")));
        QVERIFY(!text.window->isWindowModified());
    }

    void aNewNameIsChosenForSaving()
    {
        Archive server;
        server.answer("txfile \"/data/new.txt\"\nhello", { Step::text("OK:\nfile: /data/new.txt\n") });
        Desk desk;
        const OpenText text(server, desk);
        QTest::keyClicks(&text.edit(), "hello");
        text.press("saveButton"); // has no file yet
        QWidget* const chooser = text.chooser();
        QVERIFY(chooser);
        QTest::keyClicks(&OpenText::in<QLineEdit>(*chooser, "fileNameLineEdit"), "new");
        QTest::mouseClick(
            OpenText::in<QDialogButtonBox>(*chooser, "buttonBox").button(QDialogButtonBox::Ok), Qt::LeftButton);
        QVERIFY(text.says(QStringLiteral("Saved")));
        QCOMPARE(text.path(), "/data/new.txt");
    }

    void refusalsAreSaidAndChangeNothing()
    {
        Archive server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::text("NG:cannot write\n") });
        Desk desk;
        const OpenText text(server, desk);
        text.openNotes();
        text.window->openFile(QStringLiteral("/none"));
        QVERIFY(text.says(QStringLiteral("NG:cannot read '/none'")));
        text.window->openFile(QStringLiteral("/binary"));
        QVERIFY(text.says(QStringLiteral("it is no text")));
        QCOMPARE(text.path(), "/data/notes.txt");
        QCOMPARE(text.edit().toPlainText(), "one\ntwo\n");
        text.edit().moveCursor(QTextCursor::End);
        QTest::keyClicks(&text.edit(), "x");
        text.press("saveButton");
        QVERIFY(text.says(QStringLiteral("NG:cannot write")));
        QVERIFY(text.window->isWindowModified());
    }

    void aLostServerLeavesTheText()
    {
        Archive server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::drop() });
        Desk desk;
        const OpenText text(server, desk);
        text.openNotes();
        text.edit().moveCursor(QTextCursor::End);
        QTest::keyClicks(&text.edit(), "x");
        text.press("saveButton");
        QVERIFY(text.says(QStringLiteral("No reply")));
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::text("OK:\n") });
        QTRY_VERIFY(text.widget<QPushButton>("saveButton").isEnabled());
        text.press("saveButton");
        QVERIFY(text.says(QStringLiteral("Saved")));
    }

    void closingAsksAboutChanges()
    {
        Archive server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::text("OK:\n") });
        Desk desk;
        const OpenText text(server, desk);
        text.openNotes();
        text.edit().moveCursor(QTextCursor::End);
        QTest::keyClicks(&text.edit(), "x");
        QTest::keyClick(text.window, Qt::Key_Escape);
        QVERIFY(text.question());
        text.answer(QMessageBox::Cancel);
        QTRY_VERIFY(!text.question());
        QVERIFY(text.window->isVisible());
        QVERIFY(!text.window->close());
        text.answer(QMessageBox::Save);
        QTRY_VERIFY_WITH_TIMEOUT(text.window.isNull(), patienceMs);
    }

    void discardedChangesAreGone()
    {
        Archive server;
        Desk desk;
        const OpenText text(server, desk);
        QTest::keyClicks(&text.edit(), "x");
        text.window->close();
        text.answer(QMessageBox::Discard);
        QTRY_VERIFY(text.window.isNull());
    }
};

QTEST_MAIN(TestConsoleText)
#include "tst_consoletext.moc"
