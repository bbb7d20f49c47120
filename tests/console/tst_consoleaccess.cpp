// Accessibility of every window of the console: names, keys, tab order, contrast, in both languages.
#include "app/colours.h"
#include "app/language.h"
#include "console/fullconsole.h"
#include "histograms/histogramchooser.h"
#include "support/contrast.h"
#include "support/wait.h"
#include "windows/openwindows.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>

#include <cmath>
#include <string_view>

using namespace console;
using namespace tarnis::testing;

namespace {

/// The same with every box open in front of or beside one of the windows.
struct BoxesFixture : FullConsoleFixture {
    BoxesFixture()
    {
        auto* const map = fixture.open<Graph2DDialog>("map");
        map->onFilter();
        map->getGraphWidget()->SetRoiEnabled(true);
        auto* const cut = new XY2DGraphWidget(&m_other); // a cut ends the regions of its plot
        cut->init(QStringLiteral("X"), QStringLiteral("Y"), 4, 1, true, true);
        cut->setData(0, { 1, 2, 3, 4 }, 4, false);
        m_other.show();
        cut->on1dCut(true);
        auto* const curves = fixture.open<Graph1DDialog>("curves");
        auto& plot = *curves->getGraphWidget();
        if (!eventually([&] { return plot.hasData(); })) // the first curve ends a selection
            qFatal("no curve");
        plot.SetEnableSelectXRange(true);
        plot.onPeakSearch();
        curves->findChild<QToolButton*>(QStringLiteral("toolButton"))->click();
        fixture.press("addButton");
        fixture.choose("chooseAction");
        QCoreApplication::processEvents();
        for (const char* const name : { "ConnectDialog", "AddSettingDialog", "PeakSearchDialog", "SelectCheckedDialog",
                 "XRangeInputDialog", "Graph2DFilterDialog", "XYRangeInputDialog" })
            windows.append(box(name));
        windows.append(map->getGraphWidget()->GetViewSelectedROI()->window());
    }
    static QWidget* box(const char* name)
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        for (QWidget* const window : all) {
            if (window->objectName() == QLatin1String(name) && window->isVisible())
                return window;
        }
        qFatal("%s is not open", name);
    }

    QWidget m_other;
};

/// An inner part of a control, which the control represents.
bool isInner(const QWidget& widget)
{
    return widget.objectName().startsWith(u"qt_") || qobject_cast<const QAbstractSpinBox*>(widget.parent())
        || qobject_cast<const QComboBox*>(widget.parent()) || widget.inherits("QTableCornerButton")
        || widget.inherits("QLineEditIconButton") || widget.inherits("QMenuBarExtension")
        || widget.inherits("QHeaderView") || widget.inherits("QComboBoxPrivateContainer")
        || widget.inherits("QComboBoxListView");
}

bool isControl(const QWidget& widget)
{
    return !isInner(widget)
        && (qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget)
            || qobject_cast<const QAbstractSpinBox*>(&widget) || qobject_cast<const QComboBox*>(&widget)
            || qobject_cast<const QAbstractScrollArea*>(&widget) || qobject_cast<const QProgressBar*>(&widget)
            || qobject_cast<const XYGraphWidget*>(&widget));
}

/// Tab selects one of these choices, and the arrow keys move between them. The buttons of a tool bar only show icons,
/// and Tab selects one of them.
bool isInToolBar(const QWidget& widget)
{
    const QWidget* parent = widget.parentWidget();
    while (parent && !qobject_cast<const QToolBar*>(parent))
        parent = parent->parentWidget();
    return parent;
}

bool isOneOfSeveral(const QWidget& widget)
{
    if (isInToolBar(widget))
        return true;
    const auto* const choice = qobject_cast<const QRadioButton*>(&widget);
    return choice && choice->autoExclusive();
}

QString accessibleName(QWidget* widget)
{
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(widget);
    return interface ? interface->text(QAccessible::Name) : QString();
}

QString placeOf(const QWidget& widget)
{
    return QStringLiteral("%1: %2 (%3)")
        .arg(widget.window()->windowTitle(), widget.objectName(), QLatin1String(widget.metaObject()->className()));
}

