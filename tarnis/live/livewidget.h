/// @file
/// What the live widgets share: polls, states, the line below the plot.
#pragma once

#include <tarnis/client/histogrampoller.h>
#include <tarnis/tarnis_export.h>

#include <QString>
#include <QWidget>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A plot that polls one histogram and a line below it, which says of when the data are and what is wrong. A host drops
/// a LivePlot or a LiveMap into a window of its own and hands it a client:
///
///     auto* spectrum = new tarnis::LivePlot(this);
///     spectrum->setCommand("hist1d total bins:1024");
///     spectrum->setClient(server->client("plots"));
///
/// It polls while it is visible and goes on by itself after failures and lost connections; the previous data stay
/// on the plot meanwhile. Widgets with the same client and command share the polls. It shows no message boxes. GUI
/// thread only.
class TARNIS_EXPORT LiveWidget : public QWidget {
    Q_OBJECT
    /// See command().
    Q_PROPERTY(QString command READ command WRITE setCommand)
    /// See interval().
    Q_PROPERTY(int interval READ interval WRITE setInterval)
    /// See staleAfter().
    Q_PROPERTY(int staleAfter READ staleAfter WRITE setStaleAfter)
    /// Name of the X axis.
    Q_PROPERTY(QString nameX READ nameX WRITE setNameX)
    /// Name of the Y axis.
    Q_PROPERTY(QString nameY READ nameY WRITE setNameY)
    /// See isPaused().
    Q_PROPERTY(bool paused READ isPaused WRITE setPaused)
    /// See isStatusShown().
    Q_PROPERTY(bool statusShown READ isStatusShown WRITE setStatusShown)
    /// See hasTools().
    Q_PROPERTY(bool tools READ hasTools WRITE setTools)
    /// See isToolBarShown().
    Q_PROPERTY(bool toolBarShown READ isToolBarShown WRITE setToolBarShown)
    /// See State.
    Q_PROPERTY(State state READ state NOTIFY statusChanged)
    /// See statusText().
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusChanged)
public:
    /// What the data on the plot are worth.
    enum class State {
        Idle, ///< no client or no command
        Paused, ///< by setPaused()
        Waiting, ///< no data since the widget was shown or was given its client and command
        Current, ///< the plot shows the last data
        Stale, ///< no data for staleAfter()
        Failed, ///< the last poll brought no histogram; the polls go on
    };
    Q_ENUM(State)

    ~LiveWidget() override; ///< the polls end, unless others share them

    /// The connection, which the widget does not own and which may be destroyed before it. Null ends the polls. @{
    void setClient(Client* client);
    Client* client() const;
    /// @}
    /// The command that requests the histogram. Another one takes the present data off the plot. Empty: no polls. @{
    void setCommand(const QString& command);
    QString command() const;
    /// @}
    /// What the reply looks like; that of HistogramFormat::ofCommand() until it is set. @{
    void setFormat(const HistogramFormat& format);
    HistogramFormat format() const;
    /// @}
    /// Limits and times of the polls. @{
    void setOptions(const PollOptions& options);
    PollOptions options() const;
    /// @}
    /// From one poll to the next, ms, at least 1; 1000 at first. @{
    void setInterval(int interval);
    int interval() const;
    /// @}
    /// Age from which data count as stale, ms; 5000 at first, 0: never. @{
    void setStaleAfter(int age);
    int staleAfter() const;
    /// @}
    /// Names of the axes. @{
    void setNameX(const QString& name);
    QString nameX() const;
    void setNameY(const QString& name);
    QString nameY() const;
    /// @}
    /// Whether the line below the plot is shown; true at first. @{
    void setStatusShown(bool shown);
    bool isStatusShown() const;
    /// @}
    /// Whether the plot has a PlotNavigator and a PlotCrosshair; true at first. @{
    void setTools(bool on);
    bool hasTools() const;
    /// @}
    /// Whether a PlotToolBar with the actions of the plot and its tools is above the plot; false at first. @{
    void setToolBarShown(bool shown);
    bool isToolBarShown() const;
    /// @}

    bool isPaused() const; ///< no polls, the plot stays as it is
    State state() const; ///< see State
    QString statusText() const; ///< the line below the plot, also while it is not shown; in the application's language
    HistogramReply last() const; ///< the data on the plot; without rows before the first
    XYGraphWidget* frame() const; ///< the plot

public Q_SLOTS:
    void setPaused(bool paused); ///< see isPaused()

Q_SIGNALS:
    /// New data are on the plot.
    void updated(const tarnis::HistogramReply& histogram);
    /// After each change of state() or statusText().
    void statusChanged(tarnis::LiveWidget::State state, const QString& text);

protected:
    /// With a plot that is, or becomes, a child of the widget.
    LiveWidget(XYGraphWidget* plot, QWidget* parent);
    /// Puts data on the plot, without a repaint.
    virtual void showData(const HistogramReply& histogram) = 0;
    /// Takes the data off the plot, without a repaint.
    virtual void clearData() = 0;
    /// The window has moved or changed its size: the plot's own windows follow.
    virtual void followWindow() = 0;
    /// The window has become active: the plot's own windows come to the front.
    virtual void raiseWindows() = 0;

    bool eventFilter(QObject* object, QEvent* event) override; ///< watches the window
    void showEvent(QShowEvent* event) override; ///< begins the polls
    void hideEvent(QHideEvent* event) override; ///< ends the polls
    void changeEvent(QEvent* event) override; ///< follows the language

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
