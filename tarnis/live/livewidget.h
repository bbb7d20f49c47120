/// @file
/// Base class of the live widgets: polling, states, status line.
#pragma once

#include <tarnis/client/histogrampoller.h>
#include <tarnis/tarnis_export.h>

#include <QString>
#include <QWidget>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A plot that polls one histogram, with a status line below it that shows the time of the data and any error. A host
/// adds a LivePlot or a LiveMap to its window and sets a client:
///
///     auto* spectrum = new tarnis::LivePlot(this);
///     spectrum->setCommand("hist1d total bins:1024");
///     spectrum->setClient(server->client("plots"));
///
/// It polls while it is visible, and continues after failures and lost connections; the previous data stay on the plot
/// in the meantime. Widgets with the same client and command share the polls. It shows no message boxes. GUI thread
/// only.
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
    /// Validity of the data on the plot.
    enum class State {
        Idle, ///< no client or no command
        Paused, ///< by setPaused()
        Waiting, ///< no data since the widget was shown or its client and command were set
        Current, ///< the plot shows the last data
        Stale, ///< no data for staleAfter()
        Failed, ///< the last poll returned no histogram, or one that the widget cannot show; polling continues
    };
    Q_ENUM(State)

    ~LiveWidget() override; ///< stops polling, unless others share the polls

    /// The connection, not owned. It may be destroyed before the widget. Null stops polling. @{
    void setClient(Client* client);
    Client* client() const;
    /// @}
    /// The command that requests the histogram. Another command clears the plot. Empty: no polling. @{
    void setCommand(const QString& command);
    QString command() const;
    /// @}
    /// Format of the reply; by default HistogramFormat::ofCommand(). @{
    void setFormat(const HistogramFormat& format);
    HistogramFormat format() const;
    /// @}
    /// Limits and times of polling. @{
    void setOptions(const PollOptions& options);
    PollOptions options() const;
    /// @}
    /// Time from one poll to the next in ms, at least 1; default 1000. See PollOptions. @{
    void setInterval(int interval);
    int interval() const;
    /// @}
    /// Age in ms from which data count as stale; default 5000, 0: never. @{
    void setStaleAfter(int age);
    int staleAfter() const;
    /// @}
    /// Names of the axes. @{
    void setNameX(const QString& name);
    QString nameX() const;
    void setNameY(const QString& name);
    QString nameY() const;
    /// @}
    /// Whether the status line is shown; true by default. @{
    void setStatusShown(bool shown);
    bool isStatusShown() const;
    /// @}
    /// Whether the plot has a PlotNavigator and a PlotCrosshair; true by default. @{
    void setTools(bool on);
    bool hasTools() const;
    /// @}
    /// Whether a PlotToolBar with the actions of the plot and its tools is shown above the plot; false by default. @{
    void setToolBarShown(bool shown);
    bool isToolBarShown() const;
    /// @}

    bool isPaused() const; ///< no polling, the plot is unchanged
    State state() const; ///< see State
    QString statusText() const; ///< text of the status line, also while it is hidden; in the application's language
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
    /// The window has been moved or resized: moves the plot's child windows along.
    virtual void followWindow() = 0;
    /// The window has become active: raises the plot's child windows.
    virtual void raiseWindows() = 0;
    /// Why the widget cannot show a histogram, as a text for users; empty if it can, as here. It is then State::Failed,
    /// and the plot keeps its data.
    virtual QString unsuitability(const HistogramReply& histogram) const;

    bool eventFilter(QObject* object, QEvent* event) override; ///< filters the events of the window
    void showEvent(QShowEvent* event) override; ///< starts polling
    void hideEvent(QHideEvent* event) override; ///< stops polling
    void changeEvent(QEvent* event) override; ///< retranslates the texts

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
