// The bar below the server's status that shows what went wrong and offers one action to fix it.
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

/// Hidden without an alert.
class AlertBar : public QFrame {
    Q_OBJECT
public:
    explicit AlertBar(QWidget* parent = nullptr);
    ~AlertBar() override;

    const Alert& alert() const { return m_alert; }
    /// The status message beside the alert; empty without one.
    QString note() const;

public Q_SLOTS:
    /// Shows the alert, replacing all previous ones; an empty text hides the bar.
    void setAlert(const console::Alert& alert);
    /// Shows a transient alert: beside an alert that still needs the user (a failure, or one with an action if this one
    /// has none), else replacing it. An empty text removes transient alerts without an action.
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
    bool m_isPassing = false; ///< the alert is transient
};

} // namespace console
