// Reports to the thread sanitizer what Qt's libraries synchronise, which are not instrumented. The linker finds these
// functions in the test's program before those of Qt, also for the library under test; each passes the call on. Without
// them every value that crosses threads under a QRecursiveMutex or in a queued call is reported.
//
//   QRecursiveMutex                 lock after unlock
//   signals, posted events          their delivery after their emission
//   connect                         before the signals that reach the new receiver
//   QThreadPool::start              before the function runs on its thread
//   QThread::wait, its destructor   after the end of the thread, which Qt announces by pthread_cond_broadcast
//
// Accesses inside Qt's own functions stay unseen.
#if defined(__SANITIZE_THREAD__)

#include <QCoreApplication>
#include <QMutex>
#include <QObject>
#include <QThread>
#include <QThreadPool>

#include <dlfcn.h>
#include <pthread.h>
#include <sanitizer/tsan_interface.h>

#include <functional>
#include <utility>

namespace {

char queuedCalls; // represents everything posted to event loops
char connections;
char threadEnds;
char pooledFunctions;

template <typename Function> Function next(const char* mangledName)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, mangledName));
}

bool onEventDelivery(void**)
{
    __tsan_acquire(&queuedCalls);
    return false;
}

[[maybe_unused]] const bool registered = QInternal::registerCallback(QInternal::EventNotifyCallback, onEventDelivery);

} // namespace

// Ignores accesses of C library functions that are called by Qt. QProcess makes its children share the memory until
// they start their program, and so the sanitizer takes this process itself for a forked one.
extern "C" const char* __tsan_default_options()
{
    return "ignore_noninstrumented_modules=1:die_after_fork=0";
}

bool QRecursiveMutex::tryLock(int timeout) QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto call = next<bool (*)(QRecursiveMutex*, int)>("_ZN15QRecursiveMutex7tryLockEi");
    const bool locked = call(this, timeout);
    if (locked)
        __tsan_acquire(this);
    return locked;
}

void QRecursiveMutex::unlock() noexcept
{
    static const auto call = next<void (*)(QRecursiveMutex*)>("_ZN15QRecursiveMutex6unlockEv");
    __tsan_release(this);
    call(this);
}

void QMetaObject::activate(QObject* sender, const QMetaObject* meta, int index, void** arguments)
{
    static const auto call =
        next<void (*)(QObject*, const QMetaObject*, int, void**)>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_acquire(&connections);
    __tsan_release(&queuedCalls);
    call(sender, meta, index, arguments);
}

QMetaObject::Connection QObject::connectImpl(const QObject* sender, void** signal, const QObject* receiver,
    void** slotPointer, QtPrivate::QSlotObjectBase* slot, Qt::ConnectionType type, const int* types,
    const QMetaObject* meta)
{
    static const auto call =
        next<QMetaObject::Connection (*)(const QObject*, void**, const QObject*, void**, QtPrivate::QSlotObjectBase*,
            Qt::ConnectionType, const int*, const QMetaObject*)>("_ZN7QObject11connectImplEPKS_PPvS1_S3_PN9QtPrivate15"
                                                                 "QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11"
                                                                 "QMetaObject");
    __tsan_release(&connections);
    return call(sender, signal, receiver, slotPointer, slot, type, types, meta);
}

bool QMetaObject::invokeMethodImpl(
    QObject* object, QtPrivate::QSlotObjectBase* slot, Qt::ConnectionType type, void* result)
{
    static const auto call = next<bool (*)(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    __tsan_release(&queuedCalls);
    return call(object, slot, type, result);
}

void QCoreApplication::postEvent(QObject* receiver, QEvent* event, int priority)
{
    static const auto call =
        next<void (*)(QObject*, QEvent*, int)>("_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(&queuedCalls);
    call(receiver, event, priority);
}

void QThreadPool::start(std::function<void()> function, int priority)
{
    static const auto call =
        next<void (*)(QThreadPool*, std::function<void()>, int)>("_ZN11QThreadPool5startESt8functionIFvvEEi");
    std::function<void()> run = [function = std::move(function)] {
        __tsan_acquire(&pooledFunctions);
        function();
    };
    __tsan_release(&pooledFunctions); // after all data that the other thread will read
    call(this, std::move(run), priority);
}

extern "C" int pthread_cond_broadcast(pthread_cond_t* condition)
{
    static const auto call = next<int (*)(pthread_cond_t*)>("pthread_cond_broadcast");
    __tsan_release(&threadEnds);
    return call(condition);
}

// The condition of a thread's end is destroyed with the thread object.
extern "C" int pthread_cond_destroy(pthread_cond_t* condition)
{
    static const auto call = next<int (*)(pthread_cond_t*)>("pthread_cond_destroy");
    __tsan_acquire(&threadEnds);
    return call(condition);
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto call = next<bool (*)(QThread*, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool ended = call(this, deadline);
    if (ended)
        __tsan_acquire(&threadEnds);
    return ended;
}

#endif
