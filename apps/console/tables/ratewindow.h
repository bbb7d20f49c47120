// The event rate over time, as the server's statistics tell it.
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

/// The value of "rate" in a reply to stat; nothing where it has none or it is no number.
std::optional<double> rateOf(const QString& reply);

/// Lets the poller ask once a second and draws the last hour as a curve; its CSV has the seconds since the
/// window was opened or cleared. Without a server it says so and goes on by itself. GUI thread.
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
    void changeEvent(QEvent* event) override;
    void setTexts();
    void onReplied(const QByteArray& reply);
    void draw();
    void updateControls();

    ServerController& m_controller;
    std::unique_ptr<Ui::RateWindow> ui;
    VectorGraphWidget* m_plot;
    DataAge* m_age;
    QElapsedTimer m_elapsed;
    QList<double> m_rates; ///< 1/s, the latest last
    QList<double> m_seconds; ///< when each was told
};

} // namespace console
