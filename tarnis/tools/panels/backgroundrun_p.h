// Runs one calculation at a time on the thread pool and delivers its result on the GUI thread.
#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace tarnis {

/// Runs a function on Qt's global thread pool. GUI thread only.
class BackgroundRun : public QObject {
    Q_OBJECT

public:
    /// Delivers a result on the GUI thread.
    using Delivery = std::function<void()>;
    /// The calculation, on a thread of the pool. It owns copies of all its inputs.
    using Work = std::function<Delivery()>;

    explicit BackgroundRun(QObject* parent = nullptr);
    /// The result of a running calculation is not delivered.
    ~BackgroundRun() override;

    bool isRunning() const { return m_isRunning; }
    /// Starts the work. Its delivery is called from the event loop, unless another work was started or the run was
    /// dropped by then.
    void start(Work work);
    /// Only within a delivery: calls the rest of it in a later pass of the event loop, so that one pass does not do and
    /// paint everything. The run is still running until then, and drop() or start() discards the rest.
    void continueLater(Delivery rest);
    /// Discards the result of the running work.
    void drop();

private:
    struct Mailbox;
    void finish(quint64 number, const Delivery& delivery);

    std::shared_ptr<Mailbox> m_mailbox; // shared with the threads
    quint64 m_number = 0;
    bool m_isRunning = false;
};

} // namespace tarnis
