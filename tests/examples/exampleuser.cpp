// Linked with a step of examples/host: operates its windows like a user, and ends the program with 0 if they behave as
// documented.
#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/selectpathdialog.h>
#include <tarnis/dialogs/statdialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include "support/modalwatchdog.h"
#include "support/wait.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace {

using tarnis::testing::eventually;
using tarnis::testing::ModalWatchdog;

struct Failed { };

void expect(const char* what, const std::function<bool()>& condition)
{
    if (eventually(condition))
        return;
    std::fprintf(stderr, "timeout while waiting for: %s\n", what);
    throw Failed();
}

/// The visible widget of a class, in any window; null without one.
template <typename Widget> Widget* seen()
{
    for (QWidget* widget : QApplication::allWidgets()) {
        if (auto* const found = qobject_cast<Widget*>(widget); found && found->isVisible())
            return found;
    }
    return nullptr;
}

/// How many curves a live window shows.
int curves()
{
    const auto* const window = seen<Graph1DDialog>();
    return window ? window->getGraphWidget()->getValidDataCount() : 0;
}

/// The button of a main window that is not a dialog.
QPushButton* hostButton()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* const button = window->findChild<QPushButton*>(QString(), Qt::FindDirectChildrenOnly);
        if (button && window->isVisible() && !qobject_cast<QDialog*>(window))
            return button;
    }
    return nullptr;
}

bool showsMap()
{
    const auto* const window = seen<Graph2DDialog>();
    return window && window->getGraphWidget()->getMaxCount() == 256;
}

bool showsStatistics()
{
    const auto* const window = seen<StatDialog>();
    return window && window->findChild<QTableWidget*>()->rowCount() > 0;
}

// The functions have the names of the steps.

[[maybe_unused]] void connect()
{
    expect("the status", [] {
        const auto* const label = qobject_cast<QLabel*>(QApplication::topLevelWidgets().value(0));
        return label && label->text() == QLatin1String("SERVER CONNECTED");
    });
}

[[maybe_unused]] void commands()
{
    expect("the line for commands", [] { return seen<QLineEdit>() && seen<QLineEdit>()->isEnabled(); });
    QTest::keyClicks(seen<QLineEdit>(), QStringLiteral("stat"));
    QTest::keyClick(seen<QLineEdit>(), Qt::Key_Return);
    const auto replies = [] { return seen<QPlainTextEdit>()->toPlainText(); };
    expect("a reply", [&] { return replies().contains(QLatin1String("state: STOPPED")); });
    QTest::keyClicks(seen<QLineEdit>(), QStringLiteral("stop"));
    QTest::keyClick(seen<QLineEdit>(), Qt::Key_Return);
    expect("a refusal", [&] { return replies().contains(QLatin1String("refused: stop\nNG:")); });
}

[[maybe_unused]] void live1d()
{
    expect("four curves", [] { return curves() == 4; });
}

[[maybe_unused]] void windows()
{
    const auto* const window = seen<QMainWindow>();
    const QMenu* const menu = window->menuBar()->actions().at(0)->menu();
    expect("the menu", [&] { return menu->isEnabled(); });
    const auto open = [&](int entry) { menu->actions().at(entry)->trigger(); };
    open(0);
    expect("four curves", [] { return curves() == 4; });
    open(1);
    expect("a map", showsMap);
    open(2);
    expect("statistics", showsStatistics);
    bool isListed = false;
    ModalWatchdog answers({ [&isListed](QWidget& dialog) {
        isListed =
            eventually([&] { return dialog.findChild<QListWidget*>(QStringLiteral("curDirListWidget"))->count() > 0; });
        qobject_cast<SelectPathDialog*>(&dialog)->reject();
    } });
    open(3);
    expect("the server's folders", [&] { return isListed && answers.isContent(); });
}

// Each server of the test ends with its third command.
[[maybe_unused]] void restart()
{
    expect("the host's button", [&] { return hostButton() != nullptr; });
    QPushButton* const button = hostButton();
    const auto* const text = button->window()->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    for (int round = 0; round < 2; ++round) {
        expect("four curves", [] { return curves() == 4; });
        expect("words for the loss",
            [&] { return button->isEnabled() && text->text().endsWith(QLatin1String("Press Restart to go on.")); });
        button->click();
        expect("a new attempt", [&] { return !button->isEnabled(); });
    }
    expect("four curves after all", [] { return curves() == 4; });
}

// As restart(); the plot is the host's own.
[[maybe_unused]] void window()
{
    expect("the host's button", [] { return hostButton() != nullptr; });
    QPushButton* const button = hostButton();
    const auto* const text = button->window()->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    auto* const plot = button->window()->findChild<MultiVectorGraphWidget*>();
    expect("a curve", [&] { return plot->getValidDataCount() == 1; });
    for (int round = 0; round < 2; ++round) {
        expect("words for the loss",
            [&] { return button->isEnabled() && text->text().endsWith(QLatin1String("Press Restart to go on.")); });
        button->click();
        expect("the server again", [&] { return text->text() == QLatin1String("The server is running."); });
    }
}

void use()
{
    try {
        EXAMPLE_STEPS();
    } catch (const Failed&) {
        QCoreApplication::exit(1);
        return;
    }
    QApplication::closeAllWindows(); // the program ends with its last window
}

void raiseHand()
{
    QTimer::singleShot(0, use);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(raiseHand)
