// The event rate over time, from the server's statistics.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QList>

#include <memory>
#include <optional>

class VectorGraphWidget;
namespace Ui {
class RateWindow;
}

namespace console {

class DataAge;
class ServerController;
class StatusPoller;

/// The value of "rate" in a reply to stat; empty if it is missing or not a number.
std::optional<double> rateOf(const QString& reply);

/// Polls once a second through the poller and draws the last hour as a curve. Its CSV contains the seconds since the
/// window was opened or cleared. A missing server is shown, and polling resumes automatically. GUI thread.
class RateWindow : public QDialog {
    Q_OBJECT
public:
    /// Both must outlive it.
    RateWindow(ServerController& controller, StatusPoller& poller, QWidget* parent);
    ~RateWindow() override;

    qsizetype count() const { return m_rates.size(); }
    DataAge& dataAge() { return *m_age; }

public Q_SLOTS:
    void clear();

protected:
    void setTexts();
    void onReplied(const QByteArray& reply);
    void draw();
    void updateControls();

    ServerController& m_controller;
    std::unique_ptr<Ui::RateWindow> ui;
    VectorGraphWidget* m_plot;
    DataAge* m_age;
    QElapsedTimer m_elapsed;
    QList<double> m_rates; ///< in 1/s, in order of time
    QList<double> m_seconds; ///< time of each value
};

} // namespace console
