// Common code of the live window tests: a watchdog for message boxes, payloads, and the session whose address a window
// copies.
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

/// Answers each message box with Ok and stores its text. `whileOpen` is called first and may close the box itself.
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
    std::function<bool(const QMessageBox&)> leaveOpen; ///< true: this box is left open for the moment

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

/// A session that is not started: a window copies host, port and prompt from it.
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

/// Waits without Qt events, so that no queued call of a session arrives.
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

/// A command as returned by the session.
inline PTarnisCmd answered(const QString& text, bool binary, const QString& replyText)
{
    PTarnisCmd command(new TarnisCmd(text));
    command->m_bBinary = binary;
    command->m_replyText = replyText;
    return command;
}

} // namespace tarnis::testing
