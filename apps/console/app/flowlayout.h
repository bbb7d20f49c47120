// A row of controls that wraps to the next line if the window is too narrow.
#pragma once

#include <QLayout>
#include <QList>

namespace console {

/// Places its items from left to right and starts a new line when the next item does not fit. Items that expand
/// horizontally, including spacers, share the remaining width of their line. What follows a spacer stays at the right
/// end, and together if a line has room for it. The layout is never wider than its widest item needs.
class FlowLayout : public QLayout {
    Q_OBJECT
public:
    explicit FlowLayout(QWidget* parent = nullptr);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return int(m_items.size()); }
    QLayoutItem* itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    void setGeometry(const QRect& rect) override;

protected:
    struct Line {
        QList<QLayoutItem*> items;
        int width = 0; ///< width of the items at their preferred sizes, with the gaps
        int height = 0;
        bool isAtEnd = false; ///< continues what follows a spacer
    };

    QList<Line> lines(int width) const;
    int widthBehind(int spacer, int width) const;
    void append(Line& line, QLayoutItem* item, int width) const;
    void place(const Line& line, const QRect& rect) const;
    int gap() const;

    QList<QLayoutItem*> m_items; ///< owned
};

} // namespace console