QMultiMap<QChar, QString> keysOf(const QStringList& texts)
{
    QMultiMap<QChar, QString> keys;
    for (const QString& text : texts) {
        if (const QChar key = mnemonicOf(text); !key.isNull())
            keys.insert(key, text);
    }
    return keys;
}

QStringList textsOf(const QWidget& window)
{
    QStringList texts;
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        if (button->window() == &window)
            texts.append(button->text());
    }
    for (const auto* label : window.findChildren<QLabel*>()) {
        if (label->window() == &window && label->buddy())
            texts.append(label->text());
    }
    if (const auto* bar = window.findChild<QMenuBar*>()) {
        for (const QAction* action : bar->actions())
            texts.append(action->text());
    }
    return texts;
}

void compareNoSharedKeys(const QStringList& texts)
{
    const auto keys = keysOf(texts);
    for (const QChar key : keys.uniqueKeys())
        QVERIFY2(keys.count(key) == 1, qPrintable(keys.values(key).join(u'|')));
}

} // namespace

/// The keys of menus, shortcuts and buttons.
QList<QKeySequence> shortcutsOf(const QWidget& window)
{
    QList<QKeySequence> keys;
    for (const QAction* action : window.findChildren<QAction*>()) {
        if (action->shortcutContext() != Qt::WidgetShortcut) // otherwise it is only displayed: the plot handles the key
            keys += action->shortcuts();
    }
    for (const QShortcut* shortcut : window.findChildren<QShortcut*>())
        keys.append(shortcut->key());
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        if (!button->shortcut().isEmpty() && mnemonicOf(button->text()).isNull())
            keys.append(button->shortcut());
    }
    return keys;
}

QList<QKeySequence::StandardKey> editingKeys()
{
    QList<QKeySequence::StandardKey> keys { QKeySequence::Cut, QKeySequence::Copy, QKeySequence::Paste,
        QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Delete, QKeySequence::DeleteStartOfWord,
        QKeySequence::DeleteEndOfWord, QKeySequence::DeleteEndOfLine, QKeySequence::DeleteCompleteLine,
        QKeySequence::InsertParagraphSeparator, QKeySequence::InsertLineSeparator, QKeySequence::Bold,
        QKeySequence::Italic, QKeySequence::Underline, QKeySequence::SelectAll, QKeySequence::Deselect,
        QKeySequence::Backspace };
    for (int key = QKeySequence::MoveToNextChar; key <= QKeySequence::SelectEndOfDocument; ++key)
        keys.append(QKeySequence::StandardKey(key));
    return keys;
}

/// True if neither a line edit nor a text edit handles this key.
bool isLeftToTheWindow(const QKeySequence& key)
{
    const QKeyCombination combination = key[0];
    QLineEdit line(QStringLiteral("typed before"));
    QPlainTextEdit text(QStringLiteral("typed before"));
    line.setCursorPosition(5);
    text.moveCursor(QTextCursor::NextWord);
    for (QWidget* const editor : { static_cast<QWidget*>(&line), static_cast<QWidget*>(&text) }) {
        QKeyEvent claim(QEvent::ShortcutOverride, combination.key(), combination.keyboardModifiers());
        claim.ignore();
        QApplication::sendEvent(editor, &claim);
        QKeyEvent press(QEvent::KeyPress, combination.key(), combination.keyboardModifiers());
        QApplication::sendEvent(editor, &press);
        if (claim.isAccepted())
            return false;
    }
    return line.text() == u"typed before" && line.cursorPosition() == 5 && text.toPlainText() == u"typed before"
        && text.textCursor().position() == 6;
}

