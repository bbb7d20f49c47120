// Updates open histogram windows according to the server's list.
#pragma once

#include "histograms/histogramlist.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <map>
#include <optional>

class QWidget;

namespace console {

class OpenWindows;
class ServerHistograms;

/// A window of one histogram, with the axes and the command from the server's list.
struct HistogramWindow {
    using Listed = std::optional<HistogramInfo>; ///< empty while the server has not listed the histogram

    QString id; ///< id among the open windows
    QString histogram;
    Listed listed; ///< list entry at opening
    std::function<QWidget*(const Listed&)> make;
    std::function<QString(const Listed&)> title; ///< called again when the language changes
};

/// When the server's list entry of a histogram differs from that at the opening of its window, a new window replaces
/// the old one. Unlisted histograms and closed windows are ignored. A window without "AutoUpdate" keeps its picture
/// until its next request. GUI thread.
class HistogramWindowUpdater : public QObject {
    Q_OBJECT
public:
    /// Both must outlive it.
    HistogramWindowUpdater(OpenWindows& windows, const ServerHistograms& histograms);

    /// As OpenWindows::show(). An open window is not changed.
    QWidget* show(const HistogramWindow& window);

    int m_laterMs = 500; ///< time until the next check while the user is working with the window

protected:
    void renewAll();
    void renew(const QString& id);
    QWidget* make(const QString& id);

    OpenWindows& m_windows;
    const ServerHistograms& m_histograms;
    std::map<QString, HistogramWindow> m_shown; ///< by id, for each window that was ever open
    QTimer m_laterTimer;
};

} // namespace console
