// Common code of the live window tests: payloads, and the session whose address a window copies.
#pragma once

#include "support/messageboxwatcher.h"
#include "support/payload.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/server/tarnissession.h>

#include <QPointer>
#include <QTest>

namespace tarnis::testing {

/// A session that is not started: a window copies host, port and prompt from it.
class Model : public TarnisSession {
public:
    explicit Model(const ScriptedServer& server)
        : TarnisSession(ScriptedServer::host(), server.port(), server.prompt(), nullptr)
    {
    }
};

/// A window that is shown, on a server of its own without answers.
template <typename Window> class Connected {
public:
    template <typename... Options>
    explicit Connected(const Options&... options)
        : m_model(m_server)
        , m_window(&m_model, options...)
    {
        m_window.setAttribute(Qt::WA_DeleteOnClose, false);
        m_window.show();
    }
    Window& operator*() const { return m_window; }
    Window* operator->() const { return &m_window; }
    Window* get() const { return &m_window; }

private:
    ScriptedServer m_server;
    Model m_model;
    mutable Window m_window;
};

/// A window that is closed while the server is silent deletes itself, without a message box.
template <typename Window> void closeWhileGreeting()
{
    ScriptedServer server({ Step::silence() });
    Model model(server);
    const MessageBoxWatcher boxes;
    const QPointer<Window> window = new Window(&model);
    window->show();
    QVERIFY(server.waitForConnections(1));
    window->close();
    QVERIFY(eventually([&] { return window.isNull(); }));
    QVERIFY(boxes.texts.isEmpty());
}

/// A window that is closed after a part of the reply to its command deletes itself and ends its session.
template <typename Window> void closeInMidReply(const char* command)
{
    ScriptedServer server;
    server.answer(command, { Step::raw(QByteArray("\x10\0\0\0", 4)), Step::hold("rest"), Step::raw("12345678") });
    Model model(server);
    const QPointer<Window> window = new Window(&model);
    window->show();
    QVERIFY(server.waitForHold("rest"));
    window->close();
    server.open("rest");
    QVERIFY(eventually([&] { return window.isNull(); }));
    QVERIFY(server.waitUntilDeserted());
}

/// Waits without Qt events, so that no queued call of a session arrives.
inline bool hasRequests(const ScriptedServer& server, int count)
{
    return eventuallyWithoutEvents([&] { return server.requests().size() >= count; });
}

/// A command as returned by the session.
inline PTarnisCmd answered(const QString& text, bool binary, const QString& replyText)
{
    PTarnisCmd command(new TarnisCmd(text));
    command->m_bBinary = binary;
    command->m_replyText = replyText;
    return command;
}

} // namespace tarnis::testing