class TestConsoleAccess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup()
    {
        setLanguage(QStringLiteral("en"));
        QApplication::setPalette(QApplication::style()->standardPalette());
    }

    void everyControlOfEveryWindowHasAName_data() { languageRows(); }
    void everyControlOfEveryWindowHasAName()
    {
        QFETCH(QString, language);
        const BoxesFixture full;
        QVERIFY(full.isInLanguage(language));
        QStringList nameless;
        for (const QWidget* window : full.all()) {
            for (QWidget* widget : window->findChildren<QWidget*>()) {
                if (isControl(*widget) && accessibleName(widget).isEmpty())
                    nameless.append(placeOf(*widget));
            }
        }
        QVERIFY2(nameless.isEmpty(), qPrintable(nameless.join(u'\n')));
    }

    void everyControlExplainsItself_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << QStringLiteral("en");
        QTest::newRow("German") << QStringLiteral("de");
    }
    void everyControlExplainsItself()
    {
        QFETCH(QString, language);
        setLanguage(QStringLiteral("en"));
        const BoxesFixture full;
        QVERIFY(full.isInLanguage(language));
        QCoreApplication::processEvents();
        QStringList silent;
        for (const QWidget* const window : full.all()) {
            const auto widgets = window->findChildren<QWidget*>();
            for (const QWidget* const widget : widgets) {
                const auto* const button = qobject_cast<const QAbstractButton*>(widget);
                const bool isExplained = button || qobject_cast<const QLineEdit*>(widget)
                    || qobject_cast<const QAbstractSpinBox*>(widget) || qobject_cast<const QComboBox*>(widget);
                if (!isExplained || isInner(*widget) || widget->window() != window)
                    continue;
                if (widget->toolTip().isEmpty()
                    || (button && !isInToolBar(*button) && widget->toolTip() == button->text().remove(u'&')))
                    silent.append(placeOf(*widget));
            }
        }
        for (const QMenu* const menu : full.fixture.window->findChildren<QMenu*>()) {
            if (isInToolBar(*menu))
                continue; // belongs to the tools of a plot
            for (const QAction* const action : menu->actions()) {
                const bool isOpenWindow = action->isSeparator() || action->menu() || action->text().startsWith(u'&');
                if (!isOpenWindow && action->toolTip() == action->text().remove(u'&'))
                    silent.append(action->text());
            }
        }
        QVERIFY2(silent.isEmpty(), qPrintable(silent.join(u'\n')));
    }

    void theButtonsOfAnEmptyListOfRegionsAreOff()
    {
        const BoxesFixture full;
        auto& plot = *full.fixture.window->findChild<Graph2DDialog*>()->getGraphWidget();
        QWidget& box = *plot.GetViewSelectedROI()->window();
        auto* const remove = box.findChild<QPushButton*>(QStringLiteral("deleteButton"));
        auto* const clear = box.findChild<QPushButton*>(QStringLiteral("clearButton"));
        QVERIFY(!remove->isEnabled() && !clear->isEnabled());
        QVERIFY(!remove->toolTip().isEmpty());
        plot.GetViewSelectedROI()->addRoi(QRect(0, 0, 1, 1));
        TRY_VERIFY(remove->isEnabled() && clear->isEnabled());
        plot.GetViewSelectedROI()->clear();
        TRY_VERIFY(!remove->isEnabled() && !clear->isEnabled());
    }

    void everyWindowHasATitle_data() { languageRows(); }
    void everyWindowHasATitle()
    {
        QFETCH(QString, language);
        const BoxesFixture full;
        QVERIFY(full.isInLanguage(language));
        QStringList titles;
        for (const QWidget* window : full.all()) {
            if (window->windowFlags() & Qt::FramelessWindowHint)
                continue; // it is beside its window, which has one
            QVERIFY2(!window->windowTitle().isEmpty() && window->windowTitle() != u"Dialog",
                window->metaObject()->className());
            titles.append(window->windowTitle());
        }
        QCOMPARE(titles.removeDuplicates(), 0);
    }

    void noTwoThingsShareAKey_data() { languageRows(); }
    void noTwoThingsShareAKey()
    {
        QFETCH(QString, language);
        const BoxesFixture full;
        QVERIFY(full.isInLanguage(language));
        for (const QWidget* window : full.all())
            compareNoSharedKeys(textsOf(*window));
        for (const QMenu* menu : full.fixture.window->findChildren<QMenu*>()) {
            QStringList texts;
            for (const QAction* action : menu->actions())
                texts.append(action->text());
            compareNoSharedKeys(texts);
        }
    }

    void everyEntryOfTheMenusHasAKey_data() { languageRows(); }
    void everyEntryOfTheMenusHasAKey()
    {
        QFETCH(QString, language);
        const FullConsoleFixture full;
        QVERIFY(full.isInLanguage(language));
        for (const QAction* title : full.fixture.window->findChild<QMenuBar*>()->actions()) {
            const QMenu* const menu = title->menu();
            QVERIFY2(!mnemonicOf(menu->title()).isNull(), qPrintable(menu->title()));
            for (const QAction* action : menu->actions()) {
                if (!action->isSeparator())
                    QVERIFY2(!mnemonicOf(action->text()).isNull(), qPrintable(action->text()));
            }
        }
    }

    void noTwoShortcutsAreTheSame()
    {
        const BoxesFixture full;
        for (const QWidget* window : full.all()) {
            QStringList keys;
            for (const QAction* action : window->findChildren<QAction*>()) {
                if (!action->shortcut().isEmpty() && action->shortcutContext() != Qt::WidgetShortcut)
                    keys.append(action->shortcut().toString());
            }
            for (const QShortcut* shortcut : window->findChildren<QShortcut*>(QString(), Qt::FindDirectChildrenOnly))
                keys.append(shortcut->key().toString());
            QCOMPARE(keys.removeDuplicates(), 0);
        }
    }

    void noShortcutIsAKeyOfTheEditors()
    {
        // Keys of editors have priority over those of the window. The letters are those that Qt's editors use with Ctrl
        // on any desktop, and those of terminals.
        const FullConsoleFixture full;
        for (const QWidget* window : full.all()) {
            for (const QKeySequence& key : shortcutsOf(*window)) {
                const QString name = window->windowTitle() + u' ' + key.toString();
                for (const char letter : std::string_view("ABCDEFHIKUVXYZ"))
                    QVERIFY2(key != QKeySequence(Qt::CTRL | Qt::Key(letter)), qPrintable(name));
                QVERIFY2(key != QKeySequence(QStringLiteral("Ctrl+Shift+Z")), qPrintable(name));
                QVERIFY2(key != QKeySequence(QStringLiteral("Ctrl+Shift+A")), qPrintable(name));
                for (const auto standard : editingKeys())
                    QVERIFY2(!QKeySequence::keyBindings(standard).contains(key), qPrintable(name));
                QVERIFY2(isLeftToTheWindow(key), qPrintable(name));
            }
        }
    }

    void theTabKeyReachesEveryControl()
    {
        const BoxesFixture full;
        QStringList missed;
        for (QWidget* window : full.all()) {
            QSet<const QWidget*> reached;
            QWidget* widget = window;
            do {
                if (widget->focusPolicy() & Qt::TabFocus)
                    reached.insert(widget);
                widget = widget->nextInFocusChain();
            } while (widget != window);
            for (const QWidget* control : window->findChildren<QWidget*>()) {
                const bool isKeyless = !isControl(*control) || qobject_cast<const QProgressBar*>(control)
                    || control->window() != window || control->inherits("QScrollArea") || isOneOfSeveral(*control);
                if (!isKeyless && !reached.contains(control))
                    missed.append(placeOf(*control));
            }
        }
        QVERIFY2(missed.isEmpty(), qPrintable(missed.join(u'\n')));
    }

    void textHasContrastInEveryWindow_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << QPalette(QColor(0xefefef), QColor(0xefefef));
        QTest::newRow("dark") << darkPalette();
    }
    void textHasContrastInEveryWindow()
    {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        const FullConsoleFixture full;
        for (const QWidget* window : full.all()) {
            for (const QWidget* widget : window->findChildren<QWidget*>()) {
                const bool hasText = isControl(*widget) || qobject_cast<const QLabel*>(widget);
                if (!hasText || qobject_cast<const XYGraphWidget*>(widget)) // plots draw black on grey in any palette
                    continue;
                const QPalette own = widget->palette();
                const QColor ground = own.color(QPalette::Active, widget->backgroundRole());
                const QColor text = own.color(QPalette::Active, widget->foregroundRole());
                QVERIFY2(contrast(ground, text) >= 4.5,
                    qPrintable(placeOf(*widget) + text.name() + QStringLiteral(" on ") + ground.name()));
            }
        }
    }

private:
    static void languageRows()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << QStringLiteral("en");
        QTest::newRow("German") << QStringLiteral("de");
    }
};

QTEST_MAIN(TestConsoleAccess)
#include "tst_consoleaccess.moc"
