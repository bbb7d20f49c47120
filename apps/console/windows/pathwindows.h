// The library's two path choosers as the console opens them: they go with the server, and do not block when they close.
#pragma once

#include "windows/sessionkeeper.h"

#include <tarnis/dialogs/selectdirectorydialog.h>
#include <tarnis/dialogs/selectpathdialog.h>

namespace console {

struct WindowContext;

/// A folder of the server. Asks again by itself when its connection breaks while the server is up.
class FolderChooser : public SelectPathDialog {
    Q_OBJECT
public:
    FolderChooser(const WindowContext& context, const QString& title);

protected:
    void closeEvent(QCloseEvent* event) override;
    void listen();
    void resume();

    SessionKeeper m_keeper;
};

/// A file or folder of the server, otherwise as FolderChooser.
class FileChooser : public SelectDirectoryDialog {
    Q_OBJECT
public:
    FileChooser(const WindowContext& context, const QString& title);

protected:
    void closeEvent(QCloseEvent* event) override;
    void listen();
    void resume();

    SessionKeeper m_keeper;
};

} // namespace console
