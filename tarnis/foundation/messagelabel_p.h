// A label for texts from a server. GUI thread only.
#pragma once

#include <QLabel>

class QTextLayout;

namespace tarnis {

/// Shows its text as plain text, wrapped anywhere and in five lines at most, so that no text widens or fills the
/// window. text() returns the full text. The tool tip shows it too, and a double click or the context menu opens it in
/// a window.
class MessageLabel : public QLabel {
    Q_OBJECT
public:
    explicit MessageLabel(QWidget* parent = nullptr);

    bool isShortened() const; ///< whether part of the text is hidden at the current width
    void showAll(); ///< opens the full text in a window

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
