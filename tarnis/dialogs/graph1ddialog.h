// A window that requests 1D histograms once a second and shows them as curves. GUI thread only.
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

/// Polls one binary command on a session of its own. A valid reply starts a single-shot timer of one second, which
/// sends the next command while "AutoUpdate" is checked. An unreadable reply or a lost connection stops the polling
/// until the next update(), which opens a new session if needed. The window deletes itself on close.
class TARNIS_EXPORT Graph1DDialog : public QDialog {
    Q_OBJECT
public:
    /// Rows `start` to `end`, both included, `start` not above `end`. With xMin = xMax = 0 each reply contains its own
    /// axis. `initCmds` are sent first, as text commands; the first poll drops those that the session has not started
    /// by then, and a refused one closes the window. Host, port and prompt are copied from `session`, which is still
    /// owned by the caller; without a session the window shows a demonstration.
    Graph1DDialog(TarnisSession* session, QString const& title, QString const& xLabel, double xMin, double xMax,
        int resolution, int decimalX, QString const& desc, QList<QString> const& initCmds, QString const& cmd,
        int start, int end, QWidget* parent);
    /// As above, with a server's address instead of a session.
    Graph1DDialog(tarnis::ServerAddress const& server, QString const& title, QString const& xLabel, double xMin,
        double xMax, int resolution, int decimalX, QString const& desc, QList<QString> const& initCmds,
        QString const& cmd, int start, int end, QWidget* parent);
    ~Graph1DDialog() override;

    static const bool initialAutoUpdate; ///< the check box at construction

    /// The plot, owned by the window.
    MultiVectorGraphWidget* getGraphWidget() const;
    /// Polls another command, starting at once; the same text changes nothing.
    void setCmd(QString const& cmd);
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

Q_SIGNALS:
    void onGraphUpdated(); ///< after each change of the curves

public Q_SLOTS:
    /// Drops queued commands and sends the command; does nothing without a session.
    virtual void update();
    /// Draws a binary reply and starts the timer. A refused text command is reported in a message box and closes the
    /// window; an unreadable reply is reported in a message box and stops the polling. Does nothing while the window is
    /// hidden.
    virtual void result(PTarnisCmd cmd, QByteArray const& payload);
    virtual void error(int code, QString const& text); ///< reports it in a message box; the window stays open, without
                                                       ///< polling
    /// On: polls at once. Off: drops queued commands; a reply under way is drawn.
    virtual void onAutoUpdateToggled(bool on);
    void onTypeChanged(QString const& text); ///< "Each" draws a curve for each row, any other text their sum
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

    std::unique_ptr<Ui::Graph1DDialog> ui; ///< the controls
    TarnisSession* session = nullptr; ///< owned; null in the demonstration and after close
    QString cmd; ///< the polled command
    int start; ///< number of the first row
    int end; ///< number of the last row
    bool pairMode; ///< each reply contains the axis
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

    tarnis::LiveWindow* live; ///< a child; the state beside the members above
};
