// The strip under the server's status that says what went wrong and offers the one press that fixes it.
#pragma once

#include "notices/alert.h"

#include <QFrame>

#include <memory>

namespace Ui {
class AlertBar;
}

namespace console {

/// The palette's window colour with a tint of the severity.
QColor alertBackground(const QPalette& palette, Alert::Severity severity);

/// Hidden while there is nothing to say.
class AlertBar : public QFrame {
    Q_OBJECT
public:
    explicit AlertBar(QWidget* parent = nullptr);
    ~AlertBar() override;

    const Alert& alert() const { return m_alert; }
    /// The status message beside the alert; empty without one.
    QString note() const;

public Q_SLOTS:
    /// Shows the alert in place of everything before; an empty text hides the bar.
    void setAlert(const console::Alert& alert);
    /// Shows an alert that comes and goes: beside one that still needs the user (a failure, or something to press
    /// where this one has nothing), else in place of it. An empty text takes away what this brought, but nothing that
    /// can still be pressed.
    void setStatusMessage(const console::Alert& alert);

Q_SIGNALS:
    void actionTriggered(console::AlertAction action);

protected:
    void changeEvent(QEvent* event) override;
    void show(const Alert& alert);
    void showMessage(const Alert& alert);
    void dismiss();
    void announce(QWidget& label);
    void setActionText();
    void applyColours();

    std::unique_ptr<Ui::AlertBar> ui;
    Alert m_alert;
    bool m_isPassing = false; ///< the alert is one that comes and goes
};

} // namespace console
