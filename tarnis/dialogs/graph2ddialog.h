// A window that asks the server for a 2D histogram once a second and shows it, and its filter. GUI thread only.
#pragma once

#include <tarnis/dialogs/graph2dfilterdialog.h>
#include <tarnis/dialogs/livewindowhooks.h>
#include <tarnis/foundation/modelesswidgetmanager.h>
#include <tarnis/server/serveraddress.h>
#include <tarnis/server/tarniscmd.h>
#include <tarnis/tarnis_export.h>

#include <QDialog>
#include <QList>
#include <QString>

#include <memory>

class QTimer;
class TarnisSession;
class XY2DGraphWidget;
namespace tarnis {
class LiveWindow;
}
namespace Ui {
class Graph2DDialog;
}

/// Polls one binary command on a session of its own. A good reply starts a single-shot timer of a second, whose timeout
/// sends the next command while "AutoUpdate" is checked. A socket error is told in a box and closes the window, which
/// deletes itself on close.
class TARNIS_EXPORT Graph2DDialog : public QDialog {
    Q_OBJECT
public:
    /// `binsX` by `binsY` bins at first; a reply may change both. `initCmds` are sent first, as text commands; the
    /// first poll drops those that the session has not taken by then, and one that is refused closes the window. Host,
    /// port and prompt come from `session`, which stays the caller's; without one the window is static and shows what
    /// setData() of the plot is given.
    Graph2DDialog(TarnisSession* session, QString const& title, QString const& nameX, int binsX, double minX,
        double maxX, int resolutionX, int decimalX, QString const& nameY, int binsY, double minY, double maxY,
        int resolutionY, int decimalY, QList<QString> const& initCmds, QString const& cmd, QWidget* parent);
    /// The same with a server's address in place of a session.
    Graph2DDialog(tarnis::ServerAddress const& server, QString const& title, QString const& nameX, int binsX,
        double minX, double maxX, int resolutionX, int decimalX, QString const& nameY, int binsY, double minY,
        double maxY, int resolutionY, int decimalY, QList<QString> const& initCmds, QString const& cmd,
        QWidget* parent);
    ~Graph2DDialog() override;

    static const bool initialAutoUpdate; ///< the check box at construction

    /// Polls another command from now on, at once; the same text changes nothing.
    virtual void setCmd(QString const& cmd);
    virtual QString getCmd() const; ///< asked at each poll
    /// The plot, owned by the window.
    XY2DGraphWidget* getGraphWidget() const;
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
    /// The plot's setStepX() and setStepY().
    void setStep(double x, double y);
    void setColorBarTicks(int ticks); ///< the plot's setColorBarTicks()

public Q_SLOTS:
    /// Drops what is still queued and sends the command; does nothing without a session.
    virtual void update();
    /// Draws a binary reply and starts the timer; an empty one clears the plot. A text reply that is refused is told in
    /// a box and closes the window; data that do not fit the bins are told in a box and end the chain. While the window
    /// is hidden it does nothing.
    virtual void result(PTarnisCmd cmd, QByteArray);
    virtual void error(int socketError, QString message); ///< tells it in a box and closes the window
    /// On: polls at once. Off: stops the timer and drops what is still queued; a reply under way is drawn.
    virtual void onAutoUpdateToggled(bool checked);
    /// Applies the kernel to what is shown and opens the result in a static window of this class.
    void onFilterAccepted(const Graph2DFilter& filter);
    /// Opens the filter's dialog, or brings the open one forward.
    void onFilter();
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

    void startPolling(TarnisSession& model, QList<QString> const& initCmds); ///< the constructor's, with a session
    bool fits(QByteArray const& payload) const; ///< whether it holds binsX * binsY values, at least one
    void showRows(QByteArray const& payload); ///< gives the plot each row of a payload that fits
    void pollLater(); ///< starts the timer, where there is one

    std::unique_ptr<Ui::Graph2DDialog> ui; ///< the controls
    TarnisSession* session = nullptr; ///< owned; null in a static window and after close
    int binsX; ///< bins per row
    int binsY; ///< rows
    QString cmd; ///< what is polled
    ModelessWidgetManager filterDialogs; ///< the filter's open dialog, by the pointer `this`
    QTimer* timer = nullptr; ///< owned; null in a static window
    tarnis::LiveWindowHooks hooks; ///< empty; a subclass may set them at any time

private:
    TARNIS_NO_EXPORT void rejectReply(QString const& replyText, QByteArray const& payload, int oldBinsX, int oldBinsY);

    tarnis::LiveWindow* live; ///< owned as a child; what the members above do not hold
};
