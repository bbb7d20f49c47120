// When a live window got its last data, and whether it waits.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTime>
#include <QTimer>

#include <functional>

QT_BEGIN_NAMESPACE
class QLabel;
class QWidget;
QT_END_NAMESPACE

namespace console {

/// A line with the time of the last data and, once three polls have brought no reply, since when the window waits. The
/// waiting is measured by a monotonic clock and noticed by a timer, so that a server that hangs and a clock that is set
/// do not hide it. GUI thread.
class DataAge : public QObject {
    Q_OBJECT
public:
    /// `isExpected` returns whether a reply is to come: it is called twice a second. The caller puts the label, a child
    /// of the window, into its layout.
    DataAge(QWidget& window, const std::function<bool()>& isExpected);

    QLabel* label() const { return m_label; }
    /// A reply without data to show.
    void answered();
    /// A reply with data, which are shown now.
    void arrived();
    /// Of the last data, by the clock on the wall; not valid before the first.
    QTime time() const { return m_dataTime; }

    int m_limitMs = 3000; ///< three polls

protected:
    void look();
    void showState(bool isLate);

    QWidget& m_window;
    QLabel* m_label;
    std::function<bool()> m_isExpected;
    QTimer m_timer;
    QTime m_dataTime;
    QElapsedTimer m_waiting; ///< since the last reply, or since one has been expected; not valid while none is
    QTime m_waitingTime; ///< when that began
};

} // namespace console
