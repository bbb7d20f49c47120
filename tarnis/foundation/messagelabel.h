/// @file
/// A label for texts from a server. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QLabel>

QT_BEGIN_NAMESPACE
class QTextLayout;
QT_END_NAMESPACE

namespace tarnis {

/// Shows its text as plain text, wrapped anywhere and in five lines at most, so that no text widens or fills the
/// window. text() returns the full text. If it is shortened, the tool tip shows more of it. A double click or the
/// context menu opens it in a window.
class TARNIS_EXPORT MessageLabel : public QLabel {
    Q_OBJECT
public:
    explicit MessageLabel(QWidget* parent = nullptr); ///< empty, aligned as a QLabel

    bool isShortened() const; ///< whether part of the text is hidden at the current width
    void showAll(); ///< opens the full text in a window

    QSize sizeHint() const override; ///< as wide as a short sentence
    QSize minimumSizeHint() const override; ///< one line of a few characters
    int heightForWidth(int width) const override; ///< at most five lines

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    TARNIS_NO_EXPORT int layOut(QTextLayout& layout, int width) const;
    TARNIS_NO_EXPORT QString shownText() const;
};

} // namespace tarnis
