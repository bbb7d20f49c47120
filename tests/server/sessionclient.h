// A session with a scripted server, and all of its signals, recorded on the test's thread.
#pragma once

#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/server/tarnissession.h>

#include <QCoreApplication>
#include <QObject>

#include <atomic>
#include <memory>

namespace tarnis::testing {

/// Access to protected members for the tests.
class SessionProbe : public TarnisSession {
public:
    using TarnisSession::m_mutex;
    using TarnisSession::TarnisSession;

    QStringList queued()
    {
        const QMutexLocker locker(&m_mutex);
        QStringList texts;
        for (const PTarnisCmd& cmd : std::as_const(m_queue))
            texts.append(cmd ? cmd->m_cmd : QStringLiteral("(null)"));
        return texts;
    }
    void quit() { std::atomic_ref(m_bQuit).store(true); }
    int timeout() const { return m_timeout; }
    QString id() const { return m_id; }
};

struct Answer {
    PTarnisCmd cmd;
    QByteArray bytes;
};

class SessionClient : public QObject {
public:
    explicit SessionClient(const ScriptedServer& server, const QByteArray* prompt = nullptr)
        : SessionClient(ScriptedServer::host(), server.port(), prompt ? prompt : server.prompt())
    {
    }
    SessionClient(const QString& host, quint16 port, const QByteArray* prompt)
        : session(std::make_unique<SessionProbe>(host, port, prompt, nullptr))
    {
        connect(session.get(), &TarnisSession::connected, this, [this] { signalled.append("connected"); });
        connect(session.get(), &TarnisSession::result, this, [this](const PTarnisCmd& cmd, const QByteArray& bytes) {
            answers.append({ cmd, bytes });
            signalled.append("result " + cmd->m_cmd);
        });
        connect(session.get(), &TarnisSession::error, this, [this](int code, const QString& text) {
            errors.append({ code, text });
            signalled.append("error");
        });
        connect(session.get(), qOverload<const QByteArray&>(&TarnisSession::read), this,
            [this](const QByteArray& piece) { pieces.append(piece); });
    }

    enum Form { Text, Binary, Progress };
    /// Queues a plain command without a pause after it.
    TarnisCmd* send(const QString& text, Form form = Text) { return send(new TarnisCmd(text), form); }
    TarnisCmd* send(TarnisCmd* cmd, Form form = Text)
    {
        cmd->m_cmdName = QStringLiteral("name of ") + cmd->m_cmd;
        cmd->m_bBinary = form == Binary;
        cmd->m_bProgress = form == Progress;
        cmd->m_afterSleep = 0;
        session->send(cmd);
        return cmd;
    }
    void start() { session->start(QThread::InheritPriority); }
    /// Gives up after a second of silence.
    void startImpatient()
    {
        session->setTimeout(1);
        start();
    }
    void destroy() { session.reset(); }

    bool waitForConnected() const
    {
        return eventually([this] { return signalled.contains("connected"); });
    }
    bool waitForAnswers(int count) const
    {
        return eventually([this, count] { return answers.size() >= count; });
    }
    /// The thread has ended and all its signals have arrived.
    bool waitForEnd() const
    {
        const bool ended = eventually([this] { return session->isFinished(); });
        QCoreApplication::processEvents();
        return ended;
    }
    /// Sends a command, waits, and returns the reply; "(none)" if there is none.
    QByteArray ask(const QString& text, Form form = Text)
    {
        const int before = int(answers.size());
        send(text, form);
        const bool came = eventually([&] { return answers.size() > before || session->isFinished(); });
        QCoreApplication::processEvents();
        return came && answers.size() > before ? answers.last().bytes : QByteArray("(none)");
    }
    QList<int> errorCodes() const
    {
        QList<int> codes;
        for (const auto& error : errors)
            codes.append(error.first);
        return codes;
    }

    std::unique_ptr<SessionProbe> session;
    QList<Answer> answers;
    QList<QPair<int, QString>> errors;
    QByteArrayList pieces;
    QStringList signalled; ///< all but pieces, in order of arrival
};

} // namespace tarnis::testing
