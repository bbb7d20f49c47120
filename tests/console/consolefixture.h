// A console and the actions of its user.
#pragma once

#include "command/commandpanel.h"
#include "mainwindow.h"
#include "notices/alertbar.h"
#include "server/servercontroller.h"
#include "server/statuspoller.h"
#include "support/children.h"
#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialogButtonBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace tarnis::testing {

/// Clicks the button as soon as it is enabled: a disabled one would ignore the click.
inline void press(QAbstractButton& button)
{
    if (!eventually([&] { return button.isEnabled(); }))
        qFatal("%s stays disabled: %s", qPrintable(button.objectName() + button.text()), qPrintable(button.toolTip()));
    QTest::mouseClick(&button, Qt::LeftButton);
}

/// Answers the message box with this name on the window as soon as it appears.
inline void answer(const QWidget& window, const char* box, QMessageBox::StandardButton choice)
{
    QAbstractButton* button = nullptr;
    const auto isAsked = [&] {
        const auto* const question = window.findChild<QMessageBox*>(QLatin1String(box));
        button = question && question->isVisible() ? question->button(choice) : nullptr;
        return button != nullptr;
    };
    if (!eventually(isAsked))
        qFatal("no %s that offers this answer", box);
    press(*button);
}

/// Presses OK in a path chooser as soon as it is enabled.
inline void acceptChoice(const QWidget& chooser)
{
    press(*chooser.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Ok));
}

/// The key that opens a control or menu with this text, together with Alt; null without one.
inline QChar mnemonicOf(const QString& text)
{
    const QKeySequence keys = QKeySequence::mnemonic(text);
    return keys.isEmpty() ? QChar() : QChar(char16_t(keys[0].key()));
}

/// A main window with its own settings.
class ConsoleFixture {
public:
    ConsoleFixture()
        : store(m_directory.filePath(QStringLiteral("console.ini")), QSettings::IniFormat)
        , window(std::make_unique<console::MainWindow>(store))
    {
        window->controller().m_endTimeoutMs = 50;
        window->statusPoller().setInterval(0); // tests count the commands that they send
        window->show();
    }

    /// Connected to that server.
    template <typename Server>
    explicit ConsoleFixture(const Server& server)
        : ConsoleFixture()
    {
        use(server);
        if (!reaches(console::ServerState::Up))
            qFatal("no server");
    }

    // Actions of the user.
    void use(const ScriptedServer& server)
    {
        start({ console::ServerChoice::Kind::Remote, {}, ScriptedServer::host(), server.port() });
    }
    void use(const FakeServer& program) { start({ console::ServerChoice::Kind::Local, program.path(), {}, 0 }); }
    void start(const console::ServerChoice& choice)
    {
        console::Options options;
        options.server = choice;
        options.prompt = "> ";
        window->startServer(options);
    }
    void type(const QString& text) { QTest::keyClicks(&edit(), text); }
    void enter() { QTest::keyClick(&edit(), Qt::Key_Return); }
    void send(const QString& command)
    {
        edit().clear();
        type(command);
        enter();
    }
    void press(const char* button) { testing::press(widget<QAbstractButton>(button)); }
    void choose(const char* action) { widget<QAction>(action).trigger(); }

    // What is visible to the user.
    template <typename Object> Object& widget(const char* name) { return child<Object>(*window, name); }
    /// Opens the window of this entry; null if it is not of that class or cannot be opened.
    template <typename Window> Window* open(const char* id) { return qobject_cast<Window*>(find(id)); }
    /// The same, which must open.
    template <typename Window> Window& opened(const char* id)
    {
        auto* const found = open<Window>(id);
        if (!found)
            qFatal("%s does not open", id);
        return *found;
    }
    QWidget* find(const char* id)
    {
        for (const console::WindowEntry& entry : window->entries()) {
            if (entry.id == QLatin1String(id))
                return window->openWindow(entry);
        }
        return nullptr;
    }
    QLineEdit& edit() { return widget<QLineEdit>("commandEdit"); }
    QString record() { return window->commandPanel().recordText(); }
    const console::Alert& alert() { return widget<console::AlertBar>("alertBar").alert(); }
    QString settingsState() { return widget<QLabel>("stateLabel").text(); }
    bool reaches(console::ServerState state)
    {
        return eventually([&] { return window->controller().state() == state; });
    }
    bool shows(const QString& text)
    {
        return eventually([&] { return record().contains(text); });
    }
    bool isFree()
    {
        return eventually([&] { return !window->commandPanel().isBusy(); });
    }

private:
    QTemporaryDir m_directory;

public:
    QSettings store;
    std::unique_ptr<console::MainWindow> window;
};

} // namespace tarnis::testing
