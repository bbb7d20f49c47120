// The console's live windows, with counts of the results of their polls.
#pragma once

#include "histograms/livewindows.h"
#include "windows/window.h"

#include <QElapsedTimer>
#include <QLabel>

#include <algorithm>

namespace soak {

/// Counts over all windows of one kind, of which one is open at a time.
class Counts {
public:
    int asked = 0;
    int answered = 0;
    int failed = 0; ///< failures shown by the window
    int closed = 0; ///< the window was closed in the meantime

    int unaccounted() const { return asked - answered - failed - closed - (m_isWaiting ? 1 : 0); }
    /// The longest time between a poll and its answer, or the message about its failure.
    qint64 longestSilenceMs() const { return std::max(m_longestMs, m_isWaiting ? m_since.elapsed() : 0); }

    void ask()
    {
        if (m_isWaiting)
            return; // sent again: the window waits for one answer
        ++asked;
        m_isWaiting = true;
        m_since.start();
    }
    void answer()
    {
        m_answersWanted = std::max(0, m_answersWanted - 1);
        settle(answered);
    }
    void fail() { settle(failed); }
    void close() { settle(closed); }

    /// A window is up to date after two more answers.
    void expectFresh() { m_answersWanted = 2; }
    bool isFresh() const { return m_answersWanted == 0; }

private:
    void settle(int& count)
    {
        if (!m_isWaiting)
            return;
        ++count;
        m_longestMs = std::max(m_longestMs, m_since.elapsed());
        m_isWaiting = false;
    }

    bool m_isWaiting = false;
    int m_answersWanted = 0;
    QElapsedTimer m_since; ///< time of the unanswered poll
    qint64 m_longestMs = 0;
};

/// Counts a failure when the window shows one.
class ShownFailure : public QObject {
public:
    ShownFailure(QWidget& window, Counts& counts)
        : QObject(&window)
        , m_counts(counts)
    {
        if (auto* const label = window.findChild<QLabel*>(QStringLiteral("infoLabel")))
            label->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::ShowToParent)
            m_counts.fail();
        return QObject::eventFilter(object, event);
    }

    Counts& m_counts;
};

/// Live is LiveCurves or LiveMap, Text and Bytes are the parameter types of its result() and error().
template <typename Live, typename Request, typename Bytes, typename Text> class CountedPlot : public Live {
public:
    CountedPlot(const console::WindowContext& context, const Request& request, Counts& counts)
        : Live(context, request)
        , m_counts(counts)
    {
        new ShownFailure(*this, counts); // the window's
    }
    ~CountedPlot() override { m_counts.close(); }

    void update() override
    {
        if (this->session)
            m_counts.ask();
        Live::update();
    }
    void result(PTarnisCmd command, Bytes payload) override
    {
        m_counts.answer();
        Live::result(command, payload);
    }

private:
    Counts& m_counts;
};

using CountedCurves = CountedPlot<console::LiveCurves, console::CurvesRequest, QByteArray const&, QString const&>;
using CountedMap = CountedPlot<console::LiveMap, console::MapRequest, QByteArray, QString>;

/// The statistics poll again one second after each answer.
class CountedStatistics : public console::LiveStatistics {
public:
    CountedStatistics(const console::WindowContext& context, Counts& counts)
        : LiveStatistics(context, QStringLiteral("soak"))
        , m_counts(counts)
    {
        new ShownFailure(*this, counts); // the window's
        m_counts.ask();
    }
    ~CountedStatistics() override { m_counts.close(); }

    void result(PTarnisCmd command, QByteArray const& payload) override
    {
        m_counts.answer();
        LiveStatistics::result(command, payload);
        m_counts.ask();
    }

private:
    Counts& m_counts;
};

} // namespace soak
