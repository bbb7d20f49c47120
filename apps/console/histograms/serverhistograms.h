// What the current server has told about its histograms, for windows that show a certain one of them.
#pragma once

#include "histograms/histogramlist.h"

#include <QObject>
#include <QTimer>

#include <optional>

namespace console {

class ServerController;
class CommandChannel;

/// Asks `hists` each time that a server is connected, and once again if the connection breaks over it. GUI thread.
class ServerHistograms : public QObject {
    Q_OBJECT
public:
    /// The controller must outlive it.
    explicit ServerHistograms(ServerController& controller);
    ~ServerHistograms() override;

    /// Nothing for a histogram that the server does not list, for every one while the server has not answered, and for
    /// one that cannot list them.
    std::optional<HistogramInfo> find(const QString& name) const;
    /// Why there is no such histogram, in words; empty if there is, if the server has not said, and for no name.
    QString refusal(const QString& name) const;
    /// Takes the list over from a reply to `hists` that another has asked for. A refusal changes nothing, nor does a
    /// list while there is no server.
    void read(const QString& reply);

    int m_retryMs = 1000; ///< the pause before it asks again

Q_SIGNALS:
    void changed();

protected:
    void onServerState();
    void ask();
    void setList(const std::optional<QList<HistogramInfo>>& list);

    ServerController& m_controller;
    CommandChannel* m_link;
    std::optional<QList<HistogramInfo>> m_list;
    QTimer m_retryTimer;
    bool m_isAskedAgain = false; ///< of this server
    bool m_isUp = false; ///< the server, when its state was last looked at
};

} // namespace console
