// The console's main window with well-behaved and misbehaving servers.
#include "app/colours.h"
#include "app/indicatorstyle.h"
#include "command/commandpanel.h"
#include "command/history.h"
#include "mainwindow.h"
#include "notices/alertbar.h"
#include "server/connectdialog.h"
#include "server/servercontroller.h"
#include "settings/addsettingdialog.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"

#include "console/consolefixture.h"
#include "support/contrast.h"
#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSpinBox>
#include <QStyleOptionButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <memory>

using namespace console;
using namespace tarnis::testing;

namespace {

QByteArray bytesOf(const QList<double>& values)
{
    return QByteArray(reinterpret_cast<const char*>(values.constData()), values.size() * qsizetype(sizeof(double)));
}

bool isControl(const QWidget* widget)
{
    const bool isInner = widget->objectName().startsWith(u"qt_") || qobject_cast<QAbstractSpinBox*>(widget->parent())
        || widget->inherits("QTableCornerButton") || widget->inherits("QLineEditIconButton")
        || widget->inherits("QMenuBarExtension") || widget->inherits("QHeaderView");
    return !isInner
        && (qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget)
            || qobject_cast<const QAbstractSpinBox*>(widget) || qobject_cast<const QPlainTextEdit*>(widget)
            || qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QProgressBar*>(widget));
}

QString accessibleName(QWidget* widget)
{
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
    return interface ? interface->text(QAccessible::Name) : QString();
}

QChar mnemonicOf(const QString& text)
{
    const QKeySequence keys = QKeySequence::mnemonic(text);
    return keys.isEmpty() ? QChar() : QChar(char16_t(keys[0].key()));
}

/// Alt keys of all visible controls, with their owners.
QMultiMap<QChar, QString> mnemonicsOf(const QWidget& window)
{
    QMultiMap<QChar, QString> found;
    const auto add = [&found](const QString& text) {
        if (const QChar key = mnemonicOf(text); !key.isNull())
            found.insert(key, text);
    };
    for (const auto* button : window.findChildren<QAbstractButton*>())
        add(button->text());
    for (const auto* label : window.findChildren<QLabel*>()) {
        if (label->buddy())
            add(label->text());
    }
    if (const auto* bar = window.findChild<QMenuBar*>()) {
        for (const QAction* action : bar->actions())
            add(action->text());
    }
    return found;
}

void compareNoCutText(const QWidget& window)
{
    for (const auto* widget : window.findChildren<QWidget*>()) {
        const auto* label = qobject_cast<const QLabel*>(widget);
        const bool isText = (label && !label->wordWrap() && !label->inherits("console::ElidedLabel"))
            || qobject_cast<const QAbstractButton*>(widget);
        if (!isText || !widget->isVisible() || widget->objectName().startsWith(u"qt_")
            || widget->inherits("QTableCornerButton") || widget->inherits("QLineEditIconButton"))
            continue;
        QVERIFY2(widget->width() >= widget->minimumSizeHint().width()
                && widget->height() >= widget->minimumSizeHint().height(),
            qPrintable(widget->objectName()));
    }
}

} // namespace

class TestConsoleWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { QApplication::setPalette(QApplication::style()->standardPalette()); }

    // Appearance.

    void everyControlHasANameAndShowsWhyItIsDisabled()
    {
        ConsoleFixture fixture;
        for (QWidget* widget : fixture.window->findChildren<QWidget*>()) {
            if (!isControl(widget) || widget->isHidden())
                continue;
            QVERIFY2(!accessibleName(widget).isEmpty(), qPrintable(widget->objectName()));
            if (!widget->isEnabled())
                QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
        }
        for (const QAction* action : fixture.window->findChildren<QAction*>()) {
            if (!action->isEnabled() && !action->text().isEmpty())
                QVERIFY2(!action->toolTip().isEmpty(), qPrintable(action->objectName()));
        }
    }

    void noTwoThingsShareAKey()
    {
        ConsoleFixture fixture;
        SettingsModel& model = fixture.window->settingsPanel().model();
        auto* connectDialog = new ConnectDialog({}, "> ", fixture.window.get());
        auto* addDialog = new AddSettingDialog(model, fixture.window.get());
        const QList<const QWidget*> windows { connectDialog, addDialog };
        for (const QWidget* window : windows) {
            const auto mnemonics = mnemonicsOf(*window);
            for (const QChar key : mnemonics.uniqueKeys())
                QVERIFY2(mnemonics.count(key) == 1, qPrintable(mnemonics.values(key).join(u'|')));
        }
        delete connectDialog;
        delete addDialog;
        const auto mnemonics = mnemonicsOf(*fixture.window);
        for (const QChar key : mnemonics.uniqueKeys())
            QVERIFY2(mnemonics.count(key) == 1, qPrintable(mnemonics.values(key).join(u'|')));
        QStringList keys;
        for (const QAction* action : fixture.window->findChildren<QAction*>()) {
            if (!action->shortcut().isEmpty())
                keys.append(action->shortcut().toString());
        }
        QStringList once = keys;
        once.removeDuplicates();
        QCOMPARE(once, keys);
    }

    void theTabKeyReachesEveryControl()
    {
        ScriptedServer server;
        ConsoleFixture fixture(server);
        fixture.type(QStringLiteral("x"));
        QSet<const QWidget*> reached;
        QWidget* start = &fixture.edit();
        for (QWidget* widget = start->nextInFocusChain(); widget != start; widget = widget->nextInFocusChain()) {
            if (widget->focusPolicy() & Qt::TabFocus)
                reached.insert(widget);
        }
        reached.insert(start);
        for (const QWidget* widget : fixture.window->findChildren<QWidget*>()) {
            const bool takesKeys = isControl(widget) && !qobject_cast<const QProgressBar*>(widget);
            if (takesKeys) {
                const QString name = widget->objectName() + u' ' + QLatin1String(widget->metaObject()->className());
                QVERIFY2(reached.contains(widget), qPrintable(name));
            }
        }
    }

    void noTextIsCutOff_data()
    {
        QTest::addColumn<int>("points");
        QTest::newRow("ordinary letters") << 9;
        QTest::newRow("large letters") << 15;
    }
    void noTextIsCutOff()
    {
        QFETCH(int, points);
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSize(points);
        QApplication::setFont(font);
        {
            ConsoleFixture fixture;
            fixture.window->resize(fixture.window->minimumSizeHint());
            compareNoCutText(*fixture.window);
            ConnectDialog dialog({}, "> ", nullptr);
            dialog.show();
            compareNoCutText(dialog);
        }
        QApplication::setFont(before);
    }

    void textHasContrastOnLightAndDark_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << QPalette(QColor(0xefefef), QColor(0xefefef));
        QTest::newRow("dark") << darkPalette();
    }
    void textHasContrastOnLightAndDark()
    {
        QFETCH(QPalette, palette);
        const QColor base = palette.color(QPalette::Base);
        for (const QColor& text : { badText(palette), quietText(palette), palette.color(QPalette::Text) })
            QVERIFY2(contrast(text, base) >= 4.5, qPrintable(text.name()));
        QVERIFY(contrast(palette.color(QPalette::WindowText), palette.color(QPalette::Window)) >= 4.5);
        QVERIFY(contrast(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)) >= 4.5);
        QVERIFY(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)) >= 4.5);
        for (const auto severity :
            { Alert::Severity::Information, Alert::Severity::Warning, Alert::Severity::Failure }) {
            QVERIFY(contrast(palette.color(QPalette::WindowText), alertBackground(palette, severity)) >= 4.5);
        }
    }

    void anAlertStaysReadableInDarkColours()
    {
        ConsoleFixture fixture;
        auto& bar = fixture.widget<AlertBar>("alertBar");
        bar.setAlert({ Alert::Severity::Information, QStringLiteral("words"), AlertAction::None });
        for (int i = 0; i < 2; ++i) {
            fixture.choose("darkAction");
            QCoreApplication::processEvents();
            const QPalette colours = bar.palette();
            QVERIFY(contrast(colours.color(QPalette::WindowText), colours.color(QPalette::Window)) >= 4.5);
        }
    }

    void emptyIndicatorsStandOutInTheDark()
    {
        const QPalette palette = darkPalette();
        const IndicatorStyle style(QStringLiteral("fusion"));
        QStyleOptionButton option;
        option.rect = QRect(1, 1, 14, 14);
        option.palette = palette;
        option.state = QStyle::State_Enabled | QStyle::State_Off;
        for (const auto indicator :
            { QStyle::PE_IndicatorCheckBox, QStyle::PE_IndicatorRadioButton, QStyle::PE_IndicatorItemViewItemCheck }) {
            for (const auto role : { QPalette::Base, QPalette::AlternateBase, QPalette::Window }) {
                const QColor ground = palette.color(role);
                QImage picture(16, 16, QImage::Format_RGB32);
                picture.fill(ground);
                QPainter painter(&picture);
                style.drawPrimitive(indicator, &option, &painter, nullptr);
                painter.end();
                double best = 1.0;
                for (int x = 0; x < picture.width(); ++x)
                    best = std::max(best, contrast(picture.pixelColor(x, 8), ground));
                QVERIFY2(best >= 3.0, qPrintable(QString::number(best)));
            }
        }
    }

    void theLightColoursAreTheDesktops()
    {
        ConsoleFixture fixture;
        fixture.choose("darkAction");
        QCOMPARE(QApplication::palette().color(QPalette::Base), darkPalette().color(QPalette::Base));
        fixture.choose("darkAction");
        QVERIFY(QApplication::palette().color(QPalette::Base) != darkPalette().color(QPalette::Base));
        QCOMPARE(QApplication::palette().resolveMask(), 0); // no role is fixed against a change of the desktop's
                                                            // palette
    }

    void theIndicatorsDifferInShape()
    {
        QList<QImage> shapes;
        for (const StatusIndicator indicator : { StatusIndicator::Off, StatusIndicator::Waiting, StatusIndicator::Good,
                 StatusIndicator::Busy, StatusIndicator::Bad })
            shapes.append(indicatorPicture(indicator, 18, 1.0).toImage().convertToFormat(QImage::Format_Alpha8));
        for (qsizetype i = 0; i < shapes.size(); ++i) {
            for (qsizetype k = i + 1; k < shapes.size(); ++k)
                QVERIFY(shapes.at(i) != shapes.at(k));
        }
    }

    // Commands.

    void keepsACommandUntilThereIsAServer()
    {
        ScriptedServer server;
        server.answer("hello", { Step::text("hi\n") });
        ConsoleFixture fixture;
        fixture.type(QStringLiteral("hello"));
        fixture.enter();
        QCOMPARE(fixture.edit().text(), QStringLiteral("hello"));
        QVERIFY(fixture.widget<QLabel>("progressLabel").text().contains(QStringLiteral("server")));
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        fixture.enter();
        QVERIFY(fixture.shows(QStringLiteral("> hello\nhi")));
        QVERIFY(fixture.edit().text().isEmpty());
    }

    void whatCannotBeSentStaysWithAReason()
    {
        ScriptedServer server;
        ConsoleFixture fixture(server);
        fixture.edit().setText(QString::fromUtf8("set \u03b1"));
        fixture.enter();
        QCOMPARE(fixture.edit().text(), QString::fromUtf8("set \u03b1"));
        QVERIFY(fixture.widget<QLabel>("progressLabel").text().contains(QStringLiteral("Latin-1")));
    }

    void repliesAppearBelowTheirCommands()
    {
        ScriptedServer server;
        server.answer("a", { Step::hold("gate"), Step::text("1\n") });
        server.answer("b", { Step::text("NG:2\n") });
        server.answer("c", { Step::text("") });
        ConsoleFixture fixture(server);
        for (const char* command : { "a", "b", "c" })
            fixture.send(QLatin1String(command));
        QVERIFY(server.waitForHold("gate"));
        server.open("gate");
        QVERIFY(fixture.shows(QStringLiteral("(an empty reply)")));
        QString record = fixture.record();
        record.remove(QRegularExpression(QStringLiteral("\\d\\d:\\d\\d:\\d\\d  ")));
        QCOMPARE(record, QStringLiteral("> a\n1\n> b\nNG:2\n> c\n(an empty reply)"));
    }

    void aLongReplyIsSeenWhileItComes()
    {
        ScriptedServer server;
        server.answer("slow", { Step::raw("half of it\n"), Step::hold("gate"), Step::text("the rest\n") });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("slow"));
        QVERIFY(fixture.shows(QStringLiteral("half of it")));
        QVERIFY(fixture.widget<QProgressBar>("progressBar").isVisible());
        QVERIFY(fixture.widget<QLabel>("progressLabel").text().contains(QStringLiteral("11 bytes")));
        server.open("gate");
        QVERIFY(fixture.shows(QStringLiteral("the rest")));
        QVERIFY(fixture.isFree());
        QCOMPARE(fixture.record().count(QStringLiteral("half of it")), 1);
        QVERIFY(!fixture.widget<QProgressBar>("progressBar").isVisible());
    }

    void aBinaryReplyIsShownInNumbers()
    {
        ScriptedServer server;
        server.answer("hist1d x", { Step::binary(bytesOf({ 1.0, 5.0 }), "OK: x\n") });
        server.answer("numbers", { Step::binary(bytesOf({ 2.0 }), "") });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("hist1d x"));
        QVERIFY(fixture.shows(QStringLiteral("2 values\nsum 6, minimum 1, maximum 5\nfirst: 1 5\ntext: OK: x")));
        QVERIFY(!fixture.widget<QCheckBox>("binaryCheck").isChecked());
        fixture.type(QStringLiteral("numbers"));
        fixture.press("binaryCheck");
        fixture.enter();
        QVERIFY(fixture.shows(QStringLiteral("1 value\nsum 2")));
    }

    void whatThePersonChoseAboutBinaryStays()
    {
        ConsoleFixture fixture;
        fixture.type(QStringLiteral("hist1d"));
        QVERIFY(fixture.widget<QCheckBox>("binaryCheck").isChecked());
        fixture.press("binaryCheck");
        fixture.type(QStringLiteral(" total"));
        QVERIFY(!fixture.widget<QCheckBox>("binaryCheck").isChecked());
    }

    void reconnectsWithOneClick()
    {
        ScriptedServer server;
        server.answerInTurn("a", { { Step::raw("half"), Step::drop() }, { Step::text("whole\n") } });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("a"));
        fixture.type(QStringLiteral("being typed"));
        TRY_COMPARE(fixture.alert().action, AlertAction::SendAgain);
        QVERIFY(fixture.alert().text.contains(u'a'));
        QCOMPARE(fixture.window->controller().state(), ServerState::Up);
        fixture.press("alertButton");
        QVERIFY(fixture.shows(QStringLiteral("whole")));
        QVERIFY(fixture.alert().text.isEmpty());
        QCOMPARE(fixture.edit().text(), QStringLiteral("being typed"));
    }

    void aLostCommandComesBackToAnEmptyLine()
    {
        ScriptedServer server;
        server.answerInTurn("a", { { Step::drop() }, { Step::text("whole\n") } });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("a"));
        QVERIFY(fixture.shows(QStringLiteral("No reply: a")));
        QCOMPARE(fixture.edit().text(), QStringLiteral("a"));
        TRY_COMPARE(fixture.alert().action, AlertAction::SendAgain);
        QTest::keyClick(&fixture.edit(), Qt::Key_Return);
        QVERIFY(fixture.alert().text.isEmpty()); // otherwise it could be sent a second time
        QVERIFY(fixture.shows(QStringLiteral("whole")));
    }

    void aCommandCanBeGivenUp()
    {
        ScriptedServer server;
        server.answer("never", { Step::silence() });
        server.answer("next", { Step::text("done\n") });
        ConsoleFixture fixture;
        QVERIFY(!fixture.widget<QPushButton>("giveUpButton").isEnabled());
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        fixture.send(QStringLiteral("never"));
        QVERIFY(server.waitForRequest("never"));
        fixture.press("giveUpButton");
        QVERIFY(!fixture.window->commandPanel().isBusy());
        QVERIFY(fixture.record().contains(QStringLiteral("Given up: never")));
        QVERIFY(fixture.alert().text.isEmpty());
        fixture.send(QStringLiteral("next"));
        QVERIFY(fixture.shows(QStringLiteral("done")));
    }

    void commandsAfterACancelledOneCanBeSentAgain()
    {
        ScriptedServer server;
        server.answer("never", { Step::silence() });
        server.answer("next", { Step::text("done\n") });
        server.answer("last", { Step::text("done too\n") });
        ConsoleFixture fixture(server);
        for (const char* const command : { "never", "next", "last" })
            fixture.send(QLatin1String(command));
        QVERIFY(server.waitForRequest("never"));
        fixture.press("giveUpButton");
        QCOMPARE(fixture.alert().action, AlertAction::SendAgain);
        QVERIFY2(fixture.alert().text.contains(QStringLiteral("2 commands")), qPrintable(fixture.alert().text));
        fixture.press("alertButton");
        QVERIFY(fixture.shows(QStringLiteral("done too")));
        QVERIFY(fixture.alert().text.isEmpty());
        QCOMPARE(server.requests().count("never"), 1);
    }

    // Settings.

    void settingsAreReadAndSentAndChecked()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { { Step::text("OK:\nrate: 10\n") }, { Step::text("OK:\nrate: 10\n") },
                { Step::text("OK:\nrate: 20\n") } });
        ConsoleFixture fixture;
        SettingsModel& model = fixture.window->settingsPanel().model();
        QVERIFY(!fixture.widget<QPushButton>("readButton").isEnabled());
        fixture.use(server);
        TRY_COMPARE(model.rowCount(), 1);
        QCOMPARE(fixture.settingsState(), QStringLiteral("As on the server."));
        QVERIFY(model.setData(model.index(0, SettingsModel::Value), "20", Qt::EditRole));
        QVERIFY(fixture.settingsState().startsWith(QStringLiteral("1 changed")));
        fixture.press("saveButton");
        QVERIFY(!fixture.widget<QPushButton>("saveButton").isEnabled());
        TRY_VERIFY(model.changedNames().isEmpty());
        QVERIFY(server.requests().contains("setting rate:20 "));
        QVERIFY(server.requests().contains("savesetting"));
        QVERIFY(fixture.widget<QPushButton>("saveButton").isEnabled());
    }

    void reportsARejectedSetting()
    {
        ScriptedServer server;
        server.answer("setting", { Step::text("OK:\nrate: 10\n") });
        server.answer("setting rate:0 ", { Step::text("NG:rate is too small\n") });
        ConsoleFixture fixture;
        SettingsModel& model = fixture.window->settingsPanel().model();
        fixture.use(server);
        TRY_COMPARE(model.rowCount(), 1);
        model.setData(model.index(0, SettingsModel::Value), "0", Qt::EditRole);
        fixture.press("downloadButton");
        TRY_VERIFY(fixture.settingsState().contains(QStringLiteral("rate is too small")));
        QCOMPARE(model.changedNames(), QStringList { "rate" });
    }

    void theBasePathFollowsTheStatus()
    {
        ScriptedServer server;
        ConsoleFixture fixture;
        auto& path = fixture.widget<QLineEdit>("pathEdit");
        path.setText(QStringLiteral("/data"));
        fixture.press("pathButton"); // no server: kept
        QCOMPARE(fixture.window->controller().tarnis().GetSettingValue("basepath", QString()), QStringLiteral("/data"));
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        path.setText(QStringLiteral("/data/a b"));
        QVERIFY(!fixture.widget<QPushButton>("pathButton").isEnabled());
        path.setText(QStringLiteral("/data/a"));
        fixture.widget<QCheckBox>("instCheck").setChecked(true);
        fixture.press("pathButton");
        QVERIFY(server.waitForRequest("setting inst: basepath:/data/a"));
        fixture.window->controller().tarnis().SetStatus(Tarnis::RUNNING);
        QVERIFY(!fixture.widget<QPushButton>("pathButton").isEnabled());
        QVERIFY(fixture.widget<QPushButton>("pathButton").toolTip().contains(QStringLiteral("Running")));
    }

    void storesTheReadoutAddressInTheSettings()
    {
        const ScriptedServer server;
        ConsoleFixture fixture(server);
        Tarnis& tarnis = fixture.window->controller().tarnis();
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0"));
        QVERIFY(!fixture.widget<QPushButton>("addressButton").isEnabled());
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0.7"));
        fixture.widget<QSpinBox>("tcpSpin").setValue(24);
        fixture.widget<QSpinBox>("bcpSpin").setValue(4660);
        fixture.press("addressButton");
        QCOMPARE(tarnis.GetSettingValue("ip", QString()), QStringLiteral("10.0.0.7"));
        fixture.widget<QSpinBox>("indexSpin").setValue(2);
        QVERIFY(fixture.widget<QLineEdit>("ipEdit").text().isEmpty());
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0.8"));
        fixture.press("addressButton");
        QCOMPARE(tarnis.GetSettingValue("ip2", QString()), QStringLiteral("10.0.0.8"));
        QCOMPARE(tarnis.GetReadoutAddressText(), QStringLiteral("10.0.0.8:0"));
        fixture.widget<QSpinBox>("indexSpin").setValue(-1);
        QCOMPARE(fixture.widget<QLineEdit>("ipEdit").text(), QStringLiteral("10.0.0.7"));
        QCOMPARE(fixture.widget<QSpinBox>("bcpSpin").value(), 4660);
    }

    // The server.

    void theDialogShowsWhatIsMissing()
    {
        ConnectDialog dialog({ ServerChoice::Kind::Remote, {}, QStringLiteral("daq"), 5000 }, "> ", nullptr);
        auto* ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        QVERIFY(ok->isEnabled());
        QVERIFY((dialog.choice() == ServerChoice { ServerChoice::Kind::Remote, {}, QStringLiteral("daq"), 5000 }));
        QCOMPARE(dialog.prompt(), QByteArray("> "));
        dialog.findChild<QLineEdit*>(QStringLiteral("hostEdit"))->clear();
        QVERIFY(!ok->isEnabled());
        auto* program = dialog.findChild<QLineEdit*>(QStringLiteral("programEdit"));
        QTest::keyClicks(program, QStringLiteral("/no/such/program"));
        QVERIFY(dialog.findChild<QRadioButton*>(QStringLiteral("localRadio"))->isChecked());
        QVERIFY(!ok->isEnabled());
        program->setText(QStringLiteral("/bin/sh"));
        QVERIFY(ok->isEnabled());
        dialog.findChild<QLineEdit*>(QStringLiteral("promptEdit"))->clear();
        QVERIFY(!ok->isEnabled());
        QVERIFY(!ok->toolTip().isEmpty());
    }

    void restartsADeadServerWithOneClick()
    {
        ScriptedServer server;
        server.answer("a", { Step::silence() });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ConsoleFixture fixture(program);
        fixture.send(QStringLiteral("a"));
        fixture.type(QStringLiteral("being typed"));
        QVERIFY(server.waitForRequest("a"));
        fixture.choose("forceAction");
        QVERIFY(fixture.reaches(ServerState::Failed));
        QCOMPARE(fixture.alert().action, AlertAction::StartAgain);
        QCOMPARE(fixture.widget<QLabel>("statusLabel").text(), QStringLiteral("No connection"));
        fixture.press("alertButton");
        QVERIFY(fixture.reaches(ServerState::Up));
        QVERIFY(fixture.alert().text.isEmpty());
        QCOMPARE(fixture.edit().text(), QStringLiteral("being typed"));
        fixture.send(QStringLiteral("b"));
        QVERIFY(fixture.shows(QStringLiteral("> b\n(an empty reply)")));
    }

    void closingEndsTheServerInEveryState_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<ServerState>("state");
        QTest::newRow("no server") << "none" << ServerState::Off;
        QTest::newRow("remote, nobody greets") << "mute" << ServerState::Starting;
        QTest::newRow("remote") << "remote" << ServerState::Up;
        QTest::newRow("remote, a reply under way") << "busy" << ServerState::Up;
        QTest::newRow("remote, refused") << "refused" << ServerState::Failed;
        QTest::newRow("local, no port yet") << "await-end" << ServerState::Starting;
        QTest::newRow("local") << "print UI port: %1\\n;await-end" << ServerState::Up;
        QTest::newRow("local, ended by itself") << "exit 1" << ServerState::Failed;
    }
    void closingEndsTheServerInEveryState()
    {
        QFETCH(QString, kind);
        QFETCH(ServerState, state);
        ScriptedServer server;
        ScriptedServer mute({ Step::silence() });
        server.answer("long", { Step::silence() });
        const FakeServer program(QString(kind).replace("%1", QString::number(server.port())).split(u';'));
        ConsoleFixture fixture;
        if (kind == u"mute")
            fixture.use(mute);
        else if (kind == u"refused")
            fixture.start({ ServerChoice::Kind::Remote, {}, ScriptedServer::host(), ScriptedServer::closedPort() });
        else if (kind == u"remote" || kind == u"busy")
            fixture.use(server);
        else if (kind != u"none")
            fixture.use(program);
        QVERIFY(fixture.reaches(state));
        if (kind == u"busy") {
            fixture.send(QStringLiteral("long"));
            QVERIFY(server.waitForRequest("long"));
        }
        const QProcess* process = fixture.window->controller().tarnis().process();
        const qint64 processId = process ? process->processId() : 0;
        fixture.window->close();
        TRY_VERIFY(!fixture.window->isVisible());
        if (processId > 0)
            TRY_VERIFY(!isRunning(processId));
        fixture.window.reset();
        QVERIFY(server.waitUntilDeserted());
        QVERIFY(mute.waitUntilDeserted());
    }

    void closingADeafServerOffersToEndIt()
    {
        ScriptedServer server;
        const FakeServer program(FakeServer::deaf(server.port()));
        ConsoleFixture fixture(program);
        const qint64 processId = fixture.window->controller().tarnis().process()->processId();
        fixture.window->close();
        TRY_COMPARE(fixture.alert().action, AlertAction::EndByForce);
        QVERIFY(fixture.window->isVisible());
        fixture.press("alertButton");
        TRY_VERIFY(!fixture.window->isVisible());
        TRY_VERIFY(!isRunning(processId));
    }

    void aBusyServerKeepsTheWindowOpen()
    {
        ScriptedServer server;
        ConsoleFixture fixture(server);
        fixture.window->controller().tarnis().SetStatus(Tarnis::HARDWARE_BUSY);
        fixture.window->close();
        QVERIFY(fixture.window->isVisible());
        QVERIFY(fixture.alert().text.contains(QStringLiteral("busy")));
        fixture.window->controller().tarnis().SetStatus(Tarnis::SERVER_CONNECTED);
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QCoreApplication::processEvents();
        QVERIFY(fixture.window->isVisible()); // the previous close was cancelled
    }

    void storesTheStateForTheNextStart()
    {
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("console.ini"));
        ScriptedServer server(wellBehaved(), "# ");
        Options options;
        options.server = ServerChoice { ServerChoice::Kind::Remote, {}, ScriptedServer::host(), server.port() };
        options.prompt = "# ";
        {
            QSettings store(file, QSettings::IniFormat);
            MainWindow window(store);
            window.resize(1300, 800);
            window.show();
            window.commandPanel().history().add(QStringLiteral("typed once"));
            window.startServer(options);
            TRY_COMPARE(window.controller().state(), ServerState::Up);
            window.close();
            TRY_VERIFY(!window.isVisible());
        }
        QSettings store(file, QSettings::IniFormat);
        MainWindow window(store);
        window.show();
        QCOMPARE(window.commandPanel().history().entries(), QStringList { "typed once" });
        window.startServer({});
        TRY_COMPARE(window.controller().state(), ServerState::Up);
        QVERIFY(window.controller().choice() == *options.server);
        QCOMPARE(window.controller().prompt(), QByteArray("# "));
        window.close();
        TRY_VERIFY(!window.isVisible());
    }

    void everyWindowOpensOnceAndCloses()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("OK:\na: 1\n") });
        server.answer("setting", { Step::text("OK:\nb: 2\n") });
        ConsoleFixture fixture;
        QVERIFY(!fixture.window->openWindow(fixture.window->entries().front()));
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        for (const WindowEntry& entry : fixture.window->entries()) {
            const QPointer<QWidget> window = fixture.window->openWindow(entry);
            QVERIFY(window && window->isVisible());
            QCOMPARE(fixture.window->openWindow(entry), window.data());
            QVERIFY2(!window->windowTitle().isEmpty(), qPrintable(entry.id));
            window->close();
            TRY_VERIFY(window.isNull());
            QVERIFY(fixture.window->openWindow(entry));
        }
    }
};

QTEST_MAIN(TestConsoleWindow)
#include "tst_consolewindow.moc"
