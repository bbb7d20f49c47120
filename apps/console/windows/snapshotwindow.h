// A snapshot of what the server tells about itself, as a table: the reply to one command, read by the command's own
// class.
#pragma once

#include <tarnis/server/tarniscmd.h>

#include <QDialog>
#include <QMap>
#include <QTime>

#include <functional>
#include <memory>

namespace Ui {
class SnapshotWindow;
}

namespace console {

class SessionLink;
class ServerController;

/// Asks when it opens and with every refresh, on a session of its own. After a failure the last values stay on show.
class SnapshotWindow : public QDialog {
    Q_OBJECT
public:
    /// A command that reads its own reply: how to make it, and its values once it has been answered.
    struct Source {
        std::function<TarnisCmd*()> make;
        std::function<QMap<QString, QString>(TarnisCmd&, const QByteArray& reply)> read;
    };

    SnapshotWindow(ServerController& controller, const Source& source, QWidget* parent);
    ~SnapshotWindow() override;

public Q_SLOTS:
    void refresh();

protected:
    void changeEvent(QEvent* event) override;
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void fill();
    void updateControls();

    ServerController& m_controller;
    Source m_source;
    std::unique_ptr<Ui::SnapshotWindow> ui;
    SessionLink* m_link;
    QMap<QString, QString> m_values;
    QTime m_time; ///< of the last reply; invalid before it
};

} // namespace console
