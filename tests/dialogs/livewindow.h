// What the tests of the live windows share: boxes answered by a watchdog, payloads, the session that a window clones.
#pragma once

#include "support/scriptedserver.h"

#include <tarnis/server/tarnissession.h>

#include <QApplication>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
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

private:
    void look()
    {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || box->property("answered").toBool())
            return;
        box->setProperty("answered", true);
        texts.append(box->text());
        titles.append(box->windowTitle());
        icons.append(box->icon());
        const QPointer<QMessageBox> guard(box);
        if (whileOpen)
            whileOpen();
        if (guard && answers)
            guard->button(QMessageBox::Ok)->click();
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
