// Which of the server's histograms to open: their list with a box to check for each.
#pragma once

#include "histograms/histogramlist.h"
#include "windows/window.h"

#include <tarnis/dialogs/dialogchecklist.h>
#include <tarnis/server/tarniscmd.h>

namespace console {

/// Opens the live window of the histogram, or brings it forward. The id of the window is "histogram " and the name.
void openHistogram(const WindowContext& context, const HistogramInfo& histogram);

/// Asks the server when it opens and when it is back after a loss; checks stay with the names meanwhile. Ok opens a
/// live window for each checked histogram, or brings it forward. What was checked is kept for the next time. GUI
/// thread.
class HistogramChooser : public DialogCheckList {
    Q_OBJECT
public:
    explicit HistogramChooser(const WindowContext& context);

protected:
    void changeEvent(QEvent* event) override;
    void ask();
    void showReply();
    void onServerState();
    void openChecked();
    void sayLost();
    void say(const QString& text);
    void updateControls();
    bool isChecked(int index) const;
    void noteChecks();

    WindowContext m_context;
    CommandChannel* m_link;
    QString m_reply; ///< that is on show
    QList<HistogramInfo> m_histograms; ///< in the order of the list
    QStringList m_checked; ///< also such as are not in the list now
    bool m_isUp = true; ///< the server, when its state was last looked at
};

} // namespace console
