// The strip under the server's status that says what went wrong and offers the one press that fixes it.
#pragma once

#include "notices/alert.h"

#include <QFrame>

#include <memory>

namespace Ui {
class NoticeBar;
}

namespace console {

/// The palette's window colour with a tint of the severity.
QColor noticeGround(const QPalette& palette, Notice::Severity severity);

/// Hidden while there is nothing to say.
class NoticeBar : public QFrame {
    Q_OBJECT
public:
    explicit NoticeBar(QWidget* parent = nullptr);
    ~NoticeBar() override;

    const Notice& notice() const { return m_notice; }
    /// What stands beside the notice; empty if nothing does.
    QString note() const;

public Q_SLOTS:
    /// Shows the notice in place of everything before; an empty text hides the bar.
    void setNotice(const console::Notice& notice);
    /// Shows a notice that comes and goes: beside one that still needs the user (a failure, or something to press
    /// where this one has nothing), else in place of it. An empty text takes away what this brought, but nothing that
    /// can still be pressed.
    void setPassingNotice(const console::Notice& notice);

Q_SIGNALS:
    void remedyPressed(console::Remedy remedy);

protected:
    void changeEvent(QEvent* event) override;
    void show(const Notice& notice);
    void showNote(const Notice& notice);
    void dismiss();
    void announce(QWidget& label);
    void setRemedyText();
    void applyColours();

    std::unique_ptr<Ui::NoticeBar> ui;
    Notice m_notice;
    bool m_isPassing = false; ///< the notice is one that comes and goes
};

} // namespace console
