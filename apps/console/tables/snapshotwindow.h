// A snapshot of the server's values as a table beside the previous one: the reply to one command, parsed by the
// command's own class.
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

/// Sends the command when it opens and on every refresh: through the poller, or on its own connection. After a failure
/// the last values remain shown. The filtered rows can be saved as CSV.
class SnapshotWindow : public NameValueListDialog {
    Q_OBJECT
public:
    /// A command that parses its own reply: creates it, and returns its values after the reply.
    struct Source {
        std::function<TarnisCmd*()> make;
        std::function<QList<NameValue>(TarnisCmd&, const QByteArray& reply)> read;
        bool isPolled = false; ///< it is "stat", which the poller sends
    };

    /// Controller and poller must outlive it.
    SnapshotWindow(ServerController& controller, StatusPoller& poller, const Source& source, QWidget* parent);

public Q_SLOTS:
    void refresh();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void setUp();
    void setTexts();
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void fill();
    void updateControls();
    bool isAsking() const;
    void bindPoller();
    void stopWaiting(const tarnis::TranslatedText& translated);
    static QStringList headers();

    ServerController& m_controller;
    StatusPoller& m_poller;
    Source m_source;
    CommandChannel* m_channel;
    QLabel* m_filterLabel;
    QLineEdit* m_filterEdit; ///< filters the names
    QLabel* m_stateLabel;
    QPushButton* m_refreshButton;
    SnapshotRecord m_record;
    bool m_isPollAwaited = false;
    bool m_areNamesFitted = false; ///< once there are names, the first column follows the width of the window
    QTime m_time; ///< time of the last reply; invalid before it
};

} // namespace console
