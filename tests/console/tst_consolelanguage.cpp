// The console's language: chosen in the menu, by the option and by the desktop; changed while windows are open.
#include "app/commandline.h"
#include "app/controlhelp.h"
#include "app/language.h"
#include "mainwindow.h"
#include "server/connectdialog.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <memory>

using namespace console;

namespace {

/// A main window with its own settings.
class Console {
public:
    Console() { open(); }
    void open(const QString& language = QString())
    {
        window.reset();
        window = std::make_unique<MainWindow>(store, language);
        window->show();
        QCoreApplication::processEvents();
    }
    void choose(const char* action)
    {
        auto* const found = window->findChild<QAction*>(QString::fromLatin1(action));
        if (!found)
            qFatal("no %s", action);
        found->trigger();
        QCoreApplication::processEvents();
    }
    template <typename Object> QString textOf(const char* name)
    {
        const auto* const object = window->findChild<Object*>(QString::fromLatin1(name));
        return object ? object->text() : QString();
    }
    QString menuTitle() { return window->findChild<QMenu*>(QStringLiteral("helpMenu"))->title(); }
    QString sendText() { return textOf<QPushButton>("sendButton"); }
    QString statusText() { return textOf<QLabel>("statusLabel"); }
    bool isChosen(const char* action) { return window->findChild<QAction*>(QString::fromLatin1(action))->isChecked(); }

private:
    QTemporaryDir m_directory;

public:
    QSettings store { m_directory.filePath(QStringLiteral("console.ini")), QSettings::IniFormat };
    std::unique_ptr<MainWindow> window;
};

CommandLine parsed(const QStringList& options)
{
    return parseCommandLine(QStringList { QStringLiteral("tarnis-console") } + options);
}

} // namespace

class TestConsoleLanguage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { setLanguage(QStringLiteral("en")); }

    void theDesktopIsEnglishHere()
    {
        Console console;
        QVERIFY(console.isChosen("desktopLanguageAction"));
        QCOMPARE(console.menuTitle(), "&Help");
    }

    void everythingOnShowFollowsTheMenu()
    {
        Console console;
        QCOMPARE(console.statusText(), "No server");
        console.choose("deAction");
        QCOMPARE(console.menuTitle(), "&Hilfe");
        QCOMPARE(console.statusText(), "Kein Server");
        QCOMPARE(console.sendText(), "Se&nden");
        QVERIFY(console.isChosen("deAction"));
        for (const WindowEntry& entry : console.window->entries()) {
            const auto* const action = console.window->findChild<QAction*>(entry.id);
            QCOMPARE(action->text(), entry.menuText);
        }
        console.choose("enAction");
        QCOMPARE(console.menuTitle(), "&Help");
        QCOMPARE(console.statusText(), "No server");
        console.choose("desktopLanguageAction");
        QCOMPARE(console.menuTitle(), "&Help");
    }

    void keysAreNamedAsInTheMenu()
    {
        Console console;
        for (const char* const language : { "deAction", "enAction" }) {
            console.choose(language);
            const auto* const action = console.window->findChild<QAction*>(QStringLiteral("chooseAction"));
            const QString key = action->shortcut().toString(QKeySequence::NativeText);
            QVERIFY2(action->toolTip().endsWith(QStringLiteral(" (%1)").arg(key)), qPrintable(action->toolTip()));
        }
    }

    void aKeyPressesItsButtonInEveryLanguage()
    {
        QPushButton button(QStringLiteral("&Refresh"));
        addKey(&button, Qt::Key_F5);
        button.show();
        button.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&button));
        const QSignalSpy pressed(&button, &QPushButton::clicked);
        QTest::keyClick(&button, Qt::Key_F5);
        button.setText(QStringLiteral("&Aktualisieren"));
        QTest::keyClick(&button, Qt::Key_F5);
        QCOMPARE(pressed.size(), 2);
        button.setEnabled(false);
        QTest::keyClick(&button, Qt::Key_F5);
        QCOMPARE(pressed.size(), 2);
    }

    void storesTheChoice()
    {
        Console console;
        console.choose("deAction");
        setLanguage(QStringLiteral("en"));
        console.open();
        QVERIFY(console.isChosen("deAction"));
        QCOMPARE(console.menuTitle(), "&Hilfe");
    }

    void theLanguageOfOneRunIsNotKept()
    {
        Console console;
        console.choose("enAction");
        console.open(QStringLiteral("de"));
        QVERIFY(console.isChosen("deAction"));
        QCOMPARE(console.menuTitle(), "&Hilfe");
        console.open();
        QVERIFY(console.isChosen("enAction"));
        QCOMPARE(console.menuTitle(), "&Help");
    }

    void anUnknownStoredLanguageIsTheDesktops()
    {
        Console console;
        console.store.setValue(QStringLiteral("window/language"), QStringLiteral("xx"));
        console.open();
        QVERIFY(console.isChosen("desktopLanguageAction"));
        QCOMPARE(console.menuTitle(), "&Help");
    }

    void theLibraryAndQtFollow()
    {
        QVERIFY(setLanguage(QStringLiteral("de")));
        QCOMPARE(QCoreApplication::translate("XYGraphWidget", "Zoom In"), QString::fromUtf8("Vergrößern"));
        ConnectDialog dialog({}, "> ", nullptr);
        QVERIFY(dialog.windowTitle() != u"Choose Server");
        QVERIFY(setLanguage(QStringLiteral("en")));
        QCOMPARE(QCoreApplication::translate("XYGraphWidget", "Zoom In"), "Zoom In");
    }

    void aLanguageWithoutCatalogueChangesNothing()
    {
        QVERIFY(setLanguage(QStringLiteral("de")));
        QVERIFY(!setLanguage(QStringLiteral("ja")));
        QCOMPARE(QCoreApplication::translate("XYGraphWidget", "Zoom In"), QString::fromUtf8("Vergrößern"));
    }

    void switchingBackRestoresAllTexts()
    {
        const auto translators = [] { return QCoreApplication::instance()->findChildren<QTranslator*>().size(); };
        setLanguage(QStringLiteral("de"));
        const qsizetype once = translators();
        for (int i = 0; i < 50; ++i)
            setLanguage(i % 2 == 0 ? QStringLiteral("en") : QStringLiteral("de"));
        QCOMPARE(translators(), once);
    }

    void readsTheLanguageOption_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("mistake");
        QTest::newRow("none") << QStringList() << QString() << QString();
        QTest::newRow("German") << QStringList { "--language", "de" } << QStringLiteral("de") << QString();
        QTest::newRow("English") << QStringList { "--language=en" } << QStringLiteral("en") << QString();
        QTest::newRow("no such language") << QStringList { "--language", "ja" } << QString()
                                          << QStringLiteral("there is no language 'ja'; en and de are there");
        QTest::newRow("with a tour") << QStringList { "--language", "de", "--tour",
            "x" } << QString() << QStringLiteral("--language and --tour exclude each other: the tour is in English");
    }
    void readsTheLanguageOption()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, language);
        QFETCH(QString, mistake);
        const CommandLine line = parsed(options);
        QCOMPARE(line.text, mistake);
        QCOMPARE(line.options.language, language);
    }
};

QTEST_MAIN(TestConsoleLanguage)
#include "tst_consolelanguage.moc"
