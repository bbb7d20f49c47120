// The run status from a reply to "stat".
#pragma once

#include <QString>

#include <optional>

namespace console {

/// Each value is empty if the server does not report it or reports something other than a number.
struct RunStatus {
    std::optional<bool> isRunning;
    std::optional<qint64> run; ///< number of the current or last run
    std::optional<double> realTime; ///< s since the start of the run or the last clear
    std::optional<double> liveTime; ///< s
    std::optional<qint64> events;
    std::optional<double> rate; ///< current rate in 1/s
    bool isRecorded = false; ///< the server writes this run to a run directory

    bool operator==(const RunStatus&) const = default;
};

RunStatus runStatusOf(const QString& reply);

/// "0:01:23", hours first; fractions of a second are dropped. Negative and non-finite times count as 0.
QString durationText(double seconds);

/// In the current language's format: "20,224" from 1,000 on, four digits below: "985.2".
QString rateText(double rate);

/// Whether the server's histograms contain unsaved data, which Clear and the next run would discard.
class UnsavedData {
public:
    void read(const RunStatus& status);
    /// The user has saved a picture, table or file of the data.
    void noteSaved() { m_isSaved = true; }
    /// Another server is in use.
    void forget() { *this = {}; }
    /// True if there are events, nothing was saved since they began, and they do not belong to a finished run recorded
    /// by the server. A run is only recorded at its end.
    bool wouldBeLost() const;

protected:
    RunStatus m_status;
    bool m_isSaved = false;
};

} // namespace console
