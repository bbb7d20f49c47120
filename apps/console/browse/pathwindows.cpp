#include "browse/pathwindows.h"

#include "server/replytext.h"
#include "server/servercontroller.h"
#include "windows/window.h"

#include <tarnis/server/tarnissession.h>

#include <QLineEdit>
#include <QListWidget>

#include <memory>

namespace console {

namespace {

QString joined(const QString& folder, const QString& name)
{
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

QString typedName(const QDialog& chooser)
{
    return chooser.findChild<QLineEdit*>(QStringLiteral("fileNameLineEdit"))->text();
}

/// The error in an entered name; empty if it can be sent.
QString nameProblem(const QString& name)
{
    if (name.isEmpty())
        return ChooserGuide::tr("Type a name, or choose a file");
    if (name.contains(u'/'))
        return ChooserGuide::tr("A name cannot contain a slash; open the folder in the list");
    return commandProblem(name);
}

/// The dialogs copy host, port and prompt of a session.
std::unique_ptr<TarnisSession> addressSession(const WindowContext& context)
{
    return std::unique_ptr<TarnisSession>(context.controller.tarnis().NewTarnisSession(nullptr));
}

} // namespace

FolderChooser::FolderChooser(const WindowContext& context, const tarnis::TranslatedText& title)
    : SelectPathDialog(QString(), addressSession(context).get(), context.parent)
    , m_recovery(context.controller, session)
    , m_guide(*this, [this] { return choice(); })
{
    tarnis::setTranslatedTitle(*this, title);
    setAttribute(Qt::WA_DeleteOnClose);
    listen();
    connect(&m_recovery, &SessionRecovery::lost, this, [this] { m_guide.setLost(true); });
    connect(&m_recovery, &SessionRecovery::wanted, this, &FolderChooser::resume);
}

void FolderChooser::askForName(const QString& name)
{
    setExt({ QStringLiteral("*") }, false, true);
    exts = { QStringLiteral("*") }; // without the dot that setExt() prepends: any name
    auto* const edit = findChild<QLineEdit*>(QStringLiteral("fileNameLineEdit"));
    edit->setText(name);
    edit->setFocus(Qt::OtherFocusReason);
    const qsizetype dot = name.lastIndexOf(u'.');
    edit->setSelection(0, int(dot > 0 ? dot : name.size()));
    m_guide.update();
}

void FolderChooser::closeEvent(QCloseEvent* event)
{
    const bool isGivenUp = isVisible(); // must be read before the next line hides the dialog
    m_recovery.end();
    SelectPathDialog::closeEvent(event);
    if (isGivenUp)
        reject();
}

void FolderChooser::listen()
{
    connect(session, &TarnisSession::result, &m_guide, &ChooserGuide::onReply);
    connect(session, &TarnisSession::error, this,
        [this](int, const QString& message) { m_recovery.fail(sender(), message); });
}

void FolderChooser::resume()
{
    connect(m_recovery.renew(), &TarnisSession::result, this, &FolderChooser::result);
    listen();
    session->start(QThread::InheritPriority);
    if (getDir().isEmpty())
        requestPwd();
    else
        requestLs();
    m_guide.setLost(false);
}

ChooserGuide::Choice FolderChooser::choice()
{
    if (exts.isEmpty())
        return { {}, getDir() };
    const QString name = typedName(*this);
    return { nameProblem(name), joined(getDir(), matchExt(name) ? name : name + exts.constFirst()) };
}

FileChooser::FileChooser(const WindowContext& context, const tarnis::TranslatedText& title)
    : SelectDirectoryDialog(QString(), addressSession(context).get(), context.parent)
    , m_recovery(context.controller, session)
    , m_guide(*this, [this] { return choice(); })
{
    tarnis::setTranslatedTitle(*this, title);
    setAttribute(Qt::WA_DeleteOnClose);
    listen();
    connect(&m_recovery, &SessionRecovery::lost, this, [this] { m_guide.setLost(true); });
    connect(&m_recovery, &SessionRecovery::wanted, this, &FileChooser::resume);
}

void FileChooser::closeEvent(QCloseEvent* event)
{
    const bool isGivenUp = isVisible(); // must be read before the next line hides the dialog
    m_recovery.end();
    SelectDirectoryDialog::closeEvent(event);
    if (isGivenUp)
        reject();
}

void FileChooser::listen()
{
    connect(session, &TarnisSession::result, &m_guide, &ChooserGuide::onReply);
    connect(session, &TarnisSession::error, this,
        [this](int, const QString& message) { m_recovery.fail(sender(), message); });
}

void FileChooser::resume()
{
    connect(m_recovery.renew(), &TarnisSession::result, this, &FileChooser::result);
    listen();
    session->start(QThread::InheritPriority);
    if (dir.isEmpty())
        requestPwd();
    else
        requestLs();
    m_guide.setLost(false);
}

ChooserGuide::Choice FileChooser::choice()
{
    if (exts.isEmpty())
        return { {}, dir };
    const QListWidgetItem* const item = selectedItem();
    const QString name = nameEdit ? typedName(*this) : item ? item->text() : QString();
    if (nameEdit)
        return { nameProblem(name), joined(dir, name.endsWith(exts.constFirst()) ? name : name + exts.constFirst()) };
    if (name.isEmpty())
        return { tr("Choose a file"), {} };
    return { matchExt(name) ? QString() : tr("Choose a file; Enter opens the folder"), joined(dir, name) };
}

} // namespace console
