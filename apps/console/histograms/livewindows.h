// The library's live windows as used by the console: a lost server is reported in the window, and polling resumes
// automatically when the server is back.
#pragma once

#include "histograms/dataage.h"
#include "server/sessionrecovery.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/statdialog.h>

#include <QElapsedTimer>

#include <functional>

class QLabel;

namespace console {

class LastDataBar;
class ServerController;
struct WindowContext;

/// The content of a 1D window.
struct CurvesRequest {
    QString title;
    QString xLabel;
    double xMin = 0.0; ///< if both ends are 0, each reply contains its own axis
    double xMax = 0.0;
    int resolution = 1;
    QString description;
    QString rangeName; ///< name of selectable ranges; empty: "X"
    QString command;
    int first = 0; ///< first row, inclusive, like `last`
    int last = 0;
    int rows = 0; ///< number of rows of the histogram, shown if `last` omits some
};

/// What the console adds to the library's Dialog, which is Graph1DDialog or Graph2DDialog: refusals and replies that
/// cannot be drawn are reported below the plot, and the polling continues. The time of the last data is also shown
/// there.
template <typename Dialog> class LivePlotDialog : public Dialog {
public:
    void update() override;
    bool onResultExInfo(QList<QString> const& lines) override;

    DataAge& dataAge() { return m_age; }
    SessionRecovery& recovery() { return m_recovery; }

protected:
    /// `arguments` are those of Dialog between the server's address and the parent.
    template <typename... Arguments>
    explicit LivePlotDialog(const WindowContext& context, const Arguments&... arguments);

    /// Reads a reply, of pairs of position and value if `arePairs`. Calls `show` unless the previous data are kept.
    void read(const PTarnisCmd& command, const QByteArray& payload, bool arePairs, const std::function<void()>& show);
    virtual void setTexts() = 0;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void onLost();
    void resume();

    SessionRecovery m_recovery;
    bool m_isDrawn = false; ///< the reply under way was drawn
    bool m_isAsked = false; ///< a poll is under way
    DataAge m_age;
    LastDataBar* m_kept;
};

/// A 1D window.
class LiveCurves : public LivePlotDialog<Graph1DDialog> {
    Q_OBJECT
public:
    /// `request` is called again for its texts when the language changes.
    LiveCurves(const WindowContext& context, const std::function<CurvesRequest()>& request);
    LiveCurves(const WindowContext& context, const CurvesRequest& request);

    void result(PTarnisCmd command, QByteArray const& payload) override;
    void error(int code, QString const& text) override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void setTexts() override;
    void showCaption();
    void chooseForm();

    bool m_isFormChosen = false; ///< columns or a line: chosen once, when the number of bins is known
    std::function<CurvesRequest()> m_request;
};

/// The content of a 2D window.
struct MapRequest {
    QString title;
    QString xLabel;
    QString yLabel;
    int bins = 0; ///< bins per row, and number of rows unless yBins is set
    int yBins = 0;
    double xMin = 0.0; ///< if both ends are 0, the axis counts bins; likewise Y
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    QString command;
};

/// A 2D window.
class LiveMap : public LivePlotDialog<Graph2DDialog> {
    Q_OBJECT
public:
    /// `request` is called again for its texts when the language changes.
    LiveMap(const WindowContext& context, const std::function<MapRequest()>& request);
    LiveMap(const WindowContext& context, const MapRequest& request);

    void result(PTarnisCmd command, QByteArray payload) override;
    void error(int socketError, QString message) override;

public Q_SLOTS:
    /// Replaces the library's slot, which the filter's dialog looks up by this name: the title of the new map states
    /// that it is filtered, and when.
    void onFilterAccepted(const Graph2DFilter& filter);

protected:
    void setTexts() override;
    void setFilteredTexts();

    std::function<MapRequest()> m_request;
};

/// The previous values remain shown while there is no server.
class LiveStatistics : public StatDialog {
    Q_OBJECT
public:
    LiveStatistics(const WindowContext& context, const QString& title);

    void result(PTarnisCmd command, QByteArray const& payload) override;
    void error(int code, QString const& text) override;

    DataAge& dataAge() { return m_age; }

protected:
    void setTexts();
    void updateSaveButton(); ///< off without data
    void onLost();
    void resume();

    ServerController& m_controller;
    SessionRecovery m_recovery;
    QElapsedTimer m_sinceResult; ///< time since the last result, after which the next poll was sent
    QLabel* m_infoLabel; ///< below the table; hidden without a problem
    DataAge m_age;
};

extern template class LivePlotDialog<Graph1DDialog>;
extern template class LivePlotDialog<Graph2DDialog>;

} // namespace console
