// How the saves of all windows end: said to the user, with the cause where one failed.
#pragma once

#include <QObject>
#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace tarnis {
struct SaveRequest;
}

namespace console {

class SaveDialog;
class ServerController;

/// Takes part in the saves of the library's menus while it exists, and reports those of the console. A success is a
/// passing notice; a failure is one too, and a box on the window that wanted to save unless that is the console's own.
/// GUI thread.
class SaveReports : public QObject {
    Q_OBJECT
public:
    /// `run` returns the number of the run for suggested names, or an empty text. Both must outlive it.
    SaveReports(ServerController& controller, const std::function<QString()>& run);
    ~SaveReports() override;

    /// A name for a file with what the widget shows, without a suffix: what it is, run, date and time.
    QString suggestedName(const QWidget& source) const;
    /// The same for `what` instead of a widget.
    QString suggestedName(const QString& what) const;
    /// `error` is empty on success, else the cause as tarnis::writeFile() returns it.
    void report(QWidget& source, const QString& path, const QString& error);

Q_SIGNALS:
    /// A file has been written.
    void saved();

protected:
    SaveDialog* makeDialog(const tarnis::SaveRequest& request) const;

    ServerController& m_controller;
    std::function<QString()> m_run;
};

/// Names what the window shows in the files that are saved from it: the server's name of the histogram.
void setSavedName(QWidget& window, const QString& name);

} // namespace console
