// Lets the user choose the server.
#pragma once

#include "app/commandline.h"

#include <QDialog>

#include <memory>

namespace Ui {
class ConnectDialog;
}

namespace console {

/// Starts with the given choice. OK is enabled while the choice is complete.
class ConnectDialog : public QDialog {
    Q_OBJECT
public:
    ConnectDialog(const ServerChoice& choice, const QByteArray& prompt, QWidget* parent);
    ~ConnectDialog() override;

    ServerChoice choice() const;
    /// Empty while the text is not a valid prompt.
    QByteArray prompt() const;

protected:
    void browse();
    void onEdited();
    QString problem() const;

    std::unique_ptr<Ui::ConnectDialog> ui;
};

} // namespace console
