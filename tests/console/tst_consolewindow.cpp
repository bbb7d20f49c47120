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
        ConsoleFixture desk;
        for (QWidget* widget : desk.window->findChildren<QWidget*>()) {
            if (!isControl(widget) || widget->isHidden())
                continue;
            QVERIFY2(!accessibleName(widget).isEmpty(), qPrintable(widget->objectName()));
            if (!widget->isEnabled())
                QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
        }
        for (const QAction* action : desk.window->findChildren<QAction*>()) {
            if (!action->isEnabled() && !action->text().isEmpty())
                QVERIFY2(!action->toolTip().isEmpty(), qPrintable(action->objectName()));
        }
    }

    void noTwoThingsShareAKey()
    {
        ConsoleFixture desk;
        SettingsModel& model = desk.window->settingsPanel().model();
        auto* connectDialog = new ConnectDialog({}, "> ", desk.window.get());
        auto* addDialog = new AddSettingDialog(model, desk.window.get());
        const QList<const QWidget*> windows { connectDialog, addDialog };
        for (const QWidget* window : windows) {
            const auto mnemonics = mnemonicsOf(*window);
            for (const QChar key : mnemonics.uniqueKeys())
                QVERIFY2(mnemonics.count(key) == 1, qPrintable(mnemonics.values(key).join(u'|')));
        }
        delete connectDialog;
        delete addDialog;
        const auto mnemonics = mnemonicsOf(*desk.window);
        for (const QChar key : mnemonics.uniqueKeys())
            QVERIFY2(mnemonics.count(key) == 1, qPrintable(mnemonics.values(key).join(u'|')));
        QStringList keys;
        for (const QAction* action : desk.window->findChildren<QAction*>()) {
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
        ConsoleFixture desk(server);
        desk.type(QStringLiteral("x"));
        QSet<const QWidget*> reached;
        QWidget* start = &desk.edit();
        for (QWidget* widget = start->nextInFocusChain(); widget != start; widget = widget->nextInFocusChain()) {
            if (widget->focusPolicy() & Qt::TabFocus)
                reached.insert(widget);
        }
        reached.insert(start);
        for (const QWidget* widget : desk.window->findChildren<QWidget*>()) {
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
            ConsoleFixture desk;
            desk.window->resize(desk.window->minimumSizeHint());
            compareNoCutText(*desk.window);
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
        ConsoleFixture desk;
        auto& bar = desk.widget<AlertBar>("alertBar");
        bar.setAlert({ Alert::Severity::Information, QStringLiteral("words"), AlertAction::None });
        for (int i = 0; i < 2; ++i) {
            desk.choose("darkAction");
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
        ConsoleFixture desk;
        desk.choose("darkAction");
        QCOMPARE(QApplication::palette().color(QPalette::Base), darkPalette().color(QPalette::Base));
        desk.choose("darkAction");
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
        ConsoleFixture desk;
        desk.type(QStringLiteral("hello"));
        desk.enter();
        QCOMPARE(desk.edit().text(), QStringLiteral("hello"));
        QVERIFY(desk.widget<QLabel>("progressLabel").text().contains(QStringLiteral("server")));
        desk.use(server);
        QVERIFY(desk.reaches(ServerState::Up));
        desk.enter();
        QVERIFY(desk.shows(QStringLiteral("> hello\nhi")));
        QVERIFY(desk.edit().text().isEmpty());
    }

    void whatCannotBeSentStaysWithAReason()
    {
        ScriptedServer server;
        ConsoleFixture desk(server);
        desk.edit().setText(QString::fromUtf8("set \u03b1"));
        desk.enter();
        QCOMPARE(desk.edit().text(), QString::fromUtf8("set \u03b1"));
        QVERIFY(desk.widget<QLabel>("progressLabel").text().contains(QStringLiteral("Latin-1")));
    }

    void repliesAppearBelowTheirCommands()
    {
        ScriptedServer server;
        server.answer("a", { Step::hold("gate"), Step::text("1\n") });
        server.answer("b", { Step::text("NG:2\n") });
        server.answer("c", { Step::text("") });
        ConsoleFixture desk(server);
        for (const char* command : { "a", "b", "c" })
            desk.send(QLatin1String(command));
        QVERIFY(server.waitForHold("gate"));
        server.open("gate");
        QVERIFY(desk.shows(QStringLiteral("(an empty reply)")));
        QString record = desk.record();
        record.remove(QRegularExpression(QStringLiteral("\\d\\d:\\d\\d:\\d\\d  ")));
        QCOMPARE(record, QStringLiteral("> a\n1\n> b\nNG:2\n> c\n(an empty reply)"));
    }

    void aLongReplyIsSeenWhileItComes()
    {
        ScriptedServer server;
        server.answer("slow", { Step::raw("half of it\n"), Step::hold("gate"), Step::text("the rest\n") });
        ConsoleFixture desk(server);
        desk.send(QStringLiteral("slow"));
        QVERIFY(desk.shows(QStringLiteral("half of it")));
        QVERIFY(desk.widget<QProgressBar>("progressBar").isVisible());
        QVERIFY(desk.widget<QLabel>("progressLabel").text().contains(QStringLiteral("11 bytes")));
        server.open("gate");
        QVERIFY(desk.shows(QStringLiteral("the rest")));
        QVERIFY(desk.isFree());
        QCOMPARE(desk.record().count(QStringLiteral("half of it")), 1);
        QVERIFY(!desk.widget<QProgressBar>("progressBar").isVisible());
    }

    void aBinaryReplyIsShownInNumbers()
    {
        ScriptedServer server;
        server.answer("hist1d x", { Step::binary(bytesOf({ 1.0, 5.0 }), "OK: x\n") });
        server.answer("numbers", { Step::binary(bytesOf({ 2.0 }), "") });
        ConsoleFixture desk(server);
        desk.send(QStringLiteral("hist1d x"));
        QVERIFY(desk.shows(QStringLiteral("2 values\nsum 6, minimum 1, maximum 5\nfirst: 1 5\ntext: OK: x")));
        QVERIFY(!desk.widget<QCheckBox>("binaryCheck").isChecked());
        desk.type(QStringLiteral("numbers"));
        desk.press("binaryCheck");
        desk.enter();
        QVERIFY(desk.shows(QStringLiteral("1 value\nsum 2")));
    }

    void whatThePersonChoseAboutBinaryStays()
    {
        ConsoleFixture desk;
        desk.type(QStringLiteral("hist1d"));
        QVERIFY(desk.widget<QCheckBox>("binaryCheck").isChecked());
        desk.press("binaryCheck");
        desk.type(QStringLiteral(" total"));
        QVERIFY(!desk.widget<QCheckBox>("binaryCheck").isChecked());
    }

    void reconnectsWithOneClick()
    {
        ScriptedServer server;
        server.answerInTurn("a", { { Step::raw("half"), Step::drop() }, { Step::text("whole\n") } });
        ConsoleFixture desk(server);
        desk.send(QStringLiteral("a"));
        desk.type(QStringLiteral("being typed"));
        TRY_COMPARE(desk.alert().action, AlertAction::SendAgain);
        QVERIFY(desk.alert().text.contains(u'a'));
        QCOMPARE(desk.window->controller().state(), ServerState::Up);
        desk.press("alertButton");
        QVERIFY(desk.shows(QStringLiteral("whole")));
        QVERIFY(desk.alert().text.isEmpty());
        QCOMPARE(desk.edit().text(), QStringLiteral("being typed"));
    }

    void aLostCommandComesBackToAnEmptyLine()
    {
        ScriptedServer server;
        server.answerInTurn("a", { { Step::drop() }, { Step::text("whole\n") } });
        ConsoleFixture desk(server);
        desk.send(QStringLiteral("a"));
        QVERIFY(desk.shows(QStringLiteral("No reply: a")));
        QCOMPARE(desk.edit().text(), QStringLiteral("a"));
        TRY_COMPARE(desk.alert().action, AlertAction::SendAgain);
        QTest::keyClick(&desk.edit(), Qt::Key_Return);
        QVERIFY(desk.alert().text.isEmpty()); // otherwise it could be sent a second time
        QVERIFY(desk.shows(QStringLiteral("whole")));
    }

    void aCommandCanBeGivenUp()
    {
        ScriptedServer server;
        server.answer("never", { Step::silence() });
        server.answer("next", { Step::text("done\n") });
        ConsoleFixture desk;
        QVERIFY(!desk.widget<QPushButton>("giveUpButton").isEnabled());
        desk.use(server);
        QVERIFY(desk.reaches(ServerState::Up));
        desk.send(QStringLiteral("never"));
        QVERIFY(server.waitForRequest("never"));
        desk.press("giveUpButton");
        QVERIFY(!desk.window->commandPanel().isBusy());
        QVERIFY(desk.record().contains(QStringLiteral("Given up: never")));
        QVERIFY(desk.alert().text.isEmpty());
        desk.send(QStringLiteral("next"));
        QVERIFY(desk.shows(QStringLiteral("done")));
    }

    void commandsAfterACancelledOneCanBeSentAgain()
    {
        ScriptedServer server;
        server.answer("never", { Step::silence() });
        server.answer("next", { Step::text("done\n") });
        server.answer("last", { Step::text("done too\n") });
        ConsoleFixture desk(server);
        for (const char* const command : { "never", "next", "last" })
            desk.send(QLatin1String(command));
        QVERIFY(server.waitForRequest("never"));
        desk.press("giveUpButton");
        QCOMPARE(desk.alert().action, AlertAction::SendAgain);
        QVERIFY2(desk.alert().text.contains(QStringLiteral("2 commands")), qPrintable(desk.alert().text));
        desk.press("alertButton");
        QVERIFY(desk.shows(QStringLiteral("done too")));
        QVERIFY(desk.alert().text.isEmpty());
        QCOMPARE(server.requests().count("never"), 1);
    }

    // Settings.

    void settingsAreReadAndSentAndChecked()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { { Step::text("OK:\nrate: 10\n") }, { Step::text("OK:\nrate: 10\n") },
                { Step::text("OK:\nrate: 20\n") } });
        ConsoleFixture desk;
        SettingsModel& model = desk.window->settingsPanel().model();
        QVERIFY(!desk.widget<QPushButton>("readButton").isEnabled());
        desk.use(server);
        TRY_COMPARE(model.rowCount(), 1);
        QCOMPARE(desk.settingsState(), QStringLiteral("As on the server."));
        QVERIFY(model.setData(model.index(0, SettingsModel::Value), "20", Qt::EditRole));
        QVERIFY(desk.settingsState().startsWith(QStringLiteral("1 changed")));
        desk.press("saveButton");
        QVERIFY(!desk.widget<QPushButton>("saveButton").isEnabled());
        TRY_VERIFY(model.changedNames().isEmpty());
        QVERIFY(server.requests().contains("setting rate:20 "));
        QVERIFY(server.requests().contains("savesetting"));
        QVERIFY(desk.widget<QPushButton>("saveButton").isEnabled());
    }

    void reportsARejectedSetting()
    {
        ScriptedServer server;
        server.answer("setting", { Step::text("OK:\nrate: 10\n") });
        server.answer("setting rate:0 ", { Step::text("NG:rate is too small\n") });
        ConsoleFixture desk;
        SettingsModel& model = desk.window->settingsPanel().model();
        desk.use(server);
        TRY_COMPARE(model.rowCount(), 1);
        model.setData(model.index(0, SettingsModel::Value), "0", Qt::EditRole);
        desk.press("downloadButton");
        TRY_VERIFY(desk.settingsState().contains(QStringLiteral("rate is too small")));
        QCOMPARE(model.changedNames(), QStringList { "rate" });
    }

    void theBasePathFollowsTheStatus()
    {
        ScriptedServer server;
        ConsoleFixture desk;
        auto& path = desk.widget<QLineEdit>("pathEdit");
        path.setText(QStringLiteral("/data"));
        desk.press("pathButton"); // no server: kept
        QCOMPARE(desk.window->controller().tarnis().GetSettingValue("basepath", QString()), QStringLiteral("/data"));
        desk.use(server);
        QVERIFY(desk.reaches(ServerState::Up));
        path.setText(QStringLiteral("/data/a b"));
        QVERIFY(!desk.widget<QPushButton>("pathButton").isEnabled());
        path.setText(QStringLiteral("/data/a"));
        desk.widget<QCheckBox>("instCheck").setChecked(true);
        desk.press("pathButton");
        QVERIFY(server.waitForRequest("setting inst: basepath:/data/a"));
        desk.window->controller().tarnis().SetStatus(Tarnis::RUNNING);
        QVERIFY(!desk.widget<QPushButton>("pathButton").isEnabled());
        QVERIFY(desk.widget<QPushButton>("pathButton").toolTip().contains(QStringLiteral("Running")));
    }

    void storesTheReadoutAddressInTheSettings()
    {
        const ScriptedServer server;
        ConsoleFixture desk(server);
        Tarnis& tarnis = desk.window->controller().tarnis();
        desk.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0"));
        QVERIFY(!desk.widget<QPushButton>("addressButton").isEnabled());
        desk.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0.7"));
        desk.widget<QSpinBox>("tcpSpin").setValue(24);
        desk.widget<QSpinBox>("bcpSpin").setValue(4660);
        desk.press("addressButton");
        QCOMPARE(tarnis.GetSettingValue("ip", QString()), QStringLiteral("10.0.0.7"));
        desk.widget<QSpinBox>("indexSpin").setValue(2);
        QVERIFY(desk.widget<QLineEdit>("ipEdit").text().isEmpty());
        desk.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0.8"));
        desk.press("addressButton");
        QCOMPARE(tarnis.GetSettingValue("ip2", QString()), QStringLiteral("10.0.0.8"));
        QCOMPARE(tarnis.GetReadoutAddressText(), QStringLiteral("10.0.0.8:0"));
        desk.widget<QSpinBox>("indexSpin").setValue(-1);
        QCOMPARE(desk.widget<QLineEdit>("ipEdit").text(), QStringLiteral("10.0.0.7"));
        QCOMPARE(desk.widget<QSpinBox>("bcpSpin").value(), 4660);
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
        ConsoleFixture desk(program);
        desk.send(QStringLiteral("a"));
        desk.type(QStringLiteral("being typed"));
        QVERIFY(server.waitForRequest("a"));
        desk.choose("forceAction");
        QVERIFY(desk.reaches(ServerState::Failed));
        QCOMPARE(desk.alert().action, AlertAction::StartAgain);
        QCOMPARE(desk.widget<QLabel>("statusLabel").text(), QStringLiteral("No connection"));
        desk.press("alertButton");
        QVERIFY(desk.reaches(ServerState::Up));
        QVERIFY(desk.alert().text.isEmpty());
        QCOMPARE(desk.edit().text(), QStringLiteral("being typed"));
        desk.send(QStringLiteral("b"));
        QVERIFY(desk.shows(QStringLiteral("> b\n(an empty reply)")));
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
        ConsoleFixture desk;
        if (kind == u"mute")
            desk.use(mute);
        else if (kind == u"refused")
            desk.start({ ServerChoice::Kind::Remote, {}, ScriptedServer::host(), ScriptedServer::closedPort() });
        else if (kind == u"remote" || kind == u"busy")
            desk.use(server);
        else if (kind != u"none")
            desk.use(program);
        QVERIFY(desk.reaches(state));
        if (kind == u"busy") {
            desk.send(QStringLiteral("long"));
            QVERIFY(server.waitForRequest("long"));
        }
        const QProcess* process = desk.window->controller().tarnis().process();
        const qint64 processId = process ? process->processId() : 0;
        desk.window->close();
        TRY_VERIFY(!desk.window->isVisible());
        if (processId > 0)
            TRY_VERIFY(!isRunning(processId));
        desk.window.reset();
        QVERIFY(server.waitUntilDeserted());
        QVERIFY(mute.waitUntilDeserted());
    }

    void closingADeafServerOffersToEndIt()
    {
        ScriptedServer server;
        const FakeServer program(FakeServer::deaf(server.port()));
        ConsoleFixture desk(program);
        const qint64 processId = desk.window->controller().tarnis().process()->processId();
        desk.window->close();
        TRY_COMPARE(desk.alert().action, AlertAction::EndByForce);
        QVERIFY(desk.window->isVisible());
        desk.press("alertButton");
        TRY_VERIFY(!desk.window->isVisible());
        TRY_VERIFY(!isRunning(processId));
    }

    void aBusyServerKeepsTheWindowOpen()
    {
        ScriptedServer server;
        ConsoleFixture desk(server);
        desk.window->controller().tarnis().SetStatus(Tarnis::HARDWARE_BUSY);
        desk.window->close();
        QVERIFY(desk.window->isVisible());
        QVERIFY(desk.alert().text.contains(QStringLiteral("busy")));
        desk.window->controller().tarnis().SetStatus(Tarnis::SERVER_CONNECTED);
        desk.choose("shutDownAction");
        QVERIFY(desk.reaches(ServerState::Off));
        QCoreApplication::processEvents();
        QVERIFY(desk.window->isVisible()); // the previous close was cancelled
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
        ConsoleFixture desk;
        QVERIFY(!desk.window->openWindow(desk.window->entries().front()));
        desk.use(server);
        QVERIFY(desk.reaches(ServerState::Up));
        for (const WindowEntry& entry : desk.window->entries()) {
            const QPointer<QWidget> window = desk.window->openWindow(entry);
            QVERIFY(window && window->isVisible());
            QCOMPARE(desk.window->openWindow(entry), window.data());
            QVERIFY2(!window->windowTitle().isEmpty(), qPrintable(entry.id));
            window->close();
            TRY_VERIFY(window.isNull());
            QVERIFY(desk.window->openWindow(entry));
        }
    }
};

QTEST_MAIN(TestConsoleWindow)
#include "tst_consolewindow.moc"
