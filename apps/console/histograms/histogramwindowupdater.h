// Open windows of the server's histograms stay true to the server's list.
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

/// A window that shows one histogram, with the axes and the command that follow from the server's list.
struct HistogramWindow {
    using Listed = std::optional<HistogramInfo>; ///< nothing while the server has listed none of its name

    QString id; ///< among the open windows
    QString histogram;
    Listed listed; ///< what it opens with
    std::function<QWidget*(const Listed&)> make;
    std::function<QString(const Listed&)> title; ///< asked again when the language changes
};

/// When the server lists a histogram otherwise than when its window opened, a new window takes the place of the old
/// one. What the server does not list, and one that is gone, changes nothing. A window without "AutoUpdate" keeps its
/// picture until it asks again. GUI thread.
class HistogramWindowUpdater : public QObject {
    Q_OBJECT
public:
    /// Both must outlive it.
    HistogramWindowUpdater(OpenWindows& windows, const ServerHistograms& histograms);

    /// As OpenWindows::show(). A window that is open stays what it is.
    QWidget* show(const HistogramWindow& window);

    int m_laterMs = 500; ///< the pause before it looks again while the user is in the middle of something

protected:
    void renewAll();
    void renew(const QString& id);
    QWidget* make(const QString& id);

    OpenWindows& m_windows;
    const ServerHistograms& m_histograms;
    std::map<QString, HistogramWindow> m_shown; ///< by id, of each that was ever open
    QTimer m_laterTimer;
};

} // namespace console
