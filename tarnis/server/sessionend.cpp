#include "tarnis/server/sessionend.h"

#include "tarnis/server/sessionend_p.h"
#include "tarnis/server/sessionsocket_p.h"
#include "tarnis/server/tarnissession.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace tarnis {

namespace {

// Each waits for a worker that has been asked to end, and does not need a core for that.
constexpr int maxEndingThreads = 32;

// Not the global pool: a host may fill or clear that one.
class EndingPool : public QThreadPool {
public:
    EndingPool()
    {
        setMaxThreadCount(maxEndingThreads);
        setExpiryTimeout(0); // no idle threads: sessions end seldom
    }
};

Q_GLOBAL_STATIC(EndingPool, endingPool)

} // namespace

void SessionEnd::request(TarnisSession& session)
{
    session.m_stop->request();
}

void endInBackground(TarnisSession* session)
{
    if (!session)
        return;
    session->disconnect();
    session->cancel();
    session->setParent(nullptr);
    SessionEnd::request(*session);
    if (!session->isRunning()) {
        delete session;
        return;
    }
    // The application object goes before what a worker uses to its end: the log, and Qt's own statics.
    qRemovePostRoutine(waitForEndingSessions);
    qAddPostRoutine(waitForEndingSessions);
    endingPool->start([session] { delete session; });
}

void waitForEndingSessions()
{
    if (endingPool.exists())
        endingPool->waitForDone();
}

} // namespace tarnis
