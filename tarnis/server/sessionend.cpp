#include "tarnis/server/sessionend.h"

#include "tarnis/server/sessionend_p.h"
#include "tarnis/server/sessionsocket_p.h"
#include "tarnis/server/tarnissession.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace tarnis {

namespace {

// Each thread only waits for a worker that is ending, and needs no core for that.
constexpr int maxEndingThreads = 32;

// Not the global pool, which a host may fill or clear.
class EndingPool : public QThreadPool {
public:
    EndingPool()
    {
        setMaxThreadCount(maxEndingThreads);
        setExpiryTimeout(0); // no idle threads, because sessions rarely end
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
    // The application object is destroyed before the things that a worker uses until its end: the log and Qt's static
    // objects.
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
