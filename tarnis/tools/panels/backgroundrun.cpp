#include "tarnis/tools/panels/backgroundrun_p.h"

#include <QMutex>
#include <QMutexLocker>
#include <QThreadPool>
#include <QTimer>

#include <utility>

namespace tarnis {

/// Gives threads access to the owner. The mutex prevents its destruction while a thread posts to it.
struct BackgroundRun::Mailbox {
    QMutex mutex;
    BackgroundRun* owner = nullptr;
};

BackgroundRun::BackgroundRun(QObject* parent)
    : QObject(parent)
    , m_mailbox(std::make_shared<Mailbox>())
{
    m_mailbox->owner = this;
}

BackgroundRun::~BackgroundRun()
{
    const QMutexLocker locker(&m_mailbox->mutex);
    m_mailbox->owner = nullptr;
}

void BackgroundRun::start(Work work)
{
    m_isRunning = true;
    const quint64 number = ++m_number;
    QThreadPool::globalInstance()->start([mailbox = m_mailbox, work = std::move(work), number] {
        Delivery delivery = work();
        const QMutexLocker locker(&mailbox->mutex);
        if (BackgroundRun* const owner = mailbox->owner) {
            QMetaObject::invokeMethod(
                owner, [owner, number, delivery = std::move(delivery)] { owner->finish(number, delivery); },
                Qt::QueuedConnection);
        }
    });
}

// Two timers: events that are posted now would be handled in the same pass, and a timer comes before the repaints that
// are due in its pass.
void BackgroundRun::continueLater(Delivery rest)
{
    m_isRunning = true;
    QTimer::singleShot(0, this, [this, number = m_number, rest = std::move(rest)] {
        QTimer::singleShot(0, this, [this, number, rest] { finish(number, rest); });
    });
}

void BackgroundRun::drop()
{
    ++m_number;
    m_isRunning = false;
}

void BackgroundRun::finish(quint64 number, const Delivery& delivery)
{
    if (number != m_number)
        return;
    m_isRunning = false;
    if (delivery)
        delivery();
}

} // namespace tarnis
