// Closes the console and ends its server without losing unsaved work.
#include "mainwindow.h"

#include "server/servercontroller.h"
#include "server/statuspoller.h"
#include "windows/openwindows.h"

#include <QCloseEvent>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace console {

/// What the end of a local server would discard, as a text for the user; empty if nothing.
QString MainWindow::lossWithServer() const
{
    if (m_controller->wouldLoseRun())
        return tr("A run is under way at %1. It ends with the server.").arg(m_controller->serverName());
    if (!m_controller->isLocal() || m_controller->state() != ServerState::Up
        || !m_statusPoller->unsavedData().wouldBeLost())
        return {};
    return tr("The %1 events of the last run were not saved. They are lost when %2 ends.")
        .arg(QStringLiteral("%L1").arg(m_statusPoller->runStatus().events.value_or(0)), m_controller->serverName());
}

void MainWindow::unlessRunMatters(const std::function<void()>& action, const std::function<void()>& otherwise)
{
    const QString loss = lossWithServer();
    if (loss.isEmpty()) {
        action();
        return;
    }
    const QString name = QStringLiteral("runBox");
    if (findChild<QMessageBox*>(name))
        return; // asked already
    auto* const box = new QMessageBox(QMessageBox::Warning, windowTitle(), loss, QMessageBox::Cancel, this);
    const QString agreement = m_controller->wouldLoseRun() ? tr("&End the Run") : tr("&End Without Saving");
    const QAbstractButton* const end = box->addButton(agreement, QMessageBox::AcceptRole);
    box->setTextFormat(Qt::PlainText);
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
    const bool isServerGone = m_isClosing; // windows that report this may be higher than the user made them
    if (!isServerGone)
        remember();
    event->ignore();
    m_isAskingToSave = false; // set below if needed
    if (!m_isRunGivenUp && !lossWithServer().isEmpty()) {
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
        event->setAccepted(isServerGone ? m_windows->closeAllAsStored() : m_windows->closeAll());
        return;
    }
    m_isClosing = true; // the window closes when the server has ended, see updateControls()
    m_controller->stop();
    if (m_controller->state() == ServerState::Up)
        m_isClosing = false; // refused: the server is busy
}

} // namespace console
