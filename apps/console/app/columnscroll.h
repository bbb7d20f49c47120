// A column of the window that scrolls if the screen is too small or the font too large.
#pragma once

#include <QScrollArea>

namespace console {

/// Scrolls only vertically: the area is never narrower than its content.
class ColumnScroll : public QScrollArea {
    Q_OBJECT
public:
    /// Takes ownership of `content`.
    explicit ColumnScroll(QWidget* content);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;
};

} // namespace console
