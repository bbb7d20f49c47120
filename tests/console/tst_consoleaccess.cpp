// Accessibility of every window of the console: names, keys, tab order, contrast, in both languages.
#include "app/colours.h"
#include "app/language.h"
#include "console/consolefixture.h"
#include "console/windowlists.h"
#include "histograms/histogramchooser.h"
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

/// A server that answers all requests of the windows.
class HistogramServer : public ScriptedServer {
public:
    HistogramServer()
    {
        answer("hist1d time 0 7 bins:1024", { Step::doubles({ 1, 2, 3, 4, 5, 6, 7, 8 }, "OK:\n") });
        answer("hist1d total pairs bins:1024", { Step::doubles({ 0, 5 }, "OK: (0 40000 1024)\n") });
        answer("hist1d position 0", { Step::doubles({ 1, 2 }, "OK:\n") });
        answer("hist2d image bins:256x256", { Step::doubles({ 1, 2, 3, 4 }, "OK: exported 2 x 2 y\n") });
        answer("stat", { Step::text("OK:\nevents: 12\n") });
        answer("setting", { Step::text("OK:\nrate: 12\n") });
        answer("pwd", { Step::text("OK:\n/data\n") });
        answer("ls-F \"/data\"", { Step::text("OK:\nrun000001_20260101/\nold/\n") });
        answer("hists",
            { Step::text("OK:\ntime: kind=1d rows=8 bins=1024 min=0 max=40000 label=Time unit=us\n"
                         "total: kind=1d rows=1 bins=1024 min=0 max=40000 label=Time unit=us\n"
                         "position: kind=1d rows=8 bins=1000 min=0 max=1000 label=Position unit=mm\n"
                         "spectrum: kind=1d rows=1 bins=100 min=0 max=100\n"
                         "image: kind=2d binsx=256 minx=0 maxx=1 binsy=256 miny=0 maxy=1\n") });
    }
};

/// A console with every window of the menu open.
struct FullConsoleFixture {
    FullConsoleFixture()
    {
        desk.use(server);
        if (!desk.reaches(ServerState::Up) || !isListed(desk, "time"))
            qFatal("no server");
        for (const WindowEntry& entry : desk.window->entries()) {
            QWidget* const window = desk.window->openWindow(entry);
            if (!window)
                qFatal("%s does not open", qPrintable(entry.id));
            windows.append(window);
        }
        QCoreApplication::processEvents();
    }
    /// Changes the language; true when the windows have followed.
    bool speaks(const QString& language) const
    {
        setLanguage(language);
        const QString title = language == u"de" ? QStringLiteral("Ankunftszeiten") : QStringLiteral("Arrival Times");
        return QTest::qWaitFor([&] { return windows.constFirst()->windowTitle() == title; }, timeoutMs);
    }
    QList<QWidget*> all() const { return QList<QWidget*> { desk.window.get() } + windows; }

    HistogramServer server;
    ConsoleFixture desk;
    QList<QWidget*> windows;
};

