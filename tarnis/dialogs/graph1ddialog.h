// A window that asks the server for 1D histograms once a second and shows them as curves. GUI thread only.
#pragma once

#include <tarnis/dialogs/livewindowhooks.h>
#include <tarnis/server/serveraddress.h>
#include <tarnis/server/tarniscmd.h>
#include <tarnis/tarnis_export.h>

#include <QDialog>
#include <QList>
#include <QString>

#include <memory>

class MultiVectorGraphWidget;
class QTimer;
class TarnisSession;
namespace tarnis {
class LiveWindow;
}
namespace Ui {
class Graph1DDialog;
}

/// Polls one binary command on a session of its own. A good reply starts a single-shot timer of a second, whose timeout
/// sends the next command while "AutoUpdate" is checked. A reply that cannot be read ends that chain until the next
/// update(), a lost connection for good. The window deletes itself on close.
class TARNIS_EXPORT Graph1DDialog : public QDialog {
    Q_OBJECT
public:
    /// Rows `start` to `end`, both included, `start` not above `end`. With xMin = xMax = 0 each reply brings its own
    /// axis. `initCmds` are sent first, as text commands; the first poll drops those that the session has not taken by
    /// then, and one that is refused closes the window. Host, port and prompt come from `session`, which stays the
    /// caller's; without one the window shows a demonstration.
    Graph1DDialog(TarnisSession* session, QString const& title, QString const& xLabel, double xMin, double xMax,
        int resolution, int decimalX, QString const& desc, QList<QString> const& initCmds, QString const& cmd,
        int start, int end, QWidget* parent);
    /// The same with a server's address in place of a session.
    Graph1DDialog(tarnis::ServerAddress const& server, QString const& title, QString const& xLabel, double xMin,
        double xMax, int resolution, int decimalX, QString const& desc, QList<QString> const& initCmds,
        QString const& cmd, int start, int end, QWidget* parent);
    ~Graph1DDialog() override;

    static const bool initialAutoUpdate; ///< the check box at construction

    /// The plot, owned by the window.
    MultiVectorGraphWidget* getGraphWidget() const;
    /// Polls another command from now on, at once; the same text changes nothing.
    void setCmd(QString const& cmd);
    bool isAutoUpdate() const; ///< the state of the check box
    /// Sets the check box and, if on, polls at once.
    void setAutoUpdate(bool on);
    /// The button "Update" and the check box. Neither call starts or ends the polling. @{
    void setVisibleUpdateControls(bool visible);
    void setEnabledUpdateControls(bool enabled);
    /// @}
    /// Shows value / maximum as a bar, or hides it.
    void setProgressInfo(bool visible, unsigned long long value, unsigned long long maximum);
    /// A text below the plot; an empty one is hidden. It is shown as plain text, in five lines at most; the rest is in
    /// its tool tip and context menu.
    void setInfoText(QString const& text);
    /// Ends the window's session, if there is one, and polls on a new one to `server`, after the initial commands. For
    /// a server that was started again or moved. A window without a server of its own does nothing.
    void renewSession(tarnis::ServerAddress const& server);
    /// Why the polling has stopped, which the window says too; empty while it goes on, and when the user or the host
    /// has switched it off. update(), also by the button "Update", starts it again, on a new session to the same server
    /// where the present one has ended.
    QString stopReason() const;

Q_SIGNALS:
    void onGraphUpdated(); ///< after each change of the curves

public Q_SLOTS:
    /// Drops what is still queued and sends the command; does nothing without a session.
    virtual void update();
    /// Draws a binary reply and starts the timer. A text reply that is refused is told in a box and closes the window;
    /// a reply that cannot be read is told in a box and ends the chain. While the window is hidden it does nothing.
    virtual void result(PTarnisCmd cmd, QByteArray const& payload);
    virtual void error(int code, QString const& text); ///< tells it in a box; the window stays, without polls
    /// On: polls at once. Off: drops what is still queued, a reply under way is drawn.
    virtual void onAutoUpdateToggled(bool on);
    void onTypeChanged(QString const& text); ///< "Each" draws a curve for each row, any other text their sum
    void onTimeout(); ///< polls if the check box is on; bound to the session's `connected` too

public:
    /// Sees the lines of each reply's text first and shows the server's complaints. False: the reply is not drawn, the
    /// polling goes on.
    virtual bool onResultExInfo(QList<QString> const& lines);

protected:
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    std::unique_ptr<Ui::Graph1DDialog> ui; ///< the controls
    TarnisSession* session = nullptr; ///< owned; null in the demonstration and after close
    QString cmd; ///< what is polled
    int start; ///< number of the first row
    int end; ///< number of the last row
    bool pairMode; ///< the axis comes with each reply
    bool extendLastBin = false; ///< widens a reply's axis by a bin, so that its upper end is inside
    QTimer* timer = nullptr; ///< owned; null in the demonstration
    tarnis::LiveWindowHooks hooks; ///< empty; a subclass may set them at any time

    /// @cond
    // Steps of the constructor and of result()
    TARNIS_NO_EXPORT void setUpDescription(QString const& desc);
    TARNIS_NO_EXPORT void setUpPlot(QString const& title, QString const& xLabel, double xMin, double xMax,
        int resolution, int decimalX, QString const& desc);
    TARNIS_NO_EXPORT void showDemonstration(int resolution);
    TARNIS_NO_EXPORT void pollLater();
    TARNIS_NO_EXPORT bool showRows(QByteArray const& payload);
    TARNIS_NO_EXPORT bool showPairs(QString const& replyText, QByteArray const& payload);
    /// @endcond

private:
    TARNIS_NO_EXPORT void reportUndrawn(tarnis::UndrawnReply const& reply);

    tarnis::LiveWindow* live; ///< owned as a child; what the members above do not hold
};
