// Shows the time of a live window's last data, and whether it is waiting.
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

/// A line with the time of the last data and, after three polls without a reply, since when the window has been
/// waiting. The waiting time is measured with a monotonic clock and checked by a timer, so that it is shown for a hung
/// server and after clock changes. GUI thread.
class DataAge : public QObject {
    Q_OBJECT
public:
    /// `isExpected` returns whether a reply is expected; it is called twice a second. The caller puts the label, a
    /// child of the window, into its layout.
    DataAge(QWidget& window, const std::function<bool()>& isExpected);

    QLabel* label() const { return m_label; }
    /// A reply without data has arrived.
    void answered();
    /// A reply with data has arrived.
    void arrived();
    /// Wall-clock time of the last data; invalid before the first.
    QTime time() const { return m_dataTime; }

    int m_limitMs = 3000; ///< three polls

protected:
    void check();
    void showState(bool isLate);

    QWidget& m_window;
    QLabel* m_label;
    std::function<bool()> m_isExpected;
    QTimer m_timer;
    QTime m_dataTime;
    QElapsedTimer m_waiting; ///< time since the last reply, or since one has been expected; invalid if none is expected
    QTime m_waitingTime; ///< time of day when that began
};

} // namespace console