/// The same with every box open in front of or beside one of the windows.
struct BoxesFixture : FullConsoleFixture {
    BoxesFixture()
    {
        auto* const map = desk.open<Graph2DDialog>("map");
        map->onFilter();
        map->getGraphWidget()->SetRoiEnabled(true);
        auto* const cut = new XY2DGraphWidget(&m_other); // a cut ends the regions of its plot
        cut->init(QStringLiteral("X"), QStringLiteral("Y"), 4, 1, true, true);
        cut->setData(0, { 1, 2, 3, 4 }, 4, false);
        m_other.show();
        cut->on1dCut(true);
        auto* const curves = desk.open<Graph1DDialog>("curves");
        auto& plot = *curves->getGraphWidget();
        if (!QTest::qWaitFor([&] { return plot.hasData(); }, timeoutMs)) // the first curve ends a selection
            qFatal("no curve");
        plot.SetEnableSelectXRange(true);
        plot.onPeakSearch();
        curves->findChild<QToolButton*>(QStringLiteral("toolButton"))->click();
        desk.press("addButton");
        desk.choose("chooseAction");
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

QChar keyOf(const QString& text)
{
    const QKeySequence keys = QKeySequence::mnemonic(text);
    return keys.isEmpty() ? QChar() : QChar(char16_t(keys[0].key()));
}

QMultiMap<QChar, QString> keysOf(const QStringList& texts)
{
    QMultiMap<QChar, QString> keys;
    for (const QString& text : texts) {
        if (const QChar key = keyOf(text); !key.isNull())
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

/// The menu of the menu key.
QMenu* openTools(XYGraphWidget& plot)
{
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), plot.mapToGlobal(QPoint()));
    QApplication::sendEvent(&plot, &event);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu)
        qFatal("no tools");
    return menu;
}

/// As if the user had pressed Tab.
void takeKeyboard(XYGraphWidget& plot)
{
    plot.window()->activateWindow();
    plot.setFocus();
    if (!QTest::qWaitFor([&] { return QApplication::focusWidget() == &plot; }, timeoutMs))
        qFatal("the plot does not get the keyboard");
}

QAction* entryOf(const QMenu& menu, const QString& text)
{
    const QList<QAction*> actions = menu.actions();
    for (QAction* const action : actions) {
        if (action->text().remove(u'&') == text)
            return action;
    }
    return nullptr;
}

void chooseTool(XYGraphWidget& plot, const QString& text)
{
    QMenu* const menu = openTools(plot);
    QAction* const entry = entryOf(*menu, text);
    if (!entry || !entry->isEnabled())
        qFatal("%s cannot be chosen", qPrintable(text));
    menu->setActiveAction(entry);
    QTest::keyClick(menu, Qt::Key_Return);
    plot.window()->activateWindow(); // this platform gives the focus to menus and does not restore it
}

/// Chooses an entry as soon as a menu with it opens: this platform closes menus that open after another one.
class MenuHand : public QObject {
public:
    explicit MenuHand(const QString& text)
        : m_text(text)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }
    bool hasChosen() const { return m_hasChosen; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        const auto* const menu = event->type() == QEvent::Show ? qobject_cast<QMenu*>(object) : nullptr;
        if (QAction* const entry = menu ? entryOf(*menu, m_text) : nullptr) {
            entry->trigger();
            m_hasChosen = true;
        }
        return false;
    }

    QString m_text;
    bool m_hasChosen = false;
};

double luminance(const QColor& colour)
{
    const auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(colour.redF()) + 0.7152 * channel(colour.greenF()) + 0.0722 * channel(colour.blueF());
}

