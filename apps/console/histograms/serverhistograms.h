// The current server's list of histograms, for windows of particular histograms.
#pragma once

#include "histograms/histogramlist.h"

#include <QObject>
#include <QTimer>

#include <optional>

namespace console {

class ServerController;
class CommandChannel;

/// Sends `hists` each time a server is connected, and once more if the connection is lost during the request. GUI
/// thread.
class ServerHistograms : public QObject {
    Q_OBJECT
public:
    /// The controller must outlive it.
    explicit ServerHistograms(ServerController& controller);
    ~ServerHistograms() override;

    /// Empty for a histogram that the server does not list, and for all histograms if the server has not answered or
    /// does not support the list.
    std::optional<HistogramInfo> find(const QString& name) const;
    /// Why there is no such histogram, as a text for users; empty if it exists, if this is unknown, and for an empty
    /// name.
    QString refusal(const QString& name) const;
    /// True from the connection on until the server has answered or the request has failed for good.
    bool isAwaited() const { return m_isAwaited; }
    /// Reads the list from a reply to `hists` requested elsewhere. Ignores refusals, and lists while there is no
    /// server.
    void read(const QString& reply);

    int m_retryMs = 1000; ///< the delay before the request is repeated

Q_SIGNALS:
    void changed();

protected:
    void onServerState();
    void ask();
    void setList(const std::optional<QList<HistogramInfo>>& list);

    ServerController& m_controller;
    CommandChannel* m_channel;
    std::optional<QList<HistogramInfo>> m_list;
    QTimer m_retryTimer;
    bool m_isAskedAgain = false; ///< repeated for this server
    bool m_isAwaited = false;
    bool m_isUp = false; ///< whether the server was up at the last check
};

} // namespace console
