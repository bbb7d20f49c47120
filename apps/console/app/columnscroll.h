// A column of the window that scrolls where the screen is too small or the font too large for all of it.
#pragma once

#include <QScrollArea>

namespace console {

/// Scrolls vertically only: the area is never narrower than what it shows.
class ColumnScroll : public QScrollArea {
    Q_OBJECT
public:
    /// Takes over `content`.
    explicit ColumnScroll(QWidget* content);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;
};

} // namespace console
