// A snapshot of what the server tells about itself, as a table beside the snapshot before: the reply to one command,
// read by the command's own class.
#pragma once

#include "tables/snapshotrecord.h"
#include <tarnis/foundation/retranslator.h>

#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/server/tarniscmd.h>

#include <QTime>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace console {

class CommandChannel;
class ServerController;
class StatusPoller;

/// Asks when it opens and with every refresh: through the poller, or on a session of its own. After a failure the last
/// values stay on show. What the filter leaves can be saved as CSV.
class SnapshotWindow : public NameValueListDialog {
    Q_OBJECT
public:
    /// A command that reads its own reply: how to make it, and its values once it has been answered.
    struct Source {
        std::function<TarnisCmd*()> make;
        std::function<QList<NameValue>(TarnisCmd&, const QByteArray& reply)> read;
        bool isPolled = false; ///< it is "stat", which the poller asks
    };

    /// Controller and poller must outlive it.
    SnapshotWindow(ServerController& controller, StatusPoller& poller, const Source& source, QWidget* parent);

public Q_SLOTS:
    void refresh();

protected:
    void changeEvent(QEvent* event) override;
    void setUp();
    void setTexts();
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void fill();
    void updateControls();
    bool isAsking() const;
    void bindPoller();
    void stopWaiting(const tarnis::TranslatedText& words);
    static QStringList headers();

    ServerController& m_controller;
    StatusPoller& m_poller;
    Source m_source;
    CommandChannel* m_link;
    QLabel* m_filterLabel;
    QLineEdit* m_filterEdit; ///< part of the names to show
    QLabel* m_stateLabel;
    QPushButton* m_refreshButton;
    SnapshotRecord m_record;
    bool m_isPollAwaited = false;
    QTime m_time; ///< of the last reply; invalid before it
};

} // namespace console
