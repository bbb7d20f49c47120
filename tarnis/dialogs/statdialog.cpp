#include "tarnis/dialogs/statdialog.h"

#include "tarnis/dialogs/namevalue.h"
#include "tarnis/foundation/checkedconnect_p.h"
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
    delete session;
}

void StatDialog::sendCommand()
{
    auto* const command = new TarnisCmd(cmd);
    command->m_afterSleep = pollPauseMs;
    session->send(command);
}

void StatDialog::result(PTarnisCmd, QByteArray const& payload)
{
    QList<NameValue> values;
    const QStringList lines = QString::fromUtf8(payload).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        if (colon <= 0)
            continue;
        const QString key = line.left(colon);
        if (key != QLatin1String("OK") && key != QLatin1String("NG"))
            nvUpdate(values, NameValue { key, line.mid(colon + 1) });
    }
    updateList(values);
    sendCommand();
}

void StatDialog::error(int, QString const&)
{
    updateList(QList<NameValue>());
}
