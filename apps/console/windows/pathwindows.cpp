#include "windows/pathwindows.h"

#include "servercontroller.h"
#include "sessionlink.h"
#include "windows/window.h"

#include <tarnis/server/tarnissession.h>

#include <QMessageBox>

namespace console {

namespace {

/// A chooser without its server has nothing to choose from.
void closeWithServer(QDialog& window, const ServerController& controller)
{
    const auto close = [&window] {
        for (QMessageBox* const question : window.findChildren<QMessageBox*>())
            question->reject();
        window.close();
    };
    QObject::connect(&controller, &ServerController::aboutToStop, &window, close);
    QObject::connect(&controller, &ServerController::stateChanged, &window, [&controller, close] {
        if (controller.state() != ServerState::Up)
            close();
    });
}

} // namespace

FolderChooser::FolderChooser(const WindowContext& context, const QString& title)
    : SelectPathDialog(QString(), context.link.session(), context.parent)
    , m_keeper(context.controller, session)
{
    setWindowTitle(title);
    listen();
    connect(&m_keeper, &SessionKeeper::wanted, this, &FolderChooser::resume);
    closeWithServer(*this, context.controller);
}

void FolderChooser::closeEvent(QCloseEvent* event)
{
    m_keeper.end();
    SelectPathDialog::closeEvent(event);
}

void FolderChooser::listen()
{
    connect(session, &TarnisSession::error, this,
        [this](int, const QString& message) { m_keeper.fail(sender(), message); });
}

void FolderChooser::resume()
{
    connect(m_keeper.renew(), &TarnisSession::result, this, &FolderChooser::result);
    listen();
    session->start(QThread::InheritPriority);
    if (getDir().isEmpty())
        requestPwd();
    else
        requestLs();
}

FileChooser::FileChooser(const WindowContext& context, const QString& title)
    : SelectDirectoryDialog(QString(), context.link.session(), context.parent)
    , m_keeper(context.controller, session)
{
    setWindowTitle(title);
    listen();
    connect(&m_keeper, &SessionKeeper::wanted, this, &FileChooser::resume);
    closeWithServer(*this, context.controller);
}

void FileChooser::closeEvent(QCloseEvent* event)
{
    m_keeper.end();
    SelectDirectoryDialog::closeEvent(event);
}

void FileChooser::listen()
{
    connect(session, &TarnisSession::error, this,
        [this](int, const QString& message) { m_keeper.fail(sender(), message); });
}

void FileChooser::resume()
{
    connect(m_keeper.renew(), &TarnisSession::result, this, &FileChooser::result);
    listen();
    session->start(QThread::InheritPriority);
    if (dir.isEmpty())
        requestPwd();
    else
        requestLs();
}

} // namespace console