/// Contrast ratio of the Web Content Accessibility Guidelines 2.1, 1.4.3.
double contrast(const QColor& a, const QColor& b)
{
    const double lighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
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
        if (!button->shortcut().isEmpty() && keyOf(button->text()).isNull())
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
        QVERIFY(full.speaks(language));
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
        QVERIFY(full.speaks(language));
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
        for (const QMenu* const menu : full.desk.window->findChildren<QMenu*>()) {
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
        auto& plot = *full.desk.window->findChild<Graph2DDialog*>()->getGraphWidget();
        QWidget& box = *plot.GetViewSelectedROI()->window();
        auto* const remove = box.findChild<QPushButton*>(QStringLiteral("deleteButton"));
        auto* const clear = box.findChild<QPushButton*>(QStringLiteral("clearButton"));
        QVERIFY(!remove->isEnabled() && !clear->isEnabled());
        QVERIFY(!remove->toolTip().isEmpty());
        plot.GetViewSelectedROI()->addRoi(QRect(0, 0, 1, 1));
        QTRY_VERIFY(remove->isEnabled() && clear->isEnabled());
        plot.GetViewSelectedROI()->clear();
        QTRY_VERIFY(!remove->isEnabled() && !clear->isEnabled());
    }

    void everyWindowHasATitle_data() { languageRows(); }
    void everyWindowHasATitle()
    {
        QFETCH(QString, language);
        const BoxesFixture full;
        QVERIFY(full.speaks(language));
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
        QVERIFY(full.speaks(language));
        for (const QWidget* window : full.all())
            compareNoSharedKeys(textsOf(*window));
        for (const QMenu* menu : full.desk.window->findChildren<QMenu*>()) {
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
        QVERIFY(full.speaks(language));
        for (const QAction* title : full.desk.window->findChild<QMenuBar*>()->actions()) {
            const QMenu* const menu = title->menu();
            QVERIFY2(!keyOf(menu->title()).isNull(), qPrintable(menu->title()));
            for (const QAction* action : menu->actions()) {
                if (!action->isSeparator())
                    QVERIFY2(!keyOf(action->text()).isNull(), qPrintable(action->text()));
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

    void aLiveWindowIsUpdatedByF5()
    {
        const FullConsoleFixture full;
        for (const QWidget* window : full.windows) {
            if (!window->findChild<QPushButton*>(QStringLiteral("updatePushButton")))
                continue;
            const auto* const shortcut = window->findChild<QShortcut*>(QStringLiteral("updateShortcut"));
            QVERIFY(shortcut);
            QCOMPARE(shortcut->key(), QKeySequence(Qt::Key_F5));
        }
    }

    void aPlotIsMovedAndZoomedByKeys()
    {
        FullConsoleFixture full;
        auto* const window = full.desk.open<Graph1DDialog>("curves");
        auto& plot = *window->getGraphWidget();
        QTRY_VERIFY(plot.hasData());
        takeKeyboard(plot);
        const auto range = [&] {
            std::pair<double, double> ends;
            plot.getMinMaxX(ends.first, ends.second);
            return ends;
        };
        const auto whole = range();
        QTest::keyClick(&plot, Qt::Key_Plus);
        const auto zoomed = range();
        QVERIFY(zoomed.first > whole.first && zoomed.second < whole.second);
        QTest::keyClick(&plot, Qt::Key_Right);
        QVERIFY(range().first > zoomed.first && range().second > zoomed.second);
        QTest::keyClick(&plot, Qt::Key_Left);
        QVERIFY(std::abs(range().first - zoomed.first) < 1e-6 * whole.second);
        QTest::keyClick(&plot, Qt::Key_Minus);
        QVERIFY(std::abs(range().second - whole.second) < 1e-6 * whole.second);
        double bottom = 0.0;
        double top = 0.0;
        plot.getMinMaxY(bottom, top);
        QTest::keyClick(&plot, Qt::Key_Up);
        double movedBottom = 0.0;
        double movedTop = 0.0;
        plot.getMinMaxY(movedBottom, movedTop);
        QVERIFY(movedTop > top);
        QTest::keyClick(&plot, Qt::Key_Home);
        QCOMPARE(range(), whole);
    }

    void aPlotIsZoomedAlongYByKeys()
    {
        FullConsoleFixture full;
        const auto rangeOf = [](XYGraphWidget& plot) {
            std::pair<double, double> ends;
            plot.getMinMaxY(ends.first, ends.second);
            return ends;
        };
        auto& curves = *full.desk.open<Graph1DDialog>("curves")->getGraphWidget();
        QTRY_VERIFY(curves.hasData());
        takeKeyboard(curves);
        const auto whole = rangeOf(curves);
        QTest::keyClick(&curves, Qt::Key_PageUp);
        QCOMPARE(rangeOf(curves).first, whole.first);
        QVERIFY(rangeOf(curves).second < whole.second);
        QTest::keyClick(&curves, Qt::Key_PageDown);
        QVERIFY(std::abs(rangeOf(curves).second - whole.second) < 1e-6 * whole.second);

        auto& map = *full.desk.open<Graph2DDialog>("map")->getGraphWidget();
        QTRY_VERIFY(map.getMaxValue() > 0.0);
        takeKeyboard(map);
        const auto all = rangeOf(map);
        QTest::keyClick(&map, Qt::Key_PageUp);
        QVERIFY(rangeOf(map).first > all.first && rangeOf(map).second < all.second);
    }

    void theEndsOfTheAxesAreEditedByKeys_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("end");
        QTest::newRow("left") << "Left End of the Axis..."
                              << "100" << 0;
        QTest::newRow("right") << "Right End of the Axis..."
                               << "9000" << 1;
        QTest::newRow("bottom") << "Bottom End of the Axis..."
                                << "1" << 2;
        QTest::newRow("top") << "Top End of the Axis..."
                             << "77" << 3;
    }
    void theEndsOfTheAxesAreEditedByKeys()
    {
        QFETCH(QString, entry);
        QFETCH(QString, value);
        QFETCH(int, end);
        FullConsoleFixture full;
        auto& plot = *full.desk.open<Graph1DDialog>("curves")->getGraphWidget();
        QTRY_VERIFY(plot.hasData());
        plot.grab(); // the labels are where they were painted
        takeKeyboard(plot);
        chooseTool(plot, entry);
        QTRY_VERIFY(plot.findChild<QLineEdit*>());
        auto* const edit = plot.findChild<QLineEdit*>();
        QTRY_COMPARE(QApplication::focusWidget(), edit);
        QTest::keyClicks(edit, value);
        QTest::keyClick(edit, Qt::Key_Return);
        double ends[4] = {};
        plot.getMinMaxX(ends[0], ends[1]);
        plot.getMinMaxY(ends[2], ends[3]);
        QCOMPARE(ends[end], value.toDouble());
        QTRY_COMPARE(QApplication::focusWidget(), &plot);
    }

    void escapeLeavesAnEditorAndNotTheWindow()
    {
        FullConsoleFixture full;
        auto* const window = full.desk.open<Graph1DDialog>("curves");
        auto& plot = *window->getGraphWidget();
        QTRY_VERIFY(plot.hasData());
        plot.grab();
        takeKeyboard(plot);
        chooseTool(plot, QStringLiteral("Right End of the Axis..."));
        QTRY_VERIFY(plot.findChild<QLineEdit*>());
        QTest::keyClick(plot.findChild<QLineEdit*>(), Qt::Key_Escape);
        QTRY_VERIFY(!plot.findChild<QLineEdit*>());
        QVERIFY(window->isVisible());
        QTRY_COMPARE(QApplication::focusWidget(), &plot);
    }

    void showsWhyAnAxisEndCannotBeEditedDuringAMouseTool()
    {
        FullConsoleFixture full;
        auto& plot = *full.desk.open<Graph1DDialog>("curves")->getGraphWidget();
        QTRY_VERIFY(plot.hasData());
        plot.grab();
        plot.SetEnableSelectXRange(true);
        const QMenu* const menu = openTools(plot);
        const QAction* const entry = entryOf(*menu, QStringLiteral("Left End of the Axis..."));
        QVERIFY(entry && !entry->isEnabled() && entry->toolTip().contains(u"tool"));
    }

    void theColoursAreChosenByKeys()
    {
        FullConsoleFixture full;
        auto& map = *full.desk.open<Graph2DDialog>("map")->getGraphWidget();
        const QColor before = XY2DGraphWidget::colMax;
        takeKeyboard(map);
        MenuHand hand(QStringLiteral("Pattern - YellowHot"));
        chooseTool(map, QStringLiteral("Colours..."));
        QTRY_VERIFY(hand.hasChosen());
        QVERIFY(XY2DGraphWidget::colMax != before);
        map.onPatternRainbow1();
    }

    void theLimitsOfTheColoursAreEditedByKeys()
    {
        FullConsoleFixture full;
        auto& map = *full.desk.open<Graph2DDialog>("map")->getGraphWidget();
        QTRY_VERIFY(map.getMaxValue() > 0.0);
        auto* const bar = map.findChild<ColorBarWidget*>();
        bar->grab();
        takeKeyboard(map);
        // Left without a number, the colours are automatic again.
        chooseTool(map, QStringLiteral("Upper Limit of the Colours..."));
        QTRY_VERIFY(bar->findChild<QLineEdit*>());
        QVERIFY(!bar->isAutoScale());
        QTest::keyClick(bar->findChild<QLineEdit*>(), Qt::Key_Escape);
        QTRY_VERIFY(bar->isAutoScale());
        chooseTool(map, QStringLiteral("Upper Limit of the Colours..."));
        QTRY_VERIFY(bar->findChild<QLineEdit*>());
        QTest::keyClicks(bar->findChild<QLineEdit*>(), QStringLiteral("3"));
        QTest::keyClick(bar->findChild<QLineEdit*>(), Qt::Key_Return);
        double top = 0.0;
        QVERIFY(!map.getMaxZ(top));
        QCOMPARE(top, 3.0);
        QTRY_VERIFY(!bar->findChild<QLineEdit*>());
        chooseTool(map, QStringLiteral("Lower Limit of the Colours..."));
        QTRY_VERIFY(bar->findChild<QLineEdit*>());
        QTest::keyClick(bar->findChild<QLineEdit*>(), Qt::Key_Escape);
        QTRY_VERIFY(!bar->findChild<QLineEdit*>());
        QTRY_COMPARE(QApplication::focusWidget(), &map);
        QVERIFY(!bar->isAutoScale()); // the upper limit was entered
    }

    void aRegionIsAddedByKeys()
    {
        FullConsoleFixture full;
        auto& map = *full.desk.open<Graph2DDialog>("map")->getGraphWidget();
        map.onAutoScaleX(false);
        map.onAutoScaleY(false);
        map.setMinMaxX(100, 200);
        map.setMinMaxY(0, 80);
        chooseTool(map, QStringLiteral("Add a Region in the Middle"));
        QTRY_VERIFY(map.GetViewSelectedROI());
        QCOMPARE(map.GetViewSelectedROI()->getRoiList(), (QList<QRect> { QRect(QPoint(125, 20), QPoint(175, 60)) }));
        chooseTool(map, QStringLiteral("Add a Region in the Middle"));
        QTRY_COMPARE(map.GetViewSelectedROI()->getRoiList().size(), 2);
    }

    void theBoxesBesideAPlotAreReachedByF6()
    {
        FullConsoleFixture full;
        auto* const window = full.desk.open<Graph1DDialog>("curves");
        auto& plot = *window->getGraphWidget();
        QTRY_VERIFY(plot.hasData());
        takeKeyboard(plot);
        plot.SetEnableSelectXRange(true);
        plot.onPeakSearch();
        takeKeyboard(plot);
        QTest::keyClick(&plot, Qt::Key_F6);
        QTRY_COMPARE(QApplication::activeWindow()->objectName(), QStringLiteral("XRangeInputDialog"));
        QTRY_VERIFY(qobject_cast<QLineEdit*>(QApplication::focusWidget()));
        QTest::keyClick(QApplication::activeWindow(), Qt::Key_F6);
        QTRY_COMPARE(QApplication::activeWindow()->objectName(), QStringLiteral("PeakSearchDialog"));
        QTest::keyClick(QApplication::activeWindow(), Qt::Key_F6);
        QTRY_COMPARE(QApplication::activeWindow(), window);
        QCOMPARE(QApplication::focusWidget(), &plot);
    }

    void theMenuKeyOpensAPlotsTools()
    {
        FullConsoleFixture full;
        for (const char* const id : { "curves", "map" }) {
            QWidget* const window = full.desk.find(id);
            auto* const plot = window->findChild<XYGraphWidget*>();
            QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), plot->mapToGlobal(QPoint()));
            QApplication::sendEvent(plot, &event);
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            const QList<QAction*> offered = menu->actions();
            const QList<QAction*> tools = plot->actions();
            for (QAction* const tool : tools)
                QVERIFY(offered.contains(tool));
            menu->close();
        }
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
