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

template <> QString ServerChooser<SelectPathDialog>::currentFolder() const
{
    return getDir();
}

template <> QString ServerChooser<SelectDirectoryDialog>::currentFolder() const
{
    return dir;
}

template <> ChooserGuide::Choice ServerChooser<SelectPathDialog>::choice()
{
    if (exts.isEmpty())
        return { {}, currentFolder() };
    const QString name = typedName(*this);
    return { nameProblem(name), joined(currentFolder(), matchExt(name) ? name : name + exts.constFirst()) };
}

template <> ChooserGuide::Choice ServerChooser<SelectDirectoryDialog>::choice()
{
    if (exts.isEmpty())
        return { {}, dir };
    const QListWidgetItem* const item = selectedItem();
    const QString name = nameEdit ? typedName(*this) : item ? item->text() : QString();
    if (nameEdit)
        return { nameProblem(name), joined(dir, name.endsWith(exts.constFirst()) ? name : name + exts.constFirst()) };
    if (name.isEmpty())
        return { FileChooser::tr("Choose a file"), {} };
    return { matchExt(name) ? QString() : FileChooser::tr("Choose a file; Enter opens the folder"), joined(dir, name) };
}

template <typename Dialog>
ServerChooser<Dialog>::ServerChooser(const WindowContext& context, const tarnis::TranslatedText& title)
    : Dialog(QString(), addressSession(context).get(), context.parent)
    , m_recovery(context.controller, this->session)
    , m_guide(*this, [this] { return choice(); })
{
    tarnis::setTranslatedTitle(*this, title);
    this->setAttribute(Qt::WA_DeleteOnClose);
    listen();
    this->connect(&m_recovery, &SessionRecovery::lost, this, [this] { m_guide.setLost(true); });
    this->connect(&m_recovery, &SessionRecovery::wanted, this, [this] { resume(); });
}

template <typename Dialog> void ServerChooser<Dialog>::closeEvent(QCloseEvent* event)
{
    const bool isGivenUp = this->isVisible(); // must be read before the next line hides the dialog
    m_recovery.end();
    Dialog::closeEvent(event);
    if (isGivenUp)
        this->reject();
}

template <typename Dialog> void ServerChooser<Dialog>::listen()
{
    this->connect(this->session, &TarnisSession::result, &m_guide, &ChooserGuide::onReply);
    this->connect(this->session, &TarnisSession::error, this,
        [this](int, const QString& message) { m_recovery.fail(this->sender(), message); });
}

template <typename Dialog> void ServerChooser<Dialog>::resume()
{
    this->connect(m_recovery.renew(), &TarnisSession::result, this, &Dialog::result);
    listen();
    this->session->start(QThread::InheritPriority);
    if (currentFolder().isEmpty())
        this->requestPwd();
    else
        this->requestLs();
    m_guide.setLost(false);
}

template class ServerChooser<SelectPathDialog>;
template class ServerChooser<SelectDirectoryDialog>;

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

} // namespace console
