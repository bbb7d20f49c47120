// A label for text of any length: what does not fit is cut with three dots, and the tooltip has it all.
#pragma once

#include <QLabel>

namespace console {

class ElidedLabel : public QLabel {
    Q_OBJECT
public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
};

} // namespace console
