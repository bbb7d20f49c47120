// A window that requests a 2D histogram once a second and shows it, and its filter. GUI thread only.
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

/// Polls one binary command on a session of its own. A valid reply starts a single-shot timer of one second, which
/// sends the next command while "AutoUpdate" is checked. A socket error is reported in a message box and closes the
/// window, which deletes itself on close.
class TARNIS_EXPORT Graph2DDialog : public QDialog {
    Q_OBJECT
public:
    /// Initially `binsX` by `binsY` bins; a reply may change both. `initCmds` are sent first, as text commands; the
    /// first poll drops those that the session has not started by then, and a refused one closes the window. Host,
    /// port and prompt are copied from `session`, which is still owned by the caller; without a session the window is
    /// static and shows the data passed to setData() of the plot.
    Graph2DDialog(TarnisSession* session, QString const& title, QString const& nameX, int binsX, double minX,
        double maxX, int resolutionX, int decimalX, QString const& nameY, int binsY, double minY, double maxY,
        int resolutionY, int decimalY, QList<QString> const& initCmds, QString const& cmd, QWidget* parent);
    /// As above, with a server's address instead of a session.
    Graph2DDialog(tarnis::ServerAddress const& server, QString const& title, QString const& nameX, int binsX,
        double minX, double maxX, int resolutionX, int decimalX, QString const& nameY, int binsY, double minY,
        double maxY, int resolutionY, int decimalY, QList<QString> const& initCmds, QString const& cmd,
        QWidget* parent);
    ~Graph2DDialog() override;

    static const bool initialAutoUpdate; ///< the check box at construction

    /// Polls another command, starting at once; the same text changes nothing.
    virtual void setCmd(QString const& cmd);
    virtual QString getCmd() const; ///< called for each poll
    /// The plot, owned by the window.
    XY2DGraphWidget* getGraphWidget() const;
    bool isAutoUpdate() const; ///< the state of the check box
    /// Sets the check box and, if on, polls at once.
    void setAutoUpdate(bool on);
    /// Visibility of the button "Update" and the check box. Neither call starts or stops the polling. @{
    void setVisibleUpdateControls(bool visible);
    void setEnabledUpdateControls(bool enabled);
    /// @}
    /// Shows value / maximum as a bar, or hides it.
    void setProgressInfo(bool visible, unsigned long long value, unsigned long long maximum);
    /// A text below the plot; an empty one is hidden. It is shown as plain text in at most five lines; the tool tip and
    /// the context menu show the full text.
    void setInfoText(QString const& text);
    /// Ends the window's session, if there is one, and polls with a new one to `server`, after the initial commands.
    /// Used after a server was restarted or has moved. A window without a server does nothing.
    void renewSession(tarnis::ServerAddress const& server);
    /// Why the polling has stopped, which the window also shows. Empty while it continues, and after the user or the
    /// host has switched it off. update(), also by the button "Update", starts it again, with a new session to the same
    /// server if the current one has ended.
    QString stopReason() const;
    /// The plot's setStepX() and setStepY().
    void setStep(double x, double y);
    void setColorBarTicks(int ticks); ///< the plot's setColorBarTicks()

public Q_SLOTS:
    /// Drops queued commands and sends the command; does nothing without a session.
    virtual void update();
    /// Draws a binary reply and starts the timer; an empty one clears the plot. A refused text command is reported in
    /// a message box and closes the window; data that do not match the bins are reported in a message box and stop the
    /// polling. Does nothing while the window is hidden.
    virtual void result(PTarnisCmd cmd, QByteArray);
    virtual void error(int socketError, QString message); ///< reports it in a message box and closes the window
    /// On: polls at once. Off: stops the timer and drops queued commands; a reply under way is drawn.
    virtual void onAutoUpdateToggled(bool checked);
    /// Applies the kernel to the displayed data and opens the result in a static window of this class.
    void onFilterAccepted(const Graph2DFilter& filter);
    /// Opens the filter's dialog, or raises the open one.
    void onFilter();
    void onTimeout(); ///< polls if the check box is on; also connected to the session's `connected`

public:
    /// Called first with the lines of each reply's text; shows the server's error lines. False: the reply is not drawn,
    /// the polling continues.
    virtual bool onResultExInfo(QList<QString> const& lines);

protected:
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    std::unique_ptr<Ui::Graph2DDialog> ui; ///< the controls
    TarnisSession* session = nullptr; ///< owned; null in a static window and after close
    int binsX; ///< bins per row
    int binsY; ///< rows
    QString cmd; ///< the polled command
    ModelessWidgetManager filterDialogs; ///< the filter's open dialog, with `this` as key
    QTimer* timer = nullptr; ///< owned; null in a static window
    tarnis::LiveWindowHooks hooks; ///< empty; a subclass may set them at any time

private:
    TARNIS_NO_EXPORT void startPolling(TarnisSession& model, QList<QString> const& initCmds);
    TARNIS_NO_EXPORT bool fits(QByteArray const& payload) const;
    TARNIS_NO_EXPORT void showRows(QByteArray const& payload);
    TARNIS_NO_EXPORT void pollLater();
    TARNIS_NO_EXPORT void refuseReply(QString const& replyText, QByteArray const& payload, int oldBinsX, int oldBinsY);

    tarnis::LiveWindow* live; ///< a child; the state beside the members above
};
