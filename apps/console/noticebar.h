// The strip under the server's status that says what went wrong and offers the one press that mends it.
#pragma once

#include "notice.h"

#include <QFrame>

#include <memory>

namespace Ui {
class NoticeBar;
}

namespace console {

/// Hidden while there is nothing to say.
class NoticeBar : public QFrame {
    Q_OBJECT
public:
    explicit NoticeBar(QWidget* parent = nullptr);
    ~NoticeBar() override;

    const Notice& notice() const { return m_notice; }

public Q_SLOTS:
    /// Shows the notice in place of the one before; an empty text hides the bar.
    void setNotice(const console::Notice& notice);

Q_SIGNALS:
    void remedyPressed(console::Remedy remedy);

protected:
    void changeEvent(QEvent* event) override;
    void setRemedyText();
    void applyColours();

    std::unique_ptr<Ui::NoticeBar> ui;
    Notice m_notice;
};

} // namespace console
