#include "tarnis/dialogs/folderrequests_p.h"

#include "tarnis/dialogs/folderlists_p.h"
#include "tarnis/dialogs/serverpaths_p.h"
#include "tarnis/foundation/checkedconnect_p.h"
#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/server/tarnissession.h"

#include <utility>

namespace tarnis {

FolderRequests::FolderRequests(
    TarnisSession*& session, FolderLists* lists, Names names, Actions actions, QObject* dialog)
    : QObject(dialog)
    , m_session(session)
    , m_lists(lists)
    , m_names(names)
    , m_actions(std::move(actions))
{
}

void FolderRequests::start(TarnisSession& model)
{
    m_session = new TarnisSession(model.m_host, model.m_port, model.GetPrompt(), nullptr);
    checkedConnect(m_session, SIGNAL(result(PTarnisCmd, QByteArray)), parent(), SLOT(result(PTarnisCmd, QByteArray)));
    m_session->start(QThread::InheritPriority);
}

void FolderRequests::requestDirectory()
{
    begin();
    continueDirectory();
}

void FolderRequests::requestListing()
{
    begin();
    continueListing();
}

void FolderRequests::continueDirectory()
{
    send(QStringLiteral("pwd"), m_names.directory);
}

void FolderRequests::continueListing()
{
    send(listRequest(m_actions.currentFolder()), m_names.listing);
}

void FolderRequests::send(const QString& text, QLatin1String name)
{
    if (!m_session)
        return;
    m_lists->setEnabled(false);
    m_session->send(browseCommand(text, name));
}

void FolderRequests::read(const TarnisCmd& command, const QByteArray& payload)
{
    if (command.m_cmdName == m_names.directory)
        readDirectory(QString::fromUtf8(payload));
    else if (command.m_cmdName == m_names.listing)
        readListing(QString::fromUtf8(payload));
}

void FolderRequests::readDirectory(const QString& reply)
{
    m_lists->setEnabled(true);
    TARNIS_TRACE(reply);
    if (!isGoodReply(reply))
        return;
    const QStringList lines = replyLines(reply);
    if (!lines.isEmpty())
        m_actions.goTo(lines.first());
}

void FolderRequests::readListing(const QString& reply)
{
    m_lists->setEnabled(true);
    TARNIS_TRACE(reply);
    if (!isGoodReply(reply)) {
        // Only once: if the server's own directory cannot be listed either, further requests would never end.
        if (!std::exchange(m_hasFallenBack, true))
            continueDirectory();
        return;
    }
    m_hasFallenBack = false;
    QStringList names = replyLines(reply);
    localeAwareSort(names);
    m_actions.show(names);
}

} // namespace tarnis
