// What the tests of the live windows share: boxes answered by a watchdog, payloads, the session that a window clones.
#pragma once

#include "support/scriptedserver.h"

#include <tarnis/server/tarnissession.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QThread>
#include <QTimer>

namespace tarnis::testing {

/// Answers each message box with Ok and keeps what it said. While a box is open, `whileOpen` may act first, or instead.
class BoxWatch : public QObject {
public:
    BoxWatch()
    {
        connect(&m_timer, &QTimer::timeout, this, &BoxWatch::look);
        m_timer.start(5);
    }
    QStringList texts;
    QStringList titles;
    QList<QMessageBox::Icon> icons;
    std::function<void()> whileOpen;
    bool answers = true; ///< false: boxes stay open
    std::function<bool(const QMessageBox&)> leaveOpen; ///< true: this one stays open as yet

private:
    void look()
    {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        const QPointer<QMessageBox> guard(box);
        if (!box->property("seen").toBool())
            note(*box);
        if (guard && answers && !(leaveOpen && leaveOpen(*guard)))
            guard->button(QMessageBox::Ok)->click();
    }
    void note(QMessageBox& box)
    {
        box.setProperty("seen", true);
        texts.append(box.text());
        titles.append(box.windowTitle());
        icons.append(box.icon());
        if (const auto act = whileOpen)
            act();
    }

    QTimer m_timer;
};

/// A session that is not started: a window takes host, port and prompt from it.
class Model : public TarnisSession {
public:
    explicit Model(const ScriptedServer& server)
        : TarnisSession(ScriptedServer::host(), server.port(), server.prompt(), nullptr)
    {
    }
};

inline QByteArray bytesOf(const QList<double>& values)
{
    return QByteArray(reinterpret_cast<const char*>(values.constData()), values.size() * qsizetype(sizeof(double)));
}

/// Waits without Qt events, so that nothing of what a session has queued arrives.
inline bool hasRequests(const ScriptedServer& server, int count)
{
    const QDeadlineTimer deadline(20000);
    while (server.requests().size() < count && !deadline.hasExpired())
        QThread::msleep(1);
    return server.requests().size() >= count;
}

/// Signals and slots that the class itself adds, in their order.
inline QStringList methodsOf(const QMetaObject& meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(QString::fromLatin1(meta.method(i).methodSignature()));
    return methods;
}

/// A command as the session hands it back.
inline PTarnisCmd answered(const QString& text, bool binary, const QString& replyText)
{
    PTarnisCmd command(new TarnisCmd(text));
    command->m_bBinary = binary;
    command->m_replyText = replyText;
    return command;
}

} // namespace tarnis::testing
