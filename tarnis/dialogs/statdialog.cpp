#include "tarnis/dialogs/statdialog.h"

#include "tarnis/dialogs/statreply_p.h"
#include "tarnis/foundation/checkedconnect_p.h"
#include "tarnis/server/sessionend.h"
#include "tarnis/server/tarnissession.h"

#include <QCoreApplication>

namespace {

constexpr int pollPauseMs = 1000;

} // namespace

StatDialog::StatDialog(TarnisSession* session_, QString const& title, QString const& cmd_, QWidget* parent)
    : NameValueListDialog(QList<NameValue>(), parent, tr("Name"))
    , session(session_)
    , cmd(cmd_.isEmpty() ? QStringLiteral("stat") : cmd_)
{
    setWindowTitle(title.isEmpty() ? QCoreApplication::applicationName() : title);
    tarnis::checkedConnect(session, SIGNAL(result(PTarnisCmd, QByteArray)), this, SLOT(result(PTarnisCmd, QByteArray)));
    tarnis::checkedConnect(session, SIGNAL(error(int, QString)), this, SLOT(error(int, QString)));
    session->start(QThread::InheritPriority);
    sendCommand();
}

StatDialog::~StatDialog()
{
    tarnis::endInBackground(session);
}

void StatDialog::sendCommand()
{
    auto* const command = new TarnisCmd(cmd);
    command->m_afterSleep = pollPauseMs;
    session->send(command);
}

void StatDialog::result(PTarnisCmd, QByteArray const& payload)
{
    updateList(tarnis::namedValues(QString::fromUtf8(payload)));
    sendCommand();
}

void StatDialog::error(int, QString const&)
{
    updateList(QList<NameValue>());
}
