// The editor of a text on the server: opened and saved through the choosers, in its original encoding, without losing
// changes.
#include "browse/servertext.h"
#include "console/consolefixture.h"
#include "support/wait.h"

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
class TextFileServer : public ScriptedServer {
public:
    TextFileServer()
    {
        answer("pwd", { Step::text("OK:\n/data\n") });
        answer("ls-F \"/data\"", { Step::text("OK:\nnotes.txt\nold/\n") });
        answer("rxfile \"/data/notes.txt\"", { Step::binary("one\ntwo\n", "OK: /data/notes.txt, 8 bytes\n") });
        answer("rxfile \"/none\"", { Step::binary("", "NG:cannot read '/none': No such file or directory\n") });
        answer("rxfile \"/binary\"", { Step::binary(QByteArray("a\0b", 3), "OK: /binary, 3 bytes\n") });
    }
};

struct TextWindowDriver {
    explicit TextWindowDriver(ConsoleFixture& fixture)
        : window(&fixture.opened<ServerTextWindow>("server-text"))
    {
    }
    template <typename Object> Object& widget(const char* name) const { return child<Object>(*window, name); }
    QPlainTextEdit& edit() const { return widget<QPlainTextEdit>("edit"); }
    QString state() const { return widget<QLabel>("stateLabel").text(); }
    QString path() const { return widget<QLabel>("pathLabel").text(); }
    bool shows(const QString& text) const
    {
        return eventually([&] { return state().contains(text); });
    }
    void press(const char* name) const { tarnis::testing::press(widget<QPushButton>(name)); }
    void openNotes() const
    {
        window->openFile(QStringLiteral("/data/notes.txt"));
        if (!shows(QStringLiteral("Opened")))
            qFatal("%s", qPrintable(state()));
    }
    void append(const QString& typed) const
    {
        edit().moveCursor(QTextCursor::End);
        QTest::keyClicks(&edit(), typed);
    }
    QDialog* shownChooser() const
    {
        for (QDialog* const dialog : window->findChildren<QDialog*>()) {
            if (dialog->isVisible() && dialog->findChild<QListWidget*>())
                return dialog;
        }
        return nullptr;
    }
    /// The chooser in front of the window, as soon as it has listed the folder and shows its state: names and state
    /// arrive in two events.
    QDialog* chooser() const
    {
        const auto isListed = [&] {
            QDialog* const dialog = shownChooser();
            auto* const list = dialog ? dialog->findChild<QListWidget*>() : nullptr;
            return list && list->isEnabled() && list->count() > 0
                && stateOf(*dialog) != QStringLiteral("The server lists no folder");
        };
        return eventually(isListed) ? shownChooser() : nullptr;
    }
    static QPushButton& ok(QWidget& dialog)
    {
        return *child<QDialogButtonBox>(dialog, "buttonBox").button(QDialogButtonBox::Ok);
    }
    static QString stateOf(QWidget& dialog) { return child<QLabel>(dialog, "stateLabel").text(); }
    static bool shows(QWidget& dialog, const QString& part)
    {
        return eventually([&] { return stateOf(dialog).contains(part); });
    }
    static void choose(QWidget& dialog, const QString& name)
    {
        auto& list = child<QListWidget>(dialog, "curDirListWidget");
        const auto found = list.findItems(name, Qt::MatchExactly);
        if (found.size() != 1)
            qFatal("no %s", qPrintable(name));
        list.setCurrentItem(found.first());
    }
    /// Chooses notes.txt in the chooser that opens a file.
    bool choosesNotes() const
    {
        press("openButton");
        QDialog* const dialog = chooser();
        if (!dialog)
            return false;
        choose(*dialog, QStringLiteral("notes.txt"));
        acceptChoice(*dialog);
        return true;
    }
    QMessageBox* question() const { return window->findChild<QMessageBox*>(QStringLiteral("changesBox")); }
    void answer(QMessageBox::StandardButton button) const { tarnis::testing::answer(*window, "changesBox", button); }

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

