// The line of the run in the main window: start, stop, clear, and what the server reports about the run.
#pragma once

#include <QList>
#include <QWidget>

class QAction;
class QLabel;

namespace console {

class RunControl;
class ServerController;
class StatusPoller;

/// GUI thread.
class RunPanel : public QWidget {
    Q_OBJECT
public:
    /// Both must outlive it.
    RunPanel(ServerController& controller, StatusPoller& poller, QWidget* parent);

    RunControl& control() { return *m_control; }
    /// Start, stop and clear, for the menu. Owned by the panel.
    QList<QAction*> actions() const { return { m_startAction, m_stopAction, m_clearAction }; }

protected:
    void changeEvent(QEvent* event) override;
    void addButton(QAction* action);
    QLabel* addField(const char* name);
    void setTexts();
    void updateControls();
    void showRun();

    ServerController& m_controller;
    StatusPoller& m_poller;
    RunControl* m_control;
    QAction* m_startAction;
    QAction* m_stopAction;
    QAction* m_clearAction;
    QLabel* m_runLabel;
    QLabel* m_stateLabel;
    QLabel* m_realTimeLabel;
    QLabel* m_liveTimeLabel;
    QLabel* m_eventsLabel;
    QLabel* m_rateLabel;
};

} // namespace console
