#include "tarnis/server/serverexit_p.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QThread>
#include <QTimer>

#include <algorithm>

namespace tarnis {

namespace {

// The application object destroys its children too late to wait for a process there.
void endServersWithApplication()
{
    const auto pending = QCoreApplication::instance()->findChildren<ServerExit*>(QString(), Qt::FindDirectChildrenOnly);
    qDeleteAll(pending);
}

// The owner in case no event loop is running any more. Null for a manager in a thread other than the application's.
QObject* applicationObject()
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (!application || application->thread() != QThread::currentThread())
        return nullptr;
    qRemovePostRoutine(endServersWithApplication);
    qAddPostRoutine(endServersWithApplication);
    return application;
}

} // namespace

void askServerToExit(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.write("exit");
    process.closeWriteChannel();
}

void waitForServerExit(QProcess& process, int graceMs)
{
    if (process.state() == QProcess::NotRunning || process.waitForFinished(graceMs))
        return;
    process.kill();
    process.waitForFinished(-1);
}

ServerExit::ServerExit(QProcess* process, int graceMs)
    : QObject(applicationObject())
    , m_process(process)
    , m_deadlineMs(QDeadlineTimer::current().deadline() + graceMs)
{
    process->setParent(this);
    if (process->state() == QProcess::NotRunning) {
        deleteLater();
        return;
    }
    connect(process, &QProcess::finished, this, &QObject::deleteLater);
    QTimer::singleShot(graceMs, process, &QProcess::kill);
}

ServerExit::~ServerExit()
{
    if (!m_process)
        return;
    const qint64 left = m_deadlineMs - QDeadlineTimer::current().deadline();
    waitForServerExit(*m_process, static_cast<int>(std::max<qint64>(left, 0)));
}

void endServerInBackground(QProcess* process, int graceMs)
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (!application || application->thread() == QThread::currentThread()) {
        new ServerExit(process, graceMs); // deletes itself, with the process
        return;
    }
    process->moveToThread(application->thread());
    QMetaObject::invokeMethod(
        application, [process, graceMs] { new ServerExit(process, graceMs); }, Qt::QueuedConnection);
}

} // namespace tarnis
