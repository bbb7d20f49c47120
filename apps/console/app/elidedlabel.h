// A label for text of any length: it is elided if it does not fit, and the tool tip shows the full text.
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
