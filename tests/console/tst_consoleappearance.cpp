// How the console's main window looks: names, keys, texts, contrast and indicators.
#include "app/colours.h"
#include "app/indicatorstyle.h"
#include "mainwindow.h"
#include "notices/alertbar.h"
#include "server/connectdialog.h"
#include "settings/addsettingdialog.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"

#include "console/consolefixture.h"
#include "support/contrast.h"
#include "support/scriptedserver.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QStyleOptionButton>
#include <QTest>

#include <algorithm>

using namespace console;
using namespace tarnis::testing;

namespace {

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
class TestConsoleAppearance : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { QApplication::setPalette(QApplication::style()->standardPalette()); }

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
};

QTEST_MAIN(TestConsoleAppearance)
#include "tst_consoleappearance.moc"
