// Which of the server's histograms to open: their list with a box to check for each.
#pragma once

#include "windows/histogramlist.h"
#include "windows/window.h"

#include <tarnis/dialogs/dialogchecklist.h>
#include <tarnis/server/tarniscmd.h>

namespace console {

/// Asks the server when it opens and when it is back after a loss. Ok opens a live window for each checked histogram,
/// or brings it forward. What was checked is kept for the next time. GUI thread.
class HistogramChooser : public DialogCheckList {
    Q_OBJECT
public:
    explicit HistogramChooser(const WindowContext& context);

protected:
    void changeEvent(QEvent* event) override;
    void ask();
    void onReplied(const QByteArray& reply);
    void onServerState();
    void openChecked();
    void say(const QString& text);
    void updateControls();

    WindowContext m_context;
    SessionLink* m_link;
    QList<HistogramInfo> m_histograms; ///< in the order of the list
};

} // namespace console
