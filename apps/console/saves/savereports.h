// The saves of all windows: exports plots, saves tables, and reports the results.
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QDateTime;
class QPrinter;
class QSettings;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {
struct SaveRequest;
}
class XYGraphWidget;

namespace console {

class SaveDialog;
class ServerController;

/// Handles the saves of the library's menus while it exists, and reports those of the console. Plots are saved with an
/// export dialog, which shows errors itself, and printed as vectors. Success is shown as a transient alert. Other
/// failures too, with an additional message box on the saving window unless it is the main window. GUI thread.
class SaveReports : public QObject {
    Q_OBJECT
public:
    /// `run` returns the run number for suggested names, or an empty text. The folder of the last save is stored in
    /// `settings`. All must outlive it.
    SaveReports(ServerController& controller, QSettings& settings, const std::function<QString()>& run);
    ~SaveReports() override;

    /// A file name without suffix for `what`, made of `what`, run, date and time.
    QString suggestedName(const QString& what) const;
    /// `error` is empty on success, else the cause as tarnis::writeFile() returns it.
    void report(QWidget& source, const QString& path, const QString& error);

Q_SIGNALS:
    /// A file has been written.
    void saved();

protected:
    SaveDialog* makeDialog(const tarnis::SaveRequest& request) const;
    bool save(const tarnis::SaveRequest& request);
    void exportPlot(XYGraphWidget& plot, const QString& suffix);
    void print(XYGraphWidget& plot);
    QString sourceText() const;

    ServerController& m_controller;
    QSettings& m_settings;
    std::unique_ptr<QPrinter> m_printer; ///< keeps the user's choices; created for the first print
    std::function<QString()> m_run;
};

/// Sets the name used in files saved from the window: the server's name of the histogram.
void setSavedName(QWidget& window, const QString& name);
/// Sets the time of the shown data, for files saved from the window.
void setDataTime(QWidget& window, const QDateTime& time);

} // namespace console
