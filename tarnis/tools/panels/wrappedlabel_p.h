// A wrapped message of a panel.
#pragma once

#include <QFont>
#include <QHash>
#include <QLabel>
#include <QScrollArea>

namespace tarnis {

/// Plain text in as many lines as it needs, which the user can select. QLabel lays each new text out at several trial
/// widths to choose its own width, which takes longer than painting it; this label uses the width that it has.
class WrappedLabel : public QLabel {
public:
    explicit WrappedLabel(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

private:
    int measuredHeight(int width) const;

    // Heights of the text in this font. @{
    mutable QString m_measuredText;
    mutable QFont m_measuredFont;
    mutable QHash<int, int> m_heights;
    // @}
};

/// Shows a WrappedLabel as high as its text, or with a scroll bar where a small window has less room.
class MessageArea : public QScrollArea {
public:
    explicit MessageArea(WrappedLabel* label, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

private:
    WrappedLabel* m_label; ///< owned by the scroll area
};

} // namespace tarnis
