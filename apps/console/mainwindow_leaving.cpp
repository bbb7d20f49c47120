// Closes the console and ends its server without losing unsaved work.
#include "mainwindow.h"

#include "server/servercontroller.h"
#include "windows/openwindows.h"

#include <QCloseEvent>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace console {

void MainWindow::unlessRunMatters(const std::function<void()>& action, const std::function<void()>& otherwise)
{
    if (!m_controller->isRunAtStake()) {
        action();
        return;
    }
    const QString name = QStringLiteral("runBox");
    if (findChild<QMessageBox*>(name))
        return; // asked already
    auto* const box = new QMessageBox(QMessageBox::Warning, windowTitle(),
        tr("A run is under way at %1. It ends with the server.").arg(m_controller->serverName()), QMessageBox::Cancel,
        this);
    const QAbstractButton* const end = box->addButton(tr("&End the Run"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    box->setEscapeButton(QMessageBox::Cancel);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [box, end, action, otherwise] {
        if (box->clickedButton() == end)
            action();
        else if (otherwise)
            otherwise();
    });
    box->open();
}

void MainWindow::leave()
{
    m_isRunGivenUp = true;
    close();
}

void MainWindow::goOnLeaving()
{
    if (std::exchange(m_isAskingToSave, false))
        QMetaObject::invokeMethod(this, &MainWindow::close, Qt::QueuedConnection);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    remember();
    event->ignore();
    m_isAskingToSave = false; // set below if needed
    if (!m_isRunGivenUp && m_controller->isRunAtStake()) {
        unlessRunMatters([this] { leave(); });
        return;
    }
    if (m_windows->closeUnsaved()) { // while the server can still be used for saving
        m_isAskingToSave = true;
        return;
    }
    m_isRunGivenUp = false;
    const bool canGo = m_controller->state() == ServerState::Off
        || (m_controller->state() == ServerState::Failed && !m_controller->hasProcess());
    if (canGo) {
        m_isClosing = false;
        event->setAccepted(m_windows->closeAll());
        return;
    }
    m_isClosing = true; // the window closes when the server has ended, see updateControls()
    m_controller->stop();
    if (m_controller->state() == ServerState::Up)
        m_isClosing = false; // rejected: the server is busy
}

} // namespace console
