// Lets the user choose which of the server's histograms to open, with a check box for each.
#pragma once

#include "histograms/histogramlist.h"
#include "windows/window.h"

#include <tarnis/dialogs/dialogchecklist.h>
#include <tarnis/server/tarniscmd.h>

namespace console {

class CommandChannel;

/// Opens or raises the live window of the histogram. The id of the window is "histogram " and the name.
void openHistogram(const WindowContext& context, const HistogramInfo& histogram);

/// Requests the list when it opens and when the server is back after a loss; the check states are kept by name. Ok
/// opens or raises a live window for each checked histogram. The check states are stored for the next time. GUI thread.
class HistogramChooser : public DialogCheckList {
    Q_OBJECT
public:
    explicit HistogramChooser(const WindowContext& context);

protected:
    void ask();
    void showReply();
    /// Makes the window wide enough for the texts of the list, up to three quarters of the screen.
    void fitWidth();
    void onServerState();
    void openChecked();
    void showLost();
    void showText(const QString& text);
    void updateControls();
    bool isChecked(int index) const;
    void noteChecks();

    WindowContext m_context;
    CommandChannel* m_channel;
    QString m_reply; ///< the displayed reply
    QList<HistogramInfo> m_histograms; ///< in the order of the list
    QStringList m_checked; ///< including names that are currently not in the list
    bool m_isUp = true; ///< whether the server was up at the last check
};

} // namespace console
