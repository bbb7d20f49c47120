// The run directories in a folder of the server, by prefix, run and date.
#pragma once

#include "browse/rundirectories.h"
#include "windows/window.h"

#include <tarnis/server/tarniscmd.h>

#include <QDialog>

#include <memory>

namespace Ui {
class RunsWindow;
}

namespace console {

class CommandChannel;

/// Lists the server's own directory first. After a failure the previous runs remain shown. GUI thread.
class RunsWindow : public QDialog {
    Q_OBJECT
public:
    explicit RunsWindow(const WindowContext& context);
    ~RunsWindow() override;

    /// Lists this folder; the server's own if the text is empty.
    void setFolder(const QString& folder);

public Q_SLOTS:
    void refresh();

protected:
    void ask(const QString& command, const QString& name);
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onListed(const QStringList& entries);
    void fillPrefixes();
    void browse();
    void insertChosen();
    void showCount();
    void updateControls();

    WindowContext m_context;
    std::unique_ptr<Ui::RunsWindow> ui;
    CommandChannel* m_channel;
    RunTable m_runs;
    RunOrder m_order;
    QString m_asked; ///< the folder whose list was requested
    QString m_shown; ///< the folder of the shown runs
    qsizetype m_others = 0; ///< number of entries that are not runs
    bool m_isListed = false;
};

} // namespace console
