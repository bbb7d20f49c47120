// The library's two path choosers as used by the console: while there is no server they stay open and show the reason,
// they continue when it is back, and closing them does not block.
#pragma once

#include "browse/chooserguide.h"
#include "server/sessionrecovery.h"

#include <tarnis/dialogs/selectdirectorydialog.h>
#include <tarnis/dialogs/selectpathdialog.h>

namespace console {

struct WindowContext;

/// What both choosers add to the library's Dialog, which is SelectPathDialog or SelectDirectoryDialog: it shows why
/// there is no choice, repeats its request when the connection is back, and deletes itself when it is closed.
template <typename Dialog> class ServerChooser : public Dialog {
public:
    ServerChooser(const WindowContext& context, const tarnis::TranslatedText& title);

protected:
    void closeEvent(QCloseEvent* event) override;
    void listen();
    void resume();
    QString currentFolder() const;
    ChooserGuide::Choice choice();

    SessionRecovery m_recovery;
    ChooserGuide m_guide;
};

template <> QString ServerChooser<SelectPathDialog>::currentFolder() const;
template <> QString ServerChooser<SelectDirectoryDialog>::currentFolder() const;
template <> ChooserGuide::Choice ServerChooser<SelectPathDialog>::choice();
template <> ChooserGuide::Choice ServerChooser<SelectDirectoryDialog>::choice();
extern template class ServerChooser<SelectPathDialog>;
extern template class ServerChooser<SelectDirectoryDialog>;

/// Chooses a folder of the server.
class FolderChooser : public ServerChooser<SelectPathDialog> {
    Q_OBJECT
public:
    using ServerChooser::ServerChooser;

    /// Also requests a file name, and accepts any name; `name` is the initial one.
    void askForName(const QString& name);
};

/// Chooses a file or folder of the server.
class FileChooser : public ServerChooser<SelectDirectoryDialog> {
    Q_OBJECT
public:
    using ServerChooser::ServerChooser;
};

/// Raises the owner's open chooser of this type; false if no such chooser is open.
template <typename Chooser> bool bringForward(const QWidget& owner)
{
    for (Chooser* const chooser : owner.findChildren<Chooser*>()) {
        if (!chooser->isVisible())
            continue;
        chooser->raise();
        chooser->activateWindow();
        return true;
    }
    return false;
}

} // namespace console
