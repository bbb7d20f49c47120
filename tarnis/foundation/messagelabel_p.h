// A label for texts that come from a server. GUI thread only.
#pragma once

#include <QLabel>

class QTextLayout;

namespace tarnis {

/// Shows its text as plain text, wrapped anywhere and in five lines at most, so that no text widens the window or fills
/// it. text() is the whole text all the same. What is left out is in the tool tip, and in a window on a double click or
/// by the context menu.
class MessageLabel : public QLabel {
    Q_OBJECT
public:
    explicit MessageLabel(QWidget* parent = nullptr);

    bool isShortened() const; ///< whether a part of the text is not visible at the present width
    void showAll(); ///< opens the whole text in a window

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    int layOut(QTextLayout& layout, int width) const;
    QString shownText() const;
};

} // namespace tarnis
