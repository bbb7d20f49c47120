// The library's two path choosers as the console opens them: they stay and say why while there is no server, go on when
// it is back, and do not block when they close.
#pragma once

#include "server/sessionrecovery.h"
#include "windows/chooserguide.h"

#include <tarnis/dialogs/selectdirectorydialog.h>
#include <tarnis/dialogs/selectpathdialog.h>

namespace console {

struct WindowContext;

/// A folder of the server. Deletes itself when it is closed, and asks again by itself when its connection is back.
class FolderChooser : public SelectPathDialog {
    Q_OBJECT
public:
    FolderChooser(const WindowContext& context, const tarnis::TranslatedText& title);

    /// Asks for the name of a file too, and takes any as it is typed; `name` is there from the start.
    void askForName(const QString& name);

protected:
    void closeEvent(QCloseEvent* event) override;
    void listen();
    void resume();
    ChooserGuide::Choice choice();

    SessionRecovery m_keeper;
    ChooserGuide m_guide;
};

/// A file or folder of the server, otherwise as FolderChooser.
class FileChooser : public SelectDirectoryDialog {
    Q_OBJECT
public:
    FileChooser(const WindowContext& context, const tarnis::TranslatedText& title);

protected:
    void closeEvent(QCloseEvent* event) override;
    void listen();
    void resume();
    ChooserGuide::Choice choice();

    SessionRecovery m_keeper;
    ChooserGuide m_guide;
};

/// Brings a chooser of this kind forward that the owner has open; false if there is none.
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