    void refusesContentThatIsNotPlainText()
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
        TextFileServer server;
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        QVERIFY(text.choosesNotes());
        QVERIFY(text.shows(QStringLiteral("Opened, 8 bytes")));
        QCOMPARE(text.edit().toPlainText(), "one\ntwo\n");
        QCOMPARE(text.path(), "/data/notes.txt");
        QVERIFY(!text.widget<QPushButton>("saveButton").isEnabled());
    }

    void changesAreSavedInPlace()
    {
        TextFileServer server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nthree", { Step::text("OK:\nfile: /data/notes.txt\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.openNotes();
        text.append(QStringLiteral("three"));
        QVERIFY(text.window->isWindowModified());
        text.press("saveButton");
        QVERIFY(text.shows(QStringLiteral("Saved")));
        QVERIFY(!text.window->isWindowModified());
    }

    void aNewNameIsChosenForSaving()
    {
        TextFileServer server;
        server.answer("txfile \"/data/new.md\"\nhello", { Step::text("OK:\nfile: /data/new.md\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        QTest::keyClicks(&text.edit(), "hello");
        text.press("saveButton"); // has no file yet
        QDialog* const chooser = text.chooser();
        QVERIFY(chooser);
        QVERIFY(!TextWindowDriver::ok(*chooser).isEnabled());
        QCOMPARE(TextWindowDriver::stateOf(*chooser), "Type a name, or choose a file");
        QCOMPARE(TextWindowDriver::ok(*chooser).toolTip(), "Type a name, or choose a file");
        QTest::keyClicks(&child<QLineEdit>(*chooser, "fileNameLineEdit"), "new.md");
        QCOMPARE(TextWindowDriver::stateOf(*chooser), "OK selects /data/new.md");
        acceptChoice(*chooser);
        QVERIFY(text.shows(QStringLiteral("Saved")));
        QCOMPARE(text.path(), "/data/new.md"); // as it was typed
    }

    void thePresentNameIsThere()
    {
        TextFileServer server;
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.openNotes();
        text.press("saveAsButton");
        QDialog* const chooser = text.chooser();
        QVERIFY(chooser);
        auto& name = child<QLineEdit>(*chooser, "fileNameLineEdit");
        QCOMPARE(name.text(), "notes.txt");
        QCOMPARE(name.selectedText(), "notes");
        const auto& list = child<QListWidget>(*chooser, "curDirListWidget");
        TRY_COMPARE(list.count(), 2);
        QCOMPARE(list.item(0)->text(), "notes.txt");
        TRY_VERIFY(TextWindowDriver::ok(*chooser).isEnabled());
        name.setText(QStringLiteral("a/b"));
        QVERIFY(!TextWindowDriver::ok(*chooser).isEnabled());
        QVERIFY(TextWindowDriver::stateOf(*chooser).contains(QStringLiteral("slash")));
    }

    void aChooserShowsWhatIsMissing()
    {
        TextFileServer server;
        server.answer(
            "ls-F \"/data/old\"", { Step::hold("old"), Step::text("NG:cannot list '/data/old': No permission\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.press("openButton");
        QDialog* const chooser = text.chooser();
        QVERIFY(chooser);
        QVERIFY(TextWindowDriver::shows(*chooser, QStringLiteral("Choose a file")));
        QVERIFY(!TextWindowDriver::ok(*chooser).isEnabled());
        TextWindowDriver::choose(*chooser, QStringLiteral("old/"));
        QCOMPARE(TextWindowDriver::stateOf(*chooser), "Choose a file; Enter opens the folder");
        QTest::keyClick(&child<QListWidget>(*chooser, "curDirListWidget"), Qt::Key_Return);
        QCOMPARE(TextWindowDriver::stateOf(*chooser), "Listing...");
        QVERIFY(!TextWindowDriver::ok(*chooser).isEnabled());
        server.release("old");
        // The chooser returns to the server's own folder; the reason remains shown.
        QVERIFY(TextWindowDriver::shows(*chooser, QStringLiteral("No permission\nChoose a file")));
        TextWindowDriver::choose(*chooser, QStringLiteral("notes.txt"));
        TRY_VERIFY(TextWindowDriver::ok(*chooser).isEnabled());
        server.answer("ls-F \"/\"", { Step::text("OK:\ndata/\n") });
        child<QComboBox>(*chooser, "dirComboBox").setCurrentIndex(0);
        TRY_COMPARE(TextWindowDriver::stateOf(*chooser), "Choose a file");
    }

    void keepsATypedNameWhenTheServerIsLost()
    {
        TextFileServer server;
        server.answer("txfile \"/data/x\"\nhello", { Step::text("OK:\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        QTest::keyClicks(&text.edit(), "hello");
        text.press("saveButton");
        QPointer<QDialog> chooser = text.chooser();
        QVERIFY(chooser);
        QTest::keyClicks(&child<QLineEdit>(*chooser, "fileNameLineEdit"), "x");
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QVERIFY(chooser && chooser->isVisible());
        QVERIFY(!TextWindowDriver::ok(*chooser).isEnabled());
        QVERIFY(TextWindowDriver::stateOf(*chooser).contains(QStringLiteral("no connection")));
        QVERIFY(!QApplication::activeModalWidget()); // otherwise the server could not be started
        fixture.choose("startAction");
        QVERIFY(fixture.reaches(ServerState::Up));
        TRY_VERIFY(TextWindowDriver::ok(*chooser).isEnabled());
        acceptChoice(*chooser);
        QVERIFY(text.shows(QStringLiteral("Saved")));
        QCOMPARE(text.path(), "/data/x");
    }

    void reportsThatSavingNeedsAServer()
    {
        TextFileServer server;
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        QTest::keyClicks(&text.edit(), "hello");
        text.window->close();
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        text.answer(QMessageBox::Save);
        QVERIFY(text.shows(QStringLiteral("Needs a connected server")));
        QVERIFY(!text.shownChooser());
        QVERIFY(text.window->isVisible());
    }

    void changesGoOnlyWhenTheOtherFileIsThere()
    {
        TextFileServer server;
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        QTest::keyClicks(&text.edit(), "mine");
        text.press("openButton");
        QVERIFY(text.chooser());
        text.chooser()->reject();
        QVERIFY(text.window->isWindowModified());
        server.answer("rxfile \"/data/notes.txt\"", { Step::binary("", "NG:cannot read\n") });
        QVERIFY(text.choosesNotes());
        QVERIFY(text.question());
        text.answer(QMessageBox::Cancel);
        TRY_VERIFY(!text.question());
        QVERIFY(text.choosesNotes());
        text.answer(QMessageBox::Discard);
        QVERIFY(text.shows(QStringLiteral("NG:cannot read")));
        QVERIFY(text.window->isWindowModified());
        QCOMPARE(text.edit().toPlainText(), "mine");
        server.answer("rxfile \"/data/notes.txt\"", { Step::binary("one\ntwo\n", "OK:\n") });
        TRY_VERIFY(!text.question());
        QVERIFY(text.choosesNotes());
        text.answer(QMessageBox::Discard);
        QVERIFY(text.shows(QStringLiteral("Opened")));
        QVERIFY(!text.window->isWindowModified());
    }

    void whatIsTypedDuringAWriteIsNotSaved()
    {
        TextFileServer server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::hold("write"), Step::text("OK:\n") });
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nxy", { Step::text("OK:\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.openNotes();
        text.append(QStringLiteral("x"));
        text.press("saveButton");
        QVERIFY(server.waitForHold("write"));
        text.append(QStringLiteral("y"));
        server.release("write");
        QVERIFY(text.shows(QStringLiteral("Later edits are not saved yet")));
        QVERIFY(text.window->isWindowModified());
        // The content of the file is not an undo step: after undoing everything the text still differs from it.
        while (text.edit().document()->isUndoAvailable())
            text.edit().undo();
        QCOMPARE(text.edit().toPlainText(), "one\ntwo\n");
        QVERIFY(text.window->isWindowModified());
        text.append(QStringLiteral("xy"));
        text.press("saveButton");
        TRY_VERIFY(!text.window->isWindowModified());
    }

    void closingDuringAWriteSavesTheRest()
    {
        TextFileServer server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::hold("write"), Step::text("OK:\n") });
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nxy", { Step::hold("rest"), Step::text("OK:\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.openNotes();
        text.append(QStringLiteral("x"));
        text.press("saveButton");
        QVERIFY(server.waitForHold("write"));
        text.append(QStringLiteral("y"));
        QVERIFY(!text.window->close());
        text.answer(QMessageBox::Save);
        server.release("write");
        QVERIFY(server.waitForHold("rest"));
        QVERIFY(text.window);
        server.release("rest");
        TRY_VERIFY(text.window.isNull());
    }

    void nothingIsTypedWhileAFileComes()
    {
        TextFileServer server;
        server.answer("rxfile \"/data/notes.txt\"", { Step::hold("read"), Step::binary("one\n", "OK:\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.window->openFile(QStringLiteral("/data/notes.txt"));
        QVERIFY(text.edit().isReadOnly());
        QVERIFY(server.waitForHold("read"));
        QTest::keyClicks(&text.edit(), "lost");
        QCOMPARE(text.edit().toPlainText(), QString());
        server.release("read");
        QVERIFY(text.shows(QStringLiteral("Opened")));
        QVERIFY(!text.edit().isReadOnly());
    }

    void reportsRejectionsAndChangesNothing()
    {
        TextFileServer server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::text("NG:cannot write\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.openNotes();
        text.window->openFile(QStringLiteral("/none"));
        QVERIFY(text.shows(QStringLiteral("NG:cannot read '/none'")));
        text.window->openFile(QStringLiteral("/binary"));
        QVERIFY(text.shows(QStringLiteral("it is not a text")));
        QCOMPARE(text.path(), "/data/notes.txt");
        QCOMPARE(text.edit().toPlainText(), "one\ntwo\n");
        text.append(QStringLiteral("x"));
        text.press("saveButton");
        QVERIFY(text.shows(QStringLiteral("NG:cannot write")));
        QVERIFY(text.window->isWindowModified());
    }

    void aLostServerLeavesTheText()
    {
        TextFileServer server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::drop() });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.openNotes();
        text.append(QStringLiteral("x"));
        text.press("saveButton");
        QVERIFY(text.shows(QStringLiteral("No reply")));
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::text("OK:\n") });
        TRY_VERIFY(text.widget<QPushButton>("saveButton").isEnabled());
        text.press("saveButton");
        QVERIFY(text.shows(QStringLiteral("Saved")));
    }

    void closingAsksAboutChanges()
    {
        TextFileServer server;
        server.answer("txfile \"/data/notes.txt\"\none\ntwo\nx", { Step::text("OK:\n") });
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        text.openNotes();
        text.append(QStringLiteral("x"));
        QTest::keyClick(text.window, Qt::Key_Escape);
        QVERIFY(text.question());
        text.answer(QMessageBox::Cancel);
        TRY_VERIFY(!text.question());
        QVERIFY(text.window->isVisible());
        QVERIFY(!text.window->close());
        text.answer(QMessageBox::Save);
        TRY_VERIFY(text.window.isNull());
    }

    void dropsDiscardedChanges()
    {
        TextFileServer server;
        ConsoleFixture fixture(server);
        const TextWindowDriver text(fixture);
        QTest::keyClicks(&text.edit(), "x");
        text.window->close();
        text.answer(QMessageBox::Discard);
        TRY_VERIFY(text.window.isNull());
    }
};

QTEST_MAIN(TestConsoleText)
#include "tst_consoletext.moc"
