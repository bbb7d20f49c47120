// Shows a log file of this machine and follows its growth.
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

/// Looks at the file several times a second. Pausing stops the looking, not the writing: what came meanwhile is shown
/// when it goes on. The file is kept under "log/file" of the store. GUI thread.
class LogWindow : public QDialog {
    Q_OBJECT
public:
    /// Opens the file that the store holds. `store` must outlive the window.
    LogWindow(QSettings& store, QWidget* parent);
    ~LogWindow() override;

    /// Shows another file from now on.
    void setFile(const QString& path);
    bool isFollowing() const;

    static constexpr int maxLines = 20000; ///< on show; older ones go

public Q_SLOTS:
    void look();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void chooseFile();
    void onFollowToggled();
    void onScrolled();
    void append(const LogNews& news);
    void scrollToEnd();
    void find(bool isBackward);
    void updateFind();
    void showState();

    QSettings& m_store;
    std::unique_ptr<Ui::LogWindow> ui;
    std::unique_ptr<LogTail> m_tail; ///< null while no file is chosen
    QTimer m_timer;
    QString m_problem; ///< why the file cannot be read
    bool m_isFoundNowhere = false; ///< the text to find
    bool m_isWriting = false; ///< the view changes by itself, not by the user's scrolling
};

} // namespace console
