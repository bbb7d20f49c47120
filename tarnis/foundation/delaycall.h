/// @file
/// Runs a function once, after a delay, unless a guard object is destroyed first. It runs on the calling thread, which
/// needs an event loop; all deferred calls of the process run one at a time.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QObject>

#include <functional>

class QTimer;

/// One pending call, created by delay_call(). It deletes itself after the call has been made or dropped.
class TARNIS_EXPORT DelayCall : public QObject {
    Q_OBJECT
public:
    /// Copies the function and starts the timer. With a null `guard` the call is always made.
    DelayCall(std::function<void()> function, int delayMs, QObject* guard);

public Q_SLOTS:
    /// The guard was destroyed: destroys the function with everything it captured, and stops the timer.
    void onDestroyed(QObject* object);
    /// Calls the function under the process-wide mutex of deferred calls.
    void onTimeout();

protected:
    std::function<void()> m_function; ///< empty once dropped
    QObject* m_guard; ///< not owned, may be null
    QTimer* m_timer; ///< single shot, a child
    QMetaObject::Connection m_guardConnection; ///< to onDestroyed(); disconnected while the function runs
};

/// Calls `function` after `delayMs` milliseconds on this thread's event loop; 0 (or less) means its next turn.
/// Destroying `guard` before that drops the call. The function must not run an event loop in which another deferred
/// call fires on the same thread: that call would wait for this one forever.
TARNIS_EXPORT void delay_call(std::function<void()> function, int delayMs, QObject* guard);
