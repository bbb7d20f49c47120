// The saves of all windows: plots are exported, tables saved, and how each ended is reported.
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

/// Takes the saves of the library's menus over while it exists, and reports those of the console. Plots are saved with
/// an export dialog, which shows why a save failed, and printed as vectors. A success is a passing alert. So is any
/// other failure, with a box on the window that wanted to save unless that is the console's own. GUI thread.
class SaveReports : public QObject {
    Q_OBJECT
public:
    /// `run` returns the number of the run for suggested names, or an empty text. The folder of the last save is kept
    /// in `settings`. All must outlive it.
    SaveReports(ServerController& controller, QSettings& settings, const std::function<QString()>& run);
    ~SaveReports() override;

    /// A name for a file with `what`, without a suffix: what it is, run, date and time.
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
    std::unique_ptr<QPrinter> m_printer; ///< keeps what the user chose; made for the first print
    std::function<QString()> m_run;
};

/// Names what the window shows in the files that are saved from it: the server's name of the histogram.
void setSavedName(QWidget& window, const QString& name);
/// Notes when the data that the window shows were taken, for the files that are saved from it.
void setDataTime(QWidget& window, const QDateTime& time);

} // namespace console
