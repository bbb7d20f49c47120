// The library's two path choosers as used by the console: while there is no server they stay open and show the reason,
// they continue when it is back, and closing them does not block.
#pragma once

#include "browse/chooserguide.h"
#include "server/sessionrecovery.h"

#include <tarnis/dialogs/selectdirectorydialog.h>
#include <tarnis/dialogs/selectpathdialog.h>

namespace console {

struct WindowContext;

/// Chooses a folder of the server. Deletes itself when it is closed, and repeats its request when the connection is
/// back.
class FolderChooser : public SelectPathDialog {
    Q_OBJECT
public:
    FolderChooser(const WindowContext& context, const tarnis::TranslatedText& title);

    /// Also requests a file name, and accepts any name; `name` is the initial one.
    void askForName(const QString& name);

protected:
    void closeEvent(QCloseEvent* event) override;
    void listen();
    void resume();
    ChooserGuide::Choice choice();

    SessionRecovery m_recovery;
    ChooserGuide m_guide;
};

/// Chooses a file or folder of the server, otherwise as FolderChooser.
class FileChooser : public SelectDirectoryDialog {
    Q_OBJECT
public:
    FileChooser(const WindowContext& context, const tarnis::TranslatedText& title);

protected:
    void closeEvent(QCloseEvent* event) override;
    void listen();
    void resume();
    ChooserGuide::Choice choice();

    SessionRecovery m_recovery;
    ChooserGuide m_guide;
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
