// The library's live windows as the console opens them: a lost server is said in the window itself, and the polling
// goes on by itself when the server is back.
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

class KeptData;
class ServerController;
struct WindowContext;

/// What a 1D window shows.
struct CurvesRequest {
    QString title;
    QString xLabel;
    double xMin = 0.0; ///< with both ends 0 each reply brings its own axis
    double xMax = 0.0;
    int resolution = 1;
    QString description;
    QString rangeName; ///< of the ranges that can be selected; empty: "X"
    QString command;
    int first = 0; ///< of the rows, as `last`
    int last = 0;
    int rows = 0; ///< of the histogram, said where `last` leaves some out
};

/// A refusal, and a reply that cannot be drawn, stand below the plot, and the polling goes on. So does the time of the
/// last data.
class LiveCurves : public Graph1DDialog {
    Q_OBJECT
public:
    /// The request is asked again, for its texts, when the language changes.
    LiveCurves(const WindowContext& context, const std::function<CurvesRequest()>& request);
    LiveCurves(const WindowContext& context, const CurvesRequest& request);

    void update() override;
    void result(PTarnisCmd command, QByteArray const& payload) override;
    void error(int code, QString const& text) override;
    bool onResultExInfo(QList<QString> const& lines) override;

    DataAge& dataAge() { return m_age; }

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void show(const PTarnisCmd& command, const QByteArray& payload);
    bool eventFilter(QObject* object, QEvent* event) override;
    void setTexts();
    void showCaption();
    void chooseForm();
    void onLost();
    void resume();

    bool m_isFormChosen = false; ///< columns or a line: once, when the number of bins is known
    std::function<CurvesRequest()> m_request;
    SessionRecovery m_keeper;
    bool m_isDrawn = false; ///< the reply under way was drawn
    bool m_isAsked = false; ///< a poll is under way
    DataAge m_age;
    KeptData* m_kept;
};

/// What a 2D window shows.
struct MapRequest {
    QString title;
    QString xLabel;
    QString yLabel;
    int bins = 0; ///< of a row, and rows unless yBins says more
    int yBins = 0;
    double xMin = 0.0; ///< with both ends 0 the axis counts the bins; so does Y
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    QString command;
};

/// A refusal, and a reply that cannot be drawn, stand below the plot, and the polling goes on. So does the time of the
/// last data.
class LiveMap : public Graph2DDialog {
    Q_OBJECT
public:
    /// The request is asked again, for its texts, when the language changes.
    LiveMap(const WindowContext& context, const std::function<MapRequest()>& request);
    LiveMap(const WindowContext& context, const MapRequest& request);

    void update() override;
    void result(PTarnisCmd command, QByteArray payload) override;
    void error(int socketError, QString message) override;
    bool onResultExInfo(QList<QString> const& lines) override;

    DataAge& dataAge() { return m_age; }

public Q_SLOTS:
    /// In place of the library's own, which the filter's dialog looks up by this name: the title of the new map says
    /// that it is filtered, and when.
    void onFilterAccepted(const Graph2DFilter& filter);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void setTexts();
    void setFilteredTexts();
    void onLost();
    void resume();

    std::function<MapRequest()> m_request;
    SessionRecovery m_keeper;
    bool m_isDrawn = false; ///< the reply under way was drawn
    bool m_isAsked = false; ///< a poll is under way
    DataAge m_age;
    KeptData* m_kept;
};

/// The previous values stay on show while there is no server.
class LiveStatistics : public StatDialog {
    Q_OBJECT
public:
    LiveStatistics(const WindowContext& context, const QString& title);

    void result(PTarnisCmd command, QByteArray const& payload) override;
    void error(int code, QString const& text) override;

    DataAge& dataAge() { return m_age; }

protected:
    void changeEvent(QEvent* event) override;
    void setTexts();
    void onLost();
    void resume();

    ServerController& m_controller;
    SessionRecovery m_keeper;
    QElapsedTimer m_sinceResult; ///< the next poll is asked after a result: at least as long as it is under way
    QLabel* m_infoLabel; ///< below the table; hidden while all is well
    DataAge m_age;
};

} // namespace console
