// Shows a log file on this machine and follows it.
#pragma once

#include "log/logtail.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class QSettings;

namespace Ui {
class LogWindow;
}

namespace console {

/// Reads the file several times a second. After a pause, the text written in the meantime is shown. The path is stored
/// under "log/file". GUI thread.
class LogWindow : public QDialog {
    Q_OBJECT
public:
    /// Opens the stored file. `store` must outlive the window.
    LogWindow(QSettings& store, QWidget* parent);
    ~LogWindow() override;

    /// Shows another file.
    void setFile(const QString& path);
    bool isFollowing() const;

    static constexpr int maxLines = 20000; ///< maximum number of shown lines

public Q_SLOTS:
    void poll();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void chooseFile();
    void onFollowToggled();
    void onScrolled();
    void append(const LogChange& change);
    void scrollToEnd();
    void find(bool isBackward);
    void updateFind();
    void showState();

    QSettings& m_store;
    std::unique_ptr<Ui::LogWindow> ui;
    std::unique_ptr<LogTail> m_tail; ///< null while no file is chosen
    QTimer m_timer;
    QString m_problem; ///< why the file cannot be read
    bool m_isFoundNowhere = false; ///< the text to find was not found
    bool m_isWriting = false; ///< the view is changed by the program, not by the user
};

} // namespace console
